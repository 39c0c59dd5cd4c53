#pragma once

#include "platform/Database.h"
#include "state/Module1.h"

#include <QTemporaryDir>

/// The documents of a project in another folder than the project's own, which stays as it is, and so do its
/// rows: they are generated from copies of the pictures and of the database in a hidden folder beside their
/// place, and moved there when all are written. Each file replaces an older one of its name at once or not
/// at all; without deliver() the folder stays as it was.
class ProjectOutput
{
public:
    /// Makes the copies and has `state` refer to them until this goes. Throws RunTimeError when that fails.
    /// `folder` is created if it is not there. `withPictures`: the pictures are delivered, too.
    ProjectOutput(Module1 &state, Database &database, const QString &project, const QString &folder,
                  bool withPictures);
    ~ProjectOutput();
    ProjectOutput(const ProjectOutput &) = delete;
    ProjectOutput &operator=(const ProjectOutput &) = delete;

    /// Throws RunTimeError naming the file that could not be moved.
    void deliver();

private:
    void copyPictures(const QString &project);
    QString unusedName(const QString &name) const;

    Module1 &m_state;
    Database &m_database;
    QString m_folder;
    bool m_withPictures;
    QTemporaryDir m_work;
    QString m_pages; ///< the project directory of the copies
    QStringList m_pictures;
    QString m_databasePath; ///< the user's, to be given back
    QString m_connectionString;
};
