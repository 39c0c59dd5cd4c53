#include "platform/AtomicFile.h"

#include "platform/linux/SystemError.h"

#include <QFile>

#include <algorithm>
#include <atomic>
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
#include <utility>
#include <vector>

namespace
{
// A temporary file is called ".shotly-<process>-<counter>.tmp": short, so that it fits wherever the target's
// name does.
constexpr std::string_view temporaryPrefix = ".shotly-";
constexpr std::string_view temporarySuffix = ".tmp";

struct FreeDeleter {
    void operator()(char *memory) const noexcept { std::free(memory); }
};

class Descriptor
{
public:
    explicit Descriptor(int number) noexcept : m_number(number) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    bool open() const noexcept { return m_number >= 0; }
    int number() const noexcept { return m_number; }

    /// Some file systems tell only here that a write has failed.
    bool close() noexcept
    {
        const int number = std::exchange(m_number, -1);
        return number < 0 || ::close(number) == 0 || errno == EINTR;
    }

private:
    int m_number;
};

QByteArray folderOf(const QByteArray &path)
{
    const qsizetype separator = path.lastIndexOf('/');
    if (separator < 0)
        return QByteArrayLiteral(".");
    return separator == 0 ? QByteArrayLiteral("/") : path.left(separator);
}

/// A file of a temporary name that takes its place only when everything has been written to it.
class Replacement
{
public:
    explicit Replacement(const QString &path)
        : m_path(path), m_target(QFile::encodeName(path)), m_descriptor(create())
    {
    }

    ~Replacement()
    {
        if (!m_temporary.isEmpty())
            ::unlink(m_temporary.constData());
    }
    Replacement(const Replacement &) = delete;
    Replacement &operator=(const Replacement &) = delete;

    int descriptor() const noexcept { return m_descriptor.number(); }

    void append(std::span<const QByteArrayView> pieces)
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
            const ssize_t written = ::writev(descriptor(), &rest[next], count);
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

    void takeTheName()
    {
        if (!m_descriptor.close() || ::rename(m_temporary.constData(), m_target.constData()) != 0)
            fail(errno);
        m_temporary.clear();
    }

    [[noreturn]] void fail(int code) const
    {
        throw systemError(code, QStringLiteral("Cannot write the file \"%1\"").arg(m_path));
    }

private:
    static constexpr std::size_t maximumPieces = 1024; // the kernel's limit for one call

    int create()
    {
        struct stat status = {};
        bool exists = ::lstat(m_target.constData(), &status) == 0;
        if (exists && S_ISLNK(status.st_mode)) {
            // The file that the link leads to is replaced, not the link; a link to nothing is.
            const std::unique_ptr<char, FreeDeleter> resolved(::realpath(m_target.constData(), nullptr));
            if (!resolved && errno != ENOENT)
                fail(errno);
            if (resolved)
                m_target = resolved.get();
            exists = ::stat(m_target.constData(), &status) == 0;
        }
        if (exists) {
            if (S_ISDIR(status.st_mode))
                fail(EISDIR);
            // Renaming would put a plain file in the place of a device.
            if (!S_ISREG(status.st_mode))
                fail(EINVAL);
            // Renaming asks for a right on the folder only, but a write-protected file is meant to stay.
            if (::access(m_target.constData(), W_OK) != 0)
                fail(errno);
        }
        const int number = openTemporary(exists ? 0600 : 0666);
        // Fails on file systems without permissions of their own, where there is nothing to keep.
        if (exists)
            (void)::fchmod(number, status.st_mode & 07777U);
        return number;
    }

    int openTemporary(mode_t mode)
    {
        static std::atomic<unsigned> counter{0};
        const QByteArray folder = folderOf(m_target);
        for (;;) {
            m_temporary = folder + '/' + temporaryPrefix.data() + QByteArray::number(::getpid()) + '-' +
                          QByteArray::number(counter.fetch_add(1)) + temporarySuffix.data();
            const int number = ::open(m_temporary.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
            if (number >= 0)
                return number;
            // Left over from a process that was killed and had the same number, perhaps on another machine.
            if (errno == EEXIST || errno == EINTR)
                continue;
            const int code = errno;
            m_temporary.clear();
            fail(code);
        }
    }

    QString m_path;
    QByteArray m_target;
    QByteArray m_temporary;
    Descriptor m_descriptor;
};

bool syncPath(const QByteArray &path) noexcept
{
    const Descriptor descriptor(::open(path.constData(), O_RDONLY | O_CLOEXEC));
    return descriptor.open() && ::fsync(descriptor.number()) == 0;
}
} // namespace

void AtomicFile::write(const QString &path, std::span<const QByteArrayView> pieces)
{
    Replacement file(path);
    file.append(pieces);
    file.takeTheName();
}

void AtomicFile::write(const QString &path, QByteArrayView bytes)
{
    write(path, std::span<const QByteArrayView>(&bytes, 1));
}

void AtomicFile::copy(const QString &source, const QString &target)
{
    const auto failToRead = [&source](int code) {
        RunTimeError error = systemError(code, QStringLiteral("Cannot read the file \"%1\"").arg(source));
        throw code == ENOENT ? RunTimeError(RunTimeError::FileNotFound, error.description()) : error;
    };
    const Descriptor from(::open(QFile::encodeName(source).constData(), O_RDONLY | O_CLOEXEC));
    if (!from.open())
        failToRead(errno);
    Replacement to(target);
    std::vector<char> buffer(std::size_t{1} << 18U);
    for (;;) {
        const ssize_t count = ::read(from.number(), buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            failToRead(errno);
        if (count == 0)
            break;
        const QByteArrayView piece(buffer.data(), count);
        to.append({&piece, 1});
    }
    to.takeTheName();
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
    return syncPath(name) && syncPath(folderOf(name));
}
