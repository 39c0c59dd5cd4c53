#include "platform/ImageFile.h"

#include "platform/AtomicFile.h"
#include "platform/BitmapHeader.h"
#include "platform/BitmapRows.h"
#include "platform/ByteHash.h"
#include "platform/InputFile.h"
#include "platform/LateClosing.h"
#include "platform/PictureEnd.h"
#include "platform/RunTimeError.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <optional>

namespace
{
/// Bitmaps go through a core's own cache in pieces of this size: a piece is still there when the next step
/// needs it.
constexpr qint64 pieceSize = 256 * 1024;
/// The kernel keeps files in pages of this size and is slow where a piece ends within one.
constexpr qint64 pageSize = 4096;

/// Level 1 of zlib: a picture of the screen gets little smaller with more, and takes longer by far.
constexpr int pngQuality = 80;
constexpr int jpegQuality = 90;

/// Memory that nobody has filled yet.
std::unique_ptr<char[]> bufferOf(qint64 size)
{
    return std::make_unique_for_overwrite<char[]>(static_cast<std::size_t>(size));
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

/// `path` is for the message, here and below.
void refuseIfTooLarge(QSize pixels, const QString &path)
{
    if (ImageFile::isTooLarge(pixels))
        throw RunTimeError(RunTimeError::InvalidPicture, QStringLiteral("%1 is too large: %2 x %3 pixels")
                                                             .arg(path)
                                                             .arg(pixels.width())
                                                             .arg(pixels.height()));
}

QImage decoded(const QByteArray &bytes, const QString &path)
{
    constexpr int megabytes = ImageFile::largestPicture >> 20;
    if (QImageReader::allocationLimit() < megabytes)
        QImageReader::setAllocationLimit(megabytes);
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    refuseIfTooLarge(reader.size(), path);
    const QImage picture = reader.read();
    if (picture.isNull())
        throw RunTimeError(RunTimeError::InvalidPicture,
                           QStringLiteral("%1 is not a picture: %2").arg(path, reader.errorString()));
    if (PictureEnd::isMissing(bytes))
        throw RunTimeError(RunTimeError::InvalidPicture,
                           QStringLiteral("%1 is not a whole picture: its end is missing").arg(path));
    QImage plain = withoutTransparency(picture);
    plain.setDevicePixelRatio(1);
    return plain;
}

std::uint64_t hashOf(QByteArrayView bytes)
{
    ByteHash hash;
    hash.add(bytes);
    return hash.value();
}

void packRow(const QImage &picture, int y, char *target)
{
    packPixels(reinterpret_cast<const std::uint32_t *>(picture.constScanLine(y)),
               reinterpret_cast<std::uint8_t *>(target), static_cast<std::size_t>(picture.width()));
}

void unpackRow(const char *source, QImage &picture, int y)
{
    unpackPixels(reinterpret_cast<const std::uint8_t *>(source),
                 reinterpret_cast<std::uint32_t *>(picture.scanLine(y)),
                 static_cast<std::size_t>(picture.width()));
}

std::uint64_t saveBitmap(const QImage &picture, const QString &path)
{
    const bool packable =
        picture.format() == QImage::Format_RGB32 || picture.format() == QImage::Format_ARGB32;
    const QImage source =
        packable || picture.isNull() ? picture : picture.convertToFormat(QImage::Format_RGB32);
    BitmapHeader header;
    header.size = source.size();
    AtomicFile::Replacement file(path);
    file.expect(header.rowsEnd());

    ByteHash hash;
    const auto buffer = bufferOf(pieceSize + header.stride());
    header.put(buffer.get());
    qint64 filled = BitmapHeader::length;
    const auto writePiece = [&](qint64 count) {
        const QByteArrayView piece(buffer.get(), count);
        hash.add(piece);
        file.append(piece);
        filled -= count;
        std::memmove(buffer.get(), buffer.get() + count, static_cast<std::size_t>(filled));
    };
    for (int i = 0; i < source.height(); ++i) {
        char *row = buffer.get() + filled;
        packRow(source, header.rowAt(i), row);
        std::memset(row + header.rowBytes(), 0,
                    static_cast<std::size_t>(header.stride() - header.rowBytes()));
        filled += header.stride();
        while (filled >= pieceSize)
            writePiece(pieceSize);
    }
    writePiece(filled);
    file.takeTheName();
    return hash.value();
}

/// Nothing when the file is no bitmap of the kind that is read here.
std::optional<BitmapHeader> headerOf(InputFile &file, const QString &path)
{
    std::array<char, BitmapHeader::length> bytes{};
    const qsizetype count = file.read(bytes.data(), bytes.size());
    auto header = BitmapHeader::parse({bytes.data(), count}, file.size());
    if (header)
        refuseIfTooLarge(header->size, path);
    return header;
}

/// Null when the file has become shorter meanwhile.
QImage loadBitmap(InputFile &file, const BitmapHeader &header)
{
    QImage picture(header.size, QImage::Format_RGB32);
    picture.setDotsPerMeterX(header.pixelsPerMetre.width());
    picture.setDotsPerMeterY(header.pixelsPerMetre.height());
    const int rowsAtOnce = static_cast<int>(std::max<qint64>(1, pieceSize / header.stride()));
    const auto buffer = bufferOf(rowsAtOnce * header.stride());
    file.seek(header.rowsBegin);
    for (int begin = 0; begin < picture.height(); begin += rowsAtOnce) {
        const int count = std::min(rowsAtOnce, picture.height() - begin);
        if (file.read(buffer.get(), count * header.stride()) != count * header.stride())
            return {};
        for (int i = 0; i < count; ++i)
            unpackRow(buffer.get() + i * header.stride(), picture, header.rowAt(begin + i));
    }
    return picture;
}

using ImageFile::RowRange;
using Paint = std::function<void(QImage &part, int firstRow)>;

/// Only `rows` are taken apart; `place` is the one that lies lowest in the file.
void paintRows(char *place, const BitmapHeader &header, RowRange rows, const Paint &paint)
{
    QImage part(header.size.width(), rows.last - rows.first + 1, QImage::Format_RGB32);
    const auto bytesOf = [&](int y) {
        return place + header.stride() * (header.topDown ? y : part.height() - 1 - y);
    };
    for (int y = 0; y < part.height(); ++y)
        unpackRow(bytesOf(y), part, y);
    paint(part, rows.first);
    for (int y = 0; y < part.height(); ++y)
        packRow(part, y, bytesOf(y));
}

LateClosing &lateClosing()
{
    static LateClosing closing;
    return closing;
}

/// Copies everything but `rows` as it is. Whether the hash is right turns out at the end only, which saves
/// reading the file twice.
bool editBitmap(InputFile &file, const BitmapHeader &header, const QString &path, std::uint64_t hash,
                RowRange rows, const Paint &paint)
{
    rows = {std::max(rows.first, 0), std::min(rows.last, header.size.height() - 1)};
    qint64 begin = file.size();
    qint64 end = begin;
    qint64 place = begin;
    if (rows.first <= rows.last) {
        place = header.rowsBegin + header.stride() * header.rowAt(header.topDown ? rows.first : rows.last);
        begin = place / pageSize * pageSize;
        const qint64 rowsEnd = place + header.stride() * (rows.last - rows.first + 1);
        end = std::min((rowsEnd + pageSize - 1) / pageSize * pageSize, file.size());
    }
    AtomicFile::Replacement result(path);
    ByteHash found;
    const auto buffer = bufferOf(std::max(pieceSize, end - begin));
    file.seek(0);
    qint64 next = 0;
    for (qint64 at = 0; at < file.size(); at = next) {
        next =
            at == begin ? end : std::min((at / pieceSize + 1) * pieceSize, at < begin ? begin : file.size());
        const QByteArrayView piece(buffer.get(), next - at);
        if (file.read(buffer.get(), piece.size()) != piece.size())
            return false;
        found.add(piece);
        if (at == begin)
            paintRows(buffer.get() + (place - begin), header, rows, paint);
        result.append(piece);
    }
    if (found.value() != hash)
        return false;
    result.takeTheName();
    lateClosing().add(file.takeDescriptor());
    return true;
}
} // namespace

std::uint64_t ImageFile::save(const QImage &picture, const QString &path)
{
    const QByteArray format = formatOf(path);
    if (format.isEmpty())
        return saveBitmap(picture, path);
    const QByteArray bytes = encoded(picture, format, path);
    AtomicFile::write(path, bytes);
    return hashOf(bytes);
}

bool ImageFile::isTooLarge(QSize pixels)
{
    return qint64{pixels.width()} * pixels.height() > largestPicture / qint64{sizeof(QRgb)};
}

QImage ImageFile::load(const QString &path)
{
    InputFile file(path);
    QImage picture;
    if (const auto header = headerOf(file, path))
        picture = loadBitmap(file, *header);
    return picture.isNull() ? decoded(file.readAll(), path) : picture;
}

bool ImageFile::edit(const QString &path, std::uint64_t hash, RowRange rows, const Paint &paint)
{
    InputFile file(path);
    if (const auto header = headerOf(file, path)) {
        for (bool first = true;; first = false) {
            try {
                return editBitmap(file, *header, path, hash, rows, paint);
            } catch (const RunTimeError &) {
                // What need not be written may be refused.
                if (hashOf(file.readAll()) != hash)
                    return false;
                if (!first)
                    throw;
                lateClosing().wait(); // a full disk may have room then
            }
        }
    }
    const QByteArray bytes = file.readAll();
    QImage picture = decoded(bytes, path);
    if (hashOf(bytes) != hash)
        return false;
    paint(picture, 0);
    save(picture, path);
    return true;
}
