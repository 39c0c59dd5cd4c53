#pragma once

#include "platform/office/DocumentContent.h"
#include "platform/office/DocumentPictures.h"
#include "platform/WordProcessor.h"

#include <QByteArray>
#include <QIODevice>
#include <QRect>

#include <vector>

/// A paragraph, or what a page holds of it.
struct PdfPart {
    std::size_t paragraph = 0;
    QRect picture; ///< its place in twips from the page's upper left corner; null for a text
};

/// A paragraph that the table of contents beside the document lists.
struct PlacedHeading {
    QString title; ///< one line, not empty
    int level = 1; ///< 1 to 9
    int top = 0;   ///< twips below the page's upper edge
};

struct PdfPage {
    std::vector<PdfPart> parts; ///< in the order of reading, without blank texts
    std::vector<PlacedHeading> headings;
};

/// The operators with which the part `index` of a page begins if it is a text. They draw a point far outside
/// the page and are there to be found.
QByteArray beginningOfText(std::size_t index);

/// Lays a document out and writes its pages into `file`, a PDF with embedded fonts and without the pictures.
/// At least one page. Throws what the pictures throw, and UserInterrupt.
std::vector<PdfPage> layPdfOut(const DocumentContent &content, DocumentPictures &pictures,
                               const PageFormat &format, QIODevice &file, const DocumentWork &work);
