#pragma once

#include "app/CommandTable.h"

#include <QHash>
#include <QString>

#include <functional>

class QAction;
class QMainWindow;
class QMenu;
class QToolBar;

/// The actions, menus and toolbar buttons of the command table, built in loops over it.
class CommandSet
{
public:
    /// Runs a handler of the main window.
    using Trampoline = std::function<void(void (frmMain::*)())>;

    /// Fills the window's menu bar. Everything created belongs to the window.
    CommandSet(QMainWindow &window, Trampoline run);

    /// Adds the buttons of this toolbar.
    void fillToolBar(QToolBar &toolBar);

    /// Fills the tray's menu.
    void fillTrayMenu(QMenu &menu);

    /// Enables each command by its rule.
    void setState(const MainState &state);

    /// The action of a menu item, by name.
    QAction *action(const QString &name) const;

    /// Chooses the command of a hot key, if it can be chosen now.
    void triggerHotKey(int id) const;

private:
    void buildMenus();

    QMainWindow &m_window;
    Trampoline m_run;
    QHash<QString, QAction *> m_actions;
};
