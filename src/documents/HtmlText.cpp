#include "documents/HtmlText.h"

#include <QList>

#include <algorithm>
#include <array>
#include <charconv>

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
/// Encodes whole blocks of ASCII at once, which most text is; returns how many characters that were.
qsizetype plainBlocks(QStringView text, char *bytes)
{
    constexpr qsizetype block = 16;
    qsizetype done = 0;
    for (; text.size() - done >= block; done += block) {
        const char16_t *const units = text.utf16() + done;
        uint all = 0;
        for (qsizetype i = 0; i < block; ++i)
            all |= units[i];
        if (all >= firstUpperControl)
            break;
        for (qsizetype i = 0; i < block; ++i)
            bytes[done + i] = static_cast<char>(units[i]);
    }
    return done;
}
} // namespace

QString HtmlText::EscapeHtmlText(const QString &text)
{
    QString escaped;
    escaped.reserve(text.size());
    qsizetype copied = 0;
    const auto replaceAt = [&](qsizetype place, QLatin1StringView replacement) {
        escaped += QStringView(text).sliced(copied, place - copied);
        escaped += replacement;
        copied = place + 1;
    };
    for (qsizetype place = 0; place < text.size(); ++place) {
        if (text[place] == u'<')
            replaceAt(place, "&lt;"_L1);
        else if (text[place] == u'>')
            replaceAt(place, "&gt;"_L1);
        else if (text[place] == u'\r')
            replaceAt(place, "<br>"_L1);
    }
    if (copied == 0)
        return text;
    escaped += QStringView(text).sliced(copied);
    return escaped;
}

QString HtmlText::fileReference(const QString &name)
{
    constexpr char16_t blank = u' ';
    constexpr char16_t deleted = 0x7F;
    const QStringView special = u"\"'<>&%#?:\\";
    QString reference;
    reference.reserve(name.size());
    for (const QChar character : name) {
        if (character < blank || character == deleted || special.contains(character))
            reference += u"%%1"_s.arg(character.unicode(), 2, 16, QChar(u'0')).toUpper();
        else
            reference += character;
    }
    return reference;
}

QByteArray HtmlText::encode(const QString &text)
{
    constexpr qsizetype longestReference = 10; // "&#1114111;"
    QByteArray bytes(text.size(), Qt::Uninitialized);
    char *next = bytes.data();
    for (qsizetype place = 0; place < text.size(); ++place) {
        char32_t character = text[place].unicode();
        if (character < firstUpperControl) {
            const qsizetype plain = plainBlocks(QStringView(text).sliced(place), next);
            next += plain;
            place += plain;
            if (plain == 0)
                *next++ = static_cast<char>(character);
            else
                --place;
            continue;
        }
        if (QChar::isSurrogate(character)) {
            const bool whole = QChar::isHighSurrogate(character) && place + 1 < text.size() &&
                               text[place + 1].isLowSurrogate();
            character =
                whole ? QChar::surrogateToUcs4(static_cast<char16_t>(character), text[++place].unicode())
                      : char32_t{QChar::ReplacementCharacter};
        }
        if (const uchar byte = byteOf(character); byte != 0) {
            *next++ = static_cast<char>(byte);
            continue;
        }
        const qsizetype used = next - bytes.constData();
        const qsizetype needed = used + longestReference + text.size() - place;
        if (bytes.size() < needed)
            bytes.resize(std::max(needed, 2 * bytes.size()));
        char *const reference = bytes.data() + used;
        next = std::to_chars(reference + 2, reference + longestReference, uint{character}).ptr;
        reference[0] = '&';
        reference[1] = '#';
        *next++ = ';';
    }
    bytes.truncate(next - bytes.constData());
    return bytes;
}
