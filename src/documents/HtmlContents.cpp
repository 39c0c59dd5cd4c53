#include "documents/DocumentGeneration.h"
#include "documents/HtmlText.h"
#include "documents/OutputFile.h"
#include "documents/PassFiles.h"
#include "pagestore/Statements.h"
#include "state/BesideEvents.h"

#include <QScopeGuard>

#include <algorithm>
#include <future>
#include <limits>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace
{
QString contentsHead()
{
    return u"<!DOCTYPE HTML PUBLIC '-//W3C//DTD HTML 4.01 Transitional//EN'>\r\n"
           "<html>\r\n<head>\r\n<title></title>\r\n"
           "<meta http-equiv='Content-Type' content='text/html; charset=iso-8859-1'>\r\n"
           "</head>\r\n\r\n<body>\r\n"
           "<font size='2' face='Verdana, Arial, Helvetica, sans-serif'>\r\n"
           "</font><font face='Verdana, Arial, Helvetica, sans-serif'>"
           "<table width='85%' border='0' align='left'>\r\n"
           "  <tr> \r\n    <td colspan='2'>&nbsp;</td>\r\n  </tr>\r\n"
           "  <tr> \r\n    <td colspan='2' align='left'><font "
           "size='2'><strong>Contents</strong></font></td>\r\n"
           "  </tr>\r\n"
           "  <tr> \r\n    <td colspan='2' align='left'><hr size='1' noshade></td>\r\n  </tr>"_s;
}

QString contentsRow(int ordinal, const QString &fileName, const QString &title)
{
    const QString number = QString::number(ordinal);
    return u"  <tr> \r\n    <td align='left' width='95%'><font size='2'><a href='"_s + fileName + u"'>"_s +
           number + u". "_s + title + u" </a></font></td><td width='5%' align='left'><font size='2'> \r\n"_s +
           number + u"</font></td></tr> \r\n"_s;
}

QString escapedText(const Recordset &rows, const QString &column)
{
    return HtmlText::EscapeHtmlText(rows.field(column).toString());
}

HtmlPage pageOf(const Recordset &rows)
{
    using Limits = std::numeric_limits<std::int16_t>;
    HtmlPage page;
    page.PageTitle = escapedText(rows, u"PageTitle"_s);
    page.SubTitle = escapedText(rows, u"SubTitle"_s);
    page.ScreenShotFilePath = rows.field(u"ScreenShotFilePath"_s).toString();
    page.PageSummary = escapedText(rows, u"PageSummary"_s);
    page.Note1 = escapedText(rows, u"Note1"_s);
    page.Note2 = escapedText(rows, u"Note2"_s);
    page.Layout = static_cast<std::int16_t>(
        std::clamp<qint64>(rows.field(u"Layout"_s).toLongLong(), Limits::min(), Limits::max()));
    page.PageNumber = rows.field(u"PageNumber"_s).toString();
    page.ID = rows.field(u"ID"_s).toLongLong();
    page.HTMLFilePath = rows.field(u"HTMLFilePath"_s).toString();
    return page;
}

/// One way through a project's pages. Files are written in another thread while the next pages are put into
/// words in this one.
class HtmlPass
{
public:
    HtmlPass(const DocumentServices &services, WrittenFiles &written)
        : m_services(services), m_writer(services.state, services.prompter), m_written(written),
          m_contents(HtmlText::encode(contentsHead()))
    {
    }

    /// False when the user has cancelled.
    bool writePages(Recordset &rows)
    {
        ProgressScope progress(m_services.progress, u"Writing HTML pages"_s, rows.recordCount());
        for (; !rows.atEnd(); rows.moveNext()) {
            const HtmlPage page = pageOf(rows);
            // Which names are taken is only certain when everything has been written.
            if (page.ScreenShotFilePath.trimmed().isEmpty())
                writeWaiting(progress);
            const QString path = m_writer.ChoosePageHtmlPath(page, ++m_pages);
            m_waiting.emplace_back(path, m_writer.pageBytes(page));
            if (path != page.HTMLFilePath)
                m_changedPaths += Statements::setHtmlPath(page.ID, path);
            const QString fileName = FileSystem::bareName(path).trimmed();
            m_contents +=
                HtmlText::encode(contentsRow(m_pages, HtmlText::fileReference(fileName), page.PageTitle));
            if (m_waiting.size() == atOnce)
                startWriting(progress);
            if (!progress.step(m_pages))
                return false;
        }
        writeWaiting(progress);
        return true;
    }

    void writeContents(const QString &path)
    {
        ProgressScope progress(m_services.progress, u"Writing the contents page"_s, 0);
        m_waiting.emplace_back(path, m_contents + "</table></body></html>\r\n");
        writeWaiting(progress);
    }

    /// In one transaction and only now: one that stayed open while pages are written would keep everybody
    /// else from the database. False when the user has cancelled.
    bool storePaths()
    {
        ProgressScope progress(m_services.progress, u"Storing the file names"_s, 0);
        const std::unique_ptr<Connection> connection = m_services.database.connect();
        return besideEvents(progress, [&](WorkBesideEvents &work) {
            return connection->executeTogether(m_changedPaths, work.stop);
        });
    }

    int pages() const { return m_pages; }

private:
    static constexpr std::size_t atOnce = 64;
    using Files = std::vector<std::pair<QString, QByteArray>>;

    /// Hands over what waits as soon as the files before it are written.
    void startWriting(ProgressScope &progress)
    {
        finishWriting(progress);
        m_writing = std::async(std::launch::async, [this, files = std::exchange(m_waiting, {})] {
            for (const auto &[path, bytes] : files)
                m_written.write(path, bytes);
        });
    }

    void finishWriting(ProgressScope &progress)
    {
        if (!m_writing.valid())
            return;
        while (m_writing.wait_for(std::chrono::milliseconds(2)) != std::future_status::ready)
            progress.step(m_pages);
        m_writing.get();
    }

    void writeWaiting(ProgressScope &progress)
    {
        startWriting(progress);
        finishWriting(progress);
    }

    const DocumentServices &m_services;
    HtmlPageWriter m_writer;
    WrittenFiles &m_written; ///< the writing thread's while there is one
    QByteArray m_contents;
    QStringList m_changedPaths; ///< statements
    int m_pages = 0;
    Files m_waiting;
    std::future<void> m_writing; ///< last: waited for before anything else goes
};
} // namespace

bool DocumentGeneration::GenerateHtmlDocuments(const QString &project)
{
    WrittenFiles written(m_services.state.FileSystem);
    if (writeHtmlDocuments(project, written) == Outcome::Finished) {
        written.keep();
        return true;
    }
    written.undo(m_services.progress);
    return false;
}

DocumentGeneration::Outcome DocumentGeneration::writeHtmlDocuments(const QString &project,
                                                                   WrittenFiles &written)
{
    Module1 &state = m_services.state;
    const auto defaultPointer = qScopeGuard([this] { m_services.workspace.setBusyPointer(false); });
    const std::unique_ptr<Recordset> rows = readPages(Statements::htmlDocumentPages(project));
    if (rows->atEnd()) {
        m_services.prompter.tell(Question::NoPagesForDocuments,
                                 {u"There are no data or screen shot \r\n"
                                  "for this project. No HTML document created."_s,
                                  state.AppTitle});
        return Outcome::NoPages;
    }
    const std::optional<QString> contentsPath = ChooseOutputFile(
        state.FileSystem, m_services.prompter, state.ProjectDirectory, u"index.htm"_s, u"Contents Page"_s);
    if (!contentsPath)
        return Outcome::GivenUp;
    HtmlPass pass(m_services, written);
    if (!pass.writePages(*rows))
        return Outcome::GivenUp;
    pass.writeContents(*contentsPath);
    if (!pass.storePaths())
        return Outcome::GivenUp;
    state.ContentsPagePath = *contentsPath;
    m_pagesWritten = pass.pages();
    return Outcome::Finished;
}

std::unique_ptr<Recordset> DocumentGeneration::readPages(const QString &query)
{
    ProgressScope progress(m_services.progress, u"Reading the pages"_s, 0);
    const std::unique_ptr<Connection> connection = m_services.database.connect();
    return besideEvents(progress,
                        [&](WorkBesideEvents & /*work*/) { return connection->openRecordset(query); });
}
