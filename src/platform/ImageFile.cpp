#include "platform/ImageFile.h"

#include "platform/AtomicFile.h"
#include "platform/BitmapRows.h"
#include "platform/RunTimeError.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>

#include <QtEndian>

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <cstring>

namespace
{
constexpr qsizetype headerSize = 54;
constexpr int infoHeaderSize = 40;
constexpr int pixelsPerMetre = 2835;
constexpr int bitsPerPixel = 24;

/// Level 1 of zlib: a picture of the screen gets little smaller with more, and takes longer by far.
constexpr int pngQuality = 80;
constexpr int jpegQuality = 90;

/// Four screens of 3840 x 2160 side by side are more than the library's own limit.
constexpr int largestPictureMegabytes = 1024;

/// Little-endian fields one after the other.
class HeaderWriter
{
public:
    explicit HeaderWriter(char *target) : m_target(target) {}
    template <typename T>
    void put(T value)
    {
        qToLittleEndian(value, m_target);
        m_target += sizeof value;
    }

private:
    char *m_target;
};

void putHeaders(char *target, QSize size, qsizetype fileSize)
{
    HeaderWriter header(target);
    header.put<quint16>('B' | 'M' << 8);
    header.put<quint32>(static_cast<quint32>(fileSize));
    header.put<quint32>(0); // reserved
    header.put<quint32>(headerSize);
    header.put<quint32>(infoHeaderSize);
    header.put<qint32>(size.width());
    header.put<qint32>(size.height()); // positive: the lowest row comes first
    header.put<quint16>(1);            // planes
    header.put<quint16>(bitsPerPixel);
    header.put<quint32>(0); // not compressed
    header.put<quint32>(static_cast<quint32>(fileSize - headerSize));
    header.put<qint32>(pixelsPerMetre);
    header.put<qint32>(pixelsPerMetre);
    header.put<quint32>(0); // no palette
    header.put<quint32>(0);
}

/// Empty for a Windows bitmap.
QByteArray formatOf(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == QStringLiteral("png"))
        return QByteArrayLiteral("png");
    if (suffix == QStringLiteral("jpg") || suffix == QStringLiteral("jpeg"))
        return QByteArrayLiteral("jpeg");
    return {};
}

QByteArray encoded(const QImage &picture, const QByteArray &format, const QString &path)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    writer.setQuality(format == "png" ? pngQuality : jpegQuality);
    if (!writer.write(picture))
        throw RunTimeError(
            RunTimeError::InvalidPicture,
            QStringLiteral("The picture cannot be written to %1: %2").arg(path, writer.errorString()));
    return bytes;
}
/// What is transparent shows the white of a page.
QImage withoutTransparency(const QImage &picture)
{
    if (!picture.hasAlphaChannel())
        return picture.convertToFormat(QImage::Format_RGB32);
    QImage plain(picture.size(), QImage::Format_RGB32);
    plain.fill(Qt::white);
    QPainter(&plain).drawImage(plain.rect(), picture);
    return plain;
}
} // namespace

std::uint64_t ImageFile::save(const QImage &picture, const QString &path)
{
    const QByteArray format = formatOf(path);
    const QByteArray bytes = format.isEmpty() ? toBitmap(picture) : encoded(picture, format, path);
    AtomicFile::write(path, bytes);
    return hash(bytes);
}

std::uint64_t ImageFile::hash(QByteArrayView bytes)
{
    return XXH3_64bits(bytes.data(), static_cast<std::size_t>(bytes.size()));
}

QImage ImageFile::load(const QString &path)
{
    return decode(read(path), path);
}

QByteArray ImageFile::read(const QString &path)
{
    QFile file(path);
    if (!file.exists())
        throw RunTimeError(RunTimeError::FileNotFound, QStringLiteral("File not found: %1").arg(path));
    if (!file.open(QIODevice::ReadOnly))
        throw RunTimeError(RunTimeError::PathAccess,
                           QStringLiteral("%1 cannot be read: %2").arg(path, file.errorString()));
    return file.readAll();
}

QImage ImageFile::decode(const QByteArray &bytes, const QString &path)
{
    if (QImageReader::allocationLimit() < largestPictureMegabytes)
        QImageReader::setAllocationLimit(largestPictureMegabytes);
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    const QImage picture = reader.read();
    if (picture.isNull())
        throw RunTimeError(RunTimeError::InvalidPicture,
                           QStringLiteral("%1 is not a picture: %2").arg(path, reader.errorString()));
    QImage plain = withoutTransparency(picture);
    plain.setDevicePixelRatio(1);
    return plain;
}

QByteArray ImageFile::toBitmap(const QImage &picture)
{
    const bool packable =
        picture.format() == QImage::Format_RGB32 || picture.format() == QImage::Format_ARGB32;
    const QImage source =
        packable || picture.isNull() ? picture : picture.convertToFormat(QImage::Format_RGB32);
    const qsizetype rowBytes = qsizetype{3} * source.width();
    const qsizetype stride = (rowBytes + 3) / 4 * 4;
    QByteArray bytes(headerSize + stride * source.height(), Qt::Uninitialized);
    putHeaders(bytes.data(), source.size(), bytes.size());

    char *target = bytes.data() + headerSize;
    for (int y = source.height() - 1; y >= 0; --y, target += stride) {
        packPixels(reinterpret_cast<const std::uint32_t *>(source.constScanLine(y)),
                   reinterpret_cast<std::uint8_t *>(target), static_cast<std::size_t>(source.width()));
        std::memset(target + rowBytes, 0, static_cast<std::size_t>(stride - rowBytes));
    }
    return bytes;
}
