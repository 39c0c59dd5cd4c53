#include "platform/ApplicationFolder.h"

#include "platform/FileSystem.h"
#include "platform/linux/DeliveredFiles.h"

#include <QDir>
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
    DeliveredFiles::renew(folder, installedDataFolder(programFolder));
    return folder;
}

QString ApplicationFolder::defaultBaseDirectory()
{
    return QDir::homePath() + QStringLiteral("/Shotly");
}
