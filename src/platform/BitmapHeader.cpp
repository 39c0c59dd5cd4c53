#include "platform/BitmapHeader.h"

#include <QtEndian>

#include <limits>

namespace
{
constexpr quint16 signature = 'B' | 'M' << 8;
constexpr quint32 infoLength = 40;
constexpr int bitsPerPixel = 24;

/// Little-endian fields one after the other.
class FieldWriter
{
public:
    explicit FieldWriter(char *target) : m_target(target) {}
    template <typename T>
    void put(T value)
    {
        qToLittleEndian(value, m_target);
        m_target += sizeof value;
    }

private:
    char *m_target;
};

class FieldReader
{
public:
    explicit FieldReader(const char *source) : m_source(source) {}
    template <typename T>
    T take()
    {
        const T value = qFromLittleEndian<T>(m_source);
        m_source += sizeof value;
        return value;
    }

private:
    const char *m_source;
};
} // namespace

std::optional<BitmapHeader> BitmapHeader::parse(QByteArrayView bytes, qint64 fileSize)
{
    if (bytes.size() < length)
        return {};
    FieldReader fields(bytes.data());
    const bool isBitmap = fields.take<quint16>() == signature;
    fields.take<quint32>(); // size of the file: many programs leave it out
    fields.take<quint32>(); // reserved
    BitmapHeader header;
    header.rowsBegin = fields.take<quint32>();
    const bool known = fields.take<quint32>() == infoLength;
    const auto width = fields.take<qint32>();
    const auto height = fields.take<qint32>();
    const auto planes = fields.take<quint16>();
    const auto bits = fields.take<quint16>();
    const auto compression = fields.take<quint32>();
    if (!isBitmap || !known || planes != 1 || bits != bitsPerPixel || compression != 0 || width <= 0 ||
        height == 0 || height == std::numeric_limits<qint32>::min())
        return {};
    header.topDown = height < 0;
    header.size = {width, height < 0 ? -height : height};
    fields.take<quint32>(); // size of the rows, or 0
    header.pixelsPerMetre.setWidth(fields.take<qint32>());
    header.pixelsPerMetre.setHeight(fields.take<qint32>());
    // Divided, as the product could overflow.
    const qint64 room = fileSize - header.rowsBegin;
    if (header.rowsBegin < length || room / header.stride() < header.size.height())
        return {};
    return header;
}

void BitmapHeader::put(char *target) const
{
    FieldWriter fields(target);
    fields.put<quint16>(signature);
    fields.put<quint32>(static_cast<quint32>(rowsEnd()));
    fields.put<quint32>(0); // reserved
    fields.put<quint32>(static_cast<quint32>(rowsBegin));
    fields.put<quint32>(infoLength);
    fields.put<qint32>(size.width());
    fields.put<qint32>(topDown ? -size.height() : size.height());
    fields.put<quint16>(1); // planes
    fields.put<quint16>(bitsPerPixel);
    fields.put<quint32>(0); // not compressed
    fields.put<quint32>(static_cast<quint32>(rowsEnd() - rowsBegin));
    fields.put<qint32>(pixelsPerMetre.width());
    fields.put<qint32>(pixelsPerMetre.height());
    fields.put<quint32>(0); // no palette
    fields.put<quint32>(0);
}
