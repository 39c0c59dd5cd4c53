#include "paint/frmPaintProgress.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace
{
constexpr int patience = 50; // milliseconds before anything is shown
constexpr int frame = 16;    // milliseconds
} // namespace

void FilterProgress::begin(const QString &, int)
{
    m_active = true;
    m_wanted = m_cancelled = false;
    m_percent = 0;
    m_partial = {};
    m_sinceBegin.start();
    m_sinceShown.start();
    qApp->installEventFilter(this);
}

bool FilterProgress::step(int)
{
    if (m_sinceBegin.elapsed() < patience || m_sinceShown.elapsed() < frame)
        return true;
    m_sinceShown.start();
    QImage partial;
    int percent = 0;
    bool retrieving = false;
    {
        const std::lock_guard lock(m_mutex);
        partial = std::exchange(m_partial, {});
        percent = m_percent;
        retrieving = m_retrieving;
        m_wanted = true;
    }
    m_show(percent, retrieving, partial);
    QCoreApplication::processEvents();
    const std::lock_guard lock(m_mutex);
    return !m_cancelled;
}

void FilterProgress::end()
{
    qApp->removeEventFilter(this);
    m_active = false;
}

bool FilterProgress::take(int percent, const QImage &partial, bool retrieving)
{
    const std::lock_guard lock(m_mutex);
    m_percent = percent;
    m_retrieving = retrieving;
    if (std::exchange(m_wanted, false))
        m_partial = partial.copy();
    return !m_cancelled;
}

/// What the user does meanwhile is dropped.
bool FilterProgress::eventFilter(QObject *, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        if (static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
            const std::lock_guard lock(m_mutex);
            m_cancelled = true;
        }
        return true;
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
        return true;
    case QEvent::Close:
        event->ignore();
        return true;
    default:
        return false;
    }
}
