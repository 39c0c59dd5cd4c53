#include "app/CommandSet.h"

#include "platform/qt/ThemedIcon.h"
#include "platform/qt/ToolTip.h"

#include <QAction>
#include <QIcon>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QToolButton>

using namespace Qt::Literals::StringLiterals;

namespace
{
QString text(const char *characters)
{
    return QString::fromLatin1(characters);
}
} // namespace

CommandSet::CommandSet(QMainWindow &window, Trampoline run) : m_window(window), m_run(std::move(run))
{
    buildMenus();
}

void CommandSet::buildMenus()
{
    QHash<QString, QMenu *> menus;
    for (const Menu &row : CommandTable::menus()) {
        QMenu *menu = m_window.menuBar()->addMenu(text(row.caption));
        menu->setObjectName(text(row.name));
        menus.insert(text(row.name), menu);
    }
    for (const Command &row : CommandTable::commands()) {
        QMenu *menu = menus.value(text(row.menu));
        if (row.separatorBefore)
            menu->addSeparator();
        auto *action = new QAction(themedIcon(text(row.icon)), text(row.caption), &m_window);
        action->setObjectName(text(row.name));
        action->setMenuRole(QAction::NoRole);
        if (*row.shortcut != '\0')
            action->setShortcut(QKeySequence(text(row.shortcut)));
        m_keys.insert(text(row.name), action->shortcut().toString(QKeySequence::NativeText));
        QObject::connect(action, &QAction::triggered, &m_window,
                         [this, handler = row.handler] { m_run(handler); });
        menu->addAction(action);
        m_actions.insert(text(row.name), action);
    }
}

void CommandSet::fillToolBar(QToolBar &toolBar)
{
    for (const ToolButton &row : CommandTable::toolButtons()) {
        if (toolBar.objectName() != text(row.toolbar))
            continue;
        auto *button = new QToolButton(&toolBar);
        button->setDefaultAction(action(text(row.command)));
        button->setObjectName(text(row.key));
        m_buttons.push_back({button, &row});
        label(m_buttons.back());
        button->setAccessibleName(text(row.tip));
        button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
        button->setAutoRaise(true);
        // The button keeps its own short texts when the action changes.
        QObject::connect(action(text(row.command)), &QAction::changed, button,
                         [this, made = m_buttons.back()] { label(made); });
        toolBar.addWidget(button);
    }
}

void CommandSet::label(const Button &button) const
{
    button.widget->setText(text(button.row->label));
    button.widget->setToolTip(
        ToolTip::withKeys(text(button.row->tip), m_keys.value(text(button.row->command))));
}

void CommandSet::showHotKeys(const mHotKey &hotKeys, const std::array<QString, 10> &names)
{
    for (const Command &row : CommandTable::commands()) {
        if (row.hotKey == 0)
            continue;
        QString keys = names.at(static_cast<std::size_t>(row.hotKey) - 1);
        m_keys.insert(text(row.name), hotKeys.holds(row.hotKey) ? keys.replace(u'-', u'+') : QString());
    }
    for (const Button &button : m_buttons)
        label(button);
}

void CommandSet::fillTrayMenu(QMenu &menu)
{
    for (const TrayItem &row : CommandTable::trayItems()) {
        QAction *repeated = m_actions.value(text(row.command));
        auto *item = new QAction(repeated ? repeated->icon() : QIcon(), text(row.caption), &menu);
        item->setObjectName(text(row.name));
        if (row.handler)
            QObject::connect(item, &QAction::triggered, &m_window,
                             [this, handler = row.handler] { m_run(handler); });
        else
            QObject::connect(item, &QAction::triggered, repeated, &QAction::trigger);
        if (repeated) {
            const auto follow = [item, repeated] { item->setEnabled(repeated->isEnabled()); };
            QObject::connect(repeated, &QAction::changed, item, follow);
            follow();
        }
        menu.addAction(item);
    }
}

void CommandSet::setState(const MainState &state)
{
    for (const Command &row : CommandTable::commands())
        action(text(row.name))->setEnabled(row.enabled(state));
}

QAction *CommandSet::action(const QString &name) const
{
    return m_actions.value(name);
}

void CommandSet::triggerHotKey(int id) const
{
    for (const Command &row : CommandTable::commands()) {
        if (id != 0 && row.hotKey == id)
            action(text(row.name))->trigger(); // does nothing while disabled
    }
}
