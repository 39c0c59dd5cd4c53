#pragma once

#include "documents/DocumentServices.h"
#include "platform/RunTimeError.h"

/// Files of the word processor as the user meets them: opening them, and what is said about them.
namespace WordFiles
{
/// "Open Word or PDF Document": the documents of the current project; the chosen one is opened.
void openDocumentOfProject(const DocumentServices &services);

/// Opens a Word file in a window of the word processor. Tells what fails.
void open(WordProcessor &wordProcessor, Prompter &prompter, const QString &path);

/// The message for a failure of the word processor, by the error's number.
void tellFailure(Prompter &prompter, const RunTimeError &error, const QString &path);

/// The warning before documents are written.
enum class CloseReason { ProjectFiles, ProjectFilesAndPdf, PickedFileAndPdf };
PromptText closeWordPrompt(CloseReason reason);
} // namespace WordFiles
