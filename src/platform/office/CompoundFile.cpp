#include "platform/office/CompoundFile.h"

#include "platform/office/LittleEndianBytes.h"
#include "platform/RunTimeError.h"

#include <algorithm>
#include <bit>
#include <numeric>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr qint64 sectorSize = 512;
constexpr qint64 miniSectorSize = 64;
constexpr qint64 miniStreamLimit = 4096; // smaller streams lie in the mini stream
constexpr qint64 largestFile = 0x7fffffff;
constexpr qint64 numbersInSector = sectorSize / 4;
constexpr qint64 allocationSectorsInHeader = 109;
constexpr qint64 entriesInSector = 4;

// Numbers that are no sector.
constexpr qint64 furtherAllocationSector = 0xfffffffc;
constexpr qint64 allocationSector = 0xfffffffd;
constexpr qint64 endOfChain = 0xfffffffe;
constexpr qint64 freeSector = 0xffffffff;

constexpr qint64 noEntry = 0xffffffff;

qint64 upTo(qint64 amount, qint64 unit)
{
    return (amount + unit - 1) / unit;
}

/// What a directory entry says of an object.
struct Entry {
    enum Type { Storage = 5, Stream = 2 };
    enum Color { Red = 0, Black = 1 };

    QString name;
    Type type = Stream;
    Color color = Black;
    qint64 left = noEntry;
    qint64 right = noEntry;
    qint64 child = noEntry;
    QByteArray classId = QByteArray(16, '\0');
    qint64 first = endOfChain;
    qint64 size = 0;

    void put(LittleEndianBytes &out) const
    {
        constexpr qsizetype roomForName = 64;
        constexpr qsizetype stateAndTimes = 4 + 8 + 8;
        const QByteArray text = LittleEndianBytes::utf16(name);
        out.putBytes(text);
        out.putZeros(roomForName - text.size());
        out.put16(text.size() + 2);
        out.put8(type);
        out.put8(color);
        out.put32({left, right, child});
        out.putBytes(classId);
        out.putZeros(stateAndTimes);
        out.put32({first, size, 0});
    }

    /// Shorter names come first, then the upper case decides.
    bool operator<(const Entry &other) const
    {
        if (name.size() != other.name.size())
            return name.size() < other.name.size();
        return name.toUpper() < other.name.toUpper();
    }
};

/// Makes sorted entries a balanced red-black tree: only the lowest level is red where it is not full, so that
/// every way down meets as many black entries. Returns the entry at the top of [first, end).
qint64 linkTree(std::vector<Entry> &entries, std::size_t first, std::size_t end, int depth)
{
    if (first == end)
        return noEntry;
    const std::size_t count = entries.size() - 1; // without the root storage
    const int lowest = static_cast<int>(std::bit_width(count)) - 1;
    const std::size_t middle = (first + end) / 2;
    Entry &entry = entries[middle];
    entry.color = depth == lowest && !std::has_single_bit(count + 1) ? Entry::Red : Entry::Black;
    entry.left = linkTree(entries, first, middle, depth + 1);
    entry.right = linkTree(entries, middle + 1, end, depth + 1);
    return static_cast<qint64>(middle);
}

void putChain(LittleEndianBytes &out, qint64 first, qint64 sectors)
{
    for (qint64 sector = first + 1; sector < first + sectors; ++sector)
        out.put32(sector);
    if (sectors > 0)
        out.put32(endOfChain);
}

void putRepeated(LittleEndianBytes &out, qint64 number, qint64 count)
{
    for (qint64 i = 0; i < count; ++i)
        out.put32(number);
}

void fillSector(LittleEndianBytes &out)
{
    while (out.size() % sectorSize != 0)
        out.put32(freeSector);
}
} // namespace

CompoundFile::CompoundFile(const QString &path, const QByteArray &classId, std::vector<Stream> streams)
    : m_classId(classId), m_streams(std::move(streams))
{
    layOut();
    checkSize(path);
    m_file.emplace(path);
    m_file->expect((m_further.first + m_further.sectors + 1) * sectorSize);
    m_file->append(header());
    m_left = m_streams.empty() ? 0 : m_streams.front().size;
    goToNextStream();
}

bool CompoundFile::inMiniStream(const Stream &stream) const
{
    return stream.size < miniStreamLimit;
}

void CompoundFile::layOut()
{
    qint64 next = 0;
    qint64 nextMini = 0;
    m_chains.reserve(m_streams.size());
    for (const Stream &stream : m_streams) {
        const bool mini = inMiniStream(stream);
        qint64 &position = mini ? nextMini : next;
        m_chains.push_back({position, upTo(stream.size, mini ? miniSectorSize : sectorSize)});
        position += m_chains.back().sectors;
    }
    const auto follow = [&next](qint64 sectors) {
        const Chain chain{next, sectors};
        next += sectors;
        return chain;
    };
    m_miniStream = follow(upTo(nextMini * miniSectorSize, sectorSize));
    m_miniAllocation = follow(upTo(nextMini, numbersInSector));
    m_directory = follow(upTo(static_cast<qint64>(m_streams.size()) + 1, entriesInSector));

    // The allocation sectors describe themselves and those that list them too.
    const qint64 described = next;
    qint64 allocation = 0;
    qint64 further = 0;
    for (bool grown = true; grown;) {
        const qint64 needed = upTo(described + allocation + further, numbersInSector);
        grown = needed > allocation;
        allocation = needed;
        further = upTo(std::max<qint64>(0, allocation - allocationSectorsInHeader), numbersInSector - 1);
    }
    m_allocation = follow(allocation);
    m_further = follow(further);
}

void CompoundFile::checkSize(const QString &path) const
{
    if ((m_further.first + m_further.sectors + 1) * sectorSize > largestFile)
        throw RunTimeError(RunTimeError::WordFileNotWritten,
                           u"Cannot write the file \"%1\": it would be larger than 2 GB, which is more than "
                           "a Word document can hold."_s.arg(path));
}

void CompoundFile::append(QByteArrayView bytes)
{
    Q_ASSERT(bytes.size() <= m_left);
    if (bytes.isEmpty())
        return;
    if (inMiniStream(m_streams[m_current]))
        m_mini += bytes;
    else
        m_file->append(bytes);
    m_left -= bytes.size();
    goToNextStream();
}

void CompoundFile::goToNextStream()
{
    while (m_left == 0 && m_current < m_streams.size()) {
        const Stream &done = m_streams[m_current];
        const qint64 unit = inMiniStream(done) ? miniSectorSize : sectorSize;
        const QByteArray padding(upTo(done.size, unit) * unit - done.size, '\0');
        if (inMiniStream(done))
            m_mini += padding;
        else
            m_file->append(padding);
        if (++m_current < m_streams.size())
            m_left = m_streams[m_current].size;
    }
}

void CompoundFile::finish()
{
    Q_ASSERT(m_current == m_streams.size());
    const QByteArray padding(m_miniStream.sectors * sectorSize - m_mini.size(), '\0');
    const QByteArray parts[] = {m_mini,      padding,      miniAllocation(),
                                directory(), allocation(), furtherAllocationSectors()};
    for (const QByteArray &part : parts)
        m_file->append(part);
    m_file->takeTheName();
}

QByteArray CompoundFile::header() const
{
    constexpr qint64 minorVersion = 0x3e;
    constexpr qint64 majorVersion = 3;
    constexpr qint64 littleEndian = 0xfffe;
    constexpr qint64 sectorShift = 9;
    constexpr qint64 miniSectorShift = 6;
    LittleEndianBytes out;
    out.putBytes(QByteArray::fromHex("d0cf11e0a1b11ae1"));
    out.putZeros(16);
    out.put16({minorVersion, majorVersion, littleEndian, sectorShift, miniSectorShift});
    out.putZeros(6 + 4); // the count of directory sectors is left out in version 3
    out.put32({m_allocation.sectors, m_directory.first, 0, miniStreamLimit});
    out.put32({m_miniAllocation.sectors > 0 ? m_miniAllocation.first : endOfChain, m_miniAllocation.sectors});
    out.put32({m_further.sectors > 0 ? m_further.first : endOfChain, m_further.sectors});
    for (qint64 i = 0; i < std::min(m_allocation.sectors, allocationSectorsInHeader); ++i)
        out.put32(m_allocation.first + i);
    fillSector(out);
    return out.bytes();
}

QByteArray CompoundFile::directory() const
{
    std::vector<Entry> entries(m_streams.size() + 1);
    for (std::size_t i = 0; i < m_streams.size(); ++i) {
        Entry &entry = entries[i + 1];
        entry.name = m_streams[i].name;
        entry.first = m_chains[i].sectors > 0 ? m_chains[i].first : endOfChain;
        entry.size = m_streams[i].size;
    }
    std::sort(entries.begin() + 1, entries.end());
    Entry root;
    root.name = u"Root Entry"_s;
    root.type = Entry::Storage;
    root.child = linkTree(entries, 1, entries.size(), 0);
    root.classId = m_classId;
    root.first = m_miniStream.sectors > 0 ? m_miniStream.first : endOfChain;
    root.size = m_mini.size();
    entries.front() = root;

    LittleEndianBytes out;
    for (const Entry &entry : entries)
        entry.put(out);
    constexpr qsizetype beforeTheLinks = 68;
    constexpr qsizetype behindTheLinks = 48;
    while (out.size() % sectorSize != 0) {
        out.putZeros(beforeTheLinks);
        out.put32({noEntry, noEntry, noEntry});
        out.putZeros(behindTheLinks);
    }
    return out.bytes();
}

QByteArray CompoundFile::miniAllocation() const
{
    LittleEndianBytes out;
    for (std::size_t i = 0; i < m_streams.size(); ++i)
        if (inMiniStream(m_streams[i]))
            putChain(out, m_chains[i].first, m_chains[i].sectors);
    fillSector(out);
    return out.bytes();
}

QByteArray CompoundFile::allocation() const
{
    LittleEndianBytes out;
    for (std::size_t i = 0; i < m_streams.size(); ++i)
        if (!inMiniStream(m_streams[i]))
            putChain(out, m_chains[i].first, m_chains[i].sectors);
    for (const Chain &chain : {m_miniStream, m_miniAllocation, m_directory})
        putChain(out, chain.first, chain.sectors);
    putRepeated(out, allocationSector, m_allocation.sectors);
    putRepeated(out, furtherAllocationSector, m_further.sectors);
    fillSector(out);
    return out.bytes();
}

QByteArray CompoundFile::furtherAllocationSectors() const
{
    LittleEndianBytes out;
    qint64 next = allocationSectorsInHeader;
    for (qint64 sector = 1; sector <= m_further.sectors; ++sector) {
        for (qint64 i = 0; i < numbersInSector - 1; ++i, ++next)
            out.put32(next < m_allocation.sectors ? m_allocation.first + next : freeSector);
        out.put32(sector < m_further.sectors ? m_further.first + sector : endOfChain);
    }
    return out.bytes();
}
