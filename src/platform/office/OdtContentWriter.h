#pragma once

#include "platform/office/DocumentPictures.h"
#include "platform/office/OdtSkeleton.h"
#include "platform/WordProcessor.h"

#include <QXmlStreamWriter>

#include <set>
#include <vector>

/// Writes what a document brings into a skeleton: styles and paragraphs.
class OdtContentWriter
{
public:
    OdtContentWriter(const DocumentContent &content, DocumentPictures &pictures, const OdtSkeleton &skeleton,
                     const DocumentWork &work, QXmlStreamWriter &writer);

    void writeMeta();
    void writeNamedStyles();
    void writeAutomaticStyles();
    /// Throws RunTimeError: UserInterrupt after a stop request, and what is wrong with a picture.
    void writeParagraphs();

private:
    /// What a paragraph's automatic style depends on.
    struct StyleKey {
        ParagraphLook look;
        bool pageBreakBefore = false;
        bool picture = false;
        bool first = false; ///< takes over the page of the skeleton's last paragraph
        bool operator==(const StyleKey &) const = default;
    };

    StyleKey keyOf(const DocumentParagraph &paragraph) const;
    QString nameOf(const StyleKey &key) const;
    QString headingName(int level) const;
    void start(const char *space, const char *name);
    void writeAttribute(const char *space, const char *name, const QString &value);
    void writeAttribute(const char *space, const char *name, const char *value);
    void startStyle(const QString &name, const char *family);
    void writeParagraphProperties(const StyleKey &key);
    void writeTextProperties(const ParagraphLook &look);
    void writeText(const QString &text);
    void writePicture(const DocumentPicture &picture);
    void writeBase64(const QByteArray &bytes);

    const DocumentContent &m_content;
    DocumentPictures &m_pictures;
    const OdtSkeleton &m_skeleton;
    const DocumentWork &m_work;
    QXmlStreamWriter &m_writer;
    std::vector<StyleKey> m_styles;
    std::set<int> m_levels; ///< of headings, those that are used
    int m_done = 0;         ///< pictures
};
