#include "platform/AtomicFile.h"

#include "platform/InputFile.h"
#include "platform/linux/SystemError.h"

#include <QFile>
#include <QRandomGenerator>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>
#include <vector>

namespace
{
// A temporary file is called ".shotly-<process>-<random>.tmp": short, so that it fits wherever the target's
// name does.
constexpr std::string_view temporaryPrefix = ".shotly-";
constexpr std::string_view temporarySuffix = ".tmp";

constexpr std::size_t maximumPieces = 1024; // the kernel's limit for one call
constexpr qsizetype copyPiece = 256 * 1024;

struct FreeDeleter {
    void operator()(char *memory) const noexcept { std::free(memory); }
};

QByteArray folderOf(const QByteArray &path)
{
    const qsizetype separator = path.lastIndexOf('/');
    if (separator < 0)
        return QByteArrayLiteral(".");
    return separator == 0 ? QByteArrayLiteral("/") : path.left(separator);
}

/// Nobody can have put something of that name there.
QByteArray unusedName()
{
    return temporaryPrefix.data() + QByteArray::number(::getpid()) + '-' +
           QByteArray::number(QRandomGenerator::system()->generate64(), 36) + temporarySuffix.data();
}

/// A file that is not there has nothing to wait for, and some file systems do not know the call.
bool syncPath(const QByteArray &path) noexcept
{
    const FileDescriptor descriptor(::open(path.constData(), O_RDONLY | O_CLOEXEC));
    return !descriptor.open() || ::fsync(descriptor.number()) == 0 ||
           (errno != EIO && errno != ENOSPC && errno != EDQUOT);
}
} // namespace

AtomicFile::Replacement::Replacement(const QString &path, Access access)
    : m_path(path), m_access(access), m_target(QFile::encodeName(path)), m_descriptor(create())
{
}

AtomicFile::Replacement::~Replacement()
{
    if (!m_temporary.isEmpty())
        ::unlink(m_temporary.constData());
}

int AtomicFile::Replacement::create()
{
    struct stat status = {};
    m_replaces = ::lstat(m_target.constData(), &status) == 0;
    if (m_replaces && S_ISLNK(status.st_mode)) {
        // The file that the link leads to is replaced, not the link; a link to nothing is.
        const std::unique_ptr<char, FreeDeleter> resolved(::realpath(m_target.constData(), nullptr));
        if (!resolved && errno != ENOENT)
            fail(errno);
        if (resolved)
            m_target = resolved.get();
        m_replaces = ::stat(m_target.constData(), &status) == 0;
    }
    if (m_replaces) {
        if (S_ISDIR(status.st_mode))
            fail(EISDIR);
        // Renaming would put a plain file in the place of a device.
        if (!S_ISREG(status.st_mode))
            fail(EINVAL);
        // Renaming asks for a right on the folder only, but a write-protected file is meant to stay.
        if (::access(m_target.constData(), W_OK) != 0)
            fail(errno);
    }
    const int number = openTemporary(m_replaces || m_access == Access::OwnerAlone ? 0600 : 0666);
    // Fails on file systems without permissions of their own, where there is nothing to keep.
    if (m_replaces)
        (void)::fchmod(number, status.st_mode & 07777U);
    return number;
}

int AtomicFile::Replacement::openTemporary(unsigned mode)
{
    const QByteArray folder = folderOf(m_target);
    for (;;) {
        m_temporary = folder + '/' + unusedName();
        const int number = ::open(m_temporary.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (number >= 0)
            return number;
        if (errno == EEXIST || errno == EINTR)
            continue;
        const int code = errno;
        m_temporary.clear();
        fail(code);
    }
}

void AtomicFile::Replacement::expect(qint64 size) noexcept
{
    // Before a file is replaced, the file system writes what it has put off, so that even a power cut leaves
    // the old bytes or the new ones. It does not so for room that was taken beforehand.
    if (!m_replaces)
        (void)::fallocate(m_descriptor.number(), 0, 0, size);
}

void AtomicFile::Replacement::append(std::span<const QByteArrayView> pieces)
{
    std::vector<iovec> rest;
    rest.reserve(pieces.size());
    for (const QByteArrayView piece : pieces) {
        if (!piece.isEmpty())
            rest.push_back({const_cast<char *>(piece.data()), static_cast<std::size_t>(piece.size())});
    }
    std::size_t next = 0;
    while (next < rest.size()) {
        const auto count = static_cast<int>(std::min<std::size_t>(rest.size() - next, maximumPieces));
        const ssize_t written = ::writev(m_descriptor.number(), &rest[next], count);
        if (written < 0) {
            if (errno == EINTR)
                continue;
            fail(errno);
        }
        auto done = static_cast<std::size_t>(written);
        while (next < rest.size() && done >= rest[next].iov_len)
            done -= rest[next++].iov_len;
        if (done > 0) {
            rest[next].iov_base = static_cast<char *>(rest[next].iov_base) + done;
            rest[next].iov_len -= done;
        }
    }
}

void AtomicFile::Replacement::append(QByteArrayView bytes)
{
    append(std::span<const QByteArrayView>(&bytes, 1));
}

void AtomicFile::Replacement::takeTheName()
{
    if (!m_descriptor.close() || ::rename(m_temporary.constData(), m_target.constData()) != 0)
        fail(errno);
    m_temporary.clear();
}

void AtomicFile::Replacement::fail(int code) const
{
    throw systemError(code, QStringLiteral("Cannot write the file \"%1\"").arg(m_path));
}

void AtomicFile::write(const QString &path, std::span<const QByteArrayView> pieces, Access access)
{
    Replacement file(path, access);
    file.append(pieces);
    file.takeTheName();
}

void AtomicFile::write(const QString &path, QByteArrayView bytes)
{
    write(path, std::span<const QByteArrayView>(&bytes, 1));
}

void AtomicFile::copy(const QString &source, const QString &target)
{
    InputFile from(source);
    Replacement to(target);
    std::vector<char> buffer(copyPiece);
    for (;;) {
        const qsizetype count = from.readSome(buffer.data(), copyPiece);
        if (count == 0)
            break;
        to.append(QByteArrayView(buffer.data(), count));
    }
    to.takeTheName();
}

QString AtomicFile::temporaryName(const QString &folder)
{
    return folder + u'/' + QString::fromLatin1(unusedName());
}

void AtomicFile::removeLeftOvers(const QString &folder)
{
    std::error_code error;
    std::filesystem::directory_iterator entry(QFile::encodeName(folder).toStdString(), error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const std::string name = entry->path().filename();
        if (!name.starts_with(temporaryPrefix) || !name.ends_with(temporarySuffix))
            continue;
        const int process = std::atoi(name.c_str() + temporaryPrefix.size());
        if (process > 0 && ::kill(process, 0) != 0 && errno == ESRCH)
            ::unlink(entry->path().c_str());
    }
}

bool AtomicFile::syncFile(const QString &path) noexcept
{
    // The name is an entry of the folder: without the second call a power cut could lose it.
    const QByteArray name = QFile::encodeName(path);
    const bool stored = syncPath(name);
    return syncPath(folderOf(name)) && stored;
}
