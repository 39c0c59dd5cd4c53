#include "pagestore/frmPageList.h"

#include "pagestore/PageOrder.h"
#include "pagestore/Statements.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCloseEvent>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScopeGuard>
#include <QTableView>
#include <QToolButton>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int twipsPerPixel = 15;
constexpr int fileColumnRest = 8800 / twipsPerPixel; // of the grid's width, taken by the other columns

QToolButton *moveButton(QWidget *parent, const char *name, const QString &tip)
{
    auto *button = new QToolButton(parent);
    button->setObjectName(QLatin1StringView(name));
    button->setIcon(QIcon(u":/icons/%1.svg"_s.arg(QString::fromLatin1(name).mid(3).toLower())));
    button->setIconSize({20, 20});
    button->setToolTip(tip);
    button->setAccessibleName(tip);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

QPushButton *pushButton(QWidget *parent, const char *name, const QString &text, const QString &tip)
{
    auto *button = new QPushButton(text, parent);
    button->setObjectName(QLatin1StringView(name));
    button->setToolTip(tip);
    button->setAutoDefault(false);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

QComboBox *editableBox(QWidget *parent, const char *name)
{
    auto *box = new QComboBox(parent);
    box->setObjectName(QLatin1StringView(name));
    box->setEditable(true);
    box->setInsertPolicy(QComboBox::NoInsert);
    box->setCompleter(nullptr); // it would search for what nobody has typed
    return box;
}

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

frmPageList::frmPageList(const PageListServices &services)
    : m_services(services), m_failures(services.prompter), m_model(new PageListModel(this)),
      cmbProj(editableBox(this, "cmbProj")), txtSearch(editableBox(this, "txtSearch_0")),
      cmdClear(pushButton(this, "cmdClear", u"Clear"_s, u"Clear search text box and project name."_s)),
      grdDataGrid(new QTableView(this)), lblStatus(new QLabel(this)),
      cmdFirst(moveButton(this, "cmdFirst", u"The first row"_s)),
      cmdPrevious(moveButton(this, "cmdPrevious", u"Previous row"_s)),
      cmdNext(moveButton(this, "cmdNext", u"Next row"_s)),
      cmdLast(moveButton(this, "cmdLast", u"Last row"_s)),
      cmdMoveUp(pushButton(this, "cmdMoveUp", u"Move &Up"_s,
                           u"Exchange the page with the one above it in its project (Alt+Up)."_s)),
      cmdMoveDown(pushButton(this, "cmdMoveDown", u"Move Do&wn"_s,
                             u"Exchange the page with the one below it in its project (Alt+Down)."_s)),
      cmdDelete(pushButton(this, "cmdDelete", u"&Delete Page"_s,
                           u"Delete the selected row, which is one page of a project."_s)),
      cmdRefresh(pushButton(this, "cmdRefresh", u"&Refresh"_s, {})),
      cmdHelp(pushButton(this, "cmdHelp", u"&Help"_s, {}))
{
    setObjectName("frmPageList"_L1);
    setWindowTitle(u"Page List"_s);
    buildControls();
    layOut();
    fillProjects();
    const QString project = m_services.state.AppOptions.ProjectName;
    cmbProj->setCurrentText(project);
    showFound(Statements::listedPages(project), {});
    loadGrid(Statements::listedPages(project));
    connectControls();
    QMetaObject::invokeMethod(
        txtSearch, [this] { txtSearch->setFocus(); }, Qt::QueuedConnection);
}

void frmPageList::buildControls()
{
    auto *joiners = new QButtonGroup(this);
    const QString texts[] = {u"or"_s, u"and"_s};
    for (std::size_t i = 0; i < optSearch.size(); ++i) {
        optSearch[i] = new QRadioButton(texts[i], this);
        optSearch[i]->setObjectName(u"optSearch_%1"_s.arg(i));
        joiners->addButton(optSearch[i]);
    }
    optSearch[0]->setChecked(true);

    lblStatus->setObjectName("lblStatus"_L1);
    lblStatus->setTextInteractionFlags(Qt::TextSelectableByMouse);
    grdDataGrid->setObjectName("grdDataGrid"_L1);
    grdDataGrid->setModel(m_model);
    grdDataGrid->setSelectionBehavior(QAbstractItemView::SelectRows);
    grdDataGrid->setSelectionMode(QAbstractItemView::SingleSelection);
    grdDataGrid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grdDataGrid->setAlternatingRowColors(true);
    grdDataGrid->setShowGrid(false);
    grdDataGrid->setWordWrap(false);
    grdDataGrid->setTabKeyNavigation(false);
    grdDataGrid->verticalHeader()->hide();
    grdDataGrid->verticalHeader()->setDefaultSectionSize(grdDataGrid->fontMetrics().height() + 8);
    QHeaderView *header = grdDataGrid->horizontalHeader();
    header->setSectionsClickable(true);
    header->setHighlightSections(false);
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header->setStretchLastSection(true);
    for (QWidget *watched : {static_cast<QWidget *>(cmbProj), static_cast<QWidget *>(txtSearch),
                             static_cast<QWidget *>(grdDataGrid)})
        watched->installEventFilter(this);
}

void frmPageList::layOut()
{
    auto *project = new QLabel(u"Project Name:"_s, this);
    project->setBuddy(cmbProj);
    auto *words = new QLabel(u"Search:"_s, this);
    words->setBuddy(txtSearch);
    auto *boxes = new QHBoxLayout;
    boxes->addWidget(project);
    boxes->addWidget(cmbProj, 2);
    boxes->addWidget(optSearch[0]);
    boxes->addWidget(optSearch[1]);
    boxes->addSpacing(8);
    boxes->addWidget(words);
    boxes->addWidget(txtSearch, 3);
    boxes->addWidget(cmdClear);

    auto *buttons = new QHBoxLayout;
    for (QWidget *button : {static_cast<QWidget *>(cmdFirst), static_cast<QWidget *>(cmdPrevious),
                            static_cast<QWidget *>(cmdNext), static_cast<QWidget *>(cmdLast)})
        buttons->addWidget(button);
    buttons->addSpacing(8);
    buttons->addWidget(lblStatus, 1);
    for (QPushButton *button : {cmdMoveUp, cmdMoveDown, cmdDelete, cmdRefresh, cmdHelp})
        buttons->addWidget(button);

    auto *column = new QVBoxLayout(this);
    column->addLayout(boxes);
    column->addWidget(grdDataGrid, 1);
    column->addLayout(buttons);
    for (QWidget *next : {static_cast<QWidget *>(cmbProj), static_cast<QWidget *>(optSearch[0]),
                          static_cast<QWidget *>(txtSearch), static_cast<QWidget *>(cmdClear),
                          static_cast<QWidget *>(grdDataGrid)})
        setTabOrder(next, next->nextInFocusChain());
}

void frmPageList::connectControls()
{
    const auto searches = guarded(m_failures, [this] { search(); });
    connect(cmbProj, &QComboBox::editTextChanged, this, searches);
    connect(txtSearch, &QComboBox::editTextChanged, this, searches);
    for (const QRadioButton *option : optSearch)
        connect(option, &QRadioButton::clicked, this, searches);

    const std::pair<QAbstractButton *, void (frmPageList::*)()> buttons[] = {
        {cmdClear, &frmPageList::cmdClear_Click}, {cmdRefresh, &frmPageList::cmdRefresh_Click}};
    for (const auto &[button, handler] : buttons)
        connect(button, &QAbstractButton::clicked, this,
                guarded(m_failures, [this, handler] { (this->*handler)(); }));
    const std::pair<QAbstractButton *, void (frmPageList::*)()> moves[] = {
        {cmdFirst, &frmPageList::first},
        {cmdPrevious, &frmPageList::previous},
        {cmdNext, &frmPageList::next},
        {cmdLast, &frmPageList::last},
        {cmdDelete, &frmPageList::cmdDelete_Click}};
    for (const auto &[button, way] : moves)
        connect(button, &QAbstractButton::clicked, this, guarded(m_failures, [this, way] { move(way); }));
    connect(cmdMoveUp, &QPushButton::clicked, this, guarded(m_failures, [this] { movePage(-1); }));
    connect(cmdMoveDown, &QPushButton::clicked, this, guarded(m_failures, [this] { movePage(1); }));
    connect(cmdHelp, &QPushButton::clicked, this,
            guarded(m_failures, [this] { m_services.workspace.openHelp(u"pageList.htm"_s); }));

    connect(grdDataGrid->horizontalHeader(), &QHeaderView::sectionClicked, this,
            [this](int column) { runGuarded(m_failures, [&] { sortBy(column); }); });
    connect(grdDataGrid, &QTableView::doubleClicked, this, [this](const QModelIndex &index) {
        runGuarded(m_failures, [&] { grdDataGrid_DblClick(index.row()); });
    });
    connect(grdDataGrid->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &index) {
                if (!m_deleting && index.isValid() && m_model->rows()->position() != index.row() + 1)
                    runGuarded(m_failures, [&] { m_model->rows()->moveTo(index.row() + 1); });
            });
}

void frmPageList::fillProjects()
{
    const QString text = cmbProj->currentText();
    const QSignalBlocker quiet(cmbProj);
    cmbProj->clear();
    cmbProj->addItem(QString());
    cmbProj->addItems(m_services.workspace.projectNames());
    cmbProj->setCurrentText(text);
}

void frmPageList::SetupGridColumns()
{
    grdDataGrid->setColumnHidden(PageListModel::ID, true);
    grdDataGrid->setColumnHidden(PageListModel::Project, true);
    const std::pair<int, int> widths[] = {
        {PageListModel::PageNumber, 500 / twipsPerPixel},
        {PageListModel::PageTitle, 5000 / twipsPerPixel},
        {PageListModel::PageStatus, 600 / twipsPerPixel},
        {PageListModel::ProjectName, 1100 / twipsPerPixel},
    };
    QHeaderView *header = grdDataGrid->horizontalHeader();
    int rest = grdDataGrid->viewport()->width() - header->defaultSectionSize();
    for (const auto &[column, width] : widths) {
        grdDataGrid->setColumnWidth(column, std::max(width, header->sectionSizeHint(column)));
        rest -= grdDataGrid->columnWidth(column);
    }
    // Where headings need more than their width, the files' column gives it, so that all are seen.
    grdDataGrid->setColumnWidth(PageListModel::ScreenShotFilePath,
                                std::max(header->sectionSizeHint(PageListModel::ScreenShotFilePath),
                                         std::min(grdDataGrid->width() - fileColumnRest, rest)));
    header->setSortIndicatorShown(m_sortColumn >= 0);
    header->setSortIndicator(m_sortColumn, m_sortOrder);
    // Pages are moved where their own order is shown.
    cmdMoveUp->setEnabled(m_sortColumn < 0);
    cmdMoveDown->setEnabled(m_sortColumn < 0);
}

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
