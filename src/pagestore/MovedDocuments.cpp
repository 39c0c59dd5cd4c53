#include "pagestore/MovedDocuments.h"

#include "pagestore/ProjectDirectories.h"
#include "platform/RunTimeError.h"
#include "state/BesideEvents.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>

#include <csignal>

using namespace Qt::Literals::StringLiterals;

namespace
{
// ".shotly-replaced-<process>-<random>"
const QString olderPrefix = u".shotly-replaced-"_s;

/// Folders of processes that were killed: what lies in them has been replaced since.
QStringList abandonedFolders(const QString &oldFolder)
{
    QStringList folders;
    for (const QString &name :
         QDir(oldFolder).entryList({olderPrefix + u'*'}, QDir::Dirs | QDir::Hidden | QDir::NoSymLinks)) {
        const int process = name.sliced(olderPrefix.size()).section(u'-', 0, 0).toInt();
        if (process > 0 && ::kill(process, 0) != 0 && errno == ESRCH)
            folders += FileSystem::join(oldFolder, name);
    }
    return folders;
}
} // namespace

MovedDocuments::MovedDocuments(const FileSystem &files, const QString &directory)
    : m_files(files), m_directory(directory), m_oldFolder(ProjectDirectories::oldDocumentFolder(directory))
{
}

MovedDocuments::~MovedDocuments()
{
    for (auto moved = m_moved.crbegin(); moved != m_moved.crend(); ++moved)
        putOneBack(*moved);
    removeEmptyFolders();
}

bool MovedDocuments::move(const QString &pattern, Progress &progress)
{
    ProgressScope listing(progress, u"Moving the previous documents"_s, 0);
    const QStringList names = besideEvents(listing, [&](WorkBesideEvents & /*work*/) {
        createFolders();
        return m_files.filesMatching(m_directory, pattern);
    });
    ProgressScope moving(progress, u"Moving the previous documents"_s, static_cast<int>(names.size()));
    const bool toTheEnd = besideEvents(moving, [&](WorkBesideEvents &work) {
        for (const QString &name : names) {
            if (work.stop.stop_requested())
                return false;
            moveOne(name);
            ++work.done;
        }
        return true;
    });
    return toTheEnd && moving.step(static_cast<int>(names.size()));
}

void MovedDocuments::createFolders()
{
    m_oldFolderIsNew = !m_files.folderExists(m_oldFolder);
    m_files.createFolder(m_oldFolder);
}

void MovedDocuments::moveOne(const QString &name)
{
    const QString from = FileSystem::join(m_directory, name);
    const QString to = FileSystem::join(m_oldFolder, name);
    const QFileInfo older(to);
    Moved moved{name, older.isSymLink() || older.isFile()};
    try {
        if (moved.replaced) {
            while (m_olderFolder.isEmpty()) {
                const QString folder =
                    olderPrefix + u"%1-%2"_s.arg(QCoreApplication::applicationPid())
                                      .arg(QRandomGenerator::system()->generate64(), 0, 36);
                if (QDir(m_oldFolder).exists(folder))
                    continue;
                m_files.createFolder(FileSystem::join(m_oldFolder, folder));
                m_olderFolder = FileSystem::join(m_oldFolder, folder);
            }
            m_files.moveFile(to, FileSystem::join(m_olderFolder, name));
        }
    } catch (const RunTimeError &) {
        return; // this one stays where it is
    }
    try {
        // Taking the new name in one step is a complete copy and the deletion at once.
        m_files.moveFile(from, to);
        m_moved.push_back(std::move(moved));
    } catch (const RunTimeError &) {
        if (moved.replaced)
            m_files.moveFile(FileSystem::join(m_olderFolder, name), to);
    }
}

bool MovedDocuments::putOneBack(const Moved &moved)
{
    const QString path = FileSystem::join(m_directory, moved.name);
    const QString old = FileSystem::join(m_oldFolder, moved.name);
    // Somebody else's, who has taken the name meanwhile.
    if (QFileInfo::exists(path))
        return false;
    try {
        m_files.moveFile(old, path);
        if (moved.replaced)
            m_files.moveFile(FileSystem::join(m_olderFolder, moved.name), old);
        return true;
    } catch (const RunTimeError &) {
        return false;
    }
}

bool MovedDocuments::putBack(Progress &progress)
{
    ProgressScope scope(progress, u"Putting the previous documents back"_s, count());
    return besideEvents(scope, [this](WorkBesideEvents &work) {
        bool complete = true;
        for (; !m_moved.empty(); m_moved.pop_back(), ++work.done)
            complete = putOneBack(m_moved.back()) && complete;
        removeEmptyFolders();
        return complete;
    });
}

void MovedDocuments::removeEmptyFolders()
{
    if (!m_olderFolder.isEmpty())
        QDir().rmdir(m_olderFolder);
    if (m_oldFolderIsNew)
        QDir().rmdir(m_oldFolder);
}

void MovedDocuments::keep(Progress &progress)
{
    ProgressScope scope(progress, u"Moving the previous documents"_s, count());
    besideEvents(scope, [this](WorkBesideEvents &work) {
        if (!m_olderFolder.isEmpty())
            QDir(m_olderFolder).removeRecursively();
        for (const QString &folder : abandonedFolders(m_oldFolder))
            QDir(folder).removeRecursively();
        work.done = count();
    });
    m_moved.clear();
    m_oldFolderIsNew = false;
}
