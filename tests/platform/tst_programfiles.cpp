#include "FileChecks.h"
#include "platform/ApplicationFolder.h"
#include "platform/FileSystem.h"
#include "platform/UserSettings.h"

#include <QTemporaryDir>

namespace
{
/// An environment variable for the length of a test.
class Variable
{
public:
    Variable(const char *name, const QString &value) : m_name(name), m_old(qgetenv(name))
    {
        qputenv(name, value.toUtf8());
    }
    ~Variable() { m_old.isNull() ? qunsetenv(m_name) : qputenv(m_name, m_old); }

private:
    const char *m_name;
    QByteArray m_old;
};

class ApplicationFolderTest : public ::testing::Test
{
protected:
    QTemporaryDir m_root;
    FileSystem m_files;
    QString m_program = path("bin");
    Variable m_home{"SHOTLY_HOME", QString()};
    Variable m_data{"SHOTLY_DATA_DIR", path("data")};
    Variable m_user{"XDG_DATA_HOME", path("user")};

    ApplicationFolderTest() { m_files.createFolder(m_program); }
    QString path(const char *name) const { return m_root.filePath(QString::fromLatin1(name)); }
    /// A folder with a database and a cursor that hold the name of the folder.
    void deliver(const char *folder)
    {
        m_files.createFolder(path(folder) + QStringLiteral("/Cursors"));
        m_files.writeFile(path(folder) + QStringLiteral("/Shotly.mdb"), folder);
        m_files.writeFile(path(folder) + QStringLiteral("/Cursors/pen.cur"), folder);
    }
};
} // namespace

TEST_F(ApplicationFolderTest, theUsersOwnFolderIsFilledButNeverOverwritten)
{
    EXPECT_EQ(ApplicationFolder::locate(m_program),
              path("user/shotly")); // nothing to copy: the program says so
    deliver("data");
    EXPECT_EQ(ApplicationFolder::locate(m_program), path("user/shotly"));
    EXPECT_EQ(contents(path("user/shotly/Shotly.mdb")), "data");
    EXPECT_EQ(contents(path("user/shotly/Cursors/pen.cur")), "data");
    constexpr auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther |
                            QFile::WriteOther | QFile::ExeOther;
    for (const char *name : {"user/shotly", "user/shotly/Shotly.mdb"})
        EXPECT_EQ(QFile::permissions(path(name)) & others, QFile::Permissions()) << name;

    m_files.writeFile(path("user/shotly/Shotly.mdb"), "the user's pages");
    m_files.deleteFile(path("user/shotly/Cursors/pen.cur"));
    EXPECT_EQ(ApplicationFolder::locate(m_program), path("user/shotly"));
    EXPECT_EQ(contents(path("user/shotly/Shotly.mdb")), "the user's pages");
    EXPECT_EQ(contents(path("user/shotly/Cursors/pen.cur")), "data");
}

TEST_F(ApplicationFolderTest, anUpgradeRenewsWhatTheUserHasLeftAsItWas)
{
    deliver("data"); // as in a folder that was filled before lists were kept
    m_files.createFolder(path("user/shotly/help"));
    m_files.writeFile(path("user/shotly/help/old.htm"), "unknown");
    const auto install = [this](const QByteArray &version) {
        m_files.createFolder(path("data/help"));
        for (const char *name :
             {"help/a b.htm", "help/old.htm", "camera.wav", "Shotly.dot", "line.bmp", "Shotly.mdb"})
            m_files.writeFile(path("data/") + QString::fromLatin1(name), version);
    };
    const auto user = [this](const char *name) { return path("user/shotly/") + QString::fromLatin1(name); };
    install("first");
    ApplicationFolder::locate(m_program);
    m_files.writeFile(user("camera.wav"), "the user's sound");
    m_files.writeFile(user("mine.dot"), "first");
    m_files.deleteFile(user("line.bmp"));
    ASSERT_TRUE(QFile::link(user("mine.dot"), user("line.bmp")));

    install("second, longer");
    ApplicationFolder::locate(m_program);
    EXPECT_EQ(contents(user("help/a b.htm")), "second, longer");
    EXPECT_EQ(contents(user("Shotly.dot")), "second, longer");
    EXPECT_EQ(contents(user("camera.wav")), "the user's sound");
    EXPECT_EQ(contents(user("mine.dot")), "first"); // nothing is written through a link
    EXPECT_EQ(contents(user("help/old.htm")), "unknown");
    EXPECT_EQ(contents(user("Shotly.mdb")), "first");
    EXPECT_EQ(contents(user("Cursors/pen.cur")), "data");

    // What was renewed once is renewed again, also after a user's file has become what is delivered.
    m_files.writeFile(user("camera.wav"), "third");
    install("third");
    ApplicationFolder::locate(m_program);
    install("fourth, the last");
    ApplicationFolder::locate(m_program);
    for (const char *name : {"help/a b.htm", "Shotly.dot", "camera.wav"})
        EXPECT_EQ(contents(user(name)), "fourth, the last") << name;
}

TEST_F(ApplicationFolderTest, aFolderThatCannotBeRenewedDoesForNow)
{
    const OrdinaryUser user(m_root.path());
    deliver("data");
    ApplicationFolder::locate(m_program);
    m_files.writeFile(path("data/Cursors/pen.cur"), "another cursor");
    const QString cursors = path("user/shotly/Cursors");
    const QFile::Permissions readable = QFileInfo(cursors).permissions();
    QFile::setPermissions(cursors, readable & ~(QFile::WriteOwner | QFile::WriteUser));
    EXPECT_EQ(ApplicationFolder::locate(m_program), path("user/shotly"));
    EXPECT_EQ(contents(cursors + QStringLiteral("/pen.cur")), "data");
    QFile::setPermissions(cursors, readable);
    ApplicationFolder::locate(m_program);
    EXPECT_EQ(contents(cursors + QStringLiteral("/pen.cur")), "another cursor");

    // Without a list that can be read, nothing is known of the files: they stay.
    m_files.writeFile(path("user/shotly/delivered.list"), "x\nsenseless\n\n");
    m_files.writeFile(path("data/Cursors/pen.cur"), "the cursor of a third version");
    ApplicationFolder::locate(m_program);
    EXPECT_EQ(contents(cursors + QStringLiteral("/pen.cur")), "another cursor");
}

TEST_F(ApplicationFolderTest, theProgramsFolderAndTheVariableComeFirst)
{
    deliver("bin");
    deliver("data");
    EXPECT_EQ(ApplicationFolder::locate(m_program + u'/'), m_program);
    EXPECT_FALSE(m_files.folderExists(path("user")));
    {
        const Variable home("SHOTLY_HOME", path("home/"));
        EXPECT_EQ(ApplicationFolder::locate(m_program), path("home"));
        EXPECT_EQ(contents(path("home/Shotly.mdb")), "data");
        // An installation is found beside the program, wherever it was moved.
        const Variable none("SHOTLY_DATA_DIR", QString());
        deliver("share/shotly");
        const Variable other("SHOTLY_HOME", path("other"));
        ApplicationFolder::locate(m_program);
        EXPECT_EQ(contents(path("other/Shotly.mdb")), "share/shotly");
    }
    const Variable file("SHOTLY_HOME", path("bin/Shotly.mdb"));
    EXPECT_NE(errorOf([&] { ApplicationFolder::locate(m_program); }), 0);
    const Variable home("HOME", path("ann"));
    EXPECT_EQ(ApplicationFolder::defaultBaseDirectory(), path("ann/Shotly"));
}

TEST(UserSettingsTest, valuesComeBackAsTheyWere)
{
    const QTemporaryDir folder;
    const Variable configuration("XDG_CONFIG_HOME", folder.path());
    const QString section = QStringLiteral("General");
    const QString key = QStringLiteral("key");
    for (const QString &value : {QString(), QStringLiteral("1024"), QStringLiteral(" a, \"b\"; c=d\\ "),
                                 QStringLiteral("@Invalid()"), QStringLiteral("\u00e9\u4e2d\r\n")}) {
        UserSettings().setValue(section, key, value);
        EXPECT_EQ(
            UserSettings(folder.filePath(QStringLiteral("shotly/settings.ini"))).value(section, key, key),
            value);
    }
    EXPECT_EQ(UserSettings().value(QStringLiteral("Other"), key, QStringLiteral("-")), QStringLiteral("-"));
}
