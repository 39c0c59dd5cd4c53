#include "documents/DocumentGeneration.h"

#include "platform/RunTimeError.h"

#include <QLocale>
#include <QScopeGuard>

#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace
{
PromptText closeWordPrompt(bool withPdf)
{
    if (!withPdf)
        return {u"If the file you are creating is already open elsewhere, Microsoft Word \r\n"
                "will generate a share violation error.\r\n\r\n"
                "So either close all Word applications now (this is recommended).\r\n"
                "Or, close them if they are open with the current project files."_s,
                u"Please Close Microsoft Word"_s, Icon::Exclamation};
    return {u"If the file you are creating is already open elsewhere, Microsoft Word \r\n"
            "and Adobe PDF will generate a share violation error.\r\n\r\n"
            "So either close all Word and Adobe applications now(this is recommended).\r\n"
            "Or, close them if they are open with the current project files.\r\n\r\n"
            "Please click the 'Save' button when it prompts, but do NOT click on \r\n"
            "anything else during generating PDF to avoid to see rather confusing \r\n"
            "'Retry' message."_s,
            u"Please Close Microsoft Word and Adobe Applications"_s, Icon::Exclamation};
}

bool wantsHtml(Prompter &prompter)
{
    return prompter.ask(Question::DocumentFormat, Buttons::YesNo,
                        {u"Generate HTML format or Microsoft Word format documents?\r\n\r\n"
                         "Click Yes for HTML format.\r\n"
                         "Click No for Word Format.\r\n"
                         "Note: If you want a PDF file be created, you will need\r\n"
                         "its Microsoft Word file be created first."_s,
                         u"Generate HTML document?"_s, Icon::Question}) == Answer::Yes;
}
} // namespace

DocumentGeneration::DocumentGeneration(const DocumentServices &services) : m_services(services) {}

void DocumentGeneration::CreateDocuments()
{
    if (m_running)
        return;
    m_running = true;
    const auto finished = qScopeGuard([this] { m_running = false; });
    if (!m_services.directories.existingProject()) {
        m_services.prompter.tell(Question::SelectProjectForDocuments,
                                 {u"Shotly can only generate HTML document for an existing project. \r\n"
                                  "Please select a project from the pink dropdown list."_s,
                                  u"Please select a project"_s});
        return;
    }
    if (!m_services.directories.LocateProjectDirectory())
        return;
    m_services.workspace.setBusyPointer(true);
    const auto defaultPointer = qScopeGuard([this] { m_services.workspace.setBusyPointer(false); });
    switch (m_services.state.AppOptions.FinalDocumentFormat) {
    case 0:
        GenerateHtmlOutput();
        break;
    case 1:
        GenerateWordOutput();
        break;
    case 2:
        if (wantsHtml(m_services.prompter))
            GenerateHtmlOutput();
        else
            GenerateWordOutput();
        break;
    case 3:
        GenerateHtmlOutput();
        GenerateWordOutput();
        break;
    default:
        break;
    }
}

void DocumentGeneration::GenerateHtmlOutput()
{
    Module1 &state = m_services.state;
    m_services.workspace.showStatus(QString());
    if (!replaceHtmlDocuments())
        return;
    tellCreated();
    state.ShowContentsRequested = true;
    m_services.workspace.openContentsPage();
}

/// The previous pages make room for new ones, or come back.
bool DocumentGeneration::replaceHtmlDocuments()
{
    const Module1 &state = m_services.state;
    HtmlOutcome outcome = HtmlOutcome::GivenUp;
    std::optional<QString> failure;
    bool complete = true;
    bool hadPrevious = false;
    {
        const ProgressScope box(m_services.progress, u"Generating the HTML pages"_s, 0);
        MovedDocuments previous(state.FileSystem, state.ProjectDirectory);
        WrittenFiles written(state.FileSystem);
        try {
            const auto moving =
                m_services.directories.MoveOldDocuments(u"HTML"_s, previous, m_services.progress);
            if (moving == ProjectDirectories::Moving::NoDirectory)
                return false;
            if (moving == ProjectDirectories::Moving::Done)
                outcome = writeHtmlDocuments(state.AppOptions.ProjectName, written);
        } catch (const RunTimeError &error) {
            failure = error.description();
        }
        hadPrevious = previous.count() > 0;
        if (outcome == HtmlOutcome::GivenUp) {
            complete = written.undo(m_services.progress);
            complete = previous.putBack(m_services.progress) && complete;
        } else {
            written.keep();
            previous.keep(m_services.progress);
        }
    }
    if (outcome == HtmlOutcome::GivenUp) {
        const QString end = failure ? u"Failed"_s : u"Cancelled"_s;
        if (complete)
            m_services.workspace.showStatus(end + (hadPrevious ? u": the previous documents are back."_s
                                                               : u": no HTML pages were written."_s));
        if (failure || !complete)
            tellFailure(failure.value_or(u"the generation was cancelled"_s), complete);
    }
    return outcome == HtmlOutcome::Finished;
}

void DocumentGeneration::tellCreated()
{
    const Module1 &state = m_services.state;
    m_services.workspace.showStatus(m_pagesWritten == 1 ? u"1 HTML page written."_s
                                                        : QLocale(QLocale::English).toString(m_pagesWritten) +
                                                              u" HTML pages written."_s);
    if (state.AppOptions.ShowLessMessage == 1)
        return;
    m_services.prompter.tell(
        Question::HtmlPagesCreated,
        {u"HTML pages created for this project are in \r\n"_s +
             FileSystem::join(state.AppOptions.BaseDirectory, state.AppOptions.ProjectName) +
             u"\r\n\r\nThe file names end with .htm"_s,
         state.AppTitle});
}

void DocumentGeneration::tellFailure(const QString &reason, bool previousAreBack)
{
    QString text = u"No HTML documents were created: "_s + reason;
    if (!previousAreBack)
        text += u"\r\nSome of the previous ones could not be put back from the folder "_s +
                ProjectDirectories::oldDocumentFolder(m_services.state.ProjectDirectory);
    m_services.prompter.tell(Question::DocumentsFailed, {text, m_services.state.AppTitle, Icon::Exclamation});
}

void DocumentGeneration::GenerateWordOutput()
{
    const AppOptions &options = m_services.state.AppOptions;
    m_services.prompter.tell(Question::CloseWordFirst, closeWordPrompt(options.AutoConvertWord2PDF != 0));
    if (!m_services.wordDocuments || !m_services.wordDocuments->available()) {
        m_services.prompter.tell(
            Question::WordNotInstalled,
            {u"Microsoft Word is not installed or is not functioning right. Error Number: 429"_s,
             m_services.state.AppTitle});
        return;
    }
    if (m_services.directories.MoveOldDocuments(u"Word"_s))
        m_services.wordDocuments->GenerateWordDocuments(options.ProjectName);
}
