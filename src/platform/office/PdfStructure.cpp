#include "platform/office/PdfStructure.h"

#include <algorithm>
#include <array>
#include <string>

namespace
{
constexpr double twipsPerPoint = 20;

QPDFObjectHandle name(const char *text)
{
    return QPDFObjectHandle::newName(text);
}

QPDFObjectHandle number(qsizetype value)
{
    return QPDFObjectHandle::newInteger(value);
}

QPDFObjectHandle real(double value)
{
    constexpr int decimals = 2;
    return QPDFObjectHandle::newReal(value, decimals);
}

QPDFObjectHandle string(const QString &text)
{
    return QPDFObjectHandle::newUnicodeString(text.toStdString());
}

QPDFObjectHandle object(QPDF &pdf, const char *type)
{
    QPDFObjectHandle dictionary = QPDFObjectHandle::newDictionary();
    dictionary.replaceKey("/Type", name(type));
    return pdf.makeIndirectObject(dictionary);
}

/// An entry of the outline that may get more entries below it, or the outline itself.
struct OpenEntry {
    int level;
    QPDFObjectHandle entry;
    QPDFObjectHandle last; ///< below it; null when there is none
    int below = 0;         ///< how many are, at any depth
};

void closeEntry(std::vector<OpenEntry> &open)
{
    const OpenEntry closed = open.back();
    open.pop_back();
    QPDFObjectHandle entry = closed.entry;
    if (closed.below > 0) {
        QPDFObjectHandle last = closed.last;
        entry.replaceKey("/Last", last);
        entry.replaceKey("/Count", number(closed.below));
    }
    if (!open.empty())
        open.back().below += closed.below;
}

void addEntry(OpenEntry &parent, QPDFObjectHandle &entry)
{
    entry.replaceKey("/Parent", parent.entry);
    if (parent.last.isInitialized()) {
        entry.replaceKey("/Prev", parent.last);
        parent.last.replaceKey("/Next", entry);
    } else {
        parent.entry.replaceKey("/First", entry);
    }
    parent.last = entry;
    ++parent.below;
}

QPDFObjectHandle headingEntry(QPDF &pdf, const PlacedHeading &heading, const QPDFObjectHandle &page)
{
    QPDFObjectHandle entry = pdf.makeIndirectObject(QPDFObjectHandle::newDictionary());
    entry.replaceKey("/Title", string(heading.title));
    const double top = PdfStructure::heightOf(page) - heading.top / twipsPerPoint;
    QPDFObjectHandle zoom = QPDFObjectHandle::newNull(); // stays as it is
    entry.replaceKey("/Dest", QPDFObjectHandle::newArray(std::vector<QPDFObjectHandle>{
                                  page, name("/XYZ"), number(0), real(top), zoom}));
    return entry;
}

QPDFObjectHandle element(QPDF &pdf, const char *kind, const QPDFObjectHandle &parent)
{
    QPDFObjectHandle result = object(pdf, "/StructElem");
    result.replaceKey("/S", name(kind));
    result.replaceKey("/P", parent);
    return result;
}

/// One more place where the content of an element is.
void addContent(QPDFObjectHandle &element, const QPDFObjectHandle &page, int mark)
{
    QPDFObjectHandle content = QPDFObjectHandle::newDictionary();
    content.replaceKey("/Type", name("/MCR"));
    content.replaceKey("/Pg", page);
    content.replaceKey("/MCID", number(mark));
    if (!element.hasKey("/K"))
        element.replaceKey("/K", QPDFObjectHandle::newArray());
    element.getKey("/K").appendItem(content);
}

/// Where a figure is, for programs that arrange the text anew.
QPDFObjectHandle figureLayout(const PdfStructure::Place &place)
{
    QPDFObjectHandle layout = QPDFObjectHandle::newDictionary();
    layout.replaceKey("/O", name("/Layout"));
    layout.replaceKey("/Placement", name("/Block"));
    layout.replaceKey("/BBox", QPDFObjectHandle::newArray(std::vector<QPDFObjectHandle>{
                                   real(place.left), real(place.bottom), real(place.left + place.width),
                                   real(place.bottom + place.height)}));
    return layout;
}
} // namespace

double PdfStructure::heightOf(const QPDFObjectHandle &page)
{
    constexpr int top = 3;
    QPDFObjectHandle copy = page;
    return copy.getKey("/MediaBox").getArrayItem(top).getNumericValue();
}

PdfStructure::Place PdfStructure::placeOn(const QPDFObjectHandle &page, const QRect &twips)
{
    return {twips.left() / twipsPerPoint, heightOf(page) - (twips.top() + twips.height()) / twipsPerPoint,
            twips.width() / twipsPerPoint, twips.height() / twipsPerPoint};
}

void PdfStructure::addOutline(QPDF &pdf, const std::vector<Page> &pages)
{
    QPDFObjectHandle outline = object(pdf, "/Outlines");
    std::vector<OpenEntry> open{{0, outline, {}}};
    for (const Page &page : pages) {
        for (const PlacedHeading &heading : page.content.headings) {
            while (open.back().level >= heading.level)
                closeEntry(open);
            QPDFObjectHandle entry = headingEntry(pdf, heading, page.object);
            addEntry(open.back(), entry);
            open.push_back({heading.level, entry, {}});
        }
    }
    while (!open.empty())
        closeEntry(open);
    if (!outline.hasKey("/First"))
        return;
    QPDFObjectHandle root = pdf.getRoot();
    root.replaceKey("/Outlines", outline);
    root.replaceKey("/PageMode", name("/UseOutlines"));
}

const char *PdfStructure::kindOf(const DocumentParagraph &paragraph)
{
    static constexpr std::array<const char *, 6> headings = {"/H1", "/H2", "/H3", "/H4", "/H5", "/H6"};
    if (paragraph.picture)
        return "/Figure";
    const int level = paragraph.look.outlineLevel;
    if (level < 1 || level >= WordRange::BodyText)
        return "/P";
    return headings[std::min(static_cast<std::size_t>(level), headings.size()) - 1];
}

void PdfStructure::addTags(QPDF &pdf, const std::vector<Page> &pages, const DocumentContent &content)
{
    QPDFObjectHandle tree = object(pdf, "/StructTreeRoot");
    QPDFObjectHandle document = element(pdf, "/Document", tree);
    QPDFObjectHandle elements = QPDFObjectHandle::newArray();
    QPDFObjectHandle elementsOfPages = QPDFObjectHandle::newArray();
    QPDFObjectHandle last;
    std::size_t lastParagraph = content.paragraphs.size();
    int index = 0;
    for (const Page &page : pages) {
        QPDFObjectHandle onPage = QPDFObjectHandle::newArray();
        for (const PdfPart &part : page.content.parts) {
            const DocumentParagraph &paragraph = content.paragraphs[part.paragraph];
            if (part.paragraph != lastParagraph) { // else it goes on from the page before
                last = element(pdf, kindOf(paragraph), document);
                lastParagraph = part.paragraph;
                elements.appendItem(last);
            }
            if (paragraph.picture) {
                last.replaceKey("/Alt", string(paragraph.picture->alternativeText));
                last.replaceKey("/A", figureLayout(placeOn(page.object, part.picture)));
            }
            addContent(last, page.object, onPage.getArrayNItems());
            onPage.appendItem(last);
        }
        QPDFObjectHandle target = page.object;
        target.replaceKey("/StructParents", number(index));
        elementsOfPages.appendItem(number(index++));
        elementsOfPages.appendItem(pdf.makeIndirectObject(onPage));
    }
    document.replaceKey("/K", elements);
    tree.replaceKey("/K", document);
    QPDFObjectHandle parents = QPDFObjectHandle::newDictionary();
    parents.replaceKey("/Nums", elementsOfPages);
    tree.replaceKey("/ParentTree", pdf.makeIndirectObject(parents));
    tree.replaceKey("/ParentTreeNextKey", number(index));

    QPDFObjectHandle root = pdf.getRoot();
    root.replaceKey("/StructTreeRoot", tree);
    QPDFObjectHandle marked = QPDFObjectHandle::newDictionary();
    marked.replaceKey("/Marked", QPDFObjectHandle::newBool(true));
    root.replaceKey("/MarkInfo", marked);
}

void PdfStructure::setProperties(QPDF &pdf, const QString &title)
{
    QPDFObjectHandle information = pdf.getTrailer().getKey("/Info");
    information.replaceKey("/Title", string(title));
    information.replaceKey("/Creator", string(QStringLiteral("Shotly")));
    information.replaceKey("/Producer", string(QStringLiteral("Shotly")));
    QPDFObjectHandle preferences = QPDFObjectHandle::newDictionary();
    preferences.replaceKey("/DisplayDocTitle", QPDFObjectHandle::newBool(true));
    pdf.getRoot().replaceKey("/ViewerPreferences", preferences);
}
