#include "platform/office/OfficeApplication.h"

#include "platform/RunTimeError.h"

#include <QFileInfo>
#include <QStringList>

#include <iterator>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// Every kind of line end counts the same, so that all backends have the same lines.
QStringList linesOf(QString text)
{
    text.replace(u"\r\n"_s, u"\n"_s);
    for (const QChar end :
         {QChar(u'\r'), QChar(u'\v'), QChar(QChar::LineSeparator), QChar(QChar::ParagraphSeparator)})
        text.replace(end, u'\n');
    return text.split(u'\n');
}

RunTimeError noSelection()
{
    return {RunTimeError::WordFileNotWritten, u"Nothing is selected in the document."_s};
}
} // namespace

// ---- ranges

/// The text of the part stands in its last paragraph then.
void OfficeApplication::Part::insertBefore(const QString &text)
{
    QStringList lines = linesOf(text);
    first->content.text.prepend(lines.takeLast());
    const DocumentParagraph like{{}, {}, first->content.look, false};
    while (!lines.isEmpty()) {
        first = paragraphs->insert(first, {like});
        first->content.text = lines.takeLast();
    }
}

class OfficeApplication::Range : public WordRange
{
public:
    Range(OfficeApplication &application, const Part &part) : m_application(application), m_part(part) {}

    void insertBefore(const QString &text) override { m_part.insertBefore(text); }
    void setFontName(const QString &name) override
    {
        change([&](ParagraphLook &look) { look.fontName = name; });
    }
    void setFontSize(int points) override
    {
        change([&](ParagraphLook &look) { look.fontSize = points; });
    }
    void setFontColorIndex(int index) override
    {
        change([&](ParagraphLook &look) { look.colorIndex = index; });
    }
    void setFontBold(bool on) override
    {
        change([&](ParagraphLook &look) { look.bold = on; });
    }
    void setFontItalic(bool on) override
    {
        change([&](ParagraphLook &look) { look.italic = on; });
    }
    void setUnderline(bool on) override
    {
        change([&](ParagraphLook &look) { look.underline = on; });
    }
    void setAlignment(int alignment) override
    {
        change([&](ParagraphLook &look) { look.alignment = alignment; });
    }
    void setOutlineLevel(int level) override
    {
        change([&](ParagraphLook &look) { look.outlineLevel = level; });
    }
    void select() override { m_application.m_selection = m_part; }

    void replaceBy(const DocumentPicture &picture)
    {
        m_part.paragraphs->erase(std::next(m_part.first), std::next(m_part.last));
        m_part.last = m_part.first;
        m_part.first->content.text.clear();
        m_part.first->content.picture = picture;
    }

private:
    template <typename Change>
    void change(Change apply)
    {
        for (auto paragraph = m_part.first; paragraph != std::next(m_part.last); ++paragraph)
            apply(paragraph->content.look);
    }

    OfficeApplication &m_application;
    Part m_part;
};

// ---- documents

class OfficeApplication::Document : public WordDocument
{
public:
    Document(OfficeApplication &application, const QString &name, const QString &templatePath)
        : m_application(application), m_fullName(name), m_template(templatePath)
    {
    }
    Document(OfficeApplication &application, const QString &openedPath)
        : m_application(application), m_fullName(openedPath), m_opened(true), m_saved(true)
    {
    }

    std::unique_ptr<WordRange> addParagraph() override
    {
        m_paragraphs.emplace_back();
        const auto last = std::prev(m_paragraphs.end());
        return std::make_unique<Range>(m_application, Part{&m_paragraphs, last, last});
    }

    void addPicture(const QString &path, const QString &alternativeText, WordRange &range) override
    {
        if (!QFileInfo(path).isFile())
            throw RunTimeError(RunTimeError::FileNotFound, u"There is no picture file \"%1\"."_s.arg(path));
        m_application.m_pictures.request(path);
        static_cast<Range &>(range).replaceBy({path, alternativeText});
    }

    void saveAs(const QString &path, const DocumentWork &work) override
    {
        m_application.m_backend->save(content(path), m_application.m_pictures, path, work);
        m_fullName = path;
        m_saved = true;
        if (m_application.m_firstSaved.isEmpty())
            m_application.m_firstSaved = path;
    }

    QString fullName() const override { return m_fullName; }

    void writePdf(const DocumentWork &work)
    {
        if (!m_saved)
            throw RunTimeError(
                RunTimeError::WordFileNotWritten,
                u"The document \"%1\" must be saved before it is converted."_s.arg(m_fullName));
        const QString pdf = WordProcessor::pdfPathOf(m_fullName);
        DocumentBackend &backend = *m_application.m_backend;
        if (m_opened)
            backend.convertFile(m_fullName, pdf, work);
        else
            backend.savePdf(content(m_fullName), m_application.m_pictures, m_fullName, pdf, work);
    }

private:
    DocumentContent content(const QString &path) const
    {
        DocumentContent result{QFileInfo(path).completeBaseName(), m_template, {}};
        result.paragraphs.reserve(m_paragraphs.size());
        bool pageBreak = false;
        for (const Paragraph &paragraph : m_paragraphs) {
            if (paragraph.isBreak) {
                pageBreak = true;
                continue;
            }
            result.paragraphs.push_back(paragraph.content);
            DocumentParagraph &added = result.paragraphs.back();
            added.pageBreakBefore = std::exchange(pageBreak, false);
            // A heading without words would be an empty stop for those who go from heading to heading.
            if (added.text.trimmed().isEmpty() && !added.picture)
                added.look.outlineLevel = WordRange::BodyText;
        }
        if (pageBreak)
            result.paragraphs.push_back({{}, {}, {}, true});
        return result;
    }

    OfficeApplication &m_application;
    QString m_fullName;
    QString m_template;
    Paragraphs m_paragraphs;
    bool m_opened = false;
    bool m_saved = false;
};

// ---- the application

OfficeApplication::OfficeApplication(std::unique_ptr<DocumentBackend> backend) : m_backend(std::move(backend))
{
}

OfficeApplication::~OfficeApplication() = default;

WordDocument &OfficeApplication::addDocument(const QString &templatePath)
{
    const QString name = u"Document%1"_s.arg(m_documents.size() + 1);
    return m_documents.emplace_back(*this, name, templatePath);
}

WordDocument &OfficeApplication::openDocument(const QString &path)
{
    if (!QFileInfo(path).isFile())
        throw RunTimeError(RunTimeError::WordFileMissing, u"There is no file \"%1\"."_s.arg(path));
    if (m_visible)
        m_backend->open(path, false);
    return m_documents.emplace_back(*this, path);
}

int OfficeApplication::documents() const
{
    return static_cast<int>(m_documents.size());
}

OfficeApplication::Document &OfficeApplication::active()
{
    if (m_documents.empty())
        throw RunTimeError(RunTimeError::WordFileNotWritten, u"No document is open."_s);
    return m_documents.back();
}

void OfficeApplication::insertBreak(int kind)
{
    if (!m_selection.paragraphs)
        throw noSelection();
    if (kind != PageBreak)
        throw RunTimeError(RunTimeError::WordFileNotWritten,
                           u"There is no break of the kind %1."_s.arg(kind));
    m_selection.paragraphs->erase(std::next(m_selection.first), std::next(m_selection.last));
    m_selection.last = m_selection.first;
    m_selection.first->content.text.clear();
    m_selection.first->isBreak = true;
}

void OfficeApplication::insertAfter(const QString &text)
{
    if (!m_selection.paragraphs)
        throw noSelection();
    QStringList lines = linesOf(text);
    if (!m_selection.last->isBreak) {
        m_selection.last->content.text += lines.takeFirst();
    } else {
        if (lines.size() > 1 && lines.first().isEmpty())
            lines.removeFirst(); // the end of the break's own line
        if (lines.size() == 1 && lines.first().isEmpty())
            return;
    }
    for (const QString &line : lines) {
        const DocumentParagraph like{line, {}, m_selection.last->content.look, false};
        m_selection.last = m_selection.paragraphs->insert(std::next(m_selection.last), {like});
    }
}

void OfficeApplication::run(const QString &macro, const DocumentWork &work)
{
    if (macro != WordProcessor::pdfMacro())
        throw RunTimeError(RunTimeError::WordFileNotWritten, u"There is no macro \"%1\"."_s.arg(macro));
    if (!m_printer.startsWith(WordProcessor::pdfPrinter()))
        throw RunTimeError(RunTimeError::PrinterError,
                           u"The active printer must be \"%1\"."_s.arg(WordProcessor::pdfPrinter()));
    active().writePdf(work);
}

void OfficeApplication::expectPictures(const QStringList &paths)
{
    for (const QString &path : paths) {
        if (QFileInfo(path).isFile())
            m_pictures.request(path);
    }
}

void OfficeApplication::show()
{
    if (m_visible && !m_firstSaved.isEmpty())
        m_backend->open(m_firstSaved, true);
}
