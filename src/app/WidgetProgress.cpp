#include "app/WidgetProgress.h"

#include <QCoreApplication>
#include <QProgressDialog>

#include <limits>

namespace
{
constexpr int patience = 300;     // milliseconds of work before the box appears
constexpr int eventInterval = 25; // milliseconds
} // namespace

WidgetProgress::WidgetProgress() = default;
WidgetProgress::~WidgetProgress() = default;

void WidgetProgress::makeBox(const QString &cancelText)
{
    m_box = std::make_unique<QProgressDialog>();
    m_box->setObjectName(QStringLiteral("progressBox"));
    m_box->setWindowTitle(QStringLiteral("Shotly"));
    m_box->setCancelButtonText(cancelText);
    m_box->setWindowModality(Qt::ApplicationModal);
    // The box's own timer would show it over a question that is asked in the middle of the work.
    m_box->setMinimumDuration(std::numeric_limits<int>::max());
    m_box->setMinimumWidth(380);
    m_box->setAutoClose(false);
    m_box->setAutoReset(false);
}

void WidgetProgress::begin(const QString &what, int total)
{
    if (m_depth++ == 0) {
        makeBox(QStringLiteral("Cancel"));
        m_sinceBegin.start();
        m_sinceEvents.start();
    } else if (m_box->wasCanceled()) {
        makeBox(QString());
    }
    m_box->setLabelText(what);
    m_box->setMaximum(total);
    m_box->setValue(0);
}

bool WidgetProgress::step(int done)
{
    if (!m_box)
        return true;
    if (m_sinceEvents.elapsed() >= eventInterval) {
        m_box->setValue(done);
        if (!m_box->wasCanceled() && m_sinceBegin.elapsed() >= patience)
            m_box->show();
        QCoreApplication::processEvents(m_box->isVisible() ? QEventLoop::AllEvents
                                                           : QEventLoop::ExcludeUserInputEvents);
        m_sinceEvents.start();
    }
    return !m_box->wasCanceled();
}

void WidgetProgress::end()
{
    if (--m_depth == 0)
        m_box.reset();
}
