#include "platform/qt/TrayIcon.h"

TrayIcon::TrayIcon(const QIcon &icon, QMenu *menu) : m_icon(icon)
{
    m_icon.setContextMenu(menu);
    connect(&m_icon, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger)
            Q_EMIT restoreRequested();
    });
}

void TrayIcon::add(const QString &tip)
{
    m_icon.setToolTip(tip);
    m_icon.show();
}

void TrayIcon::remove()
{
    m_icon.hide();
}
