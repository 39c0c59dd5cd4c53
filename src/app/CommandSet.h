#pragma once

#include "app/CommandTable.h"
#include "capture/mHotKey.h"

#include <QHash>
#include <QString>

#include <array>
#include <functional>
#include <vector>

class QAction;
class QMainWindow;
class QMenu;
class QToolBar;
class QToolButton;

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

    /// Has the tool tips tell the hot keys, given as the options name them, that work.
    void showHotKeys(const mHotKey &hotKeys, const std::array<QString, 10> &names);

    /// Enables each command by its rule.
    void setState(const MainState &state);

    /// The action of a menu item, by name.
    QAction *action(const QString &name) const;

    /// Chooses the command of a hot key, if it can be chosen now.
    void triggerHotKey(int id) const;

private:
    struct Button {
        QToolButton *widget;
        const ToolButton *row;
    };

    void buildMenus();
    void label(const Button &button) const;

    QMainWindow &m_window;
    Trampoline m_run;
    QHash<QString, QAction *> m_actions;
    QHash<QString, QString> m_keys; ///< by the name of the command, as they are shown
    std::vector<Button> m_buttons;
};
