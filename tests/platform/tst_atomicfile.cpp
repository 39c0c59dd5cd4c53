#include "FileChecks.h"
#include "platform/AtomicFile.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QTemporaryDir>

#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace
{
/// Files in a folder of their own: "old" holds the text "old".
class AtomicFileTest : public ::testing::Test
{
protected:
    QTemporaryDir m_folder;
    QString m_old = path("old");

    AtomicFileTest() { AtomicFile::write(m_old, "old"); }
    QString path(const char *name) const { return m_folder.filePath(QString::fromLatin1(name)); }
    QString everything() const
    {
        return QDir(m_folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)
            .join(u' ');
    }
    static void setPermissions(const QString &path, mode_t mode)
    {
        EXPECT_EQ(::chmod(QFile::encodeName(path).constData(), mode), 0);
    }
    static mode_t permissions(const QString &path)
    {
        struct stat status = {};
        return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777U : 0;
    }
};
} // namespace

TEST_F(AtomicFileTest, writesAllPiecesInOrder)
{
    // More pieces than the kernel takes in one call, with empty ones between.
    const QByteArray digits("0123456789");
    std::vector<QByteArrayView> pieces;
    for (int i = 0; i < 3000; ++i) {
        pieces.push_back(QByteArrayView(digits).sliced(i % 10, 1));
        pieces.emplace_back();
    }
    AtomicFile::write(m_old, pieces);
    EXPECT_EQ(contents(m_old), digits.repeated(300));
    AtomicFile::write(m_old, QByteArrayView());
    EXPECT_EQ(contents(m_old), "");
    // The longest name there is: no room for a longer temporary one.
    const QString longName = m_folder.filePath(QString(255, u'n'));
    AtomicFile::write(longName, "x");
    EXPECT_EQ(contents(longName), "x");
}

TEST_F(AtomicFileTest, whatIsWrittenBitByBitTakesTheNameAtTheEnd)
{
    for (const char *name : {"old", "new"}) {
        const QByteArray before = contents(path(name));
        AtomicFile::Replacement file(path(name));
        file.expect(6);
        file.append("abc");
        file.append("def");
        EXPECT_EQ(contents(path(name)), before);
        file.takeTheName();
        EXPECT_EQ(contents(path(name)), "abcdef");
    }
    AtomicFile::Replacement(path("given up")).append("abc");
    EXPECT_EQ(everything(), QStringLiteral("new old"));
}

TEST_F(AtomicFileTest, fullDiskLeavesTheOldFileAndNothingElse)
{
    const QByteArray large(300'000, 'b');
    AtomicFile::write(path("large"), large);
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit old = {};
    ::getrlimit(RLIMIT_FSIZE, &old);
    // The first call to the kernel writes a part, the second one fails.
    const rlimit small{100'000, old.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_EQ(errorOf([&] { AtomicFile::write(m_old, large); }), RunTimeError::DiskFull);
    EXPECT_EQ(errorOf([&] { AtomicFile::copy(path("large"), m_old); }), RunTimeError::DiskFull);
    ::setrlimit(RLIMIT_FSIZE, &old);
    EXPECT_EQ(contents(m_old), "old");
    EXPECT_EQ(everything(), QStringLiteral("large old"));
    AtomicFile::copy(path("large"), m_old);
    EXPECT_EQ(contents(m_old), large);
}

TEST_F(AtomicFileTest, refusalsSayWhyAndChangeNothing)
{
    QDir(m_folder.path()).mkdir(QStringLiteral("folder"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
    const struct {
        QString target;
        int number;
    } rows[] = {{path("missing/file"), RunTimeError::PathNotFound},
                {path("old/below"), RunTimeError::PathNotFound},
                {path("folder"), RunTimeError::PathAccess},
                {path("pipe"), RunTimeError::PathAccess},
                {QStringLiteral("/sys/shotly"), RunTimeError::PermissionDenied}};
    for (const auto &row : rows) {
        try {
            AtomicFile::write(row.target, "new");
            ADD_FAILURE() << row.target.toStdString() << " was written";
        } catch (const RunTimeError &error) {
            EXPECT_EQ(error.number(), row.number) << error.what();
            EXPECT_TRUE(error.description().contains(row.target)) << error.what();
        }
    }
    EXPECT_EQ(errorOf([&] { AtomicFile::copy(path("none"), m_old); }), RunTimeError::FileNotFound);
    EXPECT_EQ(everything(), QStringLiteral("folder old pipe"));
    EXPECT_EQ(contents(m_old), "old");
}

TEST_F(AtomicFileTest, whatAKilledWriterLeftIsRemovedAndNothingElse)
{
    ASSERT_EQ(::mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
    const pid_t writer = ::fork();
    if (writer == 0) {
        AtomicFile::copy(path("pipe"), m_old); // waits for more until it is killed
        ::_exit(1);
    }
    const int pipe = ::open(QFile::encodeName(path("pipe")).constData(), O_WRONLY);
    ASSERT_EQ(::write(pipe, "half", 4), 4);
    const auto temporary = [this] { return everything().section(u' ', 0, 0); };
    const QDeadlineTimer limit(20'000);
    while (QFileInfo(m_folder.filePath(temporary())).size() != 4 && !limit.hasExpired()) {
    }
    AtomicFile::removeLeftOvers(m_folder.path()); // its writer lives
    EXPECT_TRUE(temporary().startsWith(u'.'));
    ::kill(writer, SIGKILL);
    ::waitpid(writer, nullptr, 0);
    ::close(pipe);
    AtomicFile::write(path(".shotly-notes.tmp"), "of the user's");
    AtomicFile::removeLeftOvers(m_folder.path());
    EXPECT_EQ(everything(), QStringLiteral(".shotly-notes.tmp old pipe"));
    AtomicFile::removeLeftOvers(path("none"));
}

TEST_F(AtomicFileTest, permissionsAreKeptAndRespected)
{
    const mode_t oldMask = ::umask(027);
    AtomicFile::write(path("new"), "1");
    ::umask(oldMask);
    EXPECT_EQ(permissions(path("new")), 0640U);
    const QByteArrayView secret("secret");
    AtomicFile::write(path("own"), std::span(&secret, 1), AtomicFile::Access::OwnerAlone);
    EXPECT_EQ(permissions(path("own")), 0600U);
    QFile::remove(path("own"));
    setPermissions(m_old, 0604);
    AtomicFile::write(m_old, "2");
    EXPECT_EQ(permissions(m_old), 0604U);

    const OrdinaryUser user(m_folder.path());
    AtomicFile::write(path("mine"), "3");
    setPermissions(path("mine"), 0400);
    EXPECT_EQ(errorOf([&] { AtomicFile::write(path("mine"), "4"); }), RunTimeError::PermissionDenied);
    setPermissions(m_folder.path(), 0500);
    EXPECT_EQ(errorOf([&] { AtomicFile::write(path("more"), "5"); }), RunTimeError::PermissionDenied);
    setPermissions(m_folder.path(), 0700);
    EXPECT_EQ(contents(path("mine")), "3");
    EXPECT_EQ(everything(), QStringLiteral("mine new old"));
}

TEST_F(AtomicFileTest, linksStayUnlessTheyLeadNowhere)
{
    QFile::link(m_old, path("link"));
    QFile::link(path("none"), path("nowhere"));
    AtomicFile::write(path("link"), "new");
    EXPECT_TRUE(QFileInfo(path("link")).isSymLink());
    EXPECT_EQ(contents(m_old), "new");
    AtomicFile::write(path("nowhere"), "file");
    EXPECT_FALSE(QFileInfo(path("nowhere")).isSymLink());
    EXPECT_EQ(contents(path("nowhere")), "file");
}
