#include "platform/office/WordBinaryStyles.h"

#include "platform/office/DocumentContent.h"
#include "platform/office/WordBinaryProperties.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int headings = 9;
constexpr int characterStylePlace = 10;
constexpr int fixedPlaces = 15;
constexpr int noStyle = 0xfff;
constexpr int styleBaseSize = 10;

struct Style {
    enum Kind { Paragraph = 1, Character = 2 };
    int identifier = 0; ///< of the built-in style
    Kind kind = Paragraph;
    int base = noStyle; ///< the place of the style that it is made from
    int next = 0;       ///< the place of the style of the following paragraph
    QString name;
};

void putProperties(LittleEndianBytes &out, const QByteArray &properties)
{
    out.put16(properties.size());
    out.putBytes(properties);
    out.padTo(2);
}

QByteArray withPlace(int place, const QByteArray &properties)
{
    LittleEndianBytes out;
    out.put16(place);
    out.putBytes(properties);
    return out.bytes();
}

/// LPStd. The lists of properties are those of the paragraph, if it is a paragraph style, and of characters.
void putStyle(LittleEndianBytes &out, const Style &style, const std::vector<QByteArray> &properties)
{
    LittleEndianBytes rest;
    rest.put16(style.name.size());
    rest.putText(style.name);
    rest.put16(0);
    for (const QByteArray &list : properties)
        putProperties(rest, list);
    const qsizetype size = styleBaseSize + rest.size();
    out.put16(size);
    out.put16({style.identifier, style.kind | style.base << 4,
               static_cast<qint64>(properties.size()) | style.next << 4, size, 0});
    out.putBytes(rest.bytes());
}

enum class Family { Roman = 1, Swiss = 2, Modern = 3 };

/// What to take for a font that is not there.
Family familyOf(const QString &name)
{
    const auto has = [&name](QLatin1StringView part) { return name.contains(part, Qt::CaseInsensitive); };
    if (has("courier"_L1) || has("mono"_L1) || has("consol"_L1))
        return Family::Modern;
    if (has("times"_L1) || has("roman"_L1) || (has("serif"_L1) && !has("sans"_L1)))
        return Family::Roman;
    return Family::Swiss;
}
} // namespace

QByteArray wordStyleSheet()
{
    constexpr int firstUnknownIdentifier = 91;
    constexpr int defaultParagraphFont = 65;
    LittleEndianBytes out;
    out.put16(18); // bytes of what follows up to the styles
    out.put16({fixedPlaces, styleBaseSize, 1, firstUnknownIdentifier, fixedPlaces, 0});
    out.put16({0, 0, 0}); // the first font for all scripts

    WordProperties normal;
    normal.putFont(0, ParagraphLook().fontSize);
    putStyle(out, {0, Style::Paragraph, noStyle, 0, u"Normal"_s}, {withPlace(0, {}), normal.bytes()});
    for (int level = 1; level <= headings; ++level) {
        WordProperties heading;
        heading.put8(WordProperties::OutlineLevel, level - 1);
        putStyle(out, {level, Style::Paragraph, 0, 0, u"heading %1"_s.arg(level)},
                 {withPlace(level, heading.bytes()), QByteArray()});
    }
    putStyle(
        out,
        {defaultParagraphFont, Style::Character, noStyle, characterStylePlace, u"Default Paragraph Font"_s},
        {QByteArray()});
    for (int place = characterStylePlace + 1; place < fixedPlaces; ++place)
        out.put16(0); // empty
    return out.bytes();
}

QByteArray wordFontTable(const QStringList &names)
{
    constexpr int fixedPitch = 1;
    constexpr int variablePitch = 2;
    constexpr int trueType = 4;
    constexpr int normalWeight = 400;
    constexpr int anyCharacterSet = 1;
    constexpr qsizetype panoseAndSignature = 10 + 24;
    LittleEndianBytes out;
    out.put16({names.size(), 0});
    for (const QString &name : names) {
        const Family family = familyOf(name);
        const int pitch = family == Family::Modern ? fixedPitch : variablePitch;
        LittleEndianBytes font;
        font.put8(pitch | trueType | static_cast<int>(family) << 4);
        font.put16(normalWeight);
        font.put8(anyCharacterSet);
        font.put8(0); // no other name
        font.putZeros(panoseAndSignature);
        font.putText(name + QChar());
        out.put8(font.size());
        out.putBytes(font.bytes());
    }
    return out.bytes();
}
