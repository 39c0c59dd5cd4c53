#pragma once

#include "platform/office/OdtSkeleton.h"
#include "platform/office/OfficeProgram.h"

/// The document template that new documents are made from, usually Shotly.dot beside the program's other
/// files. The user may put another one in its place: a Word template or document of any version, one of
/// OpenDocument, also as Flat ODT, whatever the name says.
namespace DocumentTemplate
{
/// Throws RunTimeError naming the file when it is missing (WordFileMissing), cannot be read, or begins like
/// none of the known formats (WordFileNotWritten).
void check(const QString &path);

/// Is it the template that Shotly delivers, which is an empty document?
bool isDelivered(const QString &path);

/// The template as a skeleton. Has LibreOffice convert it, once for each version of the file: what came of it
/// is kept beside the profiles. Throws what check() and OfficeProgram::convert() throw, and
/// WordFileNotWritten when LibreOffice cannot read it as the format that it begins like.
OdtSkeleton read(const QString &path, const OfficeProgram &office, const std::stop_token &stop);
} // namespace DocumentTemplate
