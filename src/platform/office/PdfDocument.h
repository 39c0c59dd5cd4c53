#pragma once

#include "platform/office/DocumentContent.h"
#include "platform/office/DocumentPictures.h"
#include "platform/WordProcessor.h"

#include <QString>

/// Writes a document as PDF (ISO 32000-1), atomically: laid out like the Word document of the same content,
/// with embedded fonts, an outline of its headings and alternative texts of its pictures. The pictures are
/// the encoded ones, byte for byte. The memory it takes does not grow with them. work.progressed is called
/// while they are written, after all of them have been encoded. May be called in any thread; wants a
/// QGuiApplication.
///
/// Throws RunTimeError: UserInterrupt when work.stop was requested, what the pictures and AtomicFile throw,
/// WordFileNotWritten when the PDF could not be made.
void writePdfDocument(const DocumentContent &content, DocumentPictures &pictures, const PageFormat &format,
                      const QString &path, const DocumentWork &work);
