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

    LibreOfficeBackend(const OfficeProgram &office, Template use) : m_office(office), m_template(use) {}

    /// The alternative texts of pictures are lost: LibreOffice does not write them into Word 97 files.
    void save(const DocumentContent &content, DocumentPictures &pictures, const QString &path,
              const DocumentWork &work) override;
    /// Of the saved document, so that both hold the same.
    void savePdf(const DocumentContent &content, DocumentPictures &pictures, const QString &documentPath,
                 const QString &pdfPath, const DocumentWork &work) override;
    void convertFile(const QString &documentPath, const QString &pdfPath, const DocumentWork &work) override;
    void open(const QString &path) override;

private:
    OdtSkeleton skeletonFor(const DocumentContent &content, const DocumentWork &work) const;

    OfficeProgram m_office;
    Template m_template;
};
