#include "documents/HtmlText.h"

#include <QList>

#include <algorithm>
#include <array>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// Characters of the bytes 0x80 to 0x9F, the only ones in which Windows-1252 is not Latin-1.
constexpr std::array<char16_t, 32> upperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
constexpr uint firstUpperControl = 0x80;

/// The byte of a character, or 0 where there is none.
uchar byteOf(uint character)
{
    if (character < firstUpperControl ||
        (character >= firstUpperControl + upperControls.size() && character <= 0xFF))
        return static_cast<uchar>(character);
    const auto *const found = std::find(upperControls.begin(), upperControls.end(), character);
    return found == upperControls.end()
               ? uchar{0}
               : static_cast<uchar>(firstUpperControl + static_cast<uint>(found - upperControls.begin()));
}
} // namespace

QString HtmlText::EscapeHtmlText(const QString &text)
{
    QString escaped = text;
    escaped.replace(u'<', u"&lt;"_s);
    escaped.replace(u'>', u"&gt;"_s);
    escaped.replace(u'\r', u"<br>"_s);
    return escaped;
}

QByteArray HtmlText::encode(const QString &text)
{
    QByteArray bytes;
    bytes.reserve(text.size());
    for (const uint character : text.toUcs4()) {
        const uchar byte = byteOf(character);
        if (byte != 0 || character == 0)
            bytes.append(static_cast<char>(byte));
        else
            bytes.append("&#" + QByteArray::number(character) + ';');
    }
    return bytes;
}
