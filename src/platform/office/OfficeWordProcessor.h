#pragma once

#include "platform/ExternalPrograms.h"
#include "platform/office/OfficeProgram.h"
#include "platform/WordProcessor.h"

/// The word processor of the layer, as the setting "WordProcessor" says (letter case does not matter):
///
///     builtin       documents are written by Shotly itself
///     libreoffice   by LibreOffice
///     none          there is no word processor
///     auto          (and anything else) builtin, except that LibreOffice, where it is installed, writes
///                   documents of a template that is not the delivered one, converts files that the user
///                   picks, and shows documents
class OfficeWordProcessor : public WordProcessor
{
public:
    using Setting = std::function<QString()>;
    OfficeWordProcessor(Setting setting, const OfficeProgram &office, ExternalPrograms &programs);

    bool wordProcessorInstalled() const override;
    std::unique_ptr<WordApplication> createApplication() override;
    bool canConvertFiles() const override;
    QStringList printers() const override;

private:
    Setting m_setting;
    OfficeProgram m_office;
    ExternalPrograms &m_programs;
};
