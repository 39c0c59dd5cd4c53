#include "pagestore/frmPageList.h"

#include "pagestore/PageOrder.h"
#include "pagestore/Statements.h"
#include "platform/qt/ThemedIcon.h"

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
    button->setIcon(themedIcon(QString::fromLatin1(name).mid(3).toLower() + u".svg"_s));
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
                guarded(m_failures, [this, handler = handler] { (this->*handler)(); }));
    const std::pair<QAbstractButton *, void (frmPageList::*)()> moves[] = {
        {cmdFirst, &frmPageList::first},
        {cmdPrevious, &frmPageList::previous},
        {cmdNext, &frmPageList::next},
        {cmdLast, &frmPageList::last},
        {cmdDelete, &frmPageList::cmdDelete_Click}};
    for (const auto &[button, way] : moves)
        connect(button, &QAbstractButton::clicked, this,
                guarded(m_failures, [this, way = way] { move(way); }));
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
