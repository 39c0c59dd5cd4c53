#include "platform/office/WordBinaryText.h"

#include "platform/office/LittleEndianBytes.h"
#include "platform/office/WordBinaryProperties.h"

#include <QHash>
#include <QtEndian>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// What is said of the text from the end of the run before up to `end`.
struct Run {
    qint64 end = 0;
    QByteArray formatting; ///< as it lies in a page
};

bool isMark(QChar character)
{
    return character != u'\t' &&
           (character.category() == QChar::Other_Control || character.category() == QChar::Separator_Line ||
            character.category() == QChar::Separator_Paragraph);
}

/// Fills pages of 512 bytes: the bounds of the runs and one entry for each from the front, what the entries
/// point to from the back, the count of runs in the last byte.
class PageFiller
{
public:
    explicit PageFiller(qsizetype entrySize) : m_entrySize(entrySize)
    {
        m_filled.bounds.push_back(WordBinaryText::begin);
    }

    void add(const Run &run)
    {
        if (!fits(run.formatting))
            finishPage();
        const auto known = m_places.constFind(run.formatting);
        qsizetype place = 0;
        if (known != m_places.constEnd()) {
            place = *known;
        } else if (!run.formatting.isEmpty()) {
            m_lowest = place = below(run.formatting);
            m_page.replace(place, run.formatting.size(), run.formatting);
            m_places.insert(run.formatting, place);
        }
        m_entries.push_back(place);
        m_ends.push_back(run.end);
    }

    WordFormatting finish()
    {
        finishPage();
        return m_filled;
    }

private:
    static constexpr qsizetype pageSize = 512;

    qsizetype below(const QByteArray &formatting) const { return (m_lowest - formatting.size()) & ~1; }

    bool fits(const QByteArray &formatting) const
    {
        const qsizetype runs = static_cast<qsizetype>(m_ends.size()) + 1;
        const qsizetype front = 4 * (runs + 1) + m_entrySize * runs;
        return front <= (m_places.contains(formatting) ? m_lowest : below(formatting));
    }

    void finishPage()
    {
        LittleEndianBytes front;
        front.put32(m_filled.bounds.back());
        for (const qint64 end : m_ends)
            front.put32(end);
        for (const qsizetype place : m_entries) {
            front.put8(place / 2);
            front.putZeros(m_entrySize - 1);
        }
        m_page.replace(0, front.size(), front.bytes());
        m_page[pageSize - 1] = static_cast<char>(m_ends.size());
        m_filled.pages += m_page;
        m_filled.bounds.push_back(m_ends.back());
        m_page.fill('\0');
        m_lowest = pageSize - 1;
        m_places.clear();
        m_ends.clear();
        m_entries.clear();
    }

    qsizetype m_entrySize;
    WordFormatting m_filled;
    QByteArray m_page = QByteArray(pageSize, '\0');
    qsizetype m_lowest = pageSize - 1;
    QHash<QByteArray, qsizetype> m_places;
    std::vector<qint64> m_ends;
    std::vector<qsizetype> m_entries;
};

class TextBuilder
{
public:
    void add(const DocumentParagraph &paragraph, const qint64 *pictureOffset)
    {
        const QByteArray look = characterLook(paragraph.look);
        if (pictureOffset) {
            m_text.characters += QChar(pictureMark);
            addCharacters(pictureProperties(*pictureOffset) + look);
        } else {
            m_text.characters += wordCharacters(paragraph.text);
        }
        m_text.characters += u'\r';
        addCharacters(look);
        m_paragraphs.add({m_text.end(), paragraphFormatting(paragraph)});
    }

    WordBinaryText finish()
    {
        m_characters.add(m_open);
        m_text.characterFormatting = m_characters.finish();
        m_text.paragraphFormatting = m_paragraphs.finish();
        return std::move(m_text);
    }

private:
    static constexpr char16_t pictureMark = 1;

    /// Neighbours that look the same are one run.
    void addCharacters(const QByteArray &properties)
    {
        const QByteArray formatting = static_cast<char>(properties.size()) + properties;
        if (m_open.end > 0 && m_open.formatting != formatting)
            m_characters.add(m_open);
        m_open = {m_text.end(), formatting};
    }

    static QByteArray pictureProperties(qint64 offset)
    {
        WordProperties properties;
        properties.put32(WordProperties::PictureLocation, offset);
        properties.put8(WordProperties::Special, 1);
        return properties.bytes();
    }

    QByteArray characterLook(const ParagraphLook &look)
    {
        WordProperties properties;
        if (look.bold) {
            properties.put8(WordProperties::Bold, 1);
            properties.put8(WordProperties::BoldComplex, 1);
        }
        if (look.italic) {
            properties.put8(WordProperties::Italic, 1);
            properties.put8(WordProperties::ItalicComplex, 1);
        }
        if (look.underline)
            properties.put8(WordProperties::Underline, 1);
        if (look.colorIndex >= 1 && look.colorIndex <= 16)
            properties.put8(WordProperties::Color, look.colorIndex);
        properties.putFont(fontNumber(look.fontName), fontPoints(look));
        return properties.bytes();
    }

    int fontNumber(const QString &name)
    {
        constexpr qsizetype longest = 31; // of a font's name in the programs that read the file
        constexpr int most = 0x7ff0;      // in the table
        const QString known = wordCharacters(name.left(longest));
        if (known.trimmed().isEmpty())
            return 0;
        const auto found = m_fontNumbers.constFind(known);
        if (found != m_fontNumbers.constEnd())
            return *found;
        const auto next = static_cast<int>(m_text.fonts.size());
        if (next == most)
            return 0;
        m_text.fonts.append(known);
        m_fontNumbers.insert(known, next);
        return next;
    }

    /// PapxInFkp: a length in one byte or, when that of the properties is even, in two; the style;
    /// properties.
    static QByteArray paragraphFormatting(const DocumentParagraph &paragraph)
    {
        const ParagraphLook &look = paragraph.look;
        WordProperties properties;
        if (look.alignment == 1 || look.alignment == 2) {
            properties.put8(WordProperties::PhysicalAlignment, look.alignment);
            properties.put8(WordProperties::Alignment, look.alignment);
        }
        if (paragraph.pageBreakBefore)
            properties.put8(WordProperties::PageBreakBefore, 1);
        LittleEndianBytes body;
        body.put16(look.outlineLevel >= 1 && look.outlineLevel <= 9 ? look.outlineLevel : 0);
        body.putBytes(properties.bytes());
        LittleEndianBytes out;
        if (body.size() % 2 == 0)
            out.put8(0);
        out.put8((body.size() + 1) / 2);
        out.putBytes(body.bytes());
        return out.bytes();
    }

    static WordBinaryText startedText()
    {
        WordBinaryText text;
        text.fonts = {u"Times New Roman"_s};
        return text;
    }

    WordBinaryText m_text = startedText();
    QHash<QString, int> m_fontNumbers = {{m_text.fonts.first(), 0}};
    Run m_open; ///< may still grow
    PageFiller m_characters{1};
    PageFiller m_paragraphs{13};
};
} // namespace

QString wordCharacters(const QString &text)
{
    QString clean = text;
    for (qsizetype i = 0; i < clean.size(); ++i) {
        const QChar character = text[i];
        if (character.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i;
        else if (character.isSurrogate() || character.unicode() >= 0xfffe)
            clean[i] = QChar::ReplacementCharacter;
        else if (isMark(character))
            clean[i] = u' ';
    }
    return clean;
}

WordBinaryText WordBinaryText::of(const std::vector<DocumentParagraph> &paragraphs,
                                  const std::vector<qint64> &pictureOffsets)
{
    TextBuilder builder;
    auto offset = pictureOffsets.begin();
    for (const DocumentParagraph &paragraph : paragraphs)
        builder.add(paragraph, paragraph.picture ? &*offset++ : nullptr);
    if (paragraphs.empty())
        builder.add({}, nullptr);
    return builder.finish();
}
