#include "platform/FileChecks.h"
#include "platform/office/OfficeProgram.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <thread>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace
{
/// A LibreOffice that is a shell script. The variable `in` is the file it is to convert, `out` the folder for
/// the result, `here` a folder for what it has to tell.
class OfficeProgramTest : public ::testing::Test
{
protected:
    QTemporaryDir m_folder;
    QString m_target = path("target.doc");
    QString m_pipeName = path("pipe");
    int m_pipe = -1;

    void SetUp() override
    {
        ASSERT_EQ(::mkfifo(m_pipeName.toUtf8().constData(), 0600), 0);
        m_pipe = ::open(m_pipeName.toUtf8().constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        ASSERT_TRUE(QDir(m_folder.path()).mkdir(u"the profiles"_s));
    }
    void TearDown() override { ::close(m_pipe); }
    QString path(const char *name) const { return m_folder.filePath(QString::fromUtf8(name)); }

    OfficeProgram program(const QByteArray &does, std::chrono::milliseconds limit = 60s) const
    {
        const QString script = path("soffice");
        QFile::remove(script);
        putFile(script, "#!/bin/sh\nhere='" + m_folder.path().toUtf8() +
                            "'\nprintf '%s\\n' \"$LC_ALL\" \"$@\" >\"$here/arguments\"\nout=\n"
                            "for word in \"$@\"; do [ \"$before\" = --outdir ] && out=$word; before=$word; "
                            "done\nin=$word\n"
                            "[ -z \"$out\" ] || mkdir -p \"$out\"\n" +
                            does + '\n');
        QFile::setPermissions(script, QFile::ReadOwner | QFile::ExeOwner);
        return OfficeProgram(path("the profiles"), script, limit);
    }

    void convert(const OfficeProgram &office, const QString &target, const std::stop_token &stop = {}) const
    {
        office.convert(
            {u"fodt"_s, {}, u"doc"_s, u"MS Word 97"_s},
            [](const QString &input) { putFile(input, "the input"); }, target, stop);
    }

    /// Why it fails, which loses nothing and leaves nothing behind; empty when it does not.
    QString failure(const OfficeProgram &office, int number = RunTimeError::WordFileNotWritten,
                    const std::stop_token &stop = {}) const
    {
        putFile(m_target, "old");
        QString reason;
        try {
            convert(office, m_target, stop);
        } catch (const RunTimeError &error) {
            EXPECT_EQ(error.number(), number) << error.what();
            reason = error.description();
        }
        EXPECT_EQ(contents(m_target), "old");
        return reason;
    }

    /// Waits until somebody has written into the pipe, or (POLLHUP) until nobody has it open for writing.
    bool pipeTells(short event) const
    {
        pollfd state{m_pipe, event, 0};
        return ::poll(&state, 1, 20'000) == 1 && (state.revents & event) != 0;
    }
};

// Two processes that hold the pipe open for far too long. (Descriptors that a script numbers itself might be
// those that it inherits.)
constexpr const char *hang = "exec >\"$here/pipe\"\necho started\nsleep 100 &\nsleep 100";
} // namespace

TEST_F(OfficeProgramTest, theResultTakesThePlaceOfTheTarget)
{
    qputenv("LC_ALL", "C");
    putFile(m_target, "old");
    convert(program("cp \"$in\" \"$out/document.doc\"; echo noise; echo noise >&2"), m_target);
    qunsetenv("LC_ALL");
    EXPECT_EQ(contents(m_target), "the input");
    const QStringList told = QString::fromUtf8(contents(path("arguments"))).split(u'\n');
    EXPECT_EQ(told.value(0), u"C.UTF-8"_s) << "other letters in names of files";
    const QString url = u"-env:UserInstallation=file://"_s + m_folder.path() + u"/the%20profiles/convert"_s;
    EXPECT_TRUE(told.contains(url)) << told.join(u' ').toStdString();
    EXPECT_TRUE(told.contains(u"doc:MS Word 97"_s));
    EXPECT_TRUE(
        contents(path("the profiles/convert/user/registrymodifications.xcu")).contains("ShowTipOfTheDay"));
}

TEST_F(OfficeProgramTest, failuresAreNamedAndLoseNothing)
{
    EXPECT_TRUE(failure(program("echo 'Error: no room' >&2; echo 'Warning: no Java' >&2"))
                    .endsWith(u"made no file: Error: no room"_s));
    EXPECT_TRUE(failure(program("exec >\"$here/pipe\"; sleep 100 & : >\"$out/document.doc\""))
                    .endsWith(u"made no file"_s));
    EXPECT_TRUE(pipeTells(POLLHUP)) << "nothing is left of it";
    EXPECT_TRUE(failure(program("cp \"$in\" \"$out/document.doc\"; head -c 100000 /dev/zero >&2; exit 3"))
                    .endsWith(u"ended with code 3"_s));
    EXPECT_TRUE(
        failure(
            program(
                "cp \"$in\" \"$out/document.doc\"; : >\"$here/the profiles/convert/damaged\"; kill -SEGV $$"))
            .endsWith(u"LibreOffice ended abnormally"_s));
    EXPECT_FALSE(QFile::exists(path("the profiles/convert/damaged"))) << "the next run gets a new profile";

    const OfficeProgram missing(path("the profiles"), path("no such program"));
    EXPECT_FALSE(missing.installed());
    EXPECT_TRUE(failure(missing, RunTimeError::CannotCreateObject).contains(u"is not installed"_s));
    const OfficeProgram works = program("cp \"$in\" \"$out/document.doc\"");
    EXPECT_TRUE(works.installed());
    EXPECT_NE(errorOf([&] { convert(works, path("no folder/x.doc")); }), 0);
}

TEST_F(OfficeProgramTest, nothingOutlivesTheTimeLimit)
{
    EXPECT_TRUE(failure(program(hang, 1500ms)).endsWith(u"LibreOffice took longer than 1.5 seconds"_s));
    EXPECT_TRUE(pipeTells(POLLHUP));
}

TEST_F(OfficeProgramTest, nothingOutlivesAStopRequest)
{
    const OfficeProgram office = program(hang);
    std::stop_source stop;
    std::jthread user([&] {
        EXPECT_TRUE(pipeTells(POLLIN));
        stop.request_stop();
    });
    EXPECT_NE(failure(office, RunTimeError::UserInterrupt, stop.get_token()), QString());
    user.join();
    char buffer[16];
    EXPECT_GT(::read(m_pipe, buffer, sizeof buffer), 0);
    EXPECT_TRUE(pipeTells(POLLHUP));
}

TEST_F(OfficeProgramTest, conversionsWaitForOneAnother)
{
    // Another process that does not come to an end. Nothing can be shared with it.
    QProcess other;
    other.start(u"flock"_s, {u"-s"_s, path("the profiles/convert.lock"), u"-c"_s, u"echo held; read end"_s});
    ASSERT_TRUE(other.waitForReadyRead());
    EXPECT_TRUE(failure(program("exit 0", 100ms)).endsWith(u"busy with another document"_s));
    std::stop_source stop;
    std::jthread user([&] { stop.request_stop(); });
    EXPECT_NE(failure(program("exit 0"), RunTimeError::UserInterrupt, stop.get_token()), QString());
    other.closeWriteChannel();
    EXPECT_TRUE(other.waitForFinished());
    convert(program("cp \"$in\" \"$out/document.doc\""), m_target);
    EXPECT_EQ(contents(m_target), "the input");
}

TEST_F(OfficeProgramTest, aWindowIsOpenedAndItsLeftOverMarkRemoved)
{
    const OfficeProgram office = program("exec <\"$here/end\" >\"$here/pipe\"; echo \"$in\"; read end");
    ASSERT_EQ(::mkfifo(path("end").toUtf8().constData(), 0600), 0);
    qunsetenv("DISPLAY");
    qunsetenv("WAYLAND_DISPLAY");
    EXPECT_EQ(errorOf([&] { office.show(m_target, false); }), RunTimeError::WordFileMissing);
    putFile(m_target, "x");
    EXPECT_EQ(errorOf([&] { office.show(m_target, false); }), RunTimeError::CannotCreateObject);

    qputenv("DISPLAY", ":9999");
    const int end = ::open(path("end").toUtf8().constData(), O_RDWR | O_CLOEXEC);
    const QString mark = path(".~lock.target.doc#");
    const auto keepsMark = [&](const OfficeProgram &program, bool rewritten) {
        putFile(mark,
                ",ann,host,23.11.2026 08:25,file://" + m_folder.path().toUtf8() + "/the%20profiles/window;");
        EXPECT_EQ(errorOf([&] { program.show(m_target, rewritten); }), 0);
        EXPECT_TRUE(pipeTells(POLLIN));
        char buffer[4096];
        EXPECT_EQ(QByteArray(buffer, ::read(m_pipe, buffer, sizeof buffer)).trimmed(), m_target.toUtf8());
        return QFile::exists(mark);
    };
    EXPECT_TRUE(keepsMark(OfficeProgram(path("other profiles"), path("soffice")), true)) << "somebody else's";
    EXPECT_FALSE(keepsMark(office, true)) << "of a window that is no more";
    EXPECT_TRUE(keepsMark(office, false)) << "perhaps of the first window";
    EXPECT_EQ(errorOf([&] { office.show(m_target, true); }), RunTimeError::PathAccess)
        << "which has the file as it was";
    ::close(end);
    EXPECT_TRUE(pipeTells(POLLHUP));
    qunsetenv("DISPLAY");
}
