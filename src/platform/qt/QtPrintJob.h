#pragma once

#include "platform/PrintJob.h"

#include <QPrinter>

#include <memory>

class QTemporaryFile;

/// A job of the desktop's print dialog. What is printed into a file goes into a temporary one of the same
/// folder first, which then takes the name.
class QtPrintJob : public PrintJob
{
public:
    QtPrintJob();
    ~QtPrintJob() override;

    /// For the dialog.
    QPrinter &printer() { return m_printer; }
    /// The user has chosen; throws RunTimeError when the chosen file cannot be written.
    void begin();

    QPagedPaintDevice &device() override { return m_printer; }
    void finish() override;

private:
    QPrinter m_printer;
    QString m_fileName; ///< empty: printed on paper
    std::unique_ptr<QTemporaryFile> m_temporary;
};
