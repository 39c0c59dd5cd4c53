#include "platform/office/OfficeProgram.h"

#include "platform/AtomicFile.h"
#include "platform/FileDescriptor.h"
#include "platform/FileSystem.h"
#include "platform/linux/SystemError.h"
#include "platform/office/StopRequest.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QUrl>

#include <condition_variable>
#include <csignal>
#include <fcntl.h>
#include <mutex>
#include <sys/file.h>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace
{
using SteadyClock = std::chrono::steady_clock;

constexpr auto step = 50ms; // how late a stop request may be noticed

// LibreOffice's first questions, and the one whether a document is to stay in Word's format, are not for
// somebody who does not know that LibreOffice is running.
constexpr const char *firstSettings =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<oor:items xmlns:oor="http://openoffice.org/2001/registry">
<item oor:path="/org.openoffice.Office.Common/Misc"><prop oor:name="FirstRun" oor:op="fuse"><value>false</value></prop></item>
<item oor:path="/org.openoffice.Office.Common/Misc"><prop oor:name="ShowTipOfTheDay" oor:op="fuse"><value>false</value></prop></item>
<item oor:path="/org.openoffice.Office.Common/Save/Document"><prop oor:name="WarnAlienFormat" oor:op="fuse"><value>false</value></prop></item>
</oor:items>
)";

QString profileUrl(const QString &profile)
{
    return QString::fromLatin1(QUrl::fromLocalFile(profile).toEncoded());
}

void makeProfile(const QString &profile)
{
    const QString settings = profile + u"/user/registrymodifications.xcu"_s;
    if (QFileInfo::exists(settings))
        return;
    FileSystem().createFolder(QFileInfo(settings).path());
    AtomicFile::write(settings, QByteArrayView(firstSettings));
}

/// Without a UTF-8 locale LibreOffice finds no file with other letters than English ones.
QProcessEnvironment environment()
{
    QProcessEnvironment result = QProcessEnvironment::systemEnvironment();
    QString locale;
    for (const QString &name : {u"LC_ALL"_s, u"LC_CTYPE"_s, u"LANG"_s}) {
        if (locale.isEmpty())
            locale = result.value(name);
    }
    if (!locale.contains(u"utf"_s, Qt::CaseInsensitive))
        result.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    return result;
}

/// A file that one process holds at a time. Children that inherit the descriptor hold it too, so that it is
/// taken as long as a LibreOffice lives that was started with it, whatever becomes of the one who started it.
class ProfileLock
{
public:
    explicit ProfileLock(const QString &path)
        : m_file(::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600))
    {
        if (!m_file.open())
            throw systemError(errno, u"Cannot write the file \"%1\""_s.arg(path));
    }
    bool take() const { return ::flock(m_file.number(), LOCK_EX | LOCK_NB) == 0; }
    /// Calls only what is allowed between fork() and exec().
    void letChildrenInherit() const { (void)::fcntl(m_file.number(), F_SETFD, 0); }

private:
    FileDescriptor m_file;
};

/// What LibreOffice said last, for an error message; empty when that tells nothing.
QString lastLine(const QString &path)
{
    constexpr qint64 end = 4096;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    file.seek(qMax(qint64(0), file.size() - end));
    QString last;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    for (const QString &line : lines) {
        const QString text = line.simplified();
        // It misses Java on every machine that has none, and needs it for nothing that is done here.
        if (!text.isEmpty() && !text.startsWith(u"Warning:"_s))
            last = text;
    }
    last.removeIf([](QChar character) { return !character.isPrint(); });
    return last.isEmpty() ? QString() : u": "_s + last.left(200);
}

QString inWords(std::chrono::milliseconds time)
{
    if (time >= 2min)
        return u"%1 minutes"_s.arg(std::chrono::duration_cast<std::chrono::minutes>(time).count());
    return u"%1 seconds"_s.arg(static_cast<double>(time.count()) / 1000);
}

/// One conversion from its start to the end of everything that it has started.
class Run
{
public:
    Run(const QString &failure, std::chrono::milliseconds limit, const std::stop_token &stop)
        : m_failure(failure), m_limit(limit), m_stop(stop)
    {
    }

    void waitFor(const ProfileLock &lock)
    {
        const auto end = SteadyClock::now() + m_limit;
        std::mutex mutex;
        std::condition_variable_any never;
        std::unique_lock guard(mutex);
        while (!lock.take()) {
            never.wait_for(guard, m_stop, step, [] { return false; });
            throwIfStopped(m_stop);
            if (SteadyClock::now() > end)
                fail(u"LibreOffice is busy with another document"_s);
        }
    }

    /// Throws unless it has ended well.
    void start(QProcess &process, const ProfileLock &lock, const QString &messages)
    {
        process.setStandardInputFile(QProcess::nullDevice());
        process.setStandardOutputFile(QProcess::nullDevice());
        // Not a pipe: it would be as full as the chatter is long.
        process.setStandardErrorFile(messages);
        process.setProcessEnvironment(environment());
        process.setChildProcessModifier([&lock] {
            ::setpgid(0, 0);
            lock.letChildrenInherit();
        });
        process.start();
        if (!process.waitForStarted())
            throw RunTimeError(RunTimeError::CannotCreateObject,
                               u"LibreOffice cannot be started (\"%1\"): %2"_s.arg(process.program(),
                                                                                   process.errorString()));
        const auto end = SteadyClock::now() + m_limit;
        const Group group(process);
        while (process.state() != QProcess::NotRunning && !process.waitForFinished(step.count())) {
            throwIfStopped(m_stop);
            if (SteadyClock::now() > end)
                fail(u"LibreOffice took longer than "_s + inWords(m_limit));
        }
        if (process.exitStatus() == QProcess::CrashExit)
            fail(u"LibreOffice ended abnormally"_s + lastLine(messages));
        if (process.exitCode() != 0)
            fail(u"LibreOffice ended with code %1"_s.arg(process.exitCode()) + lastLine(messages));
    }

    [[noreturn]] void fail(const QString &reason) const
    {
        throw RunTimeError(RunTimeError::WordFileNotWritten, m_failure + u": "_s + reason);
    }

private:
    /// The started program and what it starts in its turn: nothing of it outlives this object.
    class Group
    {
    public:
        explicit Group(QProcess &process) : m_process(process), m_number(process.processId()) {}
        ~Group()
        {
            if (m_number > 0) // 0 would be our own group
                ::kill(-static_cast<pid_t>(m_number), SIGKILL);
            m_process.waitForFinished(-1);
        }
        Group(const Group &) = delete;
        Group &operator=(const Group &) = delete;

    private:
        QProcess &m_process;
        qint64 m_number;
    };

    QString m_failure; ///< what messages begin with
    std::chrono::milliseconds m_limit;
    std::stop_token m_stop;
};

/// LibreOffice marks a document that it shows by a file beside it and asks before it opens a marked one. The
/// path of a mark of ours; empty when there is none.
QString ownMark(const QString &document, const QString &profile)
{
    const QFileInfo info(document);
    QFile mark(info.path() + u"/.~lock.%1#"_s.arg(info.fileName()));
    const bool own =
        mark.open(QIODevice::ReadOnly) && mark.readAll().contains(profileUrl(profile).toLatin1());
    return own ? mark.fileName() : QString();
}
} // namespace

OfficeProgram::OfficeProgram(const QString &profiles, const QString &program, std::chrono::milliseconds limit)
    : m_profiles(QDir::current().absoluteFilePath(profiles)), m_program(program), m_limit(limit)
{
    if (m_program.isEmpty())
        m_program = qEnvironmentVariable("SHOTLY_SOFFICE");
}

bool OfficeProgram::installed() const
{
    try {
        return !executable().isEmpty();
    } catch (const RunTimeError &) {
        return false;
    }
}

QString OfficeProgram::executable() const
{
    const QString name = m_program.isEmpty() ? u"soffice"_s : m_program;
    QString found = QStandardPaths::findExecutable(name);
    if (found.isEmpty() && m_program.isEmpty()) {
        QStringList folders{u"/usr/lib/libreoffice/program"_s, u"/usr/lib64/libreoffice/program"_s};
        const QStringList versions =
            QDir(u"/opt"_s).entryList({u"libreoffice*"_s}, QDir::Dirs, QDir::Name | QDir::Reversed);
        for (const QString &version : versions)
            folders += u"/opt/%1/program"_s.arg(version);
        folders += u"/snap/bin"_s;
        found = QStandardPaths::findExecutable(name, folders);
    }
    if (found.isEmpty())
        throw RunTimeError(RunTimeError::CannotCreateObject,
                           u"LibreOffice is not installed: there is no program \"%1\""_s.arg(name));
    return found;
}

void OfficeProgram::convert(const OfficeConversion &conversion,
                            const std::function<void(const QString &path)> &makeInput, const QString &target,
                            const std::stop_token &stop) const
{
    throwIfStopped(stop);
    QProcess process;
    process.setProgram(executable());
    // The names in it need no other letters than English ones, whatever the user's files are called.
    const QTemporaryDir work;
    if (!work.isValid())
        throw RunTimeError(RunTimeError::PathAccess,
                           u"Cannot make a folder for temporary files: "_s + work.errorString());
    const QString input = work.filePath(u"document."_s + conversion.inputSuffix);
    const QString made = work.filePath(u"made/document."_s + conversion.outputSuffix);
    makeInput(input);

    const QString failure =
        conversion.failure.isEmpty() ? u"Cannot write the file \"%1\""_s.arg(target) : conversion.failure;
    Run run(failure, m_limit, stop);
    FileSystem().createFolder(m_profiles);
    const ProfileLock lock(m_profiles + u"/convert.lock"_s);
    run.waitFor(lock);
    const QString profile = m_profiles + u"/convert"_s;
    makeProfile(profile);
    QStringList arguments{u"-env:UserInstallation="_s + profileUrl(profile), u"--headless"_s,
                          u"--norestore"_s, u"--nolockcheck"_s, u"--nodefault"_s};
    if (!conversion.inputFilter.isEmpty())
        arguments << u"--infilter="_s + conversion.inputFilter;
    arguments << u"--convert-to"_s << conversion.outputSuffix + u':' + conversion.outputFilter
              << u"--outdir"_s << QFileInfo(made).path() << input;
    process.setArguments(arguments);
    const QString messages = work.filePath(u"messages"_s);
    try {
        run.start(process, lock, messages);
    } catch (const RunTimeError &error) {
        // Perhaps it is the profile that it stumbles over; the next run gets a new one.
        if (error.number() == RunTimeError::WordFileNotWritten)
            QDir(profile).removeRecursively();
        throw;
    }
    // Most failures end with code 0; the file is the proof.
    if (QFileInfo(made).size() == 0)
        run.fail(u"LibreOffice made no file"_s + lastLine(messages));
    throwIfStopped(stop);
    AtomicFile::copy(made, target);
}

void OfficeProgram::show(const QString &path, bool rewritten) const
{
    const QFileInfo document(path);
    if (!document.isFile())
        throw RunTimeError(RunTimeError::WordFileMissing, u"There is no file \"%1\""_s.arg(path));
    QProcess process;
    process.setProgram(executable());
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        throw RunTimeError(RunTimeError::CannotCreateObject,
                           u"LibreOffice cannot show \"%1\": there is no display"_s.arg(path));
    const QString profile = m_profiles + u"/window"_s;
    makeProfile(profile);
    const ProfileLock lock(m_profiles + u"/window.lock"_s);
    const QString mark = ownMark(document.absoluteFilePath(), profile);
    const bool noWindow = lock.take();
    if (noWindow && !mark.isEmpty())
        QFile::remove(mark); // a killed LibreOffice has not done it
    if (!noWindow && !mark.isEmpty() && rewritten)
        throw RunTimeError(
            RunTimeError::PathAccess,
            u"An older \"%1\" is still open in LibreOffice. Close it first."_s.arg(document.fileName()));
    lock.letChildrenInherit();
    process.setArguments({u"-env:UserInstallation="_s + profileUrl(profile), u"--norestore"_s, u"--nologo"_s,
                          u"-o"_s, document.absoluteFilePath()});
    process.setWorkingDirectory(document.absolutePath());
    process.setProcessEnvironment(environment());
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    if (!process.startDetached())
        throw RunTimeError(RunTimeError::CannotCreateObject,
                           u"LibreOffice cannot be started (\"%1\")"_s.arg(process.program()));
}
