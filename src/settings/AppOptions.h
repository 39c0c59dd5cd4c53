#pragma once

#include <QString>

#include <array>
#include <cstdint>

/// The five text roles of a page; they index the style arrays.
enum class TextRole : std::size_t {
    Title,
    SubTitle,
    Other, ///< the page summary, "Body Text" on screen
    Note1,
    Note2
};
inline constexpr std::size_t textRoleCount = 5;

/// What each of AppOptions::OptionFlags is.
enum OptionFlag : std::size_t {
    LoadLastWorkingSpace, ///< 1: reopen the last working space at start
    MouseBorderColor,     ///< choice of the drawn pointer's border colour
    MouseInsideColor,     ///< choice of the drawn pointer's fill colour
    PageLayout,           ///< 1: sub title below the screen shot, 2 (and 0): above it
    PaintTool,            ///< 0: built-in, 1: the external paint program
    BrowserChoice,        ///< 0: generated pages are shown by the system's browser, 1: by the built-in one
    ChangeResolution,     ///< 1: offer to switch the display to 800x600 for a run
    HideStopButtonDuringCapture, ///< 1: no stop bar during a run
    optionFlagCount
};

/// Style of one text role in generated HTML pages.
struct HtmlTextStyle {
    QString Font;              ///< a font-family list
    std::int16_t FontSize = 0; ///< HTML font size, 1 to 7
    QString FontStyle;         ///< "Regular", "Italic", "Bold" or "Bold Italic"
    QString Color;             ///< an HTML colour name
    QString Align;             ///< "Left", "Center" or "Right"
};

/// Style of one text role in generated word-processor documents.
struct WordTextStyle {
    QString Font;
    std::int16_t FontSize = 0; ///< points
    std::int16_t Bold = 0;
    std::int16_t Italic = 0;
    std::int16_t Underline = 0;
    std::int16_t Align = 0; ///< 0 left, 1 centre, 2 right
    std::int16_t Color = 0; ///< colour index 0 to 14: automatic, black, blue, turquoise, bright green, ...
};

/// All settings, filled once at start-up from options.ini. One instance lives in Module1; every part of the
/// program reads settings from there and never from the file.
struct AppOptions {
    std::array<std::int16_t, optionFlagCount> OptionFlags{};
    std::array<QString, 10> HotKeyNames; ///< "Ctrl-F1"; see mHotKey for the actions
    QString ProjectName;                 ///< the current project
    QString BaseDirectory;               ///< folder under which project directories are made
    QString FileNamePrefix;              ///< of snapshot and generated files
    std::int16_t BigPicSize = 0;         ///< percent that large snapshots are reduced to; 100: no reduction
    bool UseSystemMouseShape = false;    ///< draw the system's cursor instead of the two-colour arrow
    QString SingleScreenShotFileLocation;
    std::int16_t FinalDocumentFormat = 0; ///< 0 HTML, 1 Word, 2 ask every time, 3 both
    std::int16_t ShowLessMessage = 0;     ///< 1: suppress most informational messages
    bool OneWordDocumentIncludeAllPages = false;
    std::int16_t AutoConvertWord2PDF = 0;
    std::int16_t SnapShotByPressTab = 0;
    std::int16_t SnapShotByPressReturn = 0;
    std::array<HtmlTextStyle, textRoleCount> HtmlStyles;
    std::array<WordTextStyle, textRoleCount> WordStyles;

    QString WordProcessor; ///< "auto", "builtin", "libreoffice" or "none"
    QString PaintProgram;  ///< external paint program; empty: the first known one that is installed
    QString HomePage;      ///< of the built-in browser; empty: the first page of the help
    QString SearchPage;    ///< of the built-in browser
};
