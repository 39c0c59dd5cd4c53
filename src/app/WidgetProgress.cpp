#include "app/WidgetProgress.h"

#include <QCoreApplication>
#include <QProgressDialog>

namespace
{
constexpr int patience = 300;     // milliseconds of work before the box appears
constexpr int eventInterval = 25; // milliseconds
} // namespace

WidgetProgress::WidgetProgress() = default;
WidgetProgress::~WidgetProgress() = default;

void WidgetProgress::begin(const QString &what, int total)
{
    m_box = std::make_unique<QProgressDialog>(what, QStringLiteral("Cancel"), 0, total);
    m_box->setObjectName(QStringLiteral("progressBox"));
    m_box->setWindowTitle(QStringLiteral("Shotly"));
    m_box->setWindowModality(Qt::ApplicationModal);
    m_box->setMinimumDuration(patience);
    m_box->setMinimumWidth(380);
    m_box->setAutoClose(false);
    m_box->setAutoReset(false);
    m_box->setValue(0);
    m_sinceEvents.start();
}

bool WidgetProgress::step(int done)
{
    if (!m_box)
        return true;
    if (m_sinceEvents.elapsed() >= eventInterval) {
        m_box->setValue(done); // lets events run while the box is shown
        if (!m_box->isVisible())
            QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        m_sinceEvents.restart();
    }
    return !m_box->wasCanceled();
}

void WidgetProgress::end()
{
    m_box.reset();
}
