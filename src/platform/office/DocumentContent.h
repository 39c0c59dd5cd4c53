#pragma once

#include <QSize>
#include <QString>

#include <optional>
#include <vector>

/// How all characters of a paragraph look, and how it lies on the page.
struct ParagraphLook {
    QString fontName;   ///< empty: the document's own
    int fontSize = 11;  ///< points; fontPoints() gives the one that is written
    int colorIndex = 0; ///< 0 to 16, see WordRange; DocumentColors gives the colours
    bool bold = false;
    bool italic = false;
    bool underline = false;
    int alignment = 0;     ///< 0 left, 1 centre, 2 right
    int outlineLevel = 10; ///< 1 to 9: a heading; 10: none
    bool operator==(const ParagraphLook &) const = default;
};

struct DocumentPicture {
    QString path;
    QString alternativeText;
    bool operator==(const DocumentPicture &) const = default;
};

/// A paragraph holds either a text or a picture.
struct DocumentParagraph {
    QString text; ///< without CR and LF; any other Unicode text, also control characters
    std::optional<DocumentPicture> picture;
    ParagraphLook look;
    bool pageBreakBefore = false;
    bool operator==(const DocumentParagraph &) const = default;
};

/// A document as the layer holds it until it is written. Always valid; may be empty.
struct DocumentContent {
    QString title;        ///< for the document's properties
    QString templatePath; ///< what the document was made from; may be missing
    std::vector<DocumentParagraph> paragraphs;
    bool operator==(const DocumentContent &) const = default;
};

/// The page that documents are laid out on: A4, or Letter where the locale has it. Lengths in twips, a
/// twentieth of a point, 1440 in an inch.
struct PageFormat {
    QSize page;     ///< width and height
    int margin = 0; ///< on all four sides
    QSize textArea() const { return page - QSize(2 * margin, 2 * margin); }

    static PageFormat ofLocale();
};

/// The colour of a colour index as 0xRRGGBB; 0 (automatic) is black, as is whatever is no index.
unsigned documentColor(int colorIndex);

/// The font's size in points: Word's own range, 1 to 1638; what lies outside is the nearest of it.
int fontPoints(const ParagraphLook &look);

/// The size in twips that a picture of so many pixels takes: 15 twips a pixel (96 pixels an inch), made
/// smaller in its proportions where it is wider than the text or would not leave a line of text on a page; at
/// least 1 x 1.
QSize fittedPictureSize(QSize pixels, const PageFormat &page);
