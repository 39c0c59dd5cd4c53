#include "platform/office/WordBinaryTables.h"

#include "platform/office/WordBinaryProperties.h"
#include "platform/office/WordBinaryStyles.h"

#include <array>

namespace
{
constexpr qint64 formatPageSize = 512;
constexpr qint64 smallestMainStream = 4096; // so that it is found in sectors of its own, as readers expect
constexpr qint64 english = 0x409;           // of the names of the styles

// Places in the list of tables, FibRgFcLcb97.
constexpr std::size_t styleSheet = 1;
constexpr std::size_t sections = 6;
constexpr std::size_t characterPages = 12;
constexpr std::size_t paragraphPages = 13;
constexpr std::size_t fonts = 15;
constexpr std::size_t documentProperties = 31;
constexpr std::size_t associatedStrings = 32;
constexpr std::size_t pieces = 33;
constexpr std::size_t tables = 93;

struct Table {
    qint64 begin = 0;
    qint64 size = 0;
};

class TableStream
{
public:
    void add(std::size_t place, const QByteArray &bytes)
    {
        m_tables[place] = {m_bytes.size(), bytes.size()};
        m_bytes += bytes;
    }
    const QByteArray &bytes() const { return m_bytes; }
    const std::array<Table, tables> &list() const { return m_tables; }

private:
    QByteArray m_bytes;
    std::array<Table, tables> m_tables = {};
};

/// Sepx.
QByteArray sectionFormatting(const PageFormat &page)
{
    WordProperties properties;
    for (const auto distance : {WordProperties::HeaderDistance, WordProperties::FooterDistance})
        properties.put16(distance, page.margin / 2);
    properties.put16(WordProperties::PageWidth, page.page.width());
    properties.put16(WordProperties::PageHeight, page.page.height());
    for (const auto margin : {WordProperties::LeftMargin, WordProperties::RightMargin,
                              WordProperties::TopMargin, WordProperties::BottomMargin})
        properties.put16(margin, page.margin);
    LittleEndianBytes out;
    out.put16(properties.bytes().size());
    out.putBytes(properties.bytes());
    return out.bytes();
}

/// PlcfSed: one section for the whole text.
QByteArray sectionTable(qint64 characters, qint64 formattingAt)
{
    constexpr qint64 nowhere = 0xffffffff;
    LittleEndianBytes out;
    out.put32({0, characters});
    out.put16(0);
    out.put32(formattingAt);
    out.put16(0);
    out.put32(nowhere);
    return out.bytes();
}

/// PlcBteChpx or PlcBtePapx.
QByteArray pageTable(const WordFormatting &formatting, qint64 firstPageAt)
{
    LittleEndianBytes out;
    for (const qint64 bound : formatting.bounds)
        out.put32(bound);
    const qint64 first = firstPageAt / formatPageSize;
    for (qint64 page = 0; page < formatting.pages.size() / formatPageSize; ++page)
        out.put32(first + page);
    return out.bytes();
}

/// Clx: the text is one piece of two bytes a character.
QByteArray pieceTable(qint64 characters)
{
    constexpr qint64 pieceTableMark = 2;
    constexpr qint64 size = 2 * 4 + 8;
    LittleEndianBytes out;
    out.put8(pieceTableMark);
    out.put32({size, 0, characters});
    out.put16(0);
    out.put32(WordBinaryText::begin);
    out.put16(0);
    return out.bytes();
}

/// DTTM, local time to the minute.
qint64 packedTime(const QDateTime &moment)
{
    const QDate day = moment.date();
    const QTime time = moment.time();
    const qint64 weekday = day.dayOfWeek() % 7; // Sunday is 0
    return time.minute() | time.hour() << 6 | day.day() << 11 | day.month() << 16 |
           static_cast<qint64>(day.year() - 1900) << 20 | weekday << 29;
}

/// Dop97: the settings that a new document has.
QByteArray documentSettings(const QDateTime &created)
{
    constexpr qsizetype compatibilityOptions = 4;
    constexpr qsizetype typography = 310;
    constexpr qint64 footnotesOnTheirPage = 1 << 5;
    constexpr qint64 fromOne = 1 << 2;
    constexpr qint64 showAndPrintRevisions = 3 << 11;
    constexpr qint64 tabulators = 720; // twips
    constexpr qint64 hyphenationZone = 360;
    constexpr qint64 endnotesAtTheEnd = 3;
    constexpr qint64 shadeFormFields = 1 << 12;
    constexpr qint64 zoom = 100 << 3; // percent
    constexpr qint64 allOutlineLevels = 9 << 1;
    constexpr qint64 bordersAroundHeaderAndFooter = 3 << 12;
    LittleEndianBytes out;
    out.put16({footnotesOnTheirPage, fromOne, 0, showAndPrintRevisions, 0});
    out.put16({tabulators, 0, hyphenationZone, 0, 0});
    out.put32({packedTime(created), packedTime(created), 0});
    out.put16(1);                    // saved once
    out.putZeros(4 + 4 + 4 + 2 + 4); // minutes of work and counts, which nobody has counted
    out.put16({fromOne, endnotesAtTheEnd | shadeFormFields});
    out.putZeros(3 * 4 + 2 + 2 * 4 + 4); // counts, no password
    out.put16(zoom);
    out.putZeros(compatibilityOptions + 2 + typography);
    out.put16({1800, 1440, 180, 180, 0x8101}); // the grid of drawings
    out.put16({allOutlineLevels | bordersAroundHeaderAndFooter, 0});
    constexpr qsizetype size = 500;
    out.putZeros(size - out.size()); // no summary, no counts, no lists
    return out.bytes();
}

/// SttbfAssoc: template, title, author and so on. All are empty, as the summary has them, but have to be
/// there.
QByteArray emptyStrings()
{
    constexpr qint64 twoBytesCharacters = 0xffff;
    constexpr qsizetype count = 18;
    LittleEndianBytes out;
    out.put16({twoBytesCharacters, count, 0});
    out.putZeros(2 * count);
    return out.bytes();
}

/// Fib of Word 97.
QByteArray informationBlock(const TableStream &table, qint64 mainStreamSize, const WordBinaryText &text,
                            bool pictures)
{
    constexpr qint64 wordFile = 0xa5ec;
    constexpr qint64 version = 0xc1;
    constexpr qint64 readableBy = 0xbf;
    constexpr qint64 hasPictures = 1 << 3;
    constexpr qint64 usesTable1 = 1 << 9;
    constexpr qint64 extendedCharacters = 1 << 12;
    LittleEndianBytes out;
    out.put16({wordFile, version, 0, english, 0});
    out.put16((pictures ? hasPictures : 0) | usesTable1 | extendedCharacters);
    out.put16(readableBy);
    out.putZeros(4 + 2 + 2 + 2); // no key
    out.put32({WordBinaryText::begin, text.end()});

    constexpr qint64 words = 14;
    out.put16(words);
    out.putZeros(2 * (words - 1));
    out.put16(english);

    constexpr qint64 doubleWords = 22;
    out.put16(doubleWords);
    out.put32({mainStreamSize, 0, 0, text.characters.size()});
    out.putZeros(4 * (doubleWords - 4)); // no footnotes, headers, comments and text boxes

    out.put16(static_cast<qint64>(tables));
    for (const Table &entry : table.list())
        out.put32({entry.begin, entry.size});
    out.put16(0);
    out.putZeros(WordBinaryText::begin - out.size());
    return out.bytes();
}
} // namespace

WordBinaryTables WordBinaryTables::of(const WordBinaryText &text, const PageFormat &page, bool pictures,
                                      const QDateTime &created)
{
    LittleEndianBytes behind;
    behind.putBytes(sectionFormatting(page));
    behind.putZeros((formatPageSize - (text.end() + behind.size()) % formatPageSize) % formatPageSize);
    const qint64 characterPagesAt = text.end() + behind.size();
    behind.putBytes(text.characterFormatting.pages);
    const qint64 paragraphPagesAt = text.end() + behind.size();
    behind.putBytes(text.paragraphFormatting.pages);
    const qint64 mainStreamSize = text.end() + behind.size();
    behind.putZeros(std::max<qint64>(0, smallestMainStream - mainStreamSize));

    const qint64 characters = text.characters.size();
    TableStream table;
    table.add(styleSheet, wordStyleSheet());
    table.add(sections, sectionTable(characters, text.end()));
    table.add(characterPages, pageTable(text.characterFormatting, characterPagesAt));
    table.add(paragraphPages, pageTable(text.paragraphFormatting, paragraphPagesAt));
    table.add(fonts, wordFontTable(text.fonts));
    table.add(documentProperties, documentSettings(created));
    table.add(associatedStrings, emptyStrings());
    table.add(pieces, pieceTable(characters));
    return {informationBlock(table, mainStreamSize, text, pictures), behind.bytes(), table.bytes()};
}
