#pragma once

#include <QWidget>

class QStackedWidget;
class QTabBar;
class QToolButton;

/// The child windows of the main window, one shown at a time, chosen by a strip of tabs. With no tab open it
/// shows the page given at the start, and hides the close buttons.
///
/// A child belongs to the host once added; it is deleted when its tab is closed. A child that refuses to
/// close (closeEvent ignored) keeps its tab.
class TabHost : public QWidget
{
    Q_OBJECT

public:
    /// Takes ownership of `emptyPage`.
    TabHost(QWidget *emptyPage, QWidget *parent);

    /// Inserts at the first position and selects it.
    void addTab(int id, QWidget *child, const QString &caption);
    /// Forgets the tab, and deletes its child later; unknown ids are ignored.
    void deleteTab(int id);
    void turnTab(int id);

    /// Asks the current child, or all of them, to close. False when one refused.
    bool closeCurrent();
    bool closeAll();

    int count() const;
    QWidget *current() const;     ///< the child that is seen; null when no tab is open
    QStringList captions() const; ///< of the child windows themselves, first tab first

    QTabBar *tab1;
    QToolButton *cmdCloseTab;
    QToolButton *cmdCloseWebSearch;
    QToolButton *cmdIntoTray;

private:
    int indexOf(int id) const;
    QWidget *childAt(int index) const;
    void showCurrent();

    QStackedWidget *m_pages;
    QWidget *m_emptyPage;
};
