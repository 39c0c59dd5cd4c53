#include "documents/DocumentGeneration.h"
#include "documents/HtmlText.h"
#include "documents/OutputFile.h"
#include "documents/PassFiles.h"
#include "pagestore/Statements.h"
#include "platform/AtomicFile.h"

#include <QScopeGuard>

#include <algorithm>
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

/// One way through a project's pages. What it has written goes again with it, unless keep() was called.
class HtmlPass
{
public:
    explicit HtmlPass(const DocumentServices &services)
        : m_services(services), m_writer(services.state, services.database, services.prompter),
          m_written(services.state.FileSystem), m_contents(HtmlText::encode(contentsHead()))
    {
    }

    /// False when the user has cancelled.
    bool writePages(Recordset &rows)
    {
        ProgressScope progress(m_services.progress, u"Writing HTML pages"_s, rows.recordCount());
        int ordinal = 0;
        for (; !rows.atEnd(); rows.moveNext()) {
            const HtmlPage page = pageOf(rows);
            const QString path = m_writer.ChoosePageHtmlPath(page, ++ordinal);
            m_services.clock.letEventsRun();
            m_written.aboutToWrite(path);
            m_writer.WritePageHtml(page, path);
            m_paths.emplace_back(page.ID, path);
            const QString fileName = FileSystem::bareName(path).trimmed();
            m_contents +=
                HtmlText::encode(contentsRow(ordinal, HtmlText::EscapeHtmlText(fileName), page.PageTitle));
            if (!progress.step(ordinal))
                return false;
        }
        return true;
    }

    void writeContents(const QString &path)
    {
        m_written.aboutToWrite(path);
        AtomicFile::write(path, m_contents + "</table></body></html>\r\n");
    }

    /// In one transaction and only now: one that stayed open while events run would hold what the user
    /// changes meanwhile, and take it back with a pass that is given up.
    void storePaths()
    {
        const std::unique_ptr<DatabaseBatch> batch = m_services.database.beginBatch();
        for (const auto &[id, path] : m_paths)
            m_writer.SetPageHtmlPath(id, path);
        batch->commit();
    }

    void keep() noexcept { m_written.keep(); }

private:
    const DocumentServices &m_services;
    HtmlPageWriter m_writer;
    WrittenFiles m_written;
    QByteArray m_contents;
    std::vector<std::pair<qint64, QString>> m_paths; ///< by page ID
};
} // namespace

bool DocumentGeneration::GenerateHtmlDocuments(const QString &project)
{
    return writeHtmlDocuments(project) == HtmlOutcome::Finished;
}

DocumentGeneration::HtmlOutcome DocumentGeneration::writeHtmlDocuments(const QString &project)
{
    Module1 &state = m_services.state;
    const auto defaultPointer = qScopeGuard([this] { m_services.workspace.setBusyPointer(false); });
    const std::unique_ptr<Recordset> rows =
        m_services.database.openRecordset(Statements::htmlDocumentPages(project));
    if (rows->atEnd()) {
        m_services.prompter.tell(Question::NoPagesForDocuments,
                                 {u"There are no data or screen shot \r\n"
                                  "for this project. No HTML document created."_s,
                                  state.AppTitle});
        return HtmlOutcome::NoPages;
    }
    const std::optional<QString> contentsPath = ChooseOutputFile(
        state.FileSystem, m_services.prompter, state.ProjectDirectory, u"index.htm"_s, u"Contents Page"_s);
    if (!contentsPath)
        return HtmlOutcome::GivenUp;
    HtmlPass pass(m_services);
    if (!pass.writePages(*rows))
        return HtmlOutcome::GivenUp;
    pass.writeContents(*contentsPath);
    pass.storePaths();
    pass.keep();
    state.ContentsPagePath = *contentsPath;
    return HtmlOutcome::Finished;
}
