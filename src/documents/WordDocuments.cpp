#include "documents/DocumentGeneration.h"
#include "documents/PdfConversion.h"
#include "pagestore/Statements.h"
#include "platform/RunTimeError.h"
#include "state/BesideEvents.h"

#include <QScopeGuard>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace
{
const QString &lineEnd()
{
    static const QString text = u"\r\n"_s;
    return text;
}

struct WordPage {
    std::array<QString, textRoleCount> texts; ///< by TextRole
    QString picture;
    QString number;
    int layout = 0;

    const QString &text(TextRole role) const { return texts.at(static_cast<std::size_t>(role)); }
    QString pictureText() const
    {
        const QString title = text(TextRole::Title);
        return title.isEmpty() ? u"Page %1"_s.arg(number) : u"%1, page %2"_s.arg(title, number);
    }
};

WordPage pageOf(const Recordset &rows)
{
    const auto text = [&rows](const QString &column) { return rows.field(column).toString().trimmed(); };
    WordPage page;
    page.texts = {text(u"PageTitle"_s), text(u"SubTitle"_s), text(u"PageSummary"_s), text(u"Note1"_s),
                  text(u"Note2"_s)};
    page.picture = text(u"ScreenShotFilePath"_s);
    page.number = text(u"PageNumber"_s);
    page.layout = text(u"Layout"_s).toInt();
    return page;
}

/// An empty font is filled in for good.
const WordTextStyle &styleOf(AppOptions &options, TextRole role)
{
    WordTextStyle &style = options.WordStyles.at(static_cast<std::size_t>(role));
    if (style.Font.isEmpty())
        style.Font = role == TextRole::Title ? u"Times New Roman"_s : u"Arial"_s;
    return style;
}

/// One way through a project's pages. The word processor is told what to do in the order in which somebody
/// would type the document.
class WordPass
{
public:
    WordPass(const DocumentServices &services, const QString &project, ReplacedFiles &replaced,
             WordApplication &word, std::vector<WordPage> pages)
        : m_services(services), m_options(services.state.AppOptions), m_project(project),
          m_replaced(replaced), m_word(word), m_pages(std::move(pages)),
          m_line(inFolder(services.state.ApplicationPath, u"line.bmp"_s))
    {
    }

    /// False when the user has cancelled. How many documents were written is in `written` then.
    bool run(int &written)
    {
        QStringList pictures;
        pictures.reserve(static_cast<qsizetype>(m_pages.size()));
        for (const WordPage &page : m_pages)
            pictures += page.picture;
        m_word.expectPictures(pictures);
        const bool finished =
            m_options.OneWordDocumentIncludeAllPages ? writeOneDocument() : writeDocuments();
        written = m_written;
        return finished;
    }

private:
    static QString inFolder(const QString &folder, const QString &name)
    {
        return FileSystem::join(folder, name);
    }
    QString inProject(const QString &name) const { return inFolder(m_services.state.ProjectDirectory, name); }
    bool there(const QString &path) const { return m_services.state.FileSystem.fileExists(path); }

    bool writeOneDocument()
    {
        WordDocument &document = newDocument();
        {
            ProgressScope progress(m_services.progress, u"Writing the Word document"_s,
                                   static_cast<int>(m_pages.size()));
            writeContents(document);
            int done = 0;
            for (const WordPage &page : m_pages) {
                const auto range = document.addParagraph();
                range->select();
                m_word.insertBreak(WordApplication::PageBreak);
                m_word.insertAfter(lineEnd());
                if (!progress.step(++done))
                    return false;
                writePage(document, page);
            }
        }
        return save(document, m_project, nullptr);
    }

    bool writeDocuments()
    {
        ProgressScope progress(m_services.progress, u"Writing Word documents"_s,
                               static_cast<int>(m_pages.size()));
        WordDocument &contents = newDocument();
        writeContents(contents);
        if (!save(contents, u"contents"_s, &progress))
            return false;
        int done = 0;
        for (const WordPage &page : m_pages) {
            WordDocument &document = newDocument();
            if (!progress.step(done))
                return false;
            writePage(document, page);
            if (!save(document, m_project + QString::number(++done), &progress))
                return false;
        }
        return true;
    }

    WordDocument &newDocument()
    {
        return m_word.addDocument(inFolder(m_services.state.ApplicationPath, u"Shotly.dot"_s));
    }

    static std::unique_ptr<WordRange> paragraph(WordDocument &document, const QString &text)
    {
        std::unique_ptr<WordRange> range = document.addParagraph();
        range->insertBefore(text);
        return range;
    }

    void writeContents(WordDocument &document)
    {
        constexpr int headSize = 15;
        constexpr int lineSize = 10;
        constexpr int black = 1;
        const auto head = paragraph(document, u"Contents"_s);
        head->setFontName(u"Georgia"_s);
        head->setFontSize(headSize);
        head->setFontColorIndex(black);
        addLine(document);
        int number = 0;
        for (const WordPage &page : m_pages) {
            const auto line = paragraph(document, lineEnd() + QString::number(++number) + u". "_s +
                                                      page.text(TextRole::Title));
            line->setFontName(u"Arial"_s);
            line->setFontSize(lineSize);
        }
    }

    void writePage(WordDocument &document, const WordPage &page)
    {
        using enum TextRole;
        const int layout = page.layout == 0 ? m_options.OptionFlags[PageLayout] : page.layout;
        if (layout == 1) {
            addText(document, Title, page.text(Title) + lineEnd());
            addPicture(document, page.picture, page.pictureText());
            addText(document, SubTitle, page.text(SubTitle));
        } else {
            addText(document, Title, page.text(Title));
            addLine(document);
            addText(document, SubTitle, page.text(SubTitle) + lineEnd());
            addPicture(document, page.picture, page.pictureText());
        }
        for (const TextRole role : {Other, Note1, Note2})
            addText(document, role, lineEnd() + page.text(role));
    }

    void addText(WordDocument &document, TextRole role, const QString &text)
    {
        const WordTextStyle &style = styleOf(m_options, role);
        const auto range = paragraph(document, text);
        range->setFontName(style.Font);
        range->setFontSize(style.FontSize);
        range->setFontColorIndex(style.Color);
        range->setFontBold(style.Bold == 1);
        range->setFontItalic(style.Italic == 1);
        range->setUnderline(style.Underline == 1);
        range->setAlignment(style.Align);
        if (role == TextRole::Title)
            range->setOutlineLevel(1);
    }

    void addPicture(WordDocument &document, const QString &path, const QString &alternativeText)
    {
        if (path.isEmpty() || !there(path))
            return;
        document.addPicture(path, alternativeText, *document.addParagraph());
        ++m_pictures;
    }

    void addLine(WordDocument &document) { addPicture(document, m_line, u"Line"_s); }

    /// Both are false when the user has cancelled. `pages`: the progress by pages; without it each step has
    /// one of its own, by pictures, which are what takes the time.
    bool save(WordDocument &document, const QString &name, ProgressScope *pages)
    {
        const QString path = inProject(name + u".doc"_s);
        m_replaced.makeRoom(path);
        if (!perform(u"Saving the Word document"_s, pages,
                     [&](const DocumentWork &work) { document.saveAs(path, work); }))
            return false;
        const auto toPdf = [&](const DocumentWork &work) {
            PdfConversion::ConvertDocumentToPdf(
                m_word, document, [this](const QString &pdf) { m_replaced.makeRoom(pdf); }, work);
        };
        if (m_options.AutoConvertWord2PDF == 1 && !perform(u"Making the PDF"_s, pages, toPdf))
            return false;
        ++m_written;
        return true;
    }

    /// A step that ends before it notices that the user has cancelled counts as cancelled, too.
    template <typename Step>
    bool perform(const QString &title, ProgressScope *pages, Step step)
    {
        try {
            if (pages) {
                besideEvents(*pages, [&](WorkBesideEvents &work) {
                    work.done = m_written;
                    step({work.stop, {}});
                });
                return pages->step(m_written);
            }
            ProgressScope progress(m_services.progress, title, m_pictures);
            besideEvents(progress, [&](WorkBesideEvents &work) {
                step({work.stop, [&work](int pictures) { work.done = pictures; }});
            });
            return progress.step(m_pictures);
        } catch (const RunTimeError &error) {
            if (error.number() == RunTimeError::UserInterrupt)
                return false;
            throw;
        }
    }

    const DocumentServices &m_services;
    AppOptions &m_options;
    QString m_project;
    ReplacedFiles &m_replaced;
    WordApplication &m_word;
    std::vector<WordPage> m_pages;
    QString m_line;     ///< path of the separator picture
    int m_pictures = 0; ///< in all documents so far
    int m_written = 0;  ///< documents
};
} // namespace

bool DocumentGeneration::GenerateWordDocuments(const QString &project)
{
    ReplacedFiles replaced(m_services.state.FileSystem);
    if (writeWordDocuments(project, replaced) != Outcome::Finished)
        return false;
    replaced.keep();
    return true;
}

DocumentGeneration::Outcome DocumentGeneration::writeWordDocuments(const QString &project,
                                                                   ReplacedFiles &replaced)
{
    const auto defaultPointer = qScopeGuard([this] { m_services.workspace.setBusyPointer(false); });
    std::vector<WordPage> pages;
    {
        const std::unique_ptr<Recordset> rows = readPages(Statements::wordDocumentPages(project));
        for (; !rows->atEnd(); rows->moveNext())
            pages.push_back(pageOf(*rows));
    }
    if (pages.empty()) {
        m_services.prompter.tell(Question::NoPagesForDocuments,
                                 {u"There is no data or screen shot \r\n"
                                  "for this project. No HTML document created."_s,
                                  m_services.state.AppTitle});
        return Outcome::NoPages;
    }
    constexpr int windowHeight = 450;
    constexpr int windowWidth = 600;
    m_word = m_services.wordProcessor.createApplication();
    m_word->setWindowState(WordApplication::NormalWindow);
    m_word->setHeight(windowHeight);
    m_word->setWidth(windowWidth);
    m_word->setVisible(true);
    WordPass pass(m_services, project, replaced, *m_word, std::move(pages));
    return pass.run(m_documentsWritten) ? Outcome::Finished : Outcome::GivenUp;
}
