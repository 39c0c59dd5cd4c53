#include "platform/office/BuiltinBackend.h"

#include "platform/office/PdfDocument.h"
#include "platform/office/WordBinary.h"
#include "platform/RunTimeError.h"

void BuiltinBackend::save(const DocumentContent &content, DocumentPictures &pictures, const QString &path,
                          const DocumentWork &work)
{
    writeWordDocument(content, pictures, PageFormat::ofLocale(), path, work);
}

void BuiltinBackend::savePdf(const DocumentContent &content, DocumentPictures &pictures, const QString &,
                             const QString &pdfPath, const DocumentWork &work)
{
    writePdfDocument(content, pictures, PageFormat::ofLocale(), pdfPath, work);
}

void BuiltinBackend::convertFile(const QString &documentPath, const QString &, const DocumentWork &)
{
    throw RunTimeError(RunTimeError::CannotCreateObject,
                       QStringLiteral("Converting the file \"%1\" to PDF needs LibreOffice, which is not "
                                      "installed or not chosen in the options.")
                           .arg(documentPath));
}
