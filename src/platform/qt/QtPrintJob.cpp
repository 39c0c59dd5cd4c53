#include "platform/qt/QtPrintJob.h"

#include "platform/AtomicFile.h"
#include "platform/RunTimeError.h"

#include <QFileInfo>
#include <QTemporaryFile>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// Has everything arrived? Nobody says so when the disk was full, but nothing is written after the first
/// loss.
bool isComplete(const QString &pdf)
{
    const QByteArray end = QByteArrayLiteral("%%EOF\n");
    QFile file(pdf);
    return file.open(QIODevice::ReadOnly) && file.size() > end.size() &&
           file.seek(file.size() - end.size()) && file.readAll() == end;
}
} // namespace

QtPrintJob::QtPrintJob() : m_printer(QPrinter::HighResolution)
{
    m_printer.setCreator(u"Shotly"_s);
}

QtPrintJob::~QtPrintJob() = default;

void QtPrintJob::begin()
{
    if (m_printer.outputFileName().isEmpty())
        return;
    const QFileInfo target(m_printer.outputFileName());
    m_fileName = target.absoluteFilePath();
    m_temporary = std::make_unique<QTemporaryFile>(target.absolutePath() + u"/.shotly-print-XXXXXX.pdf"_s);
    // The file has no name before it is asked for one.
    const QString name = m_temporary->open() ? m_temporary->fileName() : QString();
    if (name.isEmpty())
        throw RunTimeError(RunTimeError::PathAccess,
                           u"%1 cannot be written: %2"_s.arg(m_fileName, m_temporary->errorString()));
    m_temporary->close();
    m_printer.setOutputFileName(name);
}

void QtPrintJob::finish()
{
    const QPrinter::PrinterState state = m_printer.printerState();
    if (state == QPrinter::Error || state == QPrinter::Aborted)
        throw RunTimeError(RunTimeError::PrinterError, u"The printer reports an error."_s);
    if (!m_temporary)
        return;
    if (!isComplete(m_temporary->fileName()))
        throw RunTimeError(RunTimeError::PrinterError, u"%1 could not be written."_s.arg(m_fileName));
    AtomicFile::copy(m_temporary->fileName(), m_fileName);
}
