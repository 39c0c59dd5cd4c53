// HTML pages: the texts of a page between the tags of the writer.

#include "fuzz/Fuzz.h"

#include "documents/HtmlPageWriter.h"
#include "documents/HtmlText.h"
#include "platform/UnattendedPrompter.h"

#include <QRegularExpression>
#include <QStringDecoder>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// What a browser makes of the bytes, read by a decoder of somebody else's.
QString shown(const QByteArray &bytes)
{
    QStringDecoder decoder("windows-1252");
    Fuzz::require(decoder.isValid(), "there is a decoder");
    QString text = decoder(bytes);
    static const QRegularExpression reference(u"&#(\\d+);"_s);
    for (QRegularExpressionMatch match; (match = reference.match(text)).hasMatch();) {
        const char32_t character = match.captured(1).toUInt();
        text.replace(match.capturedStart(), match.capturedLength(), QString::fromUcs4(&character, 1));
    }
    return text;
}

QString withoutHalfPairs(QString text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i;
        else if (text[i].isSurrogate())
            text[i] = QChar::ReplacementCharacter;
    }
    return text;
}

/// The tags of a page in their order, without those that a line end in a text gives.
QList<QByteArray> tags(const QByteArray &page)
{
    QList<QByteArray> list;
    for (qsizetype at = page.indexOf('<'); at >= 0; at = page.indexOf('<', at + 1)) {
        qsizetype end = at + 1;
        while (end < page.size() &&
               (std::isalnum(static_cast<unsigned char>(page[end])) != 0 || page[end] == '/'))
            ++end;
        if (const QByteArray tag = page.sliced(at, end - at); tag != "<br")
            list += tag;
    }
    return list;
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static Module1 state;
    static UnattendedPrompter prompter;
    const QList<QByteArray> parts = Fuzz::parts(data, size, 6);
    const auto text = [&parts](int index) { return Fuzz::text(parts[index]); };

    QString all;
    for (int i = 0; i < parts.size(); ++i)
        all += text(i);
    const QString plain = QString(all).remove(u'&');
    Fuzz::require(shown(HtmlText::encode(plain)) == withoutHalfPairs(plain), "a text is shown as it is");

    const HtmlPageWriter writer(state, prompter);
    HtmlPage page;
    page.Layout = static_cast<std::int16_t>(size % 3);
    const bool hasPicture = !FileSystem::bareName(text(5)).trimmed().isEmpty();
    page.ScreenShotFilePath = hasPicture ? u"/a/b.bmp"_s : QString();
    const QList<QByteArray> empty = tags(writer.pageBytes(page));
    page.PageTitle = HtmlText::EscapeHtmlText(text(0));
    page.SubTitle = HtmlText::EscapeHtmlText(text(1));
    page.PageSummary = HtmlText::EscapeHtmlText(text(2));
    page.Note1 = HtmlText::EscapeHtmlText(text(3));
    page.Note2 = HtmlText::EscapeHtmlText(text(4));
    page.ScreenShotFilePath = text(5);
    const QByteArray bytes = writer.pageBytes(page);
    Fuzz::require(tags(bytes) == empty, "texts change no tag");
    Fuzz::require(bytes.count('>') - bytes.count("<br>") == empty.size(), "every tag is closed");
    return 0;
}
