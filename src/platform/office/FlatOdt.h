#pragma once

#include "platform/office/DocumentPictures.h"
#include "platform/office/OdtSkeleton.h"
#include "platform/WordProcessor.h"

class QIODevice;

/// Writes documents as Flat ODT: OpenDocument 1.2 (OASIS standard, ISO/IEC 26300) in one XML file, which
/// LibreOffice turns into every other format. The pictures pass through one by one; the memory does not grow
/// with them.
namespace FlatOdt
{
/// Puts the paragraphs behind what the skeleton holds; an empty paragraph at its end makes room for them.
/// Headings get the style "Heading 1" to "Heading 9" where the skeleton has none of that name, else one of
/// our own, so that being a heading changes no look. Of characters that XML has no place for, U+000B is a
/// line end, half characters become U+FFFD, the others are left out.
///
/// Throws RunTimeError: UserInterrupt after a stop request, what a picture or the device fails with.
void write(const DocumentContent &content, DocumentPictures &pictures, const OdtSkeleton &skeleton,
           QIODevice &device, const DocumentWork &work);
} // namespace FlatOdt
