#pragma once

#include "app/MainState.h"

#include <span>

class frmMain;

/// One command of the main window: where it stands in the menus, what it is called, what it runs and when it
/// can be chosen. Menus, toolbars, tray menu and hot keys are built from these rows.
struct Command {
    const char *menu;    ///< name of its menu
    const char *name;    ///< name of the menu item; the handler is name & "_Click"
    const char *caption; ///< with "&" before the access key
    const char *icon;    ///< file of the icon resources; empty for none
    const char *shortcut;
    int hotKey; ///< identifier of the system-wide hot key that runs it, 0 for none
    void (frmMain::*handler)();
    bool (*enabled)(const MainState &);
    bool separatorBefore;
};

struct Menu {
    const char *name;
    const char *caption;
};

/// A toolbar button repeats a command.
struct ToolButton {
    const char *toolbar; ///< "Toolbar1" or "Toolbar2"
    const char *key;
    const char *command; ///< name of the menu item
    const char *label;   ///< short caption under the icon
    const char *tip;
};

/// An item of the tray's menu; it repeats a command unless it has a handler of its own.
struct TrayItem {
    const char *name;
    const char *caption;
    const char *command;
    void (frmMain::*handler)();
};

namespace CommandTable
{
std::span<const Menu> menus();
std::span<const Command> commands();
std::span<const ToolButton> toolButtons();
std::span<const TrayItem> trayItems();
} // namespace CommandTable
