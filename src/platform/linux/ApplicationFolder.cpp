#include "platform/ApplicationFolder.h"

#include "platform/FileSystem.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QStandardPaths>

namespace
{
const QString databaseName = QStringLiteral("Shotly.mdb");

bool holdsDatabase(const QString &folder)
{
    return QFileInfo(FileSystem::join(folder, databaseName)).isFile();
}

/// Where the delivered files lie. The program may have been installed under another prefix than the one it
/// was built for; its neighbour folder tells.
QString installedDataFolder(const QString &programFolder)
{
    const QString given = qEnvironmentVariable("SHOTLY_DATA_DIR");
    if (!given.isEmpty())
        return QDir::current().absoluteFilePath(given);
    const QString neighbour =
        QDir::cleanPath(FileSystem::join(programFolder, QStringLiteral("../share/shotly")));
    return holdsDatabase(neighbour) ? neighbour : QStringLiteral(SHOTLY_DATA_DIR);
}

/// Copies what is not there yet; a file of the user is never replaced.
void fill(const QString &folder, const QString &dataFolder)
{
    const FileSystem files;
    files.createFolder(folder);
    QDirIterator delivered(dataFolder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (delivered.hasNext()) {
        const QString source = delivered.next();
        const QString target = FileSystem::join(folder, QDir(dataFolder).relativeFilePath(source));
        if (QFileInfo::exists(target))
            continue;
        files.createFolder(QFileInfo(target).path());
        files.copyFile(source, target);
    }
}
} // namespace

QString ApplicationFolder::locate(const QString &programFolder)
{
    QString folder = qEnvironmentVariable("SHOTLY_HOME");
    if (folder.isEmpty()) {
        if (holdsDatabase(programFolder) && QFileInfo(programFolder).isWritable())
            return QDir::cleanPath(programFolder);
        folder =
            QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/shotly");
    }
    folder = QDir::cleanPath(QDir::current().absoluteFilePath(folder));
    fill(folder, installedDataFolder(programFolder));
    return folder;
}

QString ApplicationFolder::defaultBaseDirectory()
{
    return QDir::homePath() + QStringLiteral("/Shotly");
}
