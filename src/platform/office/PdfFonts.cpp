#include "platform/office/PdfFonts.h"

#include <QList>
#include <QRegularExpression>
#include <QString>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// UTF-16 in hexadecimal digits.
QString hexadecimal(const QString &text)
{
    QString digits;
    for (const QChar unit : text)
        digits += u"%1"_s.arg(unit.unicode(), 4, 16, QChar(u'0'));
    return digits;
}

/// What a glyph that stands for one UTF-16 unit is to stand for.
QString meaningOf(char16_t unit)
{
    constexpr char16_t firstShape = 0xfb00; // alphabetic and Arabic presentation forms
    constexpr char16_t lastShape = 0xfefc;
    if (unit == u'\t')
        return u" "_s;
    const QString text(1, QChar(unit));
    return unit >= firstShape && unit <= lastShape ? text.normalized(QString::NormalizationForm_KC) : text;
}

constexpr int hexadecimalBase = 16;
constexpr qsizetype oneUnit = 4; // digits

int numberOf(const QString &digits)
{
    return digits.toInt(nullptr, hexadecimalBase);
}

/// A line of a character map: the first and the last code of a range of glyphs, and the characters of each or
/// those of the first, from which the others go on. Empty where it is no such line.
QString mendedLine(const QString &line)
{
    static const QRegularExpression range(u"^<[0-9A-Fa-f]{4}> <[0-9A-Fa-f]{4}> (\\[.*\\]|<[0-9A-Fa-f]+>)$"_s);
    static const QRegularExpression number(u"<([0-9A-Fa-f]+)>"_s);
    QStringList numbers;
    if (range.match(line).hasMatch()) {
        for (auto found = number.globalMatch(line); found.hasNext();)
            numbers += found.next().captured(1);
    }
    if (numbers.size() < 3)
        return {};
    const bool inRow = !line.contains(u'[') && numbers[2].size() == oneUnit;
    for (int i = 1; inRow && i <= numberOf(numbers[1]) - numberOf(numbers[0]); ++i)
        numbers += hexadecimal(QString(1, QChar(numberOf(numbers[2]) + i)));
    QString characters;
    for (const QString &digits : numbers.mid(2)) {
        const bool plain = digits.size() == oneUnit;
        const auto unit = static_cast<char16_t>(plain ? numberOf(digits) : 0);
        characters += u'<' + (plain ? hexadecimal(meaningOf(unit)) : digits) + u"> "_s;
    }
    return u"<%1> <%2> [%3]"_s.arg(numbers[0], numbers[1], characters.trimmed());
}

/// A character map (Adobe Technical Note 5411). Of more than a hundred ranges Qt writes some twice, with a
/// wrong count and bytes that belong to nothing.
QString mendedMap(const QString &map)
{
    constexpr qsizetype mostInBlock = 100;
    const qsizetype begin = map.lastIndexOf(u'\n', map.indexOf(u"beginbfrange"_s)) + 1;
    const qsizetype end = map.indexOf(u"endcmap"_s);
    if (begin == 0 || end < begin)
        return map;
    QStringList ranges;
    for (const QString &line : map.sliced(begin, end - begin).split(u'\n'))
        ranges += mendedLine(line);
    ranges.removeAll(QString());
    ranges.removeDuplicates();
    QString blocks;
    for (qsizetype i = 0; i < ranges.size(); i += mostInBlock) {
        const QStringList block = ranges.mid(i, mostInBlock);
        blocks += u"%1 beginbfrange\n%2\nendbfrange\n"_s.arg(block.size()).arg(block.join(u'\n'));
    }
    return map.first(begin) + blocks + map.sliced(end);
}
} // namespace

void PdfFonts::mend(QPDFObjectHandle resources)
{
    QPDFObjectHandle fonts = resources.getKey("/Font");
    if (!fonts.isDictionary())
        return;
    for (auto &font : fonts.getDictAsMap()) {
        QPDFObjectHandle map = font.second.getKey("/ToUnicode");
        if (!map.isStream() || !m_mended.insert(map.getObjGen()).second)
            continue;
        const auto bytes = map.getStreamData(qpdf_dl_generalized);
        const QString written = QString::fromLatin1(reinterpret_cast<const char *>(bytes->getBuffer()),
                                                    static_cast<qsizetype>(bytes->getSize()));
        map.replaceStreamData(mendedMap(written).toStdString(), QPDFObjectHandle::newNull(),
                              QPDFObjectHandle::newNull());
    }
}
