#include "platform/JournalFile.h"

#include "platform/linux/SystemError.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
constexpr int accessRights = 0600; // what was done on a screen is nobody else's

[[noreturn]] void fail(int code, const QString &path)
{
    throw systemError(code, QStringLiteral("Cannot write the file \"%1\"").arg(path));
}
} // namespace

JournalFile::JournalFile(QString path, int descriptor) : m_path(std::move(path)), m_descriptor(descriptor) {}

JournalFile::~JournalFile()
{
    ::close(m_descriptor); // gives the lock back
}

std::unique_ptr<JournalFile> JournalFile::create(const QString &path)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(),
                                  O_RDWR | O_APPEND | O_CREAT | O_EXCL | O_CLOEXEC, accessRights);
    if (descriptor < 0)
        fail(errno, path);
    std::unique_ptr<JournalFile> file(new JournalFile(path, descriptor));
    // A file system without locks still keeps the journal; only a second program could not tell it is in use.
    while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EINTR) {
    }
    return file;
}

std::unique_ptr<JournalFile> JournalFile::takeOver(const QString &path)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDWR | O_APPEND | O_CLOEXEC);
    if (descriptor < 0)
        return nullptr;
    std::unique_ptr<JournalFile> file(new JournalFile(path, descriptor));
    int locked = -1;
    while ((locked = ::flock(descriptor, LOCK_EX | LOCK_NB)) != 0 && errno == EINTR) {
    }
    // Its writer may have removed it between the opening and the lock.
    struct stat status = {};
    if (locked != 0 || ::fstat(descriptor, &status) != 0 || status.st_nlink == 0)
        return nullptr;
    return file;
}

void JournalFile::append(const QByteArray &record)
{
    const off_t before = ::lseek(m_descriptor, 0, SEEK_END);
    const QByteArray line = record + '\n';
    qsizetype done = 0;
    while (done < line.size()) {
        const ssize_t written =
            ::write(m_descriptor, line.constData() + done, static_cast<std::size_t>(line.size() - done));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0) {
            const int code = written < 0 ? errno : EIO;
            // What was written of it would spoil the record that comes next.
            if (::ftruncate(m_descriptor, before) != 0)
                fail(errno, m_path);
            fail(code, m_path);
        }
        done += written;
    }
}

QList<QByteArray> JournalFile::records() const
{
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QList<QByteArray> lines = file.readAll().split('\n');
    lines.removeLast(); // what follows the last line feed: nothing, or a record that was cut off
    return lines;
}

void JournalFile::remove() noexcept
{
    ::unlink(QFile::encodeName(m_path).constData());
}
