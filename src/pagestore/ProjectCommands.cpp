#include "pagestore/ProjectCommands.h"

#include "pagestore/Statements.h"
#include "platform/RunTimeError.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
const char16_t *const onlyTextPage = u"You can only add a 'No-image' Text Page to an existing project. ";
} // namespace

ProjectCommands::ProjectCommands(const Services &services) : m_services(services) {}

bool ProjectCommands::existingProject(Question question, const QString &what)
{
    if (m_services.directories.existingProject())
        return true;
    m_services.prompter.tell(question, {what + u"\r\nPlease select a project from the pink dropdown list."_s,
                                        u"Please select a project"_s});
    return false;
}

void ProjectCommands::editPages()
{
    openEditor(m_services.state.EditorProjectPages);
}

void ProjectCommands::editAllPages()
{
    openEditor(m_services.state.EditorJumpToPage);
}

/// `order` says to the editor which pages it shows.
void ProjectCommands::openEditor(bool &order)
{
    Module1 &state = m_services.state;
    if (!existingProject(Question::SelectProjectForComments,
                         u"You can only add comments to an existing project. "_s) ||
        !m_services.directories.LocateProjectDirectory())
        return;
    order = true;
    state.NextTabCaption = u"Add Notes"_s;
    m_services.workspace.openPageEditor(state.NextTabCaption);
}

void ProjectCommands::addTextPage()
{
    Module1 &state = m_services.state;
    if (!existingProject(Question::SelectProjectForTextPage, QString::fromUtf16(onlyTextPage)) ||
        !m_services.directories.LocateProjectDirectory())
        return;
    state.EditorLastPageNumber =
        m_services.database.QueryLong(Statements::pageCount(state.AppOptions.ProjectName));
    state.EditorAddPage = true;
    m_services.workspace.openPageEditor(u"New Page"_s);
}

void ProjectCommands::listPages()
{
    Module1 &state = m_services.state;
    if (!existingProject(Question::SelectProjectForPageList,
                         u"Shotly can only show Page List of an existing project. "_s))
        return;
    if (!m_services.workspace.projectText().trimmed().isEmpty())
        m_services.directories.LocateProjectDirectory();
    state.NextTabCaption = u"Page List"_s;
    m_services.workspace.openPageList(state.NextTabCaption);
}

void ProjectCommands::copyImages()
{
    if (!existingProject(Question::SelectProjectForTextPage, QString::fromUtf16(onlyTextPage)) ||
        !m_services.directories.LocateProjectDirectory())
        return;
    const AppOptions &options = m_services.state.AppOptions;
    const QString folder = FileSystem::join(options.BaseDirectory, options.ProjectName);
    int number = 1;
    if (m_services.state.FileSystem.folderExists(folder)) {
        m_services.directories.MoveOldDocuments(u"All"_s);
        number = m_services.database.highestPageNumber(options.ProjectName, true) + 1;
    } else {
        m_services.state.FileSystem.createFolder(folder);
    }
    while (copyImage(folder, number))
        ++number;
}

/// True when the user wants another one.
bool ProjectCommands::copyImage(const QString &folder, int number)
{
    const Module1 &state = m_services.state;
    const auto chosen = m_services.prompter.openFile(
        Question::ChooseImageToAdd,
        {u"Open"_s, state.AppOptions.BaseDirectory, {}, u"All Image Files|*.Bmp;*.jpg;*.gif "_s});
    if (!chosen || chosen->isEmpty())
        return false;
    const QString path =
        FileSystem::join(folder, QString::number(number) + u'_' + FileSystem::bareName(*chosen));
    state.FileSystem.copyFile(*chosen, path);
    const QString &project = state.AppOptions.ProjectName;
    m_services.database.RunSql(
        QString::fromUtf16(Statements::pageTable),
        Statements::insertCopiedImage(project, path, number, m_services.clock.now().date()));
    if (m_services.database.QueryLong(Statements::pagesOfImage(path)) == 0)
        throw RunTimeError(
            RunTimeError::DatabaseError,
            u"The image was copied to %1, but the database does not take a page for it."_s.arg(path));
    m_services.workspace.refreshPageViews();
    if (m_services.prompter.ask(
            Question::AddMoreImages, Buttons::YesNo,
            {u"Image %1\r\nhas been added into the project.\r\n"
             "To avoid overwriting other files, it has been renamed as: \r\n\r\n%2\r\n\r\n"
             "Add more image files?"_s.arg(*chosen, path),
             u"Add More Images?"_s, Icon::Question}) == Answer::Yes)
        return true;
    m_services.directories.show1stPic();
    return false;
}

void ProjectCommands::openImages()
{
    const AppOptions &options = m_services.state.AppOptions;
    const std::int16_t tool = options.OptionFlags[PaintTool];
    try {
        if (tool == 0)
            openInViewer();
        else if (tool == 1)
            m_services.programs.paint(options.PaintProgram, m_services.state.CurrentImagePath);
    } catch (const RunTimeError &) {
        m_services.prompter.tell(Question::PaintToolMissing,
                                 {u"Your PC does not have %1 installed.\r\n"
                                  "Select the Built-in Paint Tool or another paint tool\r\n"
                                  "on the Admin->Option screen."_s.arg(tool == 0 ? u"Built-in Paint Tool"_s
                                                                                 : u"Microsoft Paint"_s),
                                  m_services.state.AppTitle});
    }
}

void ProjectCommands::openInViewer()
{
    Module1 &state = m_services.state;
    if (!m_services.workspace.projectText().trimmed().isEmpty())
        m_services.directories.LocateProjectDirectory();
    const QString path =
        m_services.database
            .LookupField(u"ScreenShotFilePath"_s, Statements::firstImage(state.AppOptions.ProjectName), false)
            .trimmed();
    state.ImageFileRequested = !path.isEmpty() && state.FileSystem.fileExists(path);
    state.CurrentImagePath = state.ImageFileRequested ? path : QString();
    m_services.workspace.openViewer(ViewerSelection::FirstFile);
}
