#pragma once

#include "pagestore/PageDatabase.h"
#include "pagestore/PageListModel.h"
#include "platform/qt/Guarded.h"
#include "state/Workspace.h"

#include <QWidget>

#include <array>

class QComboBox;
class QLabel;
class QPushButton;
class QRadioButton;
class QTableView;
class QToolButton;

/// What the page list works with; references must outlive it.
struct PageListServices {
    Module1 &state;
    PageDatabase &database;
    Prompter &prompter;
    Workspace &workspace;
};

/// The pages of a project, or of all projects, found by words in their texts. A tab of the main window.
///
/// Every change of the boxes searches at once. A search runs beside the window and shows its first rows as
/// soon as it has found them; the next one interrupts it. One that fails tells in the status line and leaves
/// the grid as it was.
class frmPageList : public QWidget
{
    Q_OBJECT

public:
    explicit frmPageList(const PageListServices &services);

    void searchIt(bool useOr, const QString &project, const QString &text);
    void loadGrid(const QString &statement);

    /// Pages have changed elsewhere.
    void refresh();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void buildControls();
    void layOut();
    void connectControls();
    void fillProjects();
    void SetupGridColumns();

    void search();
    void showFound(const QString &statement, const std::vector<std::int64_t> &ids);
    void showFailure(const RunTimeError &error);
    void sortBy(int column);
    void showPosition();
    void showStatus();

    void cmdClear_Click();
    void cmdDelete_Click();
    void cmdRefresh_Click();
    void grdDataGrid_DblClick(int row);
    void rememberSearch();
    void move(void (frmPageList::*way)());
    void first();
    void previous();
    void next();
    void last();
    void movePage(int rows);
    bool handleKey(const QObject *watched, int key, Qt::KeyboardModifiers modifiers);

    PageListServices m_services;
    FailureBox m_failures;
    PageListModel *m_model;
    std::unique_ptr<RowSearch> m_search;
    bool m_replacing = false; ///< the grid still shows the rows of the search before
    bool m_deleting = false;  ///< the grid's choice of another row is not the user's
    int m_sortColumn = -1;    ///< -1: by project and page
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;

    QComboBox *cmbProj;
    QComboBox *txtSearch;
    std::array<QRadioButton *, 2> optSearch{};
    QPushButton *cmdClear;
    QTableView *grdDataGrid;
    QLabel *lblStatus;
    QToolButton *cmdFirst;
    QToolButton *cmdPrevious;
    QToolButton *cmdNext;
    QToolButton *cmdLast;
    QPushButton *cmdMoveUp;
    QPushButton *cmdMoveDown;
    QPushButton *cmdDelete;
    QPushButton *cmdRefresh;
    QPushButton *cmdHelp;
};
