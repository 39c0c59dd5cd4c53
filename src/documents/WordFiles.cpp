#include "documents/WordFiles.h"

using namespace Qt::Literals::StringLiterals;

void WordFiles::openDocumentOfProject(const DocumentServices &services)
{
    if (!services.directories.existingProject()) {
        services.prompter.tell(
            Question::SelectProjectForDocuments,
            {u"Please select a project from the pink dropdown list."_s, u"Please select a project"_s});
        return;
    }
    if (!services.directories.LocateProjectDirectory())
        return;
    FilePrompt prompt;
    prompt.title = u"Open"_s;
    prompt.directory = services.state.ProjectDirectory;
    prompt.filter = u"Word and PDF Files (*.doc;*.pdf)|*.doc;*.pdf"_s;
    const std::optional<QString> path = services.prompter.openFile(Question::ChooseWordFile, prompt);
    if (!path)
        return;
    if (!path->endsWith(u".pdf"_s, Qt::CaseInsensitive)) {
        open(services.wordProcessor, services.prompter, *path);
        return;
    }
    try {
        services.programs.openWithDesktop(*path);
    } catch (const RunTimeError &error) {
        services.prompter.tell(Question::WordFileFailed,
                               {error.description(), services.state.AppTitle, Icon::Exclamation});
    }
}

void WordFiles::open(WordProcessor &wordProcessor, Prompter &prompter, const QString &path)
{
    try {
        const auto application = wordProcessor.createApplication();
        application->setVisible(true);
        application->openDocument(path);
    } catch (const RunTimeError &error) {
        tellFailure(prompter, error, path);
    }
}

void WordFiles::tellFailure(Prompter &prompter, const RunTimeError &error, const QString &path)
{
    constexpr int distillerMissing = 5216;
    const QString number = QString::number(error.number());
    PromptText text;
    switch (error.number()) {
    case RunTimeError::CannotCreateObject:
        text.text = u"Microsoft Word is not installed or is not functioning right. Error Number: "_s + number;
        break;
    case RunTimeError::WordFileMissing:
        text.text = u"File does not exist: "_s + path + u" Error Number: "_s + number;
        break;
    case distillerMissing:
        text = {u"Could not find Acrobat Distiller"_s, u"ERROR"_s};
        break;
    default:
        text = {u"Error "_s + number + u": "_s + error.description(), u"Module1.Shotly"_s};
    }
    prompter.tell(Question::WordFileFailed, text);
}

PromptText WordFiles::closeWordPrompt(CloseReason reason)
{
    if (reason == CloseReason::ProjectFiles)
        return {u"If the file you are creating is already open elsewhere, Microsoft Word \r\n"
                "will generate a share violation error.\r\n\r\n"
                "So either close all Word applications now (this is recommended).\r\n"
                "Or, close them if they are open with the current project files."_s,
                u"Please Close Microsoft Word"_s, Icon::Exclamation};
    const QString which = reason == CloseReason::PickedFileAndPdf ? u"file"_s : u"current project files"_s;
    return {u"If the file you are creating is already open elsewhere, Microsoft Word \r\n"
            "and Adobe PDF will generate a share violation error.\r\n\r\n"
            "So either close all Word and Adobe applications now(this is recommended).\r\n"
            "Or, close them if they are open with the "_s +
                which +
                u".\r\n\r\n"
                "Please click the 'Save' button when it prompts, but do NOT click on \r\n"
                "anything else during generating PDF to avoid to see rather confusing \r\n"
                "'Retry' message."_s,
            u"Please Close Microsoft Word and Adobe Applications"_s, Icon::Exclamation};
}
