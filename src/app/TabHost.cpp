#include "app/TabHost.h"

#include "platform/qt/ThemedIcon.h"
#include "platform/qt/ToolTip.h"

#include <QHBoxLayout>
#include <QPointer>
#include <QShortcut>
#include <QStackedWidget>
#include <QTabBar>
#include <QToolButton>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace
{
struct TabData {
    int id = 0;
    QPointer<QWidget> child;
};

QToolButton *makeButton(QWidget *parent, const char *name, const char *icon, const QString &tip,
                        const QKeySequence &keys = {})
{
    auto *button = new QToolButton(parent);
    button->setObjectName(QLatin1StringView(name));
    button->setIcon(themedIcon(QLatin1StringView(icon)));
    button->setIconSize({20, 20});
    button->setAutoRaise(true);
    button->setToolTip(ToolTip::withKeys(tip, keys));
    button->setShortcut(keys);
    button->setAccessibleName(tip);
    return button;
}
} // namespace

Q_DECLARE_METATYPE(TabData)

TabHost::TabHost(QWidget *emptyPage, QWidget *parent)
    : QWidget(parent), tab1(new QTabBar(this)),
      cmdCloseTab(
          makeButton(this, "cmdCloseTab", "close-tab.svg", u"Close top screen."_s, Qt::CTRL | Qt::Key_W)),
      cmdCloseWebSearch(makeButton(this, "cmdCloseWebSearch", "close-all.svg", u"Close All Screens."_s,
                                   Qt::CTRL | Qt::SHIFT | Qt::Key_W)),
      cmdIntoTray(
          makeButton(this, "cmdIntoTray", "into-tray.svg", u"Minimize this Program into System Tray."_s)),
      m_pages(new QStackedWidget(this)), m_emptyPage(emptyPage)
{
    tab1->setObjectName("tab1"_L1);
    tab1->setExpanding(false);
    tab1->setDocumentMode(true);
    tab1->setDrawBase(false);
    m_pages->addWidget(m_emptyPage);

    auto *strip = new QHBoxLayout;
    strip->setContentsMargins(6, 2, 6, 2);
    strip->addWidget(tab1, 1);
    strip->addStretch();
    strip->addWidget(cmdCloseTab);
    strip->addWidget(cmdCloseWebSearch);
    strip->addWidget(cmdIntoTray);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(strip);
    column->addWidget(m_pages, 1);

    connect(tab1, &QTabBar::currentChanged, this, &TabHost::showCurrent);
    const auto turn = [this](int step) {
        if (const int tabs = tab1->count(); tabs > 0)
            tab1->setCurrentIndex((tab1->currentIndex() + step + tabs) % tabs);
    };
    connect(new QShortcut(Qt::CTRL | Qt::Key_Tab, this), &QShortcut::activated, this, [turn] { turn(1); });
    connect(new QShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab, this), &QShortcut::activated, this,
            [turn] { turn(-1); });
    showCurrent();
}

void TabHost::addTab(int id, QWidget *child, const QString &caption)
{
    {
        const QSignalBlocker quiet(tab1);
        tab1->insertTab(0, caption);
        tab1->setTabData(0, QVariant::fromValue(TabData{id, child}));
        tab1->setCurrentIndex(0);
    }
    m_pages->addWidget(child);
    // A window's title says more than its caption.
    tab1->setTabToolTip(0, child->windowTitle());
    connect(child, &QWidget::windowTitleChanged, this,
            [this, id](const QString &title) { tab1->setTabToolTip(indexOf(id), title); });
    showCurrent();
}

void TabHost::deleteTab(int id)
{
    const int index = indexOf(id);
    if (index < 0)
        return;
    QWidget *child = childAt(index);
    {
        const QSignalBlocker quiet(tab1);
        tab1->removeTab(index);
    }
    if (child) {
        m_pages->removeWidget(child);
        child->deleteLater();
    }
    showCurrent();
}

void TabHost::turnTab(int id)
{
    if (const int index = indexOf(id); index >= 0)
        tab1->setCurrentIndex(index);
}

bool TabHost::closeCurrent()
{
    const int index = tab1->currentIndex();
    if (index < 0)
        return true;
    const int id = tab1->tabData(index).value<TabData>().id;
    if (QWidget *child = childAt(index); child && !child->close())
        return false;
    deleteTab(id);
    return true;
}

bool TabHost::closeAll()
{
    while (tab1->count() > 0) {
        if (!closeCurrent())
            return false;
    }
    return true;
}

int TabHost::count() const
{
    return tab1->count();
}

QWidget *TabHost::current() const
{
    return tab1->count() > 0 ? childAt(tab1->currentIndex()) : nullptr;
}

QStringList TabHost::captions() const
{
    QStringList list;
    for (int i = 0; i < tab1->count(); ++i) {
        if (const QWidget *child = childAt(i))
            list += child->windowTitle();
    }
    return list;
}

int TabHost::indexOf(int id) const
{
    for (int i = 0; i < tab1->count(); ++i) {
        if (tab1->tabData(i).value<TabData>().id == id)
            return i;
    }
    return -1;
}

QWidget *TabHost::childAt(int index) const
{
    return tab1->tabData(index).value<TabData>().child;
}

void TabHost::showCurrent()
{
    const bool open = tab1->count() > 0;
    cmdCloseTab->setVisible(open);
    cmdCloseWebSearch->setVisible(open);
    QWidget *child = current();
    m_pages->setCurrentWidget(child ? child : m_emptyPage);
}
