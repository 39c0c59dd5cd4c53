#include "documents/DocumentGeneration.h"

#include "documents/WordFiles.h"
#include "platform/RunTimeError.h"

#include <QLocale>
#include <QScopeGuard>

#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace
{
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
        m_services.workspace.setBusyPointer(true); // the HTML pages have taken it away
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

/// The previous documents make room for new ones, or come back.
bool DocumentGeneration::replaceDocuments(const Kind &kind)
{
    const Module1 &state = m_services.state;
    Outcome outcome = Outcome::GivenUp;
    std::optional<QString> failure;
    bool complete = true;
    bool hadPrevious = false;
    {
        const ProgressScope box(m_services.progress, kind.title, 0);
        MovedDocuments previous(state.FileSystem, state.ProjectDirectory);
        try {
            const auto moving =
                m_services.directories.MoveOldDocuments(kind.moved, previous, m_services.progress);
            if (moving == ProjectDirectories::Moving::NoDirectory)
                return false;
            if (moving == ProjectDirectories::Moving::Done)
                outcome = kind.write();
        } catch (const RunTimeError &error) {
            failure = error.description();
        }
        hadPrevious = previous.count() > 0;
        if (outcome == Outcome::GivenUp) {
            complete = kind.undo();
            complete = previous.putBack(m_services.progress) && complete;
        } else {
            kind.keep();
            previous.keep(m_services.progress);
        }
    }
    if (outcome == Outcome::GivenUp) {
        const QString end = failure ? u"Failed"_s : u"Cancelled"_s;
        if (complete)
            m_services.workspace.showStatus(
                end + (hadPrevious ? u": the previous documents are back."_s : u": "_s + kind.none));
        if (failure || !complete)
            tellFailure(kind.moved, failure.value_or(u"the generation was cancelled"_s), complete);
    }
    return outcome == Outcome::Finished;
}

bool DocumentGeneration::replaceHtmlDocuments()
{
    const Module1 &state = m_services.state;
    WrittenFiles written(state.FileSystem);
    return replaceDocuments({u"HTML"_s, u"Generating the HTML pages"_s, u"no HTML pages were written."_s,
                             [&] { return writeHtmlDocuments(state.AppOptions.ProjectName, written); },
                             [&] { return written.undo(m_services.progress); }, [&] { written.keep(); }});
}

bool DocumentGeneration::replaceWordDocuments()
{
    const Module1 &state = m_services.state;
    ReplacedFiles replaced(state.FileSystem);
    return replaceDocuments({u"Word"_s, u"Generating the Word documents"_s,
                             u"no Word documents were written."_s,
                             [&] { return writeWordDocuments(state.AppOptions.ProjectName, replaced); },
                             [&] { return replaced.undo(); }, [&] { replaced.keep(); }});
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

void DocumentGeneration::tellFailure(const QString &kind, const QString &reason, bool previousAreBack)
{
    QString text = u"No %1 documents were created: "_s.arg(kind) + reason;
    if (!previousAreBack)
        text +=
            u"\r\nSome of the previous ones could not be put back. They are in the folder %1 or in hidden "
            "files of the project's folder whose names end with old and a number."_s.arg(
                ProjectDirectories::oldDocumentFolder(m_services.state.ProjectDirectory));
    m_services.prompter.tell(Question::DocumentsFailed, {text, m_services.state.AppTitle, Icon::Exclamation});
}

void DocumentGeneration::GenerateWordOutput()
{
    const AppOptions &options = m_services.state.AppOptions;
    m_services.prompter.tell(Question::CloseWordFirst,
                             WordFiles::closeWordPrompt(options.AutoConvertWord2PDF == 0
                                                            ? WordFiles::CloseReason::ProjectFiles
                                                            : WordFiles::CloseReason::ProjectFilesAndPdf));
    if (!m_services.wordProcessor.wordProcessorInstalled()) {
        m_services.prompter.tell(
            Question::WordNotInstalled,
            {u"Microsoft Word is not installed or is not functioning right. Error Number: 429"_s,
             m_services.state.AppTitle});
        return;
    }
    m_services.workspace.showStatus(QString());
    if (replaceWordDocuments())
        showWord();
    m_word.reset();
}

/// The word processor's window with what was written.
void DocumentGeneration::showWord()
{
    const bool withPdf = m_services.state.AppOptions.AutoConvertWord2PDF == 1;
    QString status = m_documentsWritten == 1 ? u"1 Word document written"_s
                                             : QLocale(QLocale::English).toString(m_documentsWritten) +
                                                   u" Word documents written"_s;
    status += withPdf ? u", and as PDF."_s : u"."_s;
    try {
        if (m_services.attended)
            m_word->show();
    } catch (const RunTimeError &error) {
        status += u" It cannot be shown: "_s + error.description();
    }
    m_services.workspace.showStatus(status);
}
