#include "pagestore/ProjectDirectories.h"

#include "pagestore/Statements.h"
#include "platform/RunTimeError.h"
#include "state/Workspace.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
struct MovingRule {
    QStringList copied;
    QString deleted;
};

MovingRule movingRule(const QString &kind)
{
    if (kind == u"HTML"_s)
        return {{u"*.htm"_s}, u"*.htm"_s};
    if (kind == u"Word"_s)
        return {{u"*.doc"_s}, u"*.doc"_s};
    if (kind == u"bmp"_s)
        return {{u"*.bmp"_s}, u"*.bmp"_s};
    if (kind == u"All"_s)
        return {{u"*.*"_s, u"*.htm"_s}, u"*.htm"_s};
    return {};
}

/// The entry that differs from `name` in letter case alone, or `name`.
QString knownSpelling(const QStringList &names, const QString &name)
{
    if (ListContains(names, name))
        return name;
    for (const QString &entry : names) {
        if (entry.trimmed().compare(name, Qt::CaseInsensitive) == 0)
            return entry.trimmed();
    }
    return name;
}
} // namespace

ProjectDirectories::ProjectDirectories(Module1 &state, PageDatabase &database, Prompter &prompter)
    : m_state(state), m_database(database), m_prompter(prompter)
{
}

bool ProjectDirectories::existingProject() const
{
    const Workspace &workspace = *m_state.MainWindow;
    return !workspace.projectText().trimmed().isEmpty() &&
           ListContains(workspace.projectNames(), m_state.AppOptions.ProjectName);
}

bool ProjectDirectories::LocateProjectDirectory()
{
    Workspace &workspace = *m_state.MainWindow;
    const QString typed = workspace.projectText().trimmed();
    const QString name = knownSpelling(workspace.projectNames(), typed);
    if (name != typed)
        workspace.setProjectText(name);
    m_state.AppOptions.ProjectName = name;
    if (!ListContains(workspace.projectNames(), name)) {
        m_state.ShotCounter = 1;
        m_state.PageNumberBase = 0;
        m_state.ProjectDirectory.clear();
        return false;
    }
    m_state.ProjectDirectory = storedDirectory(name);
    if (m_state.FileSystem.folderExists(m_state.ProjectDirectory))
        return true;
    m_prompter.tell(
        Question::ProjectDirectoryMissing,
        {u"This project directory is not accessible:\r\n"_s + m_state.ProjectDirectory, m_state.AppTitle});
    return false;
}

QString ProjectDirectories::storedDirectory(const QString &project)
{
    // Pages of copied images have no directory, which the lookup would report as a failure.
    const int without = m_database.QueryLong(Statements::pagesWithoutDirectory(project));
    if (without > 0 && without == m_database.QueryLong(Statements::pageCount(project)))
        return FileSystem::join(m_state.AppOptions.BaseDirectory, project);
    const QString query =
        without > 0 ? Statements::storedProjectDirectory(project) : Statements::projectDirectory(project);
    return m_database.LookupField(u"ProjectDirectory"_s, query, true).trimmed();
}

void ProjectDirectories::show1stPic()
{
    const QString query = Statements::firstImage(m_state.AppOptions.ProjectName);
    m_state.CurrentImagePath = m_database.LookupField(u"ScreenShotFilePath"_s, query, false).trimmed();
    if (m_state.CurrentImagePath.isEmpty())
        return;
    if (!m_state.FileSystem.fileExists(m_state.CurrentImagePath)) {
        m_state.CurrentImagePath.clear();
        return;
    }
    m_state.ImageFileRequested = true;
    m_state.MainWindow->openViewer(ViewerSelection::FirstFile);
}

bool ProjectDirectories::directoryIsThere()
{
    const QString directory = m_state.ProjectDirectory;
    if (m_state.FileSystem.folderExists(directory))
        return true;
    m_prompter.tell(Question::OldDocumentsDirectoryMissing,
                    {u"The project directory is not exist:\r\n\r\n%1\r\n\r\n"
                     "You may changed base directory. if this is true, go to \r\n"
                     "Admin->Option, change base directory back to old value.\r\n\r\n"
                     "You may deleted the project directory. Create a new\r\n"
                     "project."_s.arg(directory),
                     m_state.AppTitle});
    return false;
}

bool ProjectDirectories::MoveOldDocuments(const QString &kind)
{
    if (!directoryIsThere())
        return false;
    const QString directory = m_state.ProjectDirectory;
    const MovingRule rule = movingRule(kind);
    try {
        m_state.FileSystem.createFolder(oldDocumentFolder(directory));
        for (const QString &pattern : rule.copied)
            setAside(directory, pattern, pattern == rule.deleted);
    } catch (const RunTimeError &) {
        return true; // no folder to copy into or none to read: every file stays where it is
    }
    return true;
}

ProjectDirectories::Moving ProjectDirectories::MoveOldDocuments(const QString &kind, MovedDocuments &moved,
                                                                Progress &progress)
{
    if (!directoryIsThere())
        return Moving::NoDirectory;
    try {
        return moved.move(movingRule(kind).deleted, progress) ? Moving::Done : Moving::Cancelled;
    } catch (const RunTimeError &) {
        return Moving::Done; // no folder to move into or none to read: every file stays where it is
    }
}

void ProjectDirectories::setAside(const QString &directory, const QString &pattern, bool removing)
{
    const FileSystem &files = m_state.FileSystem;
    for (const QString &name : files.filesMatching(directory, pattern)) {
        const QString from = FileSystem::join(directory, name);
        const QString to = FileSystem::join(oldDocumentFolder(directory), name);
        try {
            // Taking the new name in one step is a complete copy and the deletion at once.
            if (removing)
                files.moveFile(from, to);
            else
                files.copyFile(from, to);
        } catch (const RunTimeError &) {
            continue; // this one stays where it is
        }
    }
}

QString ProjectDirectories::oldDocumentFolder(const QString &directory)
{
    return FileSystem::join(directory, u"oldDocument"_s);
}
