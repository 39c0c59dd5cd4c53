#pragma once

#include "platform/FileSystem.h"
#include "state/Progress.h"

#include <QString>

#include <vector>

/// The documents of a project directory that are moved into its folder "oldDocument", and the way back. Older
/// documents there give way into a folder of their own until keep() says that they are not needed any more.
/// Without keep() the destructor puts everything back; after a kill every file is in one of the three
/// folders.
class MovedDocuments
{
public:
    MovedDocuments(const FileSystem &files, const QString &directory);
    ~MovedDocuments();
    MovedDocuments(const MovedDocuments &) = delete;
    MovedDocuments &operator=(const MovedDocuments &) = delete;

    /// Moves all files that match. One that cannot be moved stays where it is. False when the user has
    /// cancelled; what was moved until then is not back yet.
    bool move(const QString &pattern, Progress &progress);

    /// Leaves both folders as they were. False when a file could not be put back: it is still in the folder
    /// "oldDocument", or in the hidden one below it.
    bool putBack(Progress &progress);

    /// What was moved stays moved.
    void keep(Progress &progress);

    /// How many were moved.
    int count() const { return static_cast<int>(m_moved.size()); }

private:
    struct Moved {
        QString name;
        bool replaced = false; ///< there was an older one of this name
    };
    void createFolders();
    void moveOne(const QString &name);
    bool putOneBack(const Moved &moved);
    void removeEmptyFolders();

    FileSystem m_files;
    QString m_directory;
    QString m_oldFolder;
    QString m_olderFolder; ///< where the older ones are; empty as long as there are none
    bool m_oldFolderIsNew = false;
    std::vector<Moved> m_moved;
};
