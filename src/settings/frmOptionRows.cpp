#include "settings/frmOptionRows.h"

#include "capture/PointerMarker.h"
#include "settings/AppOptions.h"
#include "settings/OptionsStore.h"

#include <vector>

namespace OptionRows
{
using namespace Qt::Literals::StringLiterals;

namespace
{
const QStringList alignments{u"Left"_s, u"Center"_s, u"Right"_s};
const QStringList htmlFonts{u"Arial, Helvetica, sans-serif"_s,
                            u"Times New Roman, Times, serif"_s,
                            u"Courier New, Courier, mono"_s,
                            u"Georgia, Times New Roman, Times, serif"_s,
                            u"Verdana, Arial, Helvetica, sans-serif"_s,
                            u"Geneva, Arial, Helvetica, sans-serif"_s};
const QStringList htmlSizes{u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s, u"6"_s, u"7"_s};
const QStringList htmlColours{u"Blue"_s, u"Black"_s, u"Green"_s, u"Gold"_s, u"Red"_s, u"Grey"_s};
const QStringList wordColours{u"AutoColor"_s, u"Black"_s, u"Blue"_s,   u"Turquoise"_s, u"BrightGreen"_s,
                              u"Pink"_s,      u"Red"_s,   u"Yellow"_s, u"White"_s,     u"DarkBlue"_s,
                              u"Teal"_s,      u"Green"_s, u"Violet"_s, u"DarkRed"_s,   u"DarkYellow"_s};
const QStringList wordProcessors{u"Automatic|auto"_s, u"Built-in writer|builtin"_s,
                                 u"LibreOffice|libreoffice"_s, u"None|none"_s};

QColor htmlColour(int entry)
{
    return QColor(htmlColours.value(entry));
}

QStringList hotKeys()
{
    QStringList keys;
    keys.reserve(16 + 26 + 10);
    for (int number = 1; number <= 16; ++number)
        keys += u'F' + QString::number(number);
    for (char16_t letter = u'A'; letter <= u'Z'; ++letter)
        keys += QString(letter);
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        keys += QString(digit);
    return keys;
}

std::vector<Row> plainRows()
{
    // clang-format off
    return {
        {Box::Location, Kind::Place, u"cmbSpicFpath"_s, u"SingleScreenShotFileLocation"_s, {}, {u"Desktop"_s},
         {}, false, u"Only Desktop does not need full path, all other dir need full path."_s},
        {Box::BaseDirectory, Kind::Label, u"lblBaseDir"_s, u"BaseDirectory"_s, {}, {}},
        {Box::Prefix, Kind::Text, u"txtFileNamePrefix"_s, u"FileNamePrefix"_s, {}, {}},
        {Box::Mouse, Kind::Check, u"chkDefMouse"_s, u"UseSystemMouseShape"_s, u"I will define mouse color"_s, {}, {1, -1}, true},
        {Box::Mouse, Kind::Choice, u"optMBcolor"_s, u"MouseBorderColor"_s, u"Mouse border color"_s,
         {u"Black"_s, u"Blue"_s}, {}, true, {}, PointerMarker::borderColour},
        {Box::Mouse, Kind::Choice, u"optMIcolor"_s, u"MouseInsideColor"_s, u"Color inside the mouse"_s,
         {u"Green"_s, u"Yellow"_s, u"White"_s, u"Red"_s, u"Black"_s}, {}, true, {}, PointerMarker::insideColour},
        {Box::Layout, Kind::List, u"cmbLayout"_s, u"PageLayout"_s, {},
         {u"1.Put Sub Title below the Screen Shot"_s, u"2.Put Sub Title above the Screen Shot"_s}, {1, 1, 1}},
        {Box::Paint, Kind::List, u"cmbPaintSoftware"_s, u"PaintTool"_s, {}, {u"Built-in Paint Tool"_s, u"Microsoft Paint"_s}},
        {Box::Paint, Kind::Text, u"txtPaintProgram"_s, u"PaintProgram"_s, u"External paint program"_s, {}, {}, false,
         u"Started instead of Microsoft Paint. Blank: the first known one that is installed."_s},

        {Box::Keys, Kind::Check, u"chkTabMkPic"_s, u"SnapShotByPressTab"_s, u"Tab"_s, {}},
        {Box::Keys, Kind::Check, u"chkReturnMkPic"_s, u"SnapShotByPressReturn"_s, u"Return"_s, {}},
        {Box::Browser, Kind::Choice, u"optBrowser"_s, u"Browser"_s, {},
         {u"Your system's default browser"_s, u"This program's built-in browser"_s}, {}, true},
        {Box::Browser, Kind::Text, u"txtHomePage"_s, u"HomePage"_s, u"Home page"_s, {}, {}, false,
         u"Where the button Home of the built-in browser leads. Leave it blank for the first page of the help."_s},
        {Box::Browser, Kind::Text, u"txtSearchPage"_s, u"SearchPage"_s, u"Search page"_s, {}, {}, false,
         u"Where the button Search of the built-in browser leads."_s},
        {Box::Format, Kind::Choice, u"optFormat"_s, u"FinalDocumentFormat"_s, {},
         {u"HTML"_s, u"Microsoft Word"_s, u"Ask me ervery time"_s, u"Both HTML and Word"_s}},
        {Box::Word, Kind::Choice, u"optOneDoc"_s, u"OneWordDocumentIncludeAllPages"_s,
         u"One project one document or create seperate document for each screen snap shot?"_s,
         {u"One doc for all"_s, u"One doc for each image"_s}, {1, -1}, true},
        {Box::Word, Kind::Check, u"chkAutoConvertPDF"_s, u"AutoConvertWord2PDF"_s, u"Convert Word to Adobe PDF format"_s, {}},
        {Box::Word, Kind::Words, u"cmbWordProcessor"_s, u"WordProcessor"_s, u"Word documents are written by"_s, wordProcessors,
         {0, 1, 0}, true},
        {Box::LastSpace, Kind::Check, u"chkLoadLastWorkspace"_s, u"LoadLastWorkingSpace"_s,
         u"10. Load last working space each time start the application."_s, {}},
        {Box::StopButton, Kind::Check, u"chkNoStopToolbar"_s, u"HideStopButtonDuringCapture"_s,
         u"11. Do not show the 'Stop' button on the screen during capture screens. I will bring up the program "
         "from tool bar."_s, {}},

        {Box::HotKey, Kind::List, u"cmbAction"_s, {}, u"Action"_s, actions()},
        {Box::HotKey, Kind::Words, u"cmbKey1"_s, {}, u"Hot key"_s, {u"Ctrl"_s, u"Alt"_s, u"Shift"_s}},
        {Box::HotKey, Kind::Words, u"cmbHotKey"_s, {}, u"-"_s, hotKeys()},
        {Box::DesktopSize, Kind::Check, u"chkChangeResolution"_s, u"ChangeResolution"_s,
         u"Switch the display to 800x600 for the capture and back afterwards"_s, {}},
        {Box::DesktopSize, Kind::Choice, u"optReduce"_s, u"BigPicSize"_s, u"Reduce big screen snap shot to"_s,
         {u"No reduce"_s, u"90%"_s, u"80%"_s, u"70%"_s}, {100, -10}, true,
         u"This can make the screen snap shot picture distortion. Use 800x600 display is better choice."_s},
        {Box::Messages, Kind::Check, u"chkLessMsg"_s, u"ShowLessMessage"_s,
         u"3. I have used to Shotly's process, you can eliminate some warning message now. Such as change "
         "resolutions etc."_s, {}, {}, true},
    };
    // clang-format on
}

/// A column of a style box: the name of its controls and what the keys of the roles end with.
struct StyleColumn {
    Kind kind;
    QString control;
    QString field;
    QString caption;
    QStringList entries;
    QColor (*colour)(int entry) = nullptr;
};

void addStyles(std::vector<Row> &table, Box box, const QString &prefix, std::span<const StyleColumn> columns)
{
    static const QString roles[textRoleCount] = {u"Title"_s, u"SubTitle"_s, u"Other"_s, u"Note1"_s,
                                                 u"Note2"_s};
    for (int role = 0; role < static_cast<int>(textRoleCount); ++role) {
        for (const StyleColumn &column : columns)
            table.push_back({box,
                             column.kind,
                             u"%1_%2"_s.arg(column.control).arg(role),
                             prefix + roles[role] + column.field,
                             column.caption,
                             column.entries,
                             {},
                             false,
                             {},
                             column.colour,
                             role});
    }
}

std::vector<Row> makeRows()
{
    std::vector<Row> table = plainRows();
    const StyleColumn html[] = {
        {Kind::Words, u"cmbFont"_s, u"Font"_s, u"Font"_s, htmlFonts},
        {Kind::Words,
         u"cmbFontStyle"_s,
         u"FontStyle"_s,
         u"Style"_s,
         {u"Regular"_s, u"Italic"_s, u"Bold"_s, u"Bold Italic"_s}},
        {Kind::Words, u"cmbFontSize"_s, u"FontSize"_s, u"Size"_s, htmlSizes},
        {Kind::Words, u"cmbAlign"_s, u"Align"_s, u"Alignment"_s, alignments},
        {Kind::Words, u"cmbColor"_s, u"Color"_s, u"Color"_s, htmlColours, htmlColour},
    };
    const StyleColumn word[] = {
        {Kind::Label, u"LwfontName"_s, u"Font"_s, u"Font"_s, {}},
        {Kind::Label, u"LwfontSize"_s, u"FontSize"_s, u"Size"_s, {}},
        {Kind::Check, u"chkWBold"_s, u"FontBold"_s, u"Bold"_s, {}},
        {Kind::Check, u"chkWitalic"_s, u"FontItalic"_s, u"Italic"_s, {}},
        {Kind::Check, u"chkWuline"_s, u"Underline"_s, u"Underline"_s, {}},
        {Kind::List, u"cmbwAlign"_s, u"Align"_s, u"Alignment"_s, alignments},
        {Kind::List, u"cmbwColor"_s, u"Color"_s, u"Color"_s, wordColours, wordColour},
    };
    addStyles(table, Box::HtmlStyles, u"HTML"_s, html);
    addStyles(table, Box::WordStyles, u"Word"_s, word);
    const auto stored = OptionsStore::rows();
    int action = 0;
    for (const OptionsStore::Row &row : stored) {
        if (row.section == "HotKeys"_L1)
            table.push_back({Box::HotKey,
                             Kind::Label,
                             u"lblHotKey_%1"_s.arg(action),
                             row.key,
                             actionLabel(action),
                             {},
                             {},
                             false,
                             {},
                             nullptr,
                             action});
        action += row.section == "HotKeys"_L1 ? 1 : 0;
    }
    return table;
}
} // namespace

QString captionOf(Page page)
{
    static const QString captions[pageCount] = {u"Basic"_s, u"Capture and Documents"_s,
                                                u"Hot Keys and Desktop"_s, u"HTML Styles"_s,
                                                u"Word Styles"_s};
    return captions[static_cast<int>(page)];
}

std::span<const BoxPlace> boxes()
{
    static const BoxPlace places[] = {
        {Page::Basic, 0, u"1. Where the single screen shot picture to be located?"_s},
        {Page::Basic, 0, u"2. Base directory to store the screen shot and pages"_s},
        {Page::Basic, 0, u"3. File name for multi screen shots"_s},
        {Page::Basic, 1, u"4. Default mouse color on the screen shots"_s},
        {Page::Basic, 1, u"5. Page layout:"_s},
        {Page::Basic, 1, u"6. Preferred paint:"_s},
        {Page::Documents, 0,
         u"7. Shotly takes a snap shot each time you left-click. If you want a snap shot to be taken when "
         "pressing any of these two keys, check it."_s},
        {Page::Documents, 0, u"8. Use which internet browser within this program?"_s},
        {Page::Documents, 0, u"9. Automatically generate final document in format of"_s},
        {Page::Documents, 1, u"Word Documents"_s},
        {Page::Documents, 1, {}},
        {Page::Documents, 1, {}},
        {Page::Advanced, 0, u"1. Hot Key"_s},
        {Page::Advanced, 1, u"2. Desktop picture size"_s},
        {Page::Advanced, 1, {}},
        {Page::HtmlStyles, 0, u"HTML File Format"_s},
        {Page::WordStyles, 0, u"Microsoft Word and Adobe PDF File Format"_s},
    };
    return places;
}

std::span<const Row> rows()
{
    static const std::vector<Row> table = makeRows();
    return table;
}

QString htmlRoleCaption(int role)
{
    static const QString captions[textRoleCount] = {u"Title Font"_s, u"SubTitle Font"_s, u"Body Text"_s,
                                                    u"Note1 Font"_s, u"Note2 Font"_s};
    return captions[role];
}

QString wordRoleCaption(int role)
{
    static const QString captions[textRoleCount] = {u"Title"_s, u"Sub Title"_s, u"Body Text"_s, u"Note1"_s,
                                                    u"Note2"_s};
    return captions[role];
}

QStringList actions()
{
    return {u"Single Screen Region Snap Shot"_s,
            u"Single Active Window Snap Shot"_s,
            u"Single Desktop Snap Shot"_s,
            u"Begin Capture Multi Screens"_s,
            u"End Capture Multi Screens"_s,
            u"Show Page List/Add Notes, Title"_s,
            u"Generate HTML Documents"_s,
            u"View Index Page"_s,
            u"View Next Page"_s,
            u"View Previous Page"_s};
}

QString actionLabel(int action)
{
    static const QStringList labels{u"Single Screen Region Snap Shot"_s,
                                    u"Single Active Window Snap Shot"_s,
                                    u"Single Desktop Snap Shot"_s,
                                    u"Begin Capture Multi Screens"_s,
                                    u"End Capture Multi Screens"_s,
                                    u"Add Title, Summary, Notes"_s,
                                    u"Generate Documents"_s,
                                    u"View Index Page"_s,
                                    u"View Word or PDF Documents"_s,
                                    u"Use Painter Tool"_s};
    return labels.value(action);
}

QColor wordColour(int index)
{
    static constexpr QRgb colours[] = {0x000000, 0x000000, 0x0000ff, 0x00ffff, 0x00ff00,
                                       0xff00ff, 0xff0000, 0xffff00, 0xffffff, 0x000080,
                                       0x008080, 0x008000, 0x800080, 0x800000, 0x808000};
    const bool known = index >= 0 && index < static_cast<int>(std::size(colours));
    return QColor(known ? colours[index] : 0);
}
} // namespace OptionRows
