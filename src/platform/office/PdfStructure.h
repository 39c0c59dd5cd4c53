#pragma once

#include "platform/office/PdfLayout.h"
#include "platform/office/Qpdf.h"

#include <vector>

/// What belongs to a PDF (ISO 32000-1) as a whole, put into one that is in memory. All of them throw what
/// libqpdf throws.
namespace PdfStructure
{
/// What a page has beside its text, and the page it became.
struct Page {
    PdfPage content;
    QPDFObjectHandle object;
};

/// A tree of bookmarks; a heading lies below the nearest one of a smaller level before it. Nothing is added
/// without headings.
void addOutline(QPDF &pdf, const std::vector<Page> &pages);

/// The kind of structure element that a paragraph is.
const char *kindOf(const DocumentParagraph &paragraph);

/// Tells the paragraphs in the order of reading, and the alternative texts and places of the pictures. The
/// number of a part within its page is that of its marked content.
void addTags(QPDF &pdf, const std::vector<Page> &pages, const DocumentContent &content);

/// Title and producer, and that a window shows the title.
void setProperties(QPDF &pdf, const QString &title);

/// The height of the page in points; positions are counted from its lower edge.
double heightOf(const QPDFObjectHandle &page);

/// In points: left, bottom, width and height.
struct Place {
    double left;
    double bottom;
    double width;
    double height;
};
Place placeOn(const QPDFObjectHandle &page, const QRect &twips);
} // namespace PdfStructure
