#pragma once

#include "platform/office/DocumentBackend.h"
#include "platform/office/OdtSkeleton.h"
#include "platform/office/OfficeProgram.h"

/// Has LibreOffice write, convert and show the documents. The document is handed over as Flat ODT.
class LibreOfficeBackend : public DocumentBackend
{
public:
    enum class Template {
        Ignored, ///< every document has plain pages in the format of the locale
        Honoured ///< a template of the user's gives page, header, footer and what else it holds
    };

    /// The filter for PDF. Without its options LibreOffice would make pictures coarser and turn them into
    /// JPEG.
    static constexpr const char *losslessPdf =
        R"(writer_pdf_Export:{"ReduceImageResolution":{"type":"boolean","value":"false"},)"
        R"("UseLosslessCompression":{"type":"boolean","value":"true"},)"
        R"("ExportBookmarks":{"type":"boolean","value":"true"}})";

    LibreOfficeBackend(const OfficeProgram &office, Template use) : m_office(office), m_template(use) {}

    /// The alternative texts of pictures are lost: LibreOffice does not write them into Word 97 files.
    void save(const DocumentContent &content, DocumentPictures &pictures, const QString &path,
              const DocumentWork &work) override;
    /// Of the saved document, so that both hold the same.
    void savePdf(const DocumentContent &content, DocumentPictures &pictures, const QString &documentPath,
                 const QString &pdfPath, const DocumentWork &work) override;
    void convertFile(const QString &documentPath, const QString &pdfPath, const DocumentWork &work) override;
    void open(const QString &path, bool rewritten) override;

private:
    OdtSkeleton skeletonFor(const DocumentContent &content, const DocumentWork &work) const;

    OfficeProgram m_office;
    Template m_template;
};
