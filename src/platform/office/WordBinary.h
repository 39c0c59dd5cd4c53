#pragma once

#include "platform/office/DocumentContent.h"
#include "platform/office/DocumentPictures.h"
#include "platform/WordProcessor.h"

/// Writes a Word 97 document: a compound file with the structures of [MS-DOC], its pictures as [MS-ODRAW]
/// describes them. Headings have the styles "heading 1" to "heading 9", but look as their paragraph says.
///
/// Control characters, which would be marks of tables, fields and sections in such a file, become blanks,
/// except for tabulators; halves of surrogate pairs become U+FFFD. A document without paragraphs is written
/// as one empty paragraph. The document's own font is Times New Roman. Memory does not grow with the
/// pictures.
///
/// Replaces `path` atomically. Throws RunTimeError: UserInterrupt when a stop was requested, which is looked
/// at between pictures; what `pictures` throws; WordFileNotWritten when the file would exceed 2 GB; what
/// writing a file throws. Then the old file is still there.
void writeWordDocument(const DocumentContent &content, DocumentPictures &pictures, const PageFormat &page,
                       const QString &path, const DocumentWork &work);
