#pragma once

#include <QColor>
#include <QStringList>

#include <span>

/// The table behind the options dialog: which control edits which option, and where it stands. A new option
/// is one line in frmOptionRows.cpp.
namespace OptionRows
{
/// The pages of the tab strip, in order.
enum class Page { Basic, Documents, Advanced, HtmlStyles, WordStyles };
inline constexpr int pageCount = 5;
QString captionOf(Page page);

/// The framed boxes of the pages, in order.
enum class Box {
    Location,
    BaseDirectory,
    Prefix,
    Mouse,
    Layout,
    Paint,
    Keys,
    Browser,
    Format,
    Word,
    LastSpace,
    StopButton,
    HotKey,
    DesktopSize,
    Messages,
    HtmlStyles, ///< boxes of styles are grids: a line for each role
    WordStyles
};
struct BoxPlace {
    Page page;
    int column; ///< of the page
    QString heading;
};
std::span<const BoxPlace> boxes();

enum class Kind {
    Check,  ///< check box: entry 1 when it is checked
    Choice, ///< option buttons "name_0", "name_1", ...
    List,   ///< list-only combo box: the entry's number counts
    Words,  ///< list-only combo box: the entry's text counts
    Place,  ///< combo box that takes any text
    Text,   ///< line of text
    Label   ///< shows a text that a button changes
};

/// Entry i stands for the number first + step * i.
struct Numbers {
    int first = 0;
    int step = 1;
    int otherwise = -1; ///< the entry of every other number; -1 is none
};

struct Row {
    Box box;
    Kind kind;
    QString control;     ///< its objectName
    QString key;         ///< of the options file; empty: edits no option by itself
    QString caption;     ///< of the check box, or beside the control
    QStringList entries; ///< "what is shown|what is stored", or one text for both
    Numbers numbers{};
    bool atOnce = false; ///< a click changes the option; all others wait for Save
    QString note{};      ///< explanation below the control
    QColor (*colour)(int entry) = nullptr;
    int role = -1; ///< line of a grid
};

std::span<const Row> rows();

/// As the style boxes call the roles.
QString htmlRoleCaption(int role);
QString wordRoleCaption(int role);

/// What an action of the hot-key editor is called in its list, and beside its combination.
QStringList actions();
QString actionLabel(int action);

/// Colour of a word processor's colour index; automatic is black.
QColor wordColour(int index);
} // namespace OptionRows
