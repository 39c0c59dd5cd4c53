#include "pagestore/ProjectDeletion.h"

#include "pagestore/Statements.h"
#include "platform/ApplicationFolder.h"
#include "platform/RunTimeError.h"
#include "settings/OptionsStore.h"
#include "state/Workspace.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>

#include <algorithm>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// The folder itself, something in it, or something below it.
bool isWithin(const QString &path, const QString &folder)
{
    const QString inner = QFileInfo(path).canonicalFilePath();
    const QString outer = QFileInfo(folder).canonicalFilePath();
    return !inner.isEmpty() && (inner == outer || inner.startsWith(FileSystem::join(outer, QString())));
}
} // namespace

ProjectDeletion::ProjectDeletion(const Services &services, std::function<void()> projectsChanged)
    : m_services(services), m_projectsChanged(std::move(projectsChanged))
{
}

QStringList ProjectDeletion::projects()
{
    QStringList names;
    m_services.database.FillListFromQuery(Statements::projectNames(), names);
    return names;
}

void ProjectDeletion::deleteProject(const QString &project)
{
    // Asked again after the question: a hot key can have begun a run while its box was open.
    if (project.isEmpty() || isCaptured(project) ||
        !confirmed(Question::DeleteProject, u"Delete project\r\n%1\r\nAre you sure?"_s.arg(project),
                   Icon::None) ||
        isCaptured(project))
        return;
    Module1 &state = m_services.state;
    const QString folder = m_services.directories.storedDirectory(project);
    m_services.database.RunSql(QString::fromUtf16(Statements::pageTable), Statements::deleteProject(project));
    if (m_services.database.openRecordset(Statements::pageCount(project))->field(0).toInt() > 0)
        failToDelete(u"The project %1 was"_s.arg(project));
    state.MainWindow->removeProjectName(project);
    m_projectsChanged();
    state.MainWindow->refreshPageViews();
    if (setAside(folder, {state.ApplicationPath, state.AppOptions.BaseDirectory}))
        OptionsStore::writeProjectName(state.OptionsFilePath, QString());
}

void ProjectDeletion::deleteAllProjects()
{
    if (isCaptured(QString()) ||
        !confirmed(Question::DeleteAllProjects, u"Delete ALL projects!\r\n\r\nAre you sure?"_s,
                   Icon::Exclamation) ||
        isCaptured(QString()))
        return;
    Module1 &state = m_services.state;
    m_services.database.RunSql(QString::fromUtf16(Statements::pageTable), Statements::deleteAllProjects());
    if (!m_services.database.openRecordset(Statements::projectNames())->atEnd())
        failToDelete(u"The projects were"_s);
    m_projectsChanged();
    state.MainWindow->refreshPageViews();
    const QString &base = state.AppOptions.BaseDirectory;
    const bool isThere = state.FileSystem.folderExists(base);
    if (!setAside(base, {state.ApplicationPath}))
        return;
    if (isThere)
        state.FileSystem.createFolder(base);
    OptionsStore::writeProjectName(state.OptionsFilePath, QString());
}

bool ProjectDeletion::confirmed(Question question, const QString &text, Icon icon)
{
    const QString &title = m_services.state.AppTitle;
    if (m_services.prompter.ask(question, Buttons::YesNo, {text, title, icon}) == Answer::Yes)
        return true;
    m_services.prompter.tell(Question::DeleteCanceled, {u"Canceled."_s, title});
    return false;
}

/// Says so; an empty name stands for every project.
bool ProjectDeletion::isCaptured(const QString &project)
{
    const Module1 &state = m_services.state;
    const QString &captured = state.AppOptions.ProjectName;
    if (!state.CaptureRunning ||
        (!project.isEmpty() && project.compare(captured.trimmed(), Qt::CaseInsensitive) != 0))
        return false;
    m_services.prompter.tell(
        Question::ProjectIsCaptured,
        {u"The project %1 is being captured: stop the capture before you delete it."_s.arg(captured),
         state.AppTitle, Icon::Exclamation});
    return true;
}

void ProjectDeletion::failToDelete(const QString &what) const
{
    throw RunTimeError(RunTimeError::DatabaseError,
                       u"%1 not deleted: the database file %2 may be write-protected, or another program has "
                       "locked it."_s.arg(what, m_services.state.DatabasePath));
}

/// False, with a message, when the folder keeps its name. It does when one of `holding` is in it: the program
/// itself is using those.
bool ProjectDeletion::setAside(const QString &folder, const QStringList &holding)
{
    const Module1 &state = m_services.state;
    if (!state.FileSystem.folderExists(folder))
        return true;
    // A separator at the end would put the new name into the folder.
    const QString oldName = QDir::cleanPath(folder);
    const QString stamp = QLocale::c().toString(m_services.clock.now(), u"MMMddHHmmss"_s);
    const QString newName = oldName + u"_del_"_s + stamp;
    try {
        if (std::none_of(holding.begin(), holding.end(),
                         [&](const QString &path) { return isWithin(path, oldName); })) {
            state.FileSystem.renameFolder(oldName, newName);
            return true;
        }
    } catch (const RunTimeError &) {
        // told below like every other reason
    }
    m_services.prompter.tell(Question::DeleteRenameFailed,
                             {u"Rename file directory \r\n%1 to \r\n%2 failed.\r\n"
                              "Some applications may be using that directory.\r\n"
                              "You can do it later using Window Explorer."_s.arg(oldName, newName),
                              state.AppTitle});
    return false;
}

void ProjectDeletion::explain()
{
    const QString example = FileSystem::join(ApplicationFolder::defaultBaseDirectory(), u"oracleUpgrade3"_s);
    m_services.prompter.tell(
        Question::HowToDeleteProject,
        {u"Select a project from the list, click 'Delete' button, the project will be \r\n"
         "removed from the database. \r\n"
         "It will also rename the project file directory.\r\n"
         "Shotly will try to rename the deleted project's file directory to \r\n"
         "'oldDirPath_del_timeStamp', where timeStamp is a string with current date and\r\n"
         "time. For example, it may try to rename '%1' to \r\n"
         "'%1_del_Mar21134302' when the delete was done at \r\n"
         "March 21, 13:43:02PM. If you delete all projects, Shotly will try to rename\r\n"
         "the base directory, then re-create it. So, you know that its database entries \r\n"
         "have been removed. Before deleting any project, make sure that you close all \r\n"
         "applications that may use the file directories, such as Word, Window Explorer, \r\n"
         "if they hold a file or a directory within the one you are going to rename, it \r\n"
         "will fail to be renamed."_s.arg(example),
         u"How to Delete a Project?"_s});
}
