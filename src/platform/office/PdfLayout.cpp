#include "platform/office/PdfLayout.h"

#include "platform/RunTimeError.h"

#include <QFontMetricsF>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QTextLayout>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int twipsPerInch = 1440; // the unit of everything that is painted here
constexpr int twipsPerPoint = 20;

/// Characters that show nothing and may upset who reads the file become spaces; half a pair of surrogates
/// becomes the sign for that. Line and paragraph separators break the line.
QString printable(const QString &text)
{
    QString result = text;
    for (qsizetype i = 0; i < result.size(); ++i) {
        const QChar character = result[i];
        if (character.isHighSurrogate() && i + 1 < result.size() && result[i + 1].isLowSurrogate())
            ++i;
        else if (character.isSurrogate() || character == QChar::ObjectReplacementCharacter)
            result[i] = QChar::ReplacementCharacter;
        else if (character == u'\v')
            result[i] = QChar::LineSeparator;
        else if (character != u'\t' && character.category() == QChar::Other_Control)
            result[i] = u' ';
    }
    return result;
}

/// Two numbers that no place on a page has.
constexpr int markTop = -77777;
int markLeft(std::size_t part)
{
    return -1 - static_cast<int>(part);
}

Qt::Alignment alignmentOf(int alignment)
{
    constexpr int center = 1;
    constexpr int right = 2;
    return alignment == center ? Qt::AlignHCenter : alignment == right ? Qt::AlignRight : Qt::AlignLeft;
}

class Pages
{
public:
    Pages(const DocumentContent &content, DocumentPictures &pictures, const PageFormat &format,
          QIODevice &file)
        : m_content(content), m_pictures(pictures), m_format(format), m_top(format.margin), m_writer(&file)
    {
        m_writer.setPageLayout(QPageLayout(QPageSize(QSizeF(format.page) / twipsPerPoint, QPageSize::Point),
                                           QPageLayout::Portrait, QMarginsF()));
        m_writer.setResolution(twipsPerInch);
        m_writer.setTitle(content.title);
        m_painter.begin(&m_writer);
        m_pages.emplace_back();
    }

    void put(std::size_t index);
    std::vector<PdfPage> finish()
    {
        m_painter.end();
        return std::move(m_pages);
    }

private:
    void putText(std::size_t index);
    void putPicture(std::size_t index);
    void beginText(std::size_t index);
    void putSpaceBehind(const QTextLine &line, const QTextLayout &layout);
    void putHeading(const DocumentParagraph &paragraph, int top);
    bool makeRoom(double height);
    void newPage();
    QFont fontOf(const ParagraphLook &look);

    const DocumentContent &m_content;
    DocumentPictures &m_pictures;
    const PageFormat m_format;
    double m_top; ///< where the next line begins
    QPdfWriter m_writer;
    QPainter m_painter;
    std::vector<PdfPage> m_pages;
};

QFont Pages::fontOf(const ParagraphLook &look)
{
    QFont font(look.fontName.isEmpty() ? u"Times New Roman"_s : look.fontName);
    font.setBold(look.bold);
    font.setItalic(look.italic);
    font.setUnderline(look.underline);
    // Qt knows no height from 16384 units on, which are almost as high as a page.
    constexpr double highest = 16000;
    constexpr int sample = 100;
    font.setPointSize(sample);
    const double ascentOfPoint = QFontMetricsF(font, &m_writer).ascent() / sample;
    font.setPointSizeF(std::min<double>(fontPoints(look), highest / ascentOfPoint));
    return {font, &m_writer};
}

void Pages::newPage()
{
    m_writer.newPage();
    m_pages.emplace_back();
    m_top = m_format.margin;
}

/// Whether another page was begun. What is higher than a whole page begins at the top of one.
bool Pages::makeRoom(double height)
{
    const double bottom = m_format.page.height() - m_format.margin;
    const bool full = m_top > m_format.margin && m_top + height > bottom;
    if (full)
        newPage();
    return full;
}

void Pages::putHeading(const DocumentParagraph &paragraph, int top)
{
    const int level = paragraph.look.outlineLevel;
    const QString title =
        printable(paragraph.picture ? paragraph.picture->alternativeText : paragraph.text).simplified();
    if (level >= 1 && level < WordRange::BodyText && !title.isEmpty())
        m_pages.back().headings.push_back({title, level, top});
}

void Pages::beginText(std::size_t index)
{
    std::vector<PdfPart> &parts = m_pages.back().parts;
    m_painter.fillRect(QRect(markLeft(parts.size()), markTop, 1, 1), Qt::black);
    parts.push_back({index, {}});
}

/// The space at which a line was broken: programs that read the text aloud or copy it want it between the
/// words.
void Pages::putSpaceBehind(const QTextLine &line, const QTextLayout &layout)
{
    const qsizetype end = line.textStart() + line.textLength();
    if (end == layout.text().size() || layout.text()[end - 1] != u' ')
        return;
    QFont font = layout.font();
    font.setUnderline(false);
    m_painter.setFont(font);
    m_painter.drawText(QPointF(m_format.margin + line.naturalTextRect().right(), m_top + line.ascent()),
                       u" "_s);
}

void Pages::putText(std::size_t index)
{
    const DocumentParagraph &paragraph = m_content.paragraphs[index];
    QTextLayout layout(printable(paragraph.text), fontOf(paragraph.look), &m_writer);
    QTextOption option(alignmentOf(paragraph.look.alignment));
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLeadingIncluded(true);
        line.setLineWidth(m_format.textArea().width());
        line.setPosition({});
    }
    layout.endLayout();
    m_painter.setPen(QColor::fromRgb(documentColor(paragraph.look.colorIndex)));
    for (int i = 0; i < layout.lineCount(); ++i) {
        const QTextLine line = layout.lineAt(i);
        const bool otherPage = makeRoom(line.height());
        if (i == 0)
            putHeading(paragraph, static_cast<int>(m_top));
        if ((i == 0 || otherPage) && !layout.text().trimmed().isEmpty())
            beginText(index);
        line.draw(&m_painter, QPointF(m_format.margin, m_top));
        putSpaceBehind(line, layout);
        m_top += line.height();
    }
}

void Pages::putPicture(std::size_t index)
{
    const DocumentParagraph &paragraph = m_content.paragraphs[index];
    const QSize size = fittedPictureSize(m_pictures.describe(paragraph.picture->path).pixels, m_format);
    // The picture stands on the line like a letter.
    const double room = m_format.textArea().height() - size.height();
    const double below = std::min(QFontMetricsF(fontOf(paragraph.look), &m_writer).descent(), room);
    makeRoom(size.height() + below);
    QRect place(QPoint(m_format.margin, static_cast<int>(m_top)), size);
    const Qt::Alignment alignment = alignmentOf(paragraph.look.alignment);
    const int beside = m_format.textArea().width() - size.width();
    if (alignment != Qt::AlignLeft)
        place.translate(alignment == Qt::AlignRight ? beside : beside / 2, 0);
    putHeading(paragraph, place.top());
    m_pages.back().parts.push_back({index, place});
    m_top += size.height() + below;
}

void Pages::put(std::size_t index)
{
    const DocumentParagraph &paragraph = m_content.paragraphs[index];
    if (paragraph.pageBreakBefore && index > 0)
        newPage();
    if (paragraph.picture)
        putPicture(index);
    else
        putText(index);
}
} // namespace

QByteArray beginningOfText(std::size_t index)
{
    return QByteArray::number(markLeft(index)) + ' ' + QByteArray::number(markTop) + " 1 1 re\nf\n";
}

std::vector<PdfPage> layPdfOut(const DocumentContent &content, DocumentPictures &pictures,
                               const PageFormat &format, QIODevice &file, const DocumentWork &work)
{
    for (const DocumentParagraph &paragraph : content.paragraphs) {
        if (paragraph.picture)
            pictures.request(paragraph.picture->path);
    }
    Pages pages(content, pictures, format, file);
    for (std::size_t i = 0; i < content.paragraphs.size(); ++i) {
        if (work.stop.stop_requested())
            throw RunTimeError(RunTimeError::UserInterrupt, u"The document was not finished."_s);
        pages.put(i);
    }
    return pages.finish();
}
