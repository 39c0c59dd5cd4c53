#include "app/CommandTable.h"

#include "app/frmMain.h"
#include "capture/mHotKey.h"

namespace CommandTable
{
using namespace CommandRules;

// Ties each item to the handler of the same name.
#define ROW(menu, item, caption, icon, shortcut, hotKey, rule, separator)                                    \
    Command                                                                                                  \
    {                                                                                                        \
        menu, #item, caption, icon, shortcut, hotKey, &frmMain::item##_Click, rule, separator                \
    }

std::span<const Menu> menus()
{
    static constexpr Menu table[] = {
        {"mnuMulti", "&Multi-Snapshot-Project"}, {"mnuView", "&Edit"}, {"mnuAdmin", "&Admin"},
        {"mnuSingleShot", "&Single-Snapshot"},   {"mnuHelp", "&Help"},
    };
    return table;
}

std::span<const Command> commands()
{
    // clang-format off
    static constexpr Command table[] = {
        ROW("mnuMulti", mnuBeginCap, "Step 1. &Begin Capture Screens", "start-capture.svg", "", mHotKey::BeginCapture, always, false),
        ROW("mnuMulti", mnuStopCap, "Step 2. &Stop Capture Screens", "stop-capture.svg", "", mHotKey::StopCapture, whileRunning, false),
        ROW("mnuMulti", mnuPageList, "Step 3. &Add Notes, Title to Each Page", "page-list.svg", "", mHotKey::PageList, always, false),
        ROW("mnuMulti", mnuCreateHTML, "Step 4. &Generate Final Documentation", "generate.svg", "", mHotKey::GenerateDocuments, whileIdle, false),
        ROW("mnuMulti", mnuWordtoPDF, "Convert Word to Adobe PDF File", "pdf.svg", "", 0, always, true),
        ROW("mnuMulti", mnuBlankPage, "Add No-image Text Page", "blank-page.svg", "", 0, always, true),
        ROW("mnuMulti", mnuOddProject, "Copy Image into a Project", "copy-image.svg", "", 0, always, false),
        ROW("mnuMulti", mnuFileExit, "&Exit", "exit.svg", "Ctrl+Q", 0, always, true),

        ROW("mnuView", mnuViewScreenShot, "Edit Snapshot Image Files", "painter.svg", "", mHotKey::UsePainterTool, always, false),
        ROW("mnuView", mnuPaintEditor, "Paint &Editor", "paint-editor.svg", "", 0, always, false),
        ROW("mnuView", mnuViewWord, "Open Word or PDF Document", "word.svg", "", mHotKey::ViewWordOrPdf, always, false),
        ROW("mnuView", mnuIndexPage, "View HTML Document", "html.svg", "", mHotKey::ViewIndexPage, always, false),
        ROW("mnuView", mnuPageGrid, "View Page List", "page-grid.svg", "", 0, always, true),
        ROW("mnuView", mnuAllPage, "Edit All Pages(include pages whose image was deleted)", "all-pages.svg", "", 0, always, false),

        ROW("mnuAdmin", mnuOption, "&Options", "options.svg", "", 0, always, false),
        ROW("mnuAdmin", mnuDeleteProject, "&Delete Project(s)", "delete.svg", "", 0, always, true),
        ROW("mnuAdmin", mnuBackupDatabase, "&Backup a Database", "backup.svg", "", 0, always, false),

        ROW("mnuSingleShot", mnuRegion, "&Region Snapshot", "region.svg", "", mHotKey::RegionShot, always, false),
        ROW("mnuSingleShot", mnuActiveWindow, "&Active Window Snapshot", "active-window.svg", "", mHotKey::ActiveWindowShot, whenNoShotArmed, false),
        ROW("mnuSingleShot", mnuDesktop, "&Whole Desktop Snapshot", "desktop.svg", "", mHotKey::DesktopShot, whenNoShotArmed, false),

        ROW("mnuHelp", mnuHelpContents, "&Help Contents", "help.svg", "F1", 0, always, false),
        ROW("mnuHelp", mnuHelpAbout, "About", "about.svg", "", 0, always, false),
    };
    // clang-format on
    return table;
}
#undef ROW

std::span<const ToolButton> toolButtons()
{
    static constexpr ToolButton table[] = {
        {"Toolbar1", "Region", "mnuRegion", "Region", "Capture one region of the screen"},
        {"Toolbar1", "ActiveWindow", "mnuActiveWindow", "Window", "Capture the active window once"},
        {"Toolbar1", "Desktop", "mnuDesktop", "Desktop", "Capture the whole desktop once"},
        {"Toolbar1", "Help", "mnuHelpContents", "Help", "Help contents"},
        {"Toolbar2", "StartCap", "mnuBeginCap", "Begin", "Step 1. Begin to capture screens"},
        {"Toolbar2", "StopCap", "mnuStopCap", "Stop", "Step 2. Stop capturing"},
        {"Toolbar2", "PageList", "mnuPageList", "Notes", "Step 3. Add notes and a title to each page"},
        {"Toolbar2", "CreateHTML", "mnuCreateHTML", "Generate", "Step 4. Generate the final documentation"},
        {"Toolbar2", "Painter", "mnuViewScreenShot", "Images", "Edit the snapshot image files"},
        {"Toolbar2", "HTMLindex", "mnuIndexPage", "HTML", "View the HTML document"},
        {"Toolbar2", "ViewWord", "mnuViewWord", "Word", "Open a Word or PDF document"},
        {"Toolbar2", "PageGrid", "mnuPageGrid", "Pages", "View the page list"},
    };
    return table;
}

std::span<const TrayItem> trayItems()
{
    static constexpr TrayItem table[] = {
        {"mnuPopRegion", "Capture One &Region", "mnuRegion", nullptr},
        {"mnuPopActiveWindow", "Capture One &Active Window", "mnuActiveWindow", nullptr},
        {"mnuPopDesktop", "Capture One Desktop", "mnuDesktop", nullptr},
        {"mnuPopStartCap", "&Start to Capture Screens", "mnuBeginCap", &frmMain::mnuPopStartCap_Click},
        {"mnuPopAddNotes", "Add Title, Note", "mnuPageList", nullptr},
        {"mnuPopGenerateDoc", "Generate Final Documentation", "mnuCreateHTML", nullptr},
        {"mPopRestore", "&Restore", "", &frmMain::mPopRestore_Click},
        {"mPopExit", "&Exit", "mnuFileExit", nullptr},
    };
    return table;
}
} // namespace CommandTable
