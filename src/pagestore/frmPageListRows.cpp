// The page list: searching, and what is done with the rows.

#include "pagestore/frmPageList.h"

#include "pagestore/PageOrder.h"
#include "pagestore/Statements.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QRadioButton>
#include <QScopeGuard>
#include <QTableView>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// What the rows are sorted by when the heading of a column was clicked; ties stay in the order of pages.
QString orderBy(int column, Qt::SortOrder order)
{
    static const QStringList fields{u"[ID]"_s,        u"ProjectName"_s, u"PageNumber"_s,
                                    u"PageTitle"_s,   u"PageStatus"_s,  u"ScreenShotFilePath"_s,
                                    u"ProjectName"_s, u"[Date]"_s};
    const QString pages = QString::fromUtf16(Statements::pageOrder);
    return column < 0
               ? pages
               : fields.value(column) + (order == Qt::DescendingOrder ? u" desc, "_s : u", "_s) + pages;
}
} // namespace

// ---- searching

void frmPageList::search()
{
    searchIt(optSearch[0]->isChecked(), cmbProj->currentText(), txtSearch->currentText());
}

void frmPageList::searchIt(bool useOr, const QString &project, const QString &text)
{
    loadGrid(Statements::foundPages(useOr, project, text, orderBy(m_sortColumn, m_sortOrder)));
}

void frmPageList::loadGrid(const QString &statement)
{
    m_search.reset(); // interrupts what still runs
    m_replacing = true;
    m_search = m_services.database.search(statement,
                                          {[this, statement](const std::vector<std::int64_t> &ids) {
                                               runGuarded(m_failures, [&] { showFound(statement, ids); });
                                           },
                                           [this, statement] {
                                               if (m_replacing)
                                                   runGuarded(m_failures, [&] { showFound(statement, {}); });
                                           },
                                           [this](const RunTimeError &error) { showFailure(error); }});
}

/// The first rows of a search take the place of those of the search before; the others follow them.
void frmPageList::showFound(const QString &statement, const std::vector<std::int64_t> &ids)
{
    if (m_replacing || !m_model->rows()) {
        auto rows = m_services.database.openPages(statement, ids);
        rows->setMoveHandler([this] {
            showPosition();
            showStatus();
        });
        m_model->setRows(std::move(rows));
        m_replacing = false;
        SetupGridColumns();
        showPosition();
    } else {
        m_model->append(ids);
    }
    showStatus();
}

/// The grid stays as it was.
void frmPageList::showFailure(const RunTimeError &error)
{
    m_replacing = false;
    lblStatus->setText(error.description());
    lblStatus->setToolTip(error.description());
}

void frmPageList::sortBy(int column)
{
    if (m_sortColumn != column) {
        m_sortColumn = column;
        m_sortOrder = Qt::AscendingOrder;
    } else if (m_sortOrder == Qt::AscendingOrder) {
        m_sortOrder = Qt::DescendingOrder;
    } else {
        m_sortColumn = -1; // the third click brings the order of pages back
    }
    search();
}

/// The grid's current row is the one that the cursor stands on.
void frmPageList::showPosition()
{
    const int row = m_model->rows()->position() - 1;
    if (row < 0) {
        grdDataGrid->selectionModel()->clear();
        return;
    }
    const QModelIndex index = m_model->index(row, PageListModel::PageNumber);
    grdDataGrid->setCurrentIndex(index);
    grdDataGrid->scrollTo(index);
}

void frmPageList::showStatus()
{
    lblStatus->setText(
        u"%1 of %2 Record(s)"_s.arg(m_model->rows()->position()).arg(m_model->rows()->recordCount()));
    lblStatus->setToolTip({});
}

void frmPageList::rememberSearch()
{
    QStringList known;
    for (int i = 0; i < txtSearch->count(); ++i)
        known += txtSearch->itemText(i);
    const QString text = txtSearch->currentText();
    if (ListContains(known, text))
        return;
    const QSignalBlocker quiet(txtSearch);
    txtSearch->addItem(text);
    txtSearch->setEditText(text);
}

void frmPageList::refresh()
{
    fillProjects();
    search();
}

// ---- buttons

void frmPageList::cmdClear_Click()
{
    rememberSearch();
    txtSearch->setEditText({});
    cmbProj->setEditText({});
    optSearch[0]->setChecked(true);
    search();
}

void frmPageList::cmdRefresh_Click()
{
    m_model->requery();
    SetupGridColumns();
    showPosition();
    showStatus();
}

void frmPageList::cmdDelete_Click()
{
    EditableRecordset &rows = *m_model->rows();
    {
        m_deleting = true;
        const auto done = qScopeGuard([this] { m_deleting = false; });
        m_model->deleteCurrent();
    }
    rows.moveNext();
    if (rows.atEnd() && rows.recordCount() > 0)
        rows.moveLast();
}

void frmPageList::grdDataGrid_DblClick(int row)
{
    Module1 &state = m_services.state;
    state.EditorJumpToPage = true;
    state.EditorPageId = -1;
    bool isNumber = false;
    const std::int32_t id = m_model->text(row, PageListModel::ID).toInt(&isNumber);
    if (!isNumber)
        return;
    state.EditorPageId = id;
    if (id <= 0)
        return;
    if (m_services.database.QueryLong(Statements::pageExists(id)) < 1) {
        state.EditorJumpToPage = false; // nobody consumes it
        m_services.prompter.tell(
            Question::PageNotExisting,
            {u"The Screen Shot does not exist in the database any more or never existed."_s, state.AppTitle});
        return;
    }
    const QString project = m_model->text(row, PageListModel::ProjectName).trimmed();
    m_services.workspace.setProjectText(project);
    state.AppOptions.ProjectName = project;
    m_services.workspace.openPageEditor(u"Page: %1"_s.arg(id));
}

void frmPageList::move(void (frmPageList::*way)())
{
    try {
        (this->*way)();
    } catch (const RunTimeError &error) {
        m_services.prompter.tell(Question::PageListFailed, {error.description(), m_services.state.AppTitle});
    }
}

void frmPageList::first()
{
    m_model->rows()->moveFirst();
}

void frmPageList::last()
{
    m_model->rows()->moveLast();
}

void frmPageList::next()
{
    EditableRecordset &rows = *m_model->rows();
    rows.moveNext();
    if (rows.atEnd() && rows.recordCount() > 0) {
        QApplication::beep();
        rows.moveLast();
    }
}

void frmPageList::previous()
{
    EditableRecordset &rows = *m_model->rows();
    rows.movePrevious();
    if (rows.atStart() && rows.recordCount() > 0) {
        QApplication::beep();
        rows.moveFirst();
    }
}

void frmPageList::movePage(int distance)
{
    const int row = m_model->rows()->position() - 1;
    const int other = row + distance;
    if (m_sortColumn >= 0 || row < 0 || other < 0 || other >= m_model->rowCount() ||
        m_model->text(row, PageListModel::ProjectName) != m_model->text(other, PageListModel::ProjectName)) {
        QApplication::beep();
        return;
    }
    PageOrder::exchange(m_services.database, m_model->text(row, PageListModel::ID).toLongLong(),
                        m_model->text(other, PageListModel::ID).toLongLong());
    m_model->exchange(row, other);
    m_model->rows()->moveTo(other + 1);
}

// ---- keys

/// Up, Down, Page Up and Page Down belong to the grid wherever the keyboard is; Home and End also move in the
/// text of a box.
bool frmPageList::handleKey(const QObject *watched, int key, Qt::KeyboardModifiers modifiers)
{
    const bool control = modifiers & Qt::ControlModifier;
    const bool isText = watched != grdDataGrid;
    if (modifiers & Qt::AltModifier) {
        if (key != Qt::Key_Up && key != Qt::Key_Down)
            return false;
        runGuarded(m_failures, [&] { movePage(key == Qt::Key_Up ? -1 : 1); });
        return true;
    }
    switch (key) {
    case Qt::Key_Home:
        move(&frmPageList::first);
        return !isText;
    case Qt::Key_End:
        move(&frmPageList::last);
        return !isText;
    case Qt::Key_Up:
    case Qt::Key_PageUp:
        move(control ? &frmPageList::first : &frmPageList::previous);
        return true;
    case Qt::Key_Down:
    case Qt::Key_PageDown:
        move(control ? &frmPageList::last : &frmPageList::next);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (isText || m_model->rows()->position() < 1)
            return false;
        runGuarded(m_failures, [this] { grdDataGrid_DblClick(m_model->rows()->position() - 1); });
        return true;
    default:
        return false;
    }
}

bool frmPageList::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (handleKey(watched, key->key(), key->modifiers()))
            return true;
    }
    if (event->type() == QEvent::FocusOut && watched == txtSearch)
        rememberSearch();
    return QWidget::eventFilter(watched, event);
}

void frmPageList::closeEvent(QCloseEvent *event)
{
    m_search.reset();
    m_services.workspace.setBusyPointer(false);
    event->accept();
}
