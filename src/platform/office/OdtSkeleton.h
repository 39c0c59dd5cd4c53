#pragma once

#include "platform/office/DocumentContent.h"

#include <QByteArray>
#include <QSet>

/// A document in Flat ODT (OpenDocument 1.2 in one XML file) that text is put into: it brings the page, its
/// header and footer and the look of what has none of its own.
struct OdtSkeleton {
    QByteArray xml;
    PageFormat room;          ///< what the margins, header and footer leave, as a page without margins
    QString masterPage;       ///< of the last paragraph where that names one, else empty
    QSet<QString> styleNames; ///< of the named and automatic styles

    /// An empty document with pages of this format.
    static OdtSkeleton plain(const PageFormat &page);

    /// What the bytes hold; nothing where they are no text document in Flat ODT.
    static std::optional<OdtSkeleton> read(const QByteArray &xml);
};

/// The names of OpenDocument's parts and what has to be known of them in several places.
namespace Odt
{
inline constexpr const char *office = "urn:oasis:names:tc:opendocument:xmlns:office:1.0";
inline constexpr const char *style = "urn:oasis:names:tc:opendocument:xmlns:style:1.0";
inline constexpr const char *text = "urn:oasis:names:tc:opendocument:xmlns:text:1.0";
inline constexpr const char *draw = "urn:oasis:names:tc:opendocument:xmlns:drawing:1.0";
inline constexpr const char *fo = "urn:oasis:names:tc:opendocument:xmlns:xsl-fo-compatible:1.0";
inline constexpr const char *svg = "urn:oasis:names:tc:opendocument:xmlns:svg-compatible:1.0";
inline constexpr const char *meta = "urn:oasis:names:tc:opendocument:xmlns:meta:1.0";
inline constexpr const char *dc = "http://purl.org/dc/elements/1.1/";

/// A name as style names have to be written: "Heading 1" is "Heading_20_1".
QString encodedStyleName(const QString &name);

/// A length ("2.5cm", "11pt") in twips; 0 where it is none.
int twips(QStringView length);

/// A length in points, to a tenth of a twip.
QString points(int twips);
} // namespace Odt
