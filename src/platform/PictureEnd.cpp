#include "platform/PictureEnd.h"

#include <QtEndian>

#include <cstdint>
#include <cstdlib>

namespace
{
int byteAt(QByteArrayView bytes, qsizetype at)
{
    return at < bytes.size() ? static_cast<std::uint8_t>(bytes[at]) : -1;
}

/// Behind the segments that come before the scan there must be an end of image.
bool jpegEndIsMissing(QByteArrayView bytes)
{
    constexpr int startOfScan = 0xda;
    constexpr int endOfImage = 0xd9;
    qsizetype at = 2;
    while (byteAt(bytes, at) == 0xff) {
        const int marker = byteAt(bytes, at + 1);
        if (marker == 0xff) { // a filling byte
            ++at;
            continue;
        }
        if (marker == startOfScan)
            return bytes.sliced(at).lastIndexOf(QByteArrayView("\xff\xd9", 2)) < 0;
        if (marker == endOfImage)
            return false;
        if (at + 4 > bytes.size())
            return true;
        at += 2 + qFromBigEndian<quint16>(bytes.data() + at + 2);
    }
    return at >= bytes.size();
}

/// Behind blocks of at most 255 bytes, which an empty one ends; -1 when the file ends before.
qsizetype afterGifBlocks(QByteArrayView bytes, qsizetype at)
{
    for (int size = byteAt(bytes, at); size > 0; size = byteAt(bytes, at))
        at += 1 + size;
    return at < bytes.size() ? at + 1 : -1;
}

qsizetype gifColours(int flags)
{
    return flags >= 0 && (flags & 0x80) ? qsizetype{3} << ((flags & 7) + 1) : 0;
}

bool gifEndIsMissing(QByteArrayView bytes)
{
    constexpr int extension = 0x21;
    constexpr int image = 0x2c;
    qsizetype at = 13 + gifColours(byteAt(bytes, 10));
    while (byteAt(bytes, at) == extension) {
        at = afterGifBlocks(bytes, at + 2);
        if (at < 0)
            return true;
    }
    if (byteAt(bytes, at) != image)
        return at >= bytes.size();
    return afterGifBlocks(bytes, at + 11 + gifColours(byteAt(bytes, at + 9))) < 0;
}

bool bitmapEndIsMissing(QByteArrayView bytes)
{
    constexpr qsizetype oldHeaders = 26;
    constexpr qsizetype headers = 54;
    if (bytes.size() < oldHeaders)
        return true;
    const auto number16 = [bytes](qsizetype at) { return qFromLittleEndian<qint16>(bytes.data() + at); };
    const auto number32 = [bytes](qsizetype at) { return qFromLittleEndian<qint32>(bytes.data() + at); };
    // Of the old kind, BITMAPCOREHEADER, is whatever has the length of no other.
    const int length = number32(14);
    const bool old = length != 40 && length != 64 && length != 108 && length != 124;
    if (!old && bytes.size() < headers)
        return true;
    const int compression = old ? 0 : number32(30);
    if (compression != 0 && compression != 3)
        return false;
    const qint64 width = std::abs(old ? qint64{number16(18)} : number32(18));
    const qint64 rows = std::abs(old ? qint64{number16(20)} : number32(22));
    const qint64 bits = static_cast<quint16>(number16(old ? 24 : 28));
    const qint64 stride = (width * bits + 31) / 32 * 4;
    const qint64 room = bytes.size() - qFromLittleEndian<quint32>(bytes.data() + 10);
    // Divided, as the product could overflow.
    return room < 0 || (rows > 0 && stride > room / rows);
}
} // namespace

bool PictureEnd::isMissing(QByteArrayView bytes)
{
    if (bytes.startsWith(QByteArrayView("\xff\xd8", 2)))
        return jpegEndIsMissing(bytes);
    if (bytes.startsWith("GIF8"))
        return gifEndIsMissing(bytes);
    if (bytes.startsWith("BM"))
        return bitmapEndIsMissing(bytes);
    return false;
}
