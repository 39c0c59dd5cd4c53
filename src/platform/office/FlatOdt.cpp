#include "platform/office/FlatOdt.h"

#include "platform/office/OdtContentWriter.h"
#include "platform/RunTimeError.h"

#include <QIODevice>
#include <QXmlStreamReader>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// Copies the skeleton, token by token, and has the content written on the way.
class SkeletonCopy
{
public:
    SkeletonCopy(const DocumentContent &content, DocumentPictures &pictures, const OdtSkeleton &skeleton,
                 QIODevice &device, const DocumentWork &work)
        : m_reader(skeleton.xml), m_writer(&device), m_content(content, pictures, skeleton, work, m_writer)
    {
    }

    /// False when the device has failed.
    bool write()
    {
        while (!m_reader.atEnd()) {
            m_reader.readNext();
            if (m_reader.isStartElement())
                startElement();
            else if (m_reader.isEndElement())
                endElement();
            else if (m_reader.isCharacters())
                characters();
            else
                m_writer.writeCurrentToken(m_reader);
        }
        return !m_writer.hasError();
    }

private:
    bool isOffice(const char *name) const
    {
        return m_reader.namespaceUri() == QLatin1String(Odt::office) &&
               m_reader.name() == QLatin1String(name);
    }

    void startElement()
    {
        writeHeldParagraph();
        ++m_depth;
        if (m_depth == 1) {
            startDocument();
            return;
        }
        if (m_depth == 2) {
            if (isOffice("meta")) {
                // The author and the times of the skeleton are not those of the document.
                m_reader.skipCurrentElement();
                --m_depth;
                return;
            }
            const bool laterThanStyles = isOffice("master-styles") || isOffice("body");
            if (laterThanStyles || isOffice("automatic-styles"))
                completeStyles();
            if (laterThanStyles)
                completeAutomaticStyles();
        }
        if (m_depth == 3 && isOffice("text"))
            m_inText = true;
        if (m_depth == 4 && m_inText && m_reader.namespaceUri() == QLatin1String(Odt::text) &&
            m_reader.name() == u"p"_s) {
            m_held = m_reader.attributes();
            return;
        }
        m_writer.writeCurrentToken(m_reader);
    }

    void endElement()
    {
        if (m_held && m_depth == 4) {
            m_heldIsWhole = true;
            --m_depth;
            return;
        }
        if (m_depth == 2 && isOffice("styles")) {
            m_content.writeNamedStyles();
            m_hasStyles = true;
        } else if (m_depth == 2 && isOffice("automatic-styles")) {
            m_content.writeAutomaticStyles();
            m_hasAutomaticStyles = true;
        } else if (m_depth == 3 && m_inText) {
            m_held.reset(); // an empty last paragraph makes room
            m_heldIsWhole = false;
            m_content.writeParagraphs();
            m_inText = false;
        }
        --m_depth;
        m_writer.writeCurrentToken(m_reader);
    }

    void characters()
    {
        if (m_heldIsWhole && m_reader.isWhitespace())
            return;
        writeHeldParagraph();
        m_writer.writeCurrentToken(m_reader);
    }

    /// Writes the beginning of a paragraph that was held back because it may be the last and empty one; the
    /// whole when its end has been read.
    void writeHeldParagraph()
    {
        if (!m_held)
            return;
        m_writer.writeStartElement(QLatin1String(Odt::text), u"p"_s);
        m_writer.writeAttributes(*m_held);
        if (m_heldIsWhole)
            m_writer.writeEndElement();
        m_held.reset();
        m_heldIsWhole = false;
    }

    void startDocument()
    {
        const auto declarations = m_reader.namespaceDeclarations();
        for (const QXmlStreamNamespaceDeclaration &declaration : declarations)
            m_writer.writeNamespace(declaration.namespaceUri().toString(), declaration.prefix().toString());
        m_writer.writeStartElement(QLatin1String(Odt::office), u"document"_s);
        const auto attributes = m_reader.attributes();
        for (const QXmlStreamAttribute &attribute : attributes) {
            if (attribute.name() != u"mimetype"_s)
                m_writer.writeAttribute(attribute);
        }
        // Of a template LibreOffice would show the XML as text.
        m_writer.writeAttribute(QLatin1String(Odt::office), u"mimetype"_s,
                                u"application/vnd.oasis.opendocument.text"_s);
        m_content.writeMeta();
    }

    void completeStyles()
    {
        if (std::exchange(m_hasStyles, true))
            return;
        m_writer.writeStartElement(QLatin1String(Odt::office), u"styles"_s);
        m_content.writeNamedStyles();
        m_writer.writeEndElement();
    }

    void completeAutomaticStyles()
    {
        if (std::exchange(m_hasAutomaticStyles, true))
            return;
        m_writer.writeStartElement(QLatin1String(Odt::office), u"automatic-styles"_s);
        m_content.writeAutomaticStyles();
        m_writer.writeEndElement();
    }

    QXmlStreamReader m_reader;
    QXmlStreamWriter m_writer;
    OdtContentWriter m_content;
    int m_depth = 0; // of the open elements of the skeleton
    bool m_inText = false;
    bool m_hasStyles = false;
    bool m_hasAutomaticStyles = false;
    std::optional<QXmlStreamAttributes> m_held; // of an empty paragraph that may be the last
    bool m_heldIsWhole = false;
};
} // namespace

void FlatOdt::write(const DocumentContent &content, DocumentPictures &pictures, const OdtSkeleton &skeleton,
                    QIODevice &device, const DocumentWork &work)
{
    if (!SkeletonCopy(content, pictures, skeleton, device, work).write())
        throw RunTimeError(RunTimeError::DiskFull,
                           u"Cannot write a temporary file: "_s + device.errorString());
}
