#include "platform/office/OdtSkeleton.h"

#include "platform/Rounding.h"

#include <QHash>
#include <QXmlStreamReader>

#include <algorithm>
#include <array>

using namespace Qt::Literals::StringLiterals;

namespace
{
// The font is that of Word's own empty document.
constexpr const char *emptyDocument = R"(<?xml version="1.0" encoding="UTF-8"?>
<office:document xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0" xmlns:style="urn:oasis:names:tc:opendocument:xmlns:style:1.0" xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0" xmlns:draw="urn:oasis:names:tc:opendocument:xmlns:drawing:1.0" xmlns:fo="urn:oasis:names:tc:opendocument:xmlns:xsl-fo-compatible:1.0" xmlns:svg="urn:oasis:names:tc:opendocument:xmlns:svg-compatible:1.0" xmlns:meta="urn:oasis:names:tc:opendocument:xmlns:meta:1.0" xmlns:dc="http://purl.org/dc/elements/1.1/" office:version="1.2" office:mimetype="application/vnd.oasis.opendocument.text">
<office:styles><style:default-style style:family="paragraph"><style:text-properties fo:font-family="'Times New Roman'" fo:font-size="12pt"/></style:default-style><style:style style:name="Standard" style:family="paragraph"/></office:styles>
<office:automatic-styles><style:page-layout style:name="ShotlyPage"><style:page-layout-properties fo:page-width="%1" fo:page-height="%2" fo:margin-top="%3" fo:margin-bottom="%3" fo:margin-left="%3" fo:margin-right="%3"/></style:page-layout></office:automatic-styles>
<office:master-styles><style:master-page style:name="Standard" style:page-layout-name="ShotlyPage"/></office:master-styles>
<office:body><office:text></office:text></office:body>
</office:document>
)";

QString attribute(const QXmlStreamReader &reader, const char *space, const char *name)
{
    return reader.attributes().value(QLatin1String(space), QLatin1String(name)).toString();
}

int length(const QXmlStreamReader &reader, const char *space, const char *name)
{
    return Odt::twips(attribute(reader, space, name));
}

/// Reads of a document what OdtSkeleton tells.
class SkeletonReader
{
public:
    explicit SkeletonReader(const QByteArray &xml) : m_reader(xml) {}

    std::optional<OdtSkeleton> read()
    {
        while (!m_reader.atEnd()) {
            m_reader.readNext();
            if (m_reader.isStartElement())
                startElement();
            else if (m_reader.isEndElement())
                m_path.removeLast();
            else if (m_reader.isCharacters() && !m_reader.isWhitespace())
                m_endsEmpty = false;
        }
        if (m_reader.hasError() || !m_isText)
            return std::nullopt;
        if (m_endsEmpty)
            m_found.masterPage = m_masterOfStyle.value(m_lastStyle);
        const QString layout = m_layoutOfMaster.value(m_master, m_layoutOfMaster.value(m_firstMaster));
        m_found.room = {m_roomOfLayout.value(layout), 0};
        // A document without a page has LibreOffice's own, which is that of the locale.
        if (m_found.room.page.isEmpty())
            m_found.room = {PageFormat::ofLocale().textArea(), 0};
        return m_found;
    }

private:
    void startElement()
    {
        const QString parent = m_path.isEmpty() ? QString() : m_path.constLast();
        const QString space = m_reader.namespaceUri().toString();
        const QString name = m_reader.name().toString();
        m_path += name;
        if (space == QLatin1String(Odt::office) && name == u"text"_s && parent == u"body"_s)
            m_isText = m_path.constFirst() == u"document"_s;
        else if (space == QLatin1String(Odt::style))
            styleElement(name, parent);
        m_endsEmpty = false;
        if (m_isText && m_path.size() == 4 && space == QLatin1String(Odt::text))
            bodyParagraph(name);
    }

    void bodyParagraph(const QString &name)
    {
        m_endsEmpty = name == u"p"_s;
        m_lastStyle = attribute(m_reader, Odt::text, "style-name");
        if (const QString master = m_masterOfStyle.value(m_lastStyle); !master.isEmpty())
            m_master = master;
    }

    void styleElement(const QString &name, const QString &parent)
    {
        if (name == u"style"_s) {
            const QString styleName = attribute(m_reader, Odt::style, "name");
            m_found.styleNames.insert(styleName);
            m_masterOfStyle.insert(styleName, attribute(m_reader, Odt::style, "master-page-name"));
        } else if (name == u"master-page"_s) {
            const QString master = attribute(m_reader, Odt::style, "name");
            if (m_firstMaster.isEmpty())
                m_firstMaster = master;
            m_layoutOfMaster.insert(master, attribute(m_reader, Odt::style, "page-layout-name"));
        } else if (name == u"page-layout"_s) {
            m_layout = attribute(m_reader, Odt::style, "name");
        } else if (name == u"page-layout-properties"_s) {
            const QSize page(length(m_reader, Odt::fo, "page-width"),
                             length(m_reader, Odt::fo, "page-height"));
            const QSize margins(
                length(m_reader, Odt::fo, "margin-left") + length(m_reader, Odt::fo, "margin-right"),
                length(m_reader, Odt::fo, "margin-top") + length(m_reader, Odt::fo, "margin-bottom"));
            m_roomOfLayout.insert(m_layout, page - margins);
        } else if (name == u"header-footer-properties"_s && m_roomOfLayout.contains(m_layout)) {
            const int height =
                std::max(length(m_reader, Odt::fo, "min-height"), length(m_reader, Odt::svg, "height"));
            const int distance =
                length(m_reader, Odt::fo, parent == u"header-style"_s ? "margin-bottom" : "margin-top");
            m_roomOfLayout[m_layout].rheight() -= height + distance;
        }
    }

    QXmlStreamReader m_reader;
    OdtSkeleton m_found;
    QStringList m_path; // the names of the open elements
    bool m_isText = false;
    bool m_endsEmpty = false; // the last thing of the text is an empty paragraph
    QString m_lastStyle;
    QString m_master = QStringLiteral("Standard"); // the page that the text ends on
    QString m_firstMaster;
    QString m_layout; // the one being read
    QHash<QString, QString> m_masterOfStyle;
    QHash<QString, QString> m_layoutOfMaster;
    QHash<QString, QSize> m_roomOfLayout;
};
} // namespace

QString Odt::encodedStyleName(const QString &name)
{
    return QString(name).replace(u' ', u"_20_"_s);
}

int Odt::twips(QStringView length)
{
    struct Unit {
        QLatin1String name;
        double twips = 0;
    };
    static constexpr std::array<Unit, 6> units = {{{QLatin1String("cm"), 1440 / 2.54},
                                                   {QLatin1String("mm"), 144 / 2.54},
                                                   {QLatin1String("in"), 1440},
                                                   {QLatin1String("pt"), 20},
                                                   {QLatin1String("pc"), 240},
                                                   {QLatin1String("px"), Rounding::twipsPerPixel}}};
    for (const Unit &unit : units) {
        if (length.endsWith(unit.name))
            return Rounding::toInt(length.chopped(unit.name.size()).toDouble() * unit.twips);
    }
    return 0;
}

QString Odt::points(int twips)
{
    return QString::number(twips / 20.0, 'f', 2) + u"pt"_s;
}

OdtSkeleton OdtSkeleton::plain(const PageFormat &page)
{
    OdtSkeleton result;
    result.xml =
        QString::fromLatin1(emptyDocument)
            .arg(Odt::points(page.page.width()), Odt::points(page.page.height()), Odt::points(page.margin))
            .toUtf8();
    result.room = {page.textArea(), 0};
    result.styleNames = {u"Standard"_s};
    return result;
}

std::optional<OdtSkeleton> OdtSkeleton::read(const QByteArray &xml)
{
    std::optional<OdtSkeleton> result = SkeletonReader(xml).read();
    if (result)
        result->xml = xml;
    return result;
}
