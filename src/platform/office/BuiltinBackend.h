#pragma once

#include "platform/ExternalPrograms.h"
#include "platform/office/DocumentBackend.h"

/// Writes documents without any office suite. Shows them with the program that the desktop has for them.
class BuiltinBackend : public DocumentBackend
{
public:
    explicit BuiltinBackend(ExternalPrograms &programs) : m_programs(programs) {}

    void save(const DocumentContent &content, DocumentPictures &pictures, const QString &path,
              const DocumentWork &work) override;
    void savePdf(const DocumentContent &content, DocumentPictures &pictures, const QString &documentPath,
                 const QString &pdfPath, const DocumentWork &work) override;
    /// Throws RunTimeError: that needs LibreOffice.
    void convertFile(const QString &documentPath, const QString &pdfPath, const DocumentWork &work) override;
    void open(const QString &path, bool /*rewritten*/) override { m_programs.openWithDesktop(path); }

private:
    ExternalPrograms &m_programs;
};
