#pragma once

#include "annotate/ImageFolder.h"

#include <QFileSystemWatcher>
#include <QListView>
#include <QStringListModel>
#include <QTimer>
#include <QWidget>

class QComboBox;
class QListWidget;

/// `File1`: a list that tells which row was chosen, by mouse, key or program. Choosing the selected row with
/// the mouse tells it once more.
class FileList : public QListView
{
    Q_OBJECT

public:
    explicit FileList(QWidget *parent);

    QStringList names() const { return m_names.stringList(); }
    QString nameAt(int row) const { return m_names.stringList().value(row); }
    int selectedRow() const;
    void setNames(const QStringList &names);
    /// Selects without a word; -1: none. The keys go on from `keysFrom`, where that is a row.
    void mark(int row, int keysFrom = -1);

Q_SIGNALS:
    void chosen(int row); ///< sent from the event loop, for the last of several rows only

protected:
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    QStringListModel m_names;
    QTimer m_telling;
    bool m_quiet = false;
};

/// The left part of a viewer: drives, folders, picture files of the folder. The file list follows what
/// happens in the folder.
class FilePanel : public QWidget
{
    Q_OBJECT

public:
    explicit FilePanel(QWidget *parent);

    QString folder() const { return m_folder; }
    /// Throws RunTimeError when it cannot be read; nothing changes then.
    void setFolder(const QString &folder);
    /// Drive and folder lists show where it is, whatever the user has chosen there.
    void showPlace();
    QString pathOf(int row) const;
    /// Selects the file with this path, if the list shows it, without a word.
    void markFile(const QString &path, int keysFrom = -1);

    QComboBox *Drive1;
    QListWidget *Dir1;
    FileList *File1;

Q_SIGNALS:
    void folderChosen(const QString &folder); ///< by the user; setFolder() does it
    void followed();                          ///< something has happened in the folder

private:
    void showDrives();
    void followFolder();

    std::vector<ImageFolder::Drive> m_drives;
    QString m_folder;
    QFileSystemWatcher m_watcher;
    QTimer m_following;
};
