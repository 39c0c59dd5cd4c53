#pragma once

#include "platform/office/DocumentContent.h"
#include "platform/office/DocumentPictures.h"
#include "platform/WordProcessor.h"

/// What the parts of the layer do differently with documents: write them, convert them, show them. Everything
/// throws RunTimeError, leaves an existing file as it is then, and writes atomically; a requested stop is
/// RunTimeError::UserInterrupt.
class DocumentBackend
{
public:
    virtual ~DocumentBackend() = default;

    /// Writes a Word 97 document.
    virtual void save(const DocumentContent &content, DocumentPictures &pictures, const QString &path,
                      const DocumentWork &work) = 0;

    /// Writes the PDF of a document that save() has written to `documentPath`.
    virtual void savePdf(const DocumentContent &content, DocumentPictures &pictures,
                         const QString &documentPath, const QString &pdfPath, const DocumentWork &work) = 0;

    /// Writes the PDF of any Word file.
    virtual void convertFile(const QString &documentPath, const QString &pdfPath,
                             const DocumentWork &work) = 0;

    /// Shows a document in a window that outlives the program. `rewritten`: a window that has it open already
    /// shows what the file was before.
    virtual void open(const QString &path, bool rewritten) = 0;
};
