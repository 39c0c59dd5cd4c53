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
    constexpr qsizetype headers = 54;
    if (bytes.size() < headers)
        return true;
    const auto number = [bytes](qsizetype at) { return qFromLittleEndian<qint32>(bytes.data() + at); };
    const int compression = number(30);
    const bool plain = compression == 0 || compression == 3;
    if (number(14) < 40 || !plain)
        return false;
    const qint64 bits = qFromLittleEndian<quint16>(bytes.data() + 28);
    const qint64 stride = (qint64{number(18)} * bits + 31) / 32 * 4;
    return qint64{number(10)} + stride * std::abs(qint64{number(22)}) > bytes.size();
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
