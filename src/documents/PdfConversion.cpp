#include "documents/PdfConversion.h"

#include "documents/WordFiles.h"
#include "platform/RunTimeError.h"
#include "state/BesideEvents.h"

#include <QFile>
#include <QScopeGuard>

using namespace Qt::Literals::StringLiterals;

bool PdfConversion::AdobePdfPrinterInstalled(const WordProcessor &wordProcessor, Prompter &prompter)
{
    if (wordProcessor.printers().contains(WordProcessor::pdfPrinter()))
        return true;
    prompter.tell(Question::PdfPrinterMissing,
                  {u"Your computer does not have an 'Adobe PDF Printer' installed.\r\n"
                   "Without this 'printer', Shotly cannot convert Word files to\r\n"
                   "Adobe PDF files. 'Adobe PDF Printer' is a small software,\r\n"
                   "provided by Adobe. It can be used to convert Word to PDF file.\r\n"
                   "To download Adobe Acrobat 5.0 or a later version, which will\r\n"
                   "automatically install this 'printer' for you, please visit\r\n"
                   "www.adobe.com"_s});
    return false;
}

QString PdfConversion::GetPort(const QString &)
{
    return {};
}

void PdfConversion::ConvertDocumentToPdf(WordApplication &application, const WordDocument &document,
                                         const std::function<void(const QString &path)> &makeRoom,
                                         const DocumentWork &work)
{
    const QString before = application.activePrinter();
    makeRoom(WordProcessor::pdfPathOf(document.fullName()));
    const QString printer = WordProcessor::pdfPrinter();
    application.setActivePrinter(printer + u" on "_s + GetPort(printer));
    const auto restored = qScopeGuard([&] { application.setActivePrinter(before); });
    application.run(WordProcessor::pdfMacro(), work);
}

namespace
{
/// Forced: it may be one that may only be read.
void deleteOld(const QString &path)
{
    if (!QFile::exists(path))
        return;
    QFile file(path);
    if (!file.remove())
        throw RunTimeError(RunTimeError::PermissionDenied,
                           u"Cannot delete the file \"%1\": %2"_s.arg(path, file.errorString()));
}

void convert(const DocumentServices &services, WordApplication &application, const QString &path)
{
    const WordDocument &document = application.openDocument(path);
    services.prompter.tell(Question::CloseWordFirst,
                           WordFiles::closeWordPrompt(WordFiles::CloseReason::PickedFileAndPdf));
    services.workspace.setBusyPointer(true);
    const auto defaultPointer = qScopeGuard([&] { services.workspace.setBusyPointer(false); });
    ProgressScope progress(services.progress, u"Converting to PDF"_s, 0);
    besideEvents(progress, [&](WorkBesideEvents &work) {
        PdfConversion::ConvertDocumentToPdf(application, document, deleteOld, {work.stop, {}});
    });
    services.workspace.showStatus(u"Converted: "_s + WordProcessor::pdfPathOf(path));
}
} // namespace

void PdfConversion::ConvertWordFileToPdf(const DocumentServices &services)
{
    if (!AdobePdfPrinterInstalled(services.wordProcessor, services.prompter))
        return;
    const AppOptions &options = services.state.AppOptions;
    FilePrompt prompt;
    prompt.title = u"Open"_s;
    prompt.directory = FileSystem::join(options.BaseDirectory, options.ProjectName);
    prompt.filter = u"Word Files (*.doc)|*.doc"_s;
    const std::optional<QString> path = services.prompter.openFile(Question::ChooseWordFile, prompt);
    if (!path || path->isEmpty())
        return;
    if (!services.wordProcessor.canConvertFiles()) {
        services.prompter.tell(Question::WordFileFailed,
                               {u"Converting a Word file that you pick needs LibreOffice, which is not "
                                "installed or not chosen in the options."_s,
                                services.state.AppTitle, Icon::Information});
        return;
    }
    try {
        const auto application = services.wordProcessor.createApplication();
        application->setVisible(true);
        convert(services, *application, *path);
    } catch (const RunTimeError &error) {
        if (error.number() == RunTimeError::UserInterrupt)
            services.workspace.showStatus(u"Cancelled: no PDF was made."_s);
        else
            WordFiles::tellFailure(services.prompter, error, *path);
    }
}
