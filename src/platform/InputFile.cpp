#include "platform/InputFile.h"

#include "platform/linux/SystemError.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>

InputFile::InputFile(const QString &path)
    : m_path(path), m_descriptor(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC))
{
    struct stat status = {};
    if (!m_descriptor.open() || ::fstat(m_descriptor.number(), &status) != 0)
        fail(errno);
    m_size = status.st_size;
}

qsizetype InputFile::read(char *target, qsizetype count)
{
    qsizetype done = 0;
    while (done < count) {
        const qsizetype piece = readSome(target + done, count - done);
        if (piece == 0)
            break;
        done += piece;
    }
    return done;
}

qsizetype InputFile::readSome(char *target, qsizetype count)
{
    for (;;) {
        const ssize_t done = ::read(m_descriptor.number(), target, static_cast<std::size_t>(count));
        if (done >= 0)
            return done;
        if (errno != EINTR)
            fail(errno);
    }
}

QByteArray InputFile::readAll()
{
    seek(0);
    QByteArray bytes(m_size, Qt::Uninitialized);
    bytes.truncate(read(bytes.data(), bytes.size()));
    return bytes;
}

void InputFile::seek(qint64 offset)
{
    if (::lseek(m_descriptor.number(), offset, SEEK_SET) < 0)
        fail(errno);
}

void InputFile::fail(int code) const
{
    const RunTimeError error = systemError(code, QStringLiteral("Cannot read the file \"%1\"").arg(m_path));
    throw code == ENOENT ? RunTimeError(RunTimeError::FileNotFound, error.description()) : error;
}
