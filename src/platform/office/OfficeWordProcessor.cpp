#include "platform/office/OfficeWordProcessor.h"

#include "platform/office/BuiltinBackend.h"
#include "platform/office/DocumentTemplate.h"
#include "platform/office/LibreOfficeBackend.h"
#include "platform/office/OfficeApplication.h"
#include "platform/RunTimeError.h"

#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace
{
enum class Choice { Automatic, Builtin, LibreOffice, None };

Choice choiceOf(const QString &setting)
{
    const QString word = setting.trimmed().toLower();
    if (word == u"builtin"_s)
        return Choice::Builtin;
    if (word == u"libreoffice"_s)
        return Choice::LibreOffice;
    return word == u"none"_s ? Choice::None : Choice::Automatic;
}

/// LibreOffice where it gives the user more than Shotly does.
class AutomaticBackend : public DocumentBackend
{
public:
    AutomaticBackend(const OfficeProgram &office, ExternalPrograms &programs)
        : m_office(office), m_builtin(programs), m_libreOffice(office, LibreOfficeBackend::Template::Honoured)
    {
    }

    void save(const DocumentContent &content, DocumentPictures &pictures, const QString &path,
              const DocumentWork &work) override
    {
        backendFor(content).save(content, pictures, path, work);
    }
    void savePdf(const DocumentContent &content, DocumentPictures &pictures, const QString &documentPath,
                 const QString &pdfPath, const DocumentWork &work) override
    {
        backendFor(content).savePdf(content, pictures, documentPath, pdfPath, work);
    }
    void convertFile(const QString &documentPath, const QString &pdfPath, const DocumentWork &work) override
    {
        installed().convertFile(documentPath, pdfPath, work);
    }
    void open(const QString &path, bool rewritten) override { installed().open(path, rewritten); }

private:
    DocumentBackend &installed()
    {
        return m_office.installed() ? static_cast<DocumentBackend &>(m_libreOffice) : m_builtin;
    }
    DocumentBackend &backendFor(const DocumentContent &content)
    {
        const QString &path = content.templatePath;
        const bool usersOwn = QFileInfo::exists(path) && !DocumentTemplate::isDelivered(path);
        return usersOwn ? installed() : m_builtin;
    }

    OfficeProgram m_office;
    BuiltinBackend m_builtin;
    LibreOfficeBackend m_libreOffice;
};
} // namespace

OfficeWordProcessor::OfficeWordProcessor(Setting setting, const OfficeProgram &office,
                                         ExternalPrograms &programs)
    : m_setting(std::move(setting)), m_office(office), m_programs(programs)
{
}

bool OfficeWordProcessor::wordProcessorInstalled() const
{
    return choiceOf(m_setting()) != Choice::None;
}

std::unique_ptr<WordApplication> OfficeWordProcessor::createApplication()
{
    std::unique_ptr<DocumentBackend> backend;
    switch (choiceOf(m_setting())) {
    case Choice::None:
        throw RunTimeError(RunTimeError::CannotCreateObject,
                           u"The options say that there is no word processor."_s);
    case Choice::LibreOffice:
        if (!m_office.installed())
            throw RunTimeError(RunTimeError::CannotCreateObject, u"LibreOffice is not installed."_s);
        backend = std::make_unique<LibreOfficeBackend>(m_office, LibreOfficeBackend::Template::Honoured);
        break;
    case Choice::Builtin:
        backend = std::make_unique<BuiltinBackend>(m_programs);
        break;
    case Choice::Automatic:
        backend = std::make_unique<AutomaticBackend>(m_office, m_programs);
    }
    return std::make_unique<OfficeApplication>(std::move(backend));
}

bool OfficeWordProcessor::canConvertFiles() const
{
    const Choice choice = choiceOf(m_setting());
    return (choice == Choice::Automatic || choice == Choice::LibreOffice) && m_office.installed();
}

QStringList OfficeWordProcessor::printers() const
{
    return wordProcessorInstalled() ? QStringList{pdfPrinter()} : QStringList();
}
