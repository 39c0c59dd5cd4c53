#pragma once

#include <QIcon>
#include <QSystemTrayIcon>

class QMenu;

/// The program's icon in the desktop's tray. A left click asks for the window, a right click opens the menu.
class TrayIcon : public QObject
{
    Q_OBJECT

public:
    /// `menu` must outlive the icon. The icon is not shown yet.
    TrayIcon(const QIcon &icon, QMenu *menu);

    /// Has this desktop a tray now?
    static bool available() { return QSystemTrayIcon::isSystemTrayAvailable(); }

    void add(const QString &tip);
    void remove();

Q_SIGNALS:
    void restoreRequested();

private:
    QSystemTrayIcon m_icon;
};
