#include "platform/office/PngEncoder.h"

#include "platform/office/PngRows.h"

#include <QtEndian>

#include <libdeflate.h>

#include <array>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace
{
/// Screens get little smaller with more, and less is hardly faster: levels 4 and 6 and zlib's own default
/// differ by a tenth in size.
constexpr int compressionLevel = 4;

using Buffer = std::unique_ptr<std::uint8_t[]>;
struct Rows {
    Buffer bytes;
    std::size_t size = 0;
};

struct CompressorDeleter {
    void operator()(libdeflate_compressor *compressor) const noexcept
    {
        libdeflate_free_compressor(compressor);
    }
};

/// The bytes of a PNG file's chunks, one after the other.
class ChunkWriter
{
public:
    explicit ChunkWriter(QByteArray &file) : m_file(file) {}

    void begin(const char *type)
    {
        m_begin = m_file.size();
        m_file.append(4, '\0').append(type, 4);
    }
    void end()
    {
        const auto length = static_cast<quint32>(m_file.size() - m_begin - 8);
        qToBigEndian(length, m_file.data() + m_begin);
        const quint32 sum = libdeflate_crc32(0, m_file.constData() + m_begin + 4, length + 4);
        append32(sum);
    }
    void append32(quint32 value)
    {
        std::array<char, 4> bytes{};
        qToBigEndian(value, bytes.data());
        m_file.append(bytes.data(), bytes.size());
    }

private:
    QByteArray &m_file;
    qsizetype m_begin = 0;
};

std::size_t rowsOf(const QImage &picture)
{
    return static_cast<std::size_t>(picture.height());
}

std::size_t columnsOf(const QImage &picture)
{
    return static_cast<std::size_t>(picture.width());
}

const std::uint32_t *rowOf(const QImage &picture, std::size_t y)
{
    return reinterpret_cast<const std::uint32_t *>(picture.constScanLine(static_cast<int>(y)));
}

/// A byte for each pixel, behind the mark that no filter was used: what repeats in a picture of few colours
/// is found best in the plain indices.
Rows indexRows(const QImage &picture, ColorTable &colors)
{
    const std::size_t stride = columnsOf(picture) + 1;
    Rows rows{std::make_unique_for_overwrite<std::uint8_t[]>(stride * rowsOf(picture)),
              stride * rowsOf(picture)};
    for (std::size_t y = 0; y < rowsOf(picture); ++y) {
        std::uint8_t *row = rows.bytes.get() + y * stride;
        *row = 0;
        if (!colors.indices(rowOf(picture, y), row + 1, columnsOf(picture)))
            return {};
    }
    return rows;
}

/// Three bytes for each pixel, each row through the filter that makes it smallest.
Rows colorRows(const QImage &picture)
{
    const std::size_t length = 3 * columnsOf(picture);
    Rows rows{std::make_unique_for_overwrite<std::uint8_t[]>((length + 1) * rowsOf(picture)),
              (length + 1) * rowsOf(picture)};
    std::vector<std::uint8_t> above(length + 3);
    std::vector<std::uint8_t> row(length + 3); // three bytes of nothing lie left of the picture
    for (std::size_t y = 0; y < rowsOf(picture); ++y) {
        swapPixels(rowOf(picture, y), row.data() + 3, columnsOf(picture));
        filterRow(row.data() + 3, above.data() + 3, rows.bytes.get() + y * (length + 1), length);
        row.swap(above);
    }
    return rows;
}

void appendCompressed(QByteArray &file, const Rows &rows)
{
    const std::unique_ptr<libdeflate_compressor, CompressorDeleter> compressor(
        libdeflate_alloc_compressor(compressionLevel));
    if (!compressor)
        throw std::bad_alloc();
    const std::size_t most = libdeflate_zlib_compress_bound(compressor.get(), rows.size);
    const qsizetype begin = file.size();
    file.resize(begin + static_cast<qsizetype>(most));
    const std::size_t size =
        libdeflate_zlib_compress(compressor.get(), rows.bytes.get(), rows.size, file.data() + begin, most);
    file.truncate(begin + static_cast<qsizetype>(size));
}
} // namespace

QByteArray encodePng(QImage picture)
{
    ColorTable colors;
    Rows rows = indexRows(picture, colors);
    const bool palette = rows.bytes != nullptr;
    if (!palette)
        rows = colorRows(picture);
    const QSize size = std::exchange(picture, QImage()).size();

    QByteArray file = QByteArray::fromHex("89504e470d0a1a0a");
    ChunkWriter chunks(file);
    chunks.begin("IHDR");
    chunks.append32(static_cast<quint32>(size.width()));
    chunks.append32(static_cast<quint32>(size.height()));
    constexpr char bits = 8;
    file.append(bits).append(palette ? '\3' : '\2').append(3, '\0');
    chunks.end();
    if (palette) {
        chunks.begin("PLTE");
        for (const std::uint32_t color : colors.colors())
            for (const unsigned shift : {16U, 8U, 0U})
                file.append(static_cast<char>(color >> shift));
        chunks.end();
    }
    chunks.begin("IDAT");
    appendCompressed(file, rows);
    rows = {};
    chunks.end();
    chunks.begin("IEND");
    chunks.end();
    file.squeeze();
    return file;
}
