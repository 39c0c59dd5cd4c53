#include "platform/office/WordBinaryPicture.h"

#include "platform/office/LittleEndianBytes.h"
#include "platform/office/WordBinaryText.h"

#include <QCryptographicHash>

#include <algorithm>

namespace
{
constexpr qsizetype digestSize = 16;
constexpr qint64 recordHeaderSize = 8;

// Types of the records, [MS-ODRAW] 2.
constexpr qint64 shapeContainer = 0xf004;
constexpr qint64 blipStoreEntry = 0xf007;
constexpr qint64 shapeRecord = 0xf00a;
constexpr qint64 propertyTable = 0xf00b;
constexpr qint64 clientAnchor = 0xf010;
constexpr qint64 jpegBlip = 0xf01d;
constexpr qint64 pngBlip = 0xf01e;

void putRecordHeader(LittleEndianBytes &out, int version, int instance, qint64 type, qint64 length)
{
    out.put16(version | instance << 4);
    out.put16(type);
    out.put32(length);
}

void putRecord(LittleEndianBytes &out, int version, int instance, qint64 type, const LittleEndianBytes &body)
{
    putRecordHeader(out, version, instance, type, body.size());
    out.putBytes(body.bytes());
}

void putProperty(LittleEndianBytes &out, qint64 id, qint64 value)
{
    out.put16(id);
    out.put32(value);
}
} // namespace

WordBinaryPicture::WordBinaryPicture(const DocumentPicture &picture, const EncodedPicture &encoded,
                                     const PageFormat &page, int number)
    : m_path(picture.path), m_alternativeText(wordCharacters(picture.alternativeText)), m_encoded(encoded),
      m_number(number)
{
    constexpr int smallest = 15; // twips that the format allows
    constexpr int largest = 31680;
    const QSize fitted = fittedPictureSize(encoded.pixels, page);
    m_size =
        QSize(std::clamp(fitted.width(), smallest, largest), std::clamp(fitted.height(), smallest, largest));
}

qint64 WordBinaryPicture::size() const
{
    return describe(QByteArray(digestSize, '\0')).size() + m_encoded.size;
}

QByteArray WordBinaryPicture::description(QByteArrayView file) const
{
    QCryptographicHash hash(QCryptographicHash::Md4);
    hash.addData(file);
    return describe(hash.result());
}

/// PICFAndOfficeArtData without the bytes of the file.
QByteArray WordBinaryPicture::describe(const QByteArray &digest) const
{
    constexpr qint64 headerSize = 68;
    constexpr qint64 shapeObject = 0x64;
    constexpr qint64 ownSize = 1000; // tenths of a percent
    const QByteArray art = shape() + blipStart(digest);
    LittleEndianBytes out;
    out.put32(headerSize + art.size() + m_encoded.size);
    out.put16({headerSize, shapeObject});
    out.putZeros(3 * 2 + 14); // extents and the inner header, unused for shapes
    out.put16({m_size.width(), m_size.height(), ownSize, ownSize});
    constexpr qsizetype croppingAndBorders = 4 * 2 + 2 + 4 * 4 + 2 * 2;
    out.putZeros(croppingAndBorders + 2);
    Q_ASSERT(out.size() == headerSize);
    out.putBytes(art);
    return out.bytes();
}

/// OfficeArtSpContainer: a picture frame without a line and a background.
QByteArray WordBinaryPicture::shape() const
{
    constexpr int pictureFrame = 75;
    constexpr qint64 firstIdentifier = 0x401;
    constexpr qint64 hasAnchorAndType = 0x200 | 0x800;
    LittleEndianBytes identity;
    identity.put32({firstIdentifier + m_number, hasAnchorAndType});

    // The properties come in the order of their numbers, long values behind all of them.
    constexpr qint64 lockedRatio = 0x7f;
    constexpr qint64 blip = 0x104 | 0x4000;
    constexpr qint64 fill = 0x1bf;
    constexpr qint64 line = 0x1ff;
    constexpr qint64 description = 0x381 | 0x8000;
    LittleEndianBytes properties;
    int count = 4;
    putProperty(properties, lockedRatio, 0x00800080); // high half: what is set; low half: to what
    putProperty(properties, blip, 1);
    putProperty(properties, fill, 0x00100000);
    putProperty(properties, line, 0x00080000);
    if (!m_alternativeText.isEmpty()) {
        const QByteArray text = LittleEndianBytes::utf16(m_alternativeText + QChar());
        putProperty(properties, description, text.size());
        properties.putBytes(text);
        ++count;
    }

    constexpr qint64 inTheText = 0x80000000;
    LittleEndianBytes anchor;
    anchor.put32(inTheText);

    LittleEndianBytes body;
    putRecord(body, 2, pictureFrame, shapeRecord, identity);
    putRecord(body, 3, count, propertyTable, properties);
    putRecord(body, 0, 0, clientAnchor, anchor);
    LittleEndianBytes out;
    putRecord(out, 0xf, 0, shapeContainer, body);
    return out.bytes();
}

/// OfficeArtFBSE up to the bytes of the file in its blip.
QByteArray WordBinaryPicture::blipStart(const QByteArray &digest) const
{
    const bool png = m_encoded.format == EncodedPicture::Format::Png;
    const int kind = png ? 6 : 5; // MSOBLIPTYPE
    const int instance = png ? 0x6e0 : 0x46a;
    constexpr qint64 entrySize = 36;
    constexpr qint64 fileTag = 0xff;
    const qint64 bodySize = digestSize + 1 + m_encoded.size;
    LittleEndianBytes out;
    putRecordHeader(out, 2, kind, blipStoreEntry, entrySize + recordHeaderSize + bodySize);
    out.put8(kind);
    out.put8(kind);
    out.putBytes(digest);
    out.put16(fileTag);
    out.put32({recordHeaderSize + bodySize, 1, 0}); // used once, not stored elsewhere
    out.putZeros(4);
    putRecordHeader(out, 0, instance, png ? pngBlip : jpegBlip, bodySize);
    out.putBytes(digest);
    out.put8(fileTag);
    return out.bytes();
}
