#include "app/WidgetProgress.h"

#include <QProgressDialog>

namespace
{
constexpr int patience = 400; // milliseconds of work before the box appears
}

WidgetProgress::WidgetProgress() = default;
WidgetProgress::~WidgetProgress() = default;

void WidgetProgress::begin(const QString &what, int total)
{
    m_box = std::make_unique<QProgressDialog>(what, QString(), 0, total);
    m_box->setWindowTitle(QStringLiteral("Shotly"));
    m_box->setWindowModality(Qt::ApplicationModal);
    m_box->setMinimumDuration(patience);
    m_box->setMinimumWidth(360);
    m_box->setValue(0);
}

bool WidgetProgress::step(int done)
{
    if (!m_box)
        return true;
    m_box->setValue(done); // lets events run while the box is shown
    return !m_box->wasCanceled();
}

void WidgetProgress::end()
{
    m_box.reset();
}
