#include "annotate/frmVpicFiles.h"

#include "platform/FileSystem.h"
#include "platform/RunTimeError.h"

#include <QComboBox>
#include <QFileInfo>
#include <QListWidget>
#include <QMouseEvent>
#include <QStyle>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int followingDelay = 200; // milliseconds; many files may come at once
constexpr int smallIcon = 16;
} // namespace

FileList::FileList(QWidget *parent) : QListView(parent)
{
    setObjectName("File1"_L1);
    setAccessibleName(u"Picture files"_s);
    setModel(&m_names);
    setUniformItemSizes(true);
    setEditTriggers(NoEditTriggers);
    setTextElideMode(Qt::ElideMiddle);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_telling.setSingleShot(true);
    connect(&m_telling, &QTimer::timeout, this, [this] {
        if (const int row = selectedRow(); row >= 0)
            Q_EMIT chosen(row);
    });
}

int FileList::selectedRow() const
{
    const QModelIndexList rows = selectionModel()->selectedIndexes();
    return rows.isEmpty() ? -1 : rows.constFirst().row();
}

void FileList::setNames(const QStringList &names)
{
    m_quiet = true;
    m_names.setStringList(names);
    m_quiet = false;
}

void FileList::mark(int row, int keysFrom)
{
    m_quiet = true;
    const QModelIndex index = m_names.index(row);
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    if (keysFrom >= 0)
        selectionModel()->setCurrentIndex(m_names.index(keysFrom), QItemSelectionModel::NoUpdate);
    m_quiet = false;
    scrollTo(keysFrom >= 0 ? m_names.index(keysFrom) : index);
    m_telling.stop();
}

void FileList::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QListView::selectionChanged(selected, deselected);
    if (!m_quiet && !selected.isEmpty())
        m_telling.start(0);
}

void FileList::mousePressEvent(QMouseEvent *event)
{
    QListView::mousePressEvent(event);
    if (event->button() == Qt::LeftButton && indexAt(event->pos()).isValid())
        m_telling.start(0);
}

FilePanel::FilePanel(QWidget *parent)
    : QWidget(parent), Drive1(new QComboBox(this)), Dir1(new QListWidget(this)), File1(new FileList(this))
{
    Drive1->setObjectName("Drive1"_L1);
    Drive1->setAccessibleName(u"Drives"_s);
    Drive1->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    Drive1->setMinimumContentsLength(6);
    Dir1->setObjectName("Dir1"_L1);
    Dir1->setAccessibleName(u"Folders"_s);
    Dir1->setIconSize({smallIcon, smallIcon});
    Dir1->setTextElideMode(Qt::ElideMiddle);
    Dir1->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(4);
    column->addWidget(Drive1);
    column->addWidget(Dir1, 2);
    column->addWidget(File1, 3);

    showDrives();
    m_following.setSingleShot(true);
    m_following.setInterval(followingDelay);
    connect(Drive1, &QComboBox::activated, this,
            [this](int index) { Q_EMIT folderChosen(m_drives[static_cast<std::size_t>(index)].path); });
    connect(Dir1, &QListWidget::itemActivated, this, [this](const QListWidgetItem *item) {
        Q_EMIT folderChosen(item->data(Qt::UserRole).toString());
    });
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, [this] {
        if (!m_following.isActive())
            m_following.start();
    });
    connect(&m_following, &QTimer::timeout, this, [this] { followFolder(); });
}

void FilePanel::showDrives()
{
    m_drives = ImageFolder::drives();
    Drive1->clear();
    for (const ImageFolder::Drive &drive : m_drives) {
        Drive1->addItem(style()->standardIcon(QStyle::SP_DriveHDIcon), drive.label);
        Drive1->setItemData(Drive1->count() - 1, drive.path, Qt::ToolTipRole);
    }
}

void FilePanel::setFolder(const QString &folder)
{
    const QStringList names = ImageFolder::files(folder);
    if (!m_watcher.directories().isEmpty())
        m_watcher.removePaths(m_watcher.directories());
    m_watcher.addPath(folder);
    m_folder = folder;
    showPlace();
    File1->setNames(names);
}

void FilePanel::showPlace()
{
    Drive1->setCurrentIndex(ImageFolder::driveOf(m_drives, m_folder));
    Drive1->setToolTip(m_folder);
    Dir1->clear();
    for (const ImageFolder::Row &row : ImageFolder::rows(m_folder)) {
        const QIcon icon = style()->standardIcon(row.open ? QStyle::SP_DirOpenIcon : QStyle::SP_DirIcon);
        auto *item = new QListWidgetItem(icon, QString(2 * row.depth, u' ') + row.name, Dir1);
        item->setData(Qt::UserRole, row.path);
        item->setToolTip(row.path);
        if (row.path == m_folder)
            Dir1->setCurrentItem(item);
    }
}

/// Something has changed in the folder. One that has gone has no files.
void FilePanel::followFolder()
{
    QStringList names;
    try {
        names = ImageFolder::files(m_folder);
        m_watcher.addPath(m_folder); // it may have been made anew
    } catch (const RunTimeError &) {
        names.clear();
    }
    if (names != File1->names()) {
        const QString selected = File1->nameAt(File1->selectedRow());
        File1->setNames(names);
        File1->mark(selected.isEmpty() ? -1 : static_cast<int>(names.indexOf(selected)));
    }
    Q_EMIT followed();
}

QString FilePanel::pathOf(int row) const
{
    return FileSystem::join(m_folder, File1->nameAt(row));
}

void FilePanel::markFile(const QString &path, int keysFrom)
{
    const bool here = QFileInfo(path).path() == m_folder;
    File1->mark(here ? static_cast<int>(File1->names().indexOf(FileSystem::bareName(path))) : -1, keysFrom);
}
