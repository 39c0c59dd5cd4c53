#pragma once

#include "platform/FileSystem.h"
#include "settings/AppOptions.h"

#include <QString>

#include <array>
#include <cstdint>
#include <vector>

class Workspace;

/// Fields of one snapshot in ShotTable.
enum ShotField : std::size_t {
    ShotProjectName,
    ShotPath,
    ShotPointerX, ///< pointer position inside the picture, as text
    ShotPointerY,
    ShotStatus,      ///< page status
    ShotReduced,     ///< "True": the picture was scaled by BigPicSize percent
    ShotRightClick,  ///< "True": a right click preceded the snapshot
    ShotRightClickX, ///< position of that right click inside the picture, as text
    ShotRightClickY,
    shotFieldCount
};
using ShotEntry = std::array<QString, shotFieldCount>;

/// What the tray icon needs to know.
struct TrayIconData {
    QString tip;
    bool added = false; ///< the icon is in the tray now
};

/// The program-wide state: everything that more than one window needs. Made in Main and passed by
/// reference; a plain struct without behaviour. Coordinates are physical pixels, sizes of child windows
/// twips.
struct Module1 {
    /// PointerX when no position is known.
    static constexpr std::int32_t noPointer = -100;

    QString AppTitle;
    ::FileSystem FileSystem;
    QString ApplicationPath; ///< folder of the program's fixed files, without trailing separator
    QString OptionsFilePath;
    QString HelpFilePath; ///< folder of the help topics; topics are addressed as HelpFilePath & "::/x.htm"
    QString DatabasePath;
    QString ConnectionString;
    ::AppOptions AppOptions;

    bool IsWinXPOrLater = false;
    bool DisplaySwitched = false; ///< the display was switched to 800x600 and not back yet
    std::int32_t OriginalScreenWidth = 0;

    bool CaptureRunning = false;
    bool TrayAllowed = false;
    std::int32_t ShotCounter = 0;    ///< number of the run's next snapshot, from 1
    std::int32_t PageNumberBase = 0; ///< highest page number stored when the run started
    QString ProjectDirectory;
    std::int32_t PointerX = 0; ///< last button release; relative to the picture once that is grabbed
    std::int32_t PointerY = 0;
    bool RightClickPending = false; ///< a right-button release was seen since the last snapshot
    std::int32_t RightClickX = 0;   ///< its position; relative to the picture once that is grabbed
    std::int32_t RightClickY = 0;
    std::vector<ShotEntry> ShotTable; ///< indexed by snapshot number from 1; entry 0 stays empty

    QString CommandLinePath;  ///< picture named when the program was started; the first viewer takes it
    QString NextSnapshotPath; ///< where the next region snapshot goes
    QString CurrentImagePath; ///< picture handed to the viewer
    bool ImageFileRequested = false; ///< the opener asks the viewer to show CurrentImagePath
    ::TrayIconData TrayIconData;
    std::int32_t ChildHeight = 0; ///< size of child windows, twips
    std::int32_t ChildWidth = 0;
    QString ContentsPagePath;           ///< contents page last written
    bool ShowContentsRequested = false; ///< the opener asks the browser to show ContentsPagePath

    // Hand-over to the page editor, the page list and the text dialog.
    bool EditorJumpToPage = false;
    std::int32_t EditorPageId = 0;
    bool EditorProjectPages = false;
    bool EditorAddPage = false;
    std::int32_t EditorLastPageNumber = 0;
    std::int32_t EditorRecordCount = 0;
    QString NextTabCaption;
    bool WordInstalled = false; ///< spelling can be checked, as it was when somebody last asked
    QString SpellCheckText;     ///< the text that was last checked

    // The viewers' shared tool, and their exchange with the text dialog.
    QString CurrentTool;    ///< key of the button last clicked in a viewer: "drawbox", ...
    QString TextMessage;    ///< the text to be put on a picture, lines joined with CR LF; empty: cancelled
    bool TextRetry = false; ///< the text was taken back and is to be placed again

    Workspace *MainWindow = nullptr; ///< the main window, as the other screens see it
};
