#include "platform/office/OdtContentWriter.h"

#include "platform/office/StopRequest.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr const char *pictureStyle = "ShotlyPicture";
constexpr int bodyText = WordRange::BodyText;

bool isHeading(const ParagraphLook &look)
{
    return look.outlineLevel >= 1 && look.outlineLevel < bodyText;
}

/// The words of a paragraph as XML may hold them; U+000B and tabs remain.
QString cleanText(const QString &text)
{
    QString clean;
    clean.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar character = text[i];
        const bool pair = character.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (pair)
            clean += text.mid(i++, 2);
        else if (character.isSurrogate())
            clean += QChar(QChar::ReplacementCharacter);
        else if (character == u'\t' || character == u'\v' ||
                 (character >= u' ' && character != QChar(0xfffe) && character != QChar(0xffff)))
            clean += character;
    }
    return clean;
}

} // namespace

OdtContentWriter::OdtContentWriter(const DocumentContent &content, DocumentPictures &pictures,
                                   const OdtSkeleton &skeleton, const DocumentWork &work,
                                   QXmlStreamWriter &writer)
    : m_content(content), m_pictures(pictures), m_skeleton(skeleton), m_work(work), m_writer(writer)
{
    for (const DocumentParagraph &paragraph : content.paragraphs) {
        const StyleKey key = keyOf(paragraph);
        if (std::find(m_styles.begin(), m_styles.end(), key) == m_styles.end())
            m_styles.push_back(key);
        if (isHeading(paragraph.look))
            m_levels.insert(paragraph.look.outlineLevel);
    }
}

OdtContentWriter::StyleKey OdtContentWriter::keyOf(const DocumentParagraph &paragraph) const
{
    StyleKey key{paragraph.look, paragraph.pageBreakBefore, paragraph.picture.has_value(),
                 &paragraph == m_content.paragraphs.data() && !m_skeleton.masterPage.isEmpty()};
    if (!isHeading(key.look))
        key.look.outlineLevel = bodyText;
    return key;
}

QString OdtContentWriter::nameOf(const StyleKey &key) const
{
    const auto found = std::find(m_styles.begin(), m_styles.end(), key);
    return u"ShotlyParagraph%1"_s.arg(found - m_styles.begin() + 1);
}

QString OdtContentWriter::headingName(int level) const
{
    const QString usual = u"Heading %1"_s.arg(level);
    return m_skeleton.styleNames.contains(Odt::encodedStyleName(usual)) ? u"Shotly "_s + usual : usual;
}

void OdtContentWriter::writeMeta()
{
    start(Odt::office, "meta");
    m_writer.writeTextElement(QLatin1String(Odt::meta), u"generator"_s, u"Shotly"_s);
    if (const QString title = cleanText(m_content.title).simplified(); !title.isEmpty())
        m_writer.writeTextElement(QLatin1String(Odt::dc), u"title"_s, title);
    m_writer.writeEndElement();
}

void OdtContentWriter::start(const char *space, const char *name)
{
    m_writer.writeStartElement(QLatin1String(space), QLatin1String(name));
}
void OdtContentWriter::writeAttribute(const char *space, const char *name, const QString &value)
{
    m_writer.writeAttribute(QLatin1String(space), QLatin1String(name), value);
}
void OdtContentWriter::writeAttribute(const char *space, const char *name, const char *value)
{
    writeAttribute(space, name, QString::fromLatin1(value));
}

void OdtContentWriter::startStyle(const QString &name, const char *family)
{
    start(Odt::style, "style");
    writeAttribute(Odt::style, "name", name);
    writeAttribute(Odt::style, "family", family);
}

void OdtContentWriter::writeNamedStyles()
{
    for (const int level : m_levels) {
        const QString name = headingName(level);
        startStyle(Odt::encodedStyleName(name), "paragraph");
        writeAttribute(Odt::style, "display-name", name);
        writeAttribute(Odt::style, "parent-style-name", "Standard");
        writeAttribute(Odt::style, "default-outline-level", QString::number(level));
        m_writer.writeEndElement();
    }
}

void OdtContentWriter::writeAutomaticStyles()
{
    for (const StyleKey &key : m_styles) {
        startStyle(nameOf(key), "paragraph");
        const QString parent = isHeading(key.look) ? headingName(key.look.outlineLevel) : u"Standard"_s;
        writeAttribute(Odt::style, "parent-style-name", Odt::encodedStyleName(parent));
        if (key.first)
            writeAttribute(Odt::style, "master-page-name", m_skeleton.masterPage);
        writeParagraphProperties(key);
        writeTextProperties(key.look);
        m_writer.writeEndElement();
    }
    startStyle(QLatin1String(pictureStyle), "graphic");
    start(Odt::style, "graphic-properties");
    writeAttribute(Odt::style, "vertical-pos", "top");
    writeAttribute(Odt::style, "vertical-rel", "baseline");
    for (const char *none : {"margin", "padding"})
        writeAttribute(Odt::fo, none, "0pt");
    writeAttribute(Odt::fo, "border", "none");
    m_writer.writeEndElement();
    m_writer.writeEndElement();
}

void OdtContentWriter::writeParagraphProperties(const StyleKey &key)
{
    const int alignment = key.look.alignment;
    start(Odt::style, "paragraph-properties");
    writeAttribute(Odt::fo, "text-align", alignment == 1 ? "center" : alignment == 2 ? "end" : "start");
    if (key.pageBreakBefore)
        writeAttribute(Odt::fo, "break-before", "page");
    // Where the template's lines have an exact height, no more than that is seen of a picture.
    if (key.picture)
        writeAttribute(Odt::fo, "line-height", "100%");
    m_writer.writeEndElement();
}

/// Everything is said, also what is off: the style above may have it on. What is said of Latin letters is
/// said of the others too; only the font is left to those that have them.
void OdtContentWriter::writeTextProperties(const ParagraphLook &look)
{
    start(Odt::style, "text-properties");
    if (const QString font = cleanText(look.fontName).remove(u'\''); !font.isEmpty())
        writeAttribute(Odt::fo, "font-family", u'\'' + font + u'\'');
    writeAttribute(Odt::fo, "color", u"#%1"_s.arg(documentColor(look.colorIndex), 6, 16, QLatin1Char('0')));
    const QString size = QString::number(fontPoints(look)) + u"pt"_s;
    const char *weight = look.bold ? "bold" : "normal";
    const char *slant = look.italic ? "italic" : "normal";
    writeAttribute(Odt::fo, "font-size", size);
    writeAttribute(Odt::fo, "font-weight", weight);
    writeAttribute(Odt::fo, "font-style", slant);
    for (const QString &script : {u"asian"_s, u"complex"_s}) {
        m_writer.writeAttribute(QLatin1String(Odt::style), u"font-size-"_s + script, size);
        m_writer.writeAttribute(QLatin1String(Odt::style), u"font-weight-"_s + script, QLatin1String(weight));
        m_writer.writeAttribute(QLatin1String(Odt::style), u"font-style-"_s + script, QLatin1String(slant));
    }
    writeAttribute(Odt::style, "text-underline-style", look.underline ? "solid" : "none");
    if (look.underline) {
        writeAttribute(Odt::style, "text-underline-width", "auto");
        writeAttribute(Odt::style, "text-underline-color", "font-color");
    }
    m_writer.writeEndElement();
}

void OdtContentWriter::writeParagraphs()
{
    for (const DocumentParagraph &paragraph : m_content.paragraphs) {
        throwIfStopped(m_work.stop);
        if (m_writer.hasError())
            return;
        const StyleKey key = keyOf(paragraph);
        start(Odt::text, isHeading(key.look) ? "h" : "p");
        writeAttribute(Odt::text, "style-name", nameOf(key));
        if (isHeading(key.look))
            writeAttribute(Odt::text, "outline-level", QString::number(key.look.outlineLevel));
        if (paragraph.picture)
            writePicture(*paragraph.picture);
        else
            writeText(cleanText(paragraph.text));
        m_writer.writeEndElement();
        m_writer.writeCharacters(u"\n"_s);
    }
    // The format asks for one paragraph at least.
    if (m_content.paragraphs.empty())
        m_writer.writeEmptyElement(QLatin1String(Odt::text), u"p"_s);
}

/// XML readers make one blank of many and none of those at the ends.
void OdtContentWriter::writeText(const QString &text)
{
    qsizetype begin = 0;
    const auto writeWords = [&](qsizetype end) {
        if (end > begin)
            m_writer.writeCharacters(text.mid(begin, end - begin));
    };
    for (qsizetype i = 0; i < text.size();) {
        const QChar character = text[i];
        qsizetype after = i + 1;
        if (character == u' ') {
            while (after < text.size() && text[after] == u' ')
                ++after;
            if (after == i + 1 && i > 0 && after < text.size() && text[i - 1] > u' ' && text[after] > u' ') {
                i = after;
                continue;
            }
        } else if (character > u' ') {
            i = after;
            continue;
        }
        writeWords(i);
        const char *element = character == u'\t' ? "tab" : character == u' ' ? "s" : "line-break";
        m_writer.writeEmptyElement(QLatin1String(Odt::text), QLatin1String(element));
        if (after > i + 1)
            writeAttribute(Odt::text, "c", QString::number(after - i));
        begin = i = after;
    }
    writeWords(text.size());
}

void OdtContentWriter::writePicture(const DocumentPicture &picture)
{
    const EncodedPicture encoded = m_pictures.describe(picture.path);
    const QSize size = fittedPictureSize(encoded.pixels, m_skeleton.room);
    ++m_done;
    start(Odt::draw, "frame");
    writeAttribute(Odt::draw, "style-name", pictureStyle);
    writeAttribute(Odt::draw, "name", u"Picture %1"_s.arg(m_done));
    writeAttribute(Odt::text, "anchor-type", "as-char");
    writeAttribute(Odt::svg, "width", Odt::points(size.width()));
    writeAttribute(Odt::svg, "height", Odt::points(size.height()));
    start(Odt::draw, "image");
    writeAttribute(Odt::draw, "mime-type",
                   encoded.format == EncodedPicture::Format::Jpeg ? "image/jpeg" : "image/png");
    start(Odt::office, "binary-data");
    writeBase64(m_pictures.bytes(picture.path));
    m_writer.writeEndElement();
    m_writer.writeEndElement();
    if (const QString words = cleanText(picture.alternativeText).simplified(); !words.isEmpty())
        m_writer.writeTextElement(QLatin1String(Odt::svg), u"desc"_s, words);
    m_writer.writeEndElement();
    if (m_work.progressed)
        m_work.progressed(m_done);
}

void OdtContentWriter::writeBase64(const QByteArray &bytes)
{
    constexpr qsizetype piece = qsizetype(3) * 64 * 1024; // threes of bytes become fours of letters
    for (qsizetype offset = 0; offset < bytes.size(); offset += piece) {
        const qsizetype count = std::min(piece, bytes.size() - offset);
        const auto view = QByteArray::fromRawData(bytes.constData() + offset, count);
        m_writer.writeCharacters(QString::fromLatin1(view.toBase64()));
    }
}
