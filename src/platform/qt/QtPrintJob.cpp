#include "platform/qt/QtPrintJob.h"

#include "platform/AtomicFile.h"
#include "platform/RunTimeError.h"

#include <QFileInfo>
#include <QTemporaryFile>

using namespace Qt::Literals::StringLiterals;

QtPrintJob::QtPrintJob() : m_printer(QPrinter::HighResolution)
{
    m_printer.setCreator(u"Shotly"_s);
}

QtPrintJob::~QtPrintJob() = default;

void QtPrintJob::begin()
{
    m_fileName = m_printer.outputFileName();
    if (m_fileName.isEmpty())
        return;
    m_temporary = std::make_unique<QTemporaryFile>(QFileInfo(m_fileName).absolutePath() +
                                                   u"/.shotly-print-XXXXXX.pdf"_s);
    if (!m_temporary->open())
        throw RunTimeError(RunTimeError::PathAccess,
                           u"%1 cannot be written: %2"_s.arg(m_fileName, m_temporary->errorString()));
    m_temporary->close();
    m_printer.setOutputFileName(m_temporary->fileName());
}

void QtPrintJob::finish()
{
    const bool failed =
        m_printer.printerState() == QPrinter::Error || m_printer.printerState() == QPrinter::Aborted;
    if (failed)
        throw RunTimeError(RunTimeError::PrinterError, u"The printer reports an error."_s);
    if (m_temporary)
        AtomicFile::copy(m_temporary->fileName(), m_fileName);
}
