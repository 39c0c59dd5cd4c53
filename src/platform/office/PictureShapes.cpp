#include "platform/office/PictureShapes.h"

#include <QtEndian>

#include <libdeflate.h>

#include <cstring>

namespace
{
quint32 number32(QByteArrayView bytes, qsizetype at)
{
    return qFromBigEndian<quint32>(bytes.data() + at);
}

int number16(QByteArrayView bytes, qsizetype at)
{
    return qFromBigEndian<quint16>(bytes.data() + at);
}

int number8(QByteArrayView bytes, qsizetype at)
{
    return static_cast<unsigned char>(bytes[at]);
}

constexpr QByteArrayView pngSignature("\x89PNG\r\n\x1a\n", 8);
constexpr qsizetype chunkFrame = 12; // length, type and check sum

bool takeHeader(PngShape &shape, QByteArrayView header)
{
    constexpr qsizetype headerLength = 13;
    constexpr quint32 longest = 0x7fffffff;
    if (header.size() != headerLength || number32(header, 0) - 1 >= longest ||
        number32(header, 4) - 1 >= longest)
        return false;
    shape.pixels = QSize(static_cast<int>(number32(header, 0)), static_cast<int>(number32(header, 4)));
    shape.bits = number8(header, 8);
    shape.colorType = number8(header, 9);
    const bool interlaced = number8(header, 12) != 0;
    const bool known = shape.colorType == PngShape::Grey || shape.colorType == PngShape::Palette ||
                       (shape.colorType == PngShape::Rgb && shape.bits == 8);
    const bool depth = shape.bits == 1 || shape.bits == 2 || shape.bits == 4 || shape.bits == 8;
    shape.simple = known && depth && !interlaced;
    return true;
}

// Markers: ITU-T T.81, table B.1.
constexpr int startOfPicture = 0xd8;
constexpr int endOfPicture = 0xd9;
constexpr int startOfScan = 0xda;

bool isFrame(int marker)
{
    constexpr int huffmanTables = 0xc4;
    constexpr int extension = 0xc8;
    constexpr int arithmeticTables = 0xcc;
    return (marker & 0xf0) == 0xc0 && marker != huffmanTables && marker != extension &&
           marker != arithmeticTables;
}

/// A marker without a segment: restarts, and one for private use.
bool standsAlone(int marker)
{
    return (marker >= 0xd0 && marker <= 0xd7) || marker == 0x01;
}

/// Where the next marker's 0xff is behind the coded bytes that begin at `at`; -1 when there is none.
qsizetype endOfScan(QByteArrayView file, qsizetype at)
{
    while (at + 1 < file.size()) {
        const void *found =
            std::memchr(file.data() + at, 0xff, static_cast<std::size_t>(file.size() - at - 1));
        if (!found)
            return -1;
        at = static_cast<const char *>(found) - file.data();
        const int next = number8(file, at + 1);
        if (next != 0 && next != 0xff && !standsAlone(next))
            return at;
        at += next == 0xff ? 1 : 2;
    }
    return -1;
}
} // namespace

bool PngShape::isPng(QByteArrayView beginning)
{
    return beginning.startsWith(pngSignature);
}

std::optional<PngShape> PngShape::parse(QByteArrayView file)
{
    if (!isPng(file))
        return std::nullopt;
    PngShape shape;
    bool transparent = false;
    for (qsizetype at = pngSignature.size(); file.size() - at >= chunkFrame;) {
        const qsizetype length = number32(file, at);
        if (length > file.size() - at - chunkFrame)
            return std::nullopt;
        const QByteArrayView type = file.sliced(at + 4, 4);
        const QByteArrayView content = file.sliced(at + 8, length);
        if (libdeflate_crc32(0, type.data(), static_cast<std::size_t>(length + 4)) !=
            number32(file, at + 8 + length))
            return std::nullopt;
        const bool first = at == pngSignature.size();
        if (first != (type == "IHDR") || (first && !takeHeader(shape, content)))
            return std::nullopt;
        if (type == "PLTE")
            shape.palette = content;
        else if (type == "tRNS")
            transparent = true;
        else if (type == "IDAT")
            shape.data.push_back(content);
        else if (type == "IEND") {
            const bool colors = shape.palette.size() % 3 == 0 && shape.palette.size() <= 3 * 256 &&
                                (shape.colorType != Palette || !shape.palette.isEmpty());
            if (shape.data.empty() || !colors)
                return std::nullopt;
            shape.simple = shape.simple && !transparent;
            return shape;
        }
        at += length + chunkFrame;
    }
    return std::nullopt;
}

bool JpegShape::isJpeg(QByteArrayView beginning)
{
    return beginning.size() > 2 && number8(beginning, 0) == 0xff && number8(beginning, 1) == startOfPicture &&
           number8(beginning, 2) == 0xff;
}

std::optional<JpegShape> JpegShape::parse(QByteArrayView file)
{
    if (!isJpeg(file))
        return std::nullopt;
    JpegShape shape;
    bool scanned = false;
    qsizetype at = 2;
    while (at >= 0 && file.size() - at >= 2 && number8(file, at) == 0xff) {
        const int marker = number8(file, at + 1);
        if (marker == endOfPicture)
            return scanned && !shape.pixels.isEmpty() ? std::optional(shape) : std::nullopt;
        if (marker == 0xff || standsAlone(marker)) {
            at += marker == 0xff ? 1 : 2; // any number of 0xff may lie before a marker
            continue;
        }
        if (file.size() - at < 4)
            break;
        const qsizetype length = number16(file, at + 2);
        if (length < 2 || length > file.size() - at - 2)
            break;
        if (isFrame(marker) && length >= 8) {
            constexpr int progressive = 0xc2;
            shape.pixels = QSize(number16(file, at + 7), number16(file, at + 5));
            shape.components = number8(file, at + 9);
            shape.simple = marker <= progressive && number8(file, at + 4) == 8 &&
                           (shape.components == 1 || shape.components == 3);
        }
        at += length + 2;
        if (marker == startOfScan) {
            scanned = true;
            at = endOfScan(file, at);
        }
    }
    return std::nullopt;
}
