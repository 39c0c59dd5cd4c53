#pragma once

#include "documents/DocumentServices.h"

#include <functional>

/// PDF files out of documents of the word processor, which prints them to its PDF printer.
namespace PdfConversion
{
/// Is there a printer named exactly "Adobe PDF"? If not, a message says so.
bool AdobePdfPrinterInstalled(const WordProcessor &wordProcessor, Prompter &prompter);

/// The port part of "printer on port"; empty for every printer.
QString GetPort(const QString &printer);

/// Converts the application's active document, which is `document`: the PDF of the same name lies next to it
/// then. `makeRoom` takes an older PDF away before. The active printer is the one that it was, also after a
/// failure, which is thrown as RunTimeError.
void ConvertDocumentToPdf(WordApplication &application, const WordDocument &document,
                          const std::function<void(const QString &path)> &makeRoom, const DocumentWork &work);

/// The menu command: the user picks a Word file, which is opened and converted. Tells what fails.
void ConvertWordFileToPdf(const DocumentServices &services);
} // namespace PdfConversion
