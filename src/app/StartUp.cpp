#include "app/StartUp.h"

#include "capture/mOSversion.h"
#include "platform/ApplicationFolder.h"
#include "platform/RunTimeError.h"
#include "settings/OptionsStore.h"

using namespace Qt::Literals::StringLiterals;

namespace StartUp
{
void fillState(Module1 &state, const QString &applicationFolder, const OsVersion &version)
{
    state.AppTitle = u"Shotly"_s;
    state.ApplicationPath = applicationFolder;
    state.OptionsFilePath = FileSystem::join(applicationFolder, u"options.ini"_s);
    state.HelpFilePath = FileSystem::join(applicationFolder, u"help"_s);
    state.DatabasePath = FileSystem::join(applicationFolder, u"Shotly.mdb"_s);
    state.ConnectionString = u"PROVIDER=Microsoft.Jet.OLEDB.4.0;Data Source="_s + state.DatabasePath;
    state.AppOptions = OptionsStore::LoadOptions(state.OptionsFilePath);
    state.IsWinXPOrLater = mOSversion::CheckOsVersion(version);
    state.DisplaySwitched = false;
}

void ensureBaseDirectory(Module1 &state, Prompter &prompter, const std::function<void()> &choose)
{
    const QString standard = ApplicationFolder::defaultBaseDirectory();
    if (state.FileSystem.folderExists(state.AppOptions.BaseDirectory))
        return;
    if (state.AppOptions.BaseDirectory != standard) {
        choose();
        return;
    }
    prompter.tell(Question::BaseDirectoryCreated,
                  {u"Shotly's base directory is not exist, it will be created now."_s, state.AppTitle});
    try {
        state.FileSystem.createFolder(standard);
    } catch (const RunTimeError &error) {
        prompter.tell(Question::CommandFailed, {error.description(), state.AppTitle, Icon::Exclamation});
    }
}

void initialState(Module1 &state)
{
    state.TrayAllowed = true;
    state.ImageFileRequested = false;
    state.ShotCounter = 1;
    state.RightClickPending = false;
    state.EditorJumpToPage = false;
    state.EditorPageId = 0;
    state.EditorProjectPages = false;
    state.EditorAddPage = false;
    state.EditorLastPageNumber = 0;
    state.EditorRecordCount = 0;
    state.TextMessage.clear();
    state.TextRetry = false;
}
} // namespace StartUp
