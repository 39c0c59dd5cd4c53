#include "OptionFixture.h"
#include "platform/FileChecks.h"

#include <random>

namespace
{
const QString blank = u"Blank is not allowed, please select one from the list."_s;

QString name(const char16_t *control, int index)
{
    return u"%1_%2"_s.arg(QString::fromUtf16(control)).arg(index);
}
} // namespace

TEST_F(OptionTest, EveryControlReachesTheFileAndComesBack)
{
    const QString shots = folder.filePath(u"single shots"_s);
    const QString guides = folder.path();
    state.FileSystem.createFolder(shots);
    options.ProjectName = u"Demo"_s;
    open();
    type(u"cmbSpicFpath"_s, shots + u' ');
    user.expectFile(Question::ChooseOptionFolder, guides);
    press(u"cmdBrowseM"_s);
    type(u"txtFileNamePrefix"_s, u"de/mo"_s); // no file name has a slash
    type(u"txtPaintProgram"_s, u"mtpaint -v"_s);
    type(u"txtHomePage"_s, u"/g/home.htm"_s);
    type(u"txtSearchPage"_s, u"search.example"_s);
    select(u"cmbLayout"_s, 0);
    select(u"cmbPaintSoftware"_s, 1);
    select(u"cmbWordProcessor"_s, 2);
    press(
        u"optMBcolor_1 optMIcolor_3 chkDefMouse chkTabMkPic chkReturnMkPic optBrowser_0 optFormat_3 "
        u"optOneDoc_1 "
        "chkAutoConvertPDF chkLoadLastWorkspace chkNoStopToolbar chkChangeResolution optReduce_3 chkLessMsg"_s);
    select(u"cmbAction"_s, 2);
    select(u"cmbKey1"_s, 1);
    for (int role = 0; role < 5; ++role) {
        select(name(u"cmbFont", role), role == 1 ? 2 : role);
        select(name(u"cmbFontStyle", role), 3 - role % 3);
        select(name(u"cmbFontSize", role), 6 - role);
        select(name(u"cmbAlign", role), 2 - role % 2);
        select(name(u"cmbColor", role), 5 - role);
        user.expectFile(Question::WordStyleFont, QFont(u"Family%1"_s.arg(role), 20 + role).toString());
        press(name(u"cmdWfont", role));
        press(name(u"chkWBold", role)); // the title was bold
        press(name(role % 2 == 0 ? u"chkWitalic" : u"chkWuline", role));
        select(name(u"cmbwAlign", role), 2);
        select(name(u"cmbwColor", role), 14 - role);
    }
    save();
    EXPECT_EQ(workspace.calls, QStringList(u"deleteTab 7"_s));

    // As it stands in the file.
    QStringList lines =
        u"FileNamePrefix=demo;UseSystemMouseShape=True;MouseBorderColor=1;MouseInsideColor=3;"
        "PageLayout=1;PaintTool=1;PaintProgram=mtpaint -v;SnapShotByPressTab=1;"
        "SnapShotByPressReturn=1;Browser=0;HomePage=/g/"
        "home.htm;SearchPage=search.example;FinalDocumentFormat=3;"
        "OneWordDocumentIncludeAllPages=False;AutoConvertWord2PDF=1;WordProcessor=libreoffice;"
        "LoadLastWorkingSpace=1;HideStopButtonDuringCapture=1;ChangeResolution=1;BigPicSize=70;"
        "ShowLessMessage=1;SingleDesktopCapture=Alt-F3;SingleRegionCapture=Ctrl-F1;"
        "HTMLTitleFont=Arial, Helvetica, sans-serif;HTMLTitleFontStyle=Bold Italic;"
        "HTMLSubTitleFont=Courier New, Courier, mono;HTMLOtherFontStyle=Italic;"
        "HTMLNote2Font=Verdana, Arial, Helvetica, sans-serif;HTMLTitleColor=Grey;"
        "HTMLNote2Color=Black;HTMLNote1Align=Center;HTMLNote2Align=Right"_s.split(u';');
    lines += {u"SingleScreenShotFileLocation="_s + shots, u"BaseDirectory="_s + guides};
    const QStringList roles = u"Title SubTitle Other Note1 Note2"_s.split(u' ');
    const auto text = [](int number) { return QString::number(number); };
    const QString styles = u"HTML%1FontSize=%2;Word%1FontSize=%3;Word%1FontBold=%4;Word%1FontItalic=%5;"
                           "Word%1Underline=%6;Word%1Font=Family%7;Word%1Align=2;Word%1Color=%8"_s;
    for (int role = 0; role < 5; ++role)
        lines += styles
                     .arg(roles[role], text(7 - role), text(20 + role), text(role > 0), text(1 - role % 2),
                          text(role % 2), text(role), text(14 - role))
                     .split(u';');
    const QByteArray written = file();
    for (const QString &each : lines)
        EXPECT_TRUE(written.contains("\r\n" + each.toUtf8() + "\r\n")) << each.toStdString();
    EXPECT_TRUE(written.startsWith("[Options]\r\n") && !written.contains("ProjectName"));

    // At the next start the controls have it all: nothing else is there to be saved.
    options = kept();
    open();
    EXPECT_FALSE(control<QWidget>(u"optMBcolor_1"_s)->isEnabled());
    options = AppOptions();
    options.UseSystemMouseShape = true;
    QFile::remove(state.OptionsFilePath);
    save();
    EXPECT_EQ(file(), written);
}

TEST_F(OptionTest, ListsTakeTheirEntriesAlone)
{
    options.OptionFlags[PaintTool] = 7; // no such tool: nothing is chosen
    options.HtmlStyles[1].Color = u"Navy"_s;
    options.WordStyles[3].Color = 99;
    open();
    onItsPage<QWidget>(u"cmbFont_0"_s);
    told(Question::OptionBlank, u"Must select one paint tool with item 6 on tab 'Basic'"_s,
         [&] { QTest::keyClick(form.get(), Qt::Key_S, Qt::ControlModifier); });
    EXPECT_EQ(listText(u"cmbPaintSoftware"_s), QString());
    EXPECT_TRUE(control<QWidget>(u"cmbPaintSoftware"_s)->hasFocus());
    told(Question::OptionBlank, blank, [&] { leave(u"cmbPaintSoftware"_s); });
    EXPECT_EQ(listText(u"cmbPaintSoftware"_s), u"Built-in Paint Tool"_s);
    told(Question::OptionBlank, blank, [&] { press(u"cmdSave"_s); });
    EXPECT_TRUE(control<QWidget>(u"cmbwColor_3"_s)->isVisible());
    EXPECT_EQ(file(), "(missing)");
    select(u"cmbwColor_3"_s, 8);

    for (const QString &list : u"cmbFont_2 cmbwColor_4 cmbLayout cmbHotKey cmbAction"_s.split(u' ')) {
        select(list, 1);
        told(Question::OptionNotInList, u"Please select one from the list."_s, [&] { type(list, u"z"_s); });
        EXPECT_EQ(control<QComboBox>(list)->currentIndex(), 0);
        EXPECT_EQ(listText(list), control<QComboBox>(list)->itemText(0));
        told(Question::OptionBlank, blank, [&] { type(list, {}); });
        EXPECT_EQ(listText(list), control<QComboBox>(list)->itemText(0));
    }
    auto *passed = control<QComboBox>(u"cmbFont_3"_s);
    QWheelEvent wheel({5, 5}, passed->mapToGlobal(QPointF(5, 5)), {}, {0, -120}, {}, {}, Qt::NoScrollPhase,
                      false);
    QApplication::sendEvent(passed, &wheel);
    EXPECT_EQ(passed->currentIndex(), 1); // the page scrolls
    type(u"cmbFontSize_0"_s, u"7"_s);     // an entry may be typed
    EXPECT_EQ(control<QComboBox>(u"cmbFontSize_0"_s)->currentIndex(), 6);
    save();
    EXPECT_EQ(kept().HtmlStyles[1].Color, u"Navy"_s); // somebody's own is kept
    EXPECT_EQ(kept().WordStyles[3].Color, 8);
}

TEST_F(OptionTest, FoldersAndTheFileNameAreChecked)
{
    const QString gone = folder.filePath(u"gone"_s);
    const QString missing = u"Folder not exist, please click 'Browse' button and select a directory."_s;
    open();
    type(u"cmbSpicFpath"_s, gone);
    told(Question::OptionFolderMissing, missing, [&] { leave(u"cmbSpicFpath"_s); });
    type(u"cmbSpicFpath"_s, {});
    told(Question::OptionBlank, blank, [&] { leave(u"cmbSpicFpath"_s); });
    EXPECT_EQ(listText(u"cmbSpicFpath"_s), u"Desktop"_s);
    for (const std::optional<QString> &answer : {std::optional(gone), std::optional<QString>()}) {
        user.expectFile(Question::ChooseOptionFolder, answer);
        press(u"cmdBrowseS"_s);
        EXPECT_EQ(listText(u"cmbSpicFpath"_s), answer.value_or(u"Desktop"_s));
        EXPECT_EQ(user.asked.back().title, u"Select a Folder"_s);
    }
    user.expectFile(Question::ChooseOptionFolder, gone);
    told(Question::OptionFolderMissing, missing, [&] { press(u"cmdBrowseM"_s); });
    EXPECT_EQ(options.BaseDirectory, gone);

    type(u"txtFileNamePrefix"_s, u" "_s);
    told(Question::FileNamePrefixBlank, u"Blank is not allowed. Default prefix is 'Shotly'."_s,
         [&] { leave(u"txtFileNamePrefix"_s); });
    save();
    EXPECT_EQ(kept().FileNamePrefix, u"Shotly"_s);
}

TEST_F(OptionTest, SaveMakesTheSnapshotFolderOrTakesTheDesktop)
{
    const QString fresh = folder.filePath(u"new/shots"_s);
    for (const QString &typed : {fresh, u"/proc/nothing"_s, u"relative"_s, u"  "_s}) {
        open();
        type(u"cmbSpicFpath"_s, typed);
        if (typed != fresh)
            user.expectTell(Question::SnapshotLocationRefused);
        user.expectTell(Question::HotKeysAfterRestart);
        press(u"cmdSave"_s);
        EXPECT_TRUE(closed());
        EXPECT_EQ(kept().SingleScreenShotFileLocation, typed == fresh ? fresh : u"Desktop"_s);
    }
    EXPECT_TRUE(state.FileSystem.folderExists(fresh));
    EXPECT_FALSE(state.FileSystem.folderExists(u"relative"_s));
    EXPECT_EQ(user.asked[1].text, u"Single snapshot file location /proc/nothing cannot be created.\r\n"
                                  "by default, it will be set to Desktop"_s);
    EXPECT_EQ(user.asked[5].text, u"Single snapshot file location is not allowed to be blank.\r\n"
                                  "by default, it will be set to Desktop"_s);
}

TEST_F(OptionTest, FormatsNeedWhatWritesThem)
{
    const auto fallsBack = [&](Question which, const QString &text, const QString &pressed) {
        told(which, text, [&] { press(pressed); });
        EXPECT_TRUE(checked(u"optFormat_0"_s) && !checked(u"chkAutoConvertPDF"_s));
        EXPECT_TRUE(options.FinalDocumentFormat == 0 && options.AutoConvertWord2PDF == 0);
    };
    const QString noWord = u"Since your system does not have Microsoft Word installed,\r\n"
                           "only HTML format documents will be created."_s;
    const QString noPdf =
        u"Shotly can only convert Microsoft Word files to Adobe PDF files. Since you do not\r\n"
        "want to create a Word file, no PDF file will be created."_s;
    open();
    press(u"optFormat_2 chkAutoConvertPDF"_s);
    EXPECT_TRUE(checked(u"chkAutoConvertPDF"_s));
    options.AutoConvertWord2PDF = 1;
    fallsBack(Question::PdfNeedsWordFormat, noPdf, u"optFormat_0"_s);
    fallsBack(Question::PdfNeedsWordFormat, noPdf, u"chkAutoConvertPDF"_s);

    press(u"optFormat_1"_s);
    word.printerNames = {u"Office Printer"_s};
    options.AutoConvertWord2PDF = 1;
    user.expectTell(Question::PdfPrinterMissing);
    press(u"chkAutoConvertPDF"_s);
    EXPECT_FALSE(checked(u"chkAutoConvertPDF"_s));
    EXPECT_EQ(options.AutoConvertWord2PDF, 0);

    word.installed = false;
    fallsBack(Question::FormatNeedsWord, noWord, u"chkAutoConvertPDF"_s); // with Word as the format
    fallsBack(Question::FormatNeedsWord, noWord, u"optFormat_3"_s);
    word.installed = true;
    press(u"optFormat_1"_s);
    word.installed = false; // by the dialog's own list
    told(Question::FormatNeedsWord, noWord, [&] { select(u"cmbWordProcessor"_s, 1); });
    EXPECT_EQ(options.WordProcessor, u"builtin"_s);
    EXPECT_EQ(options.FinalDocumentFormat, 0);
}

TEST_F(OptionTest, TheStopButtonHidesForTheSystemMouse)
{
    options.UseSystemMouseShape = true;
    open();
    user.expectTell(Question::StopButtonWillHide);
    save();
    EXPECT_EQ(user.asked[0].text, u"To record the system mouse properly, the Stop button will be hiding.\r\n"
                                  "To stop recording, you can bring up Shotly, then click button 2."_s);
    EXPECT_EQ(kept().OptionFlags[HideStopButtonDuringCapture], 1);

    open();
    save(); // it hides already: nothing to say, and nothing to ask
    options.UseSystemMouseShape = false;
    for (const Answer answer : {Answer::No, Answer::Yes}) { // closing the box is No
        open();
        user.expectAsk(Question::EnableStopButton, answer);
        save();
        EXPECT_EQ(kept().OptionFlags[HideStopButtonDuringCapture], answer == Answer::No ? 1 : 0);
    }
    EXPECT_EQ(user.asked.at(user.asked.size() - 2).title, u"Enable nice small Stop button?"_s);
    open();
    save(); // it is shown: nothing to ask
}

TEST_F(OptionTest, CancelAndResetAsTheySay)
{
    open();
    press(u"optMIcolor_2 chkTabMkPic"_s);
    type(u"cmbSpicFpath"_s, u"/gone"_s);
    press(u"cmdCancel"_s);
    EXPECT_TRUE(closed());
    EXPECT_EQ(options.OptionFlags[MouseInsideColor], 2); // a click that counts at once
    EXPECT_EQ(options.SnapShotByPressTab, 0);
    EXPECT_EQ(file(), "(missing)");

    options.HotKeyNames[0] = u"Alt-A"_s;
    open();
    user.expectAsk(Question::ResetOptions, Answer::No);
    press(u"cmdReset"_s);
    EXPECT_EQ(user.asked[0].title, u"Reset to Original?"_s);
    EXPECT_FALSE(closed());
    EXPECT_EQ(options.HotKeyNames[0], u"Alt-A"_s);

    state.OptionsFilePath = folder.filePath(u"missing/options.ini"_s);
    user.expectAsk(Question::ResetOptions, Answer::Yes);
    user.expectTell(Question::OptionsNotSaved);
    press(u"cmdReset"_s);
    EXPECT_FALSE(closed());
    EXPECT_EQ(label(u"lblHotKey_0"_s), u"Ctrl-F1"_s);
    EXPECT_TRUE(checked(u"optReduce_0"_s));

    state.OptionsFilePath = folder.filePath(u"options.ini"_s);
    user.expectAsk(Question::ResetOptions, Answer::Yes);
    told(Question::HotKeysAfterRestart,
         u"Change on hot key will come into effect after restart the application."_s,
         [&] { press(u"cmdReset"_s); });
    EXPECT_TRUE(closed());
    EXPECT_EQ(kept().BigPicSize, 100);
}

TEST_F(OptionTest, AFileThatCannotBeWrittenLosesNothing)
{
    putFile(state.OptionsFilePath, "[Options]\nPageLayout=2\n");
    open();
    press(u"chkTabMkPic"_s);
    {
        const OrdinaryUser nobody(folder.path());
        QFile(state.OptionsFilePath).setPermissions(QFile::ReadOwner);
        user.expectTell(Question::OptionsNotSaved);
        press(u"cmdSave"_s);
    }
    EXPECT_TRUE(user.asked.back().text.contains(state.OptionsFilePath));
    EXPECT_FALSE(closed());
    EXPECT_EQ(options.SnapShotByPressTab, 1);
    EXPECT_EQ(file(), "[Options]\nPageLayout=2\n");
}

TEST_F(OptionTest, HotKeysAreEditedAndClashesMarked)
{
    keys.heldByOthers = {{HotKeys::Modifier::Control, 113}}; // F2
    options.HotKeyNames[5] = u"Win-F7"_s;
    options.HotKeyNames[9] = u"ctrl-f5"_s; // the fourth has it
    hotKeys.setHotKey(options.HotKeyNames);
    open();
    const auto notes = [this] {
        QStringList all;
        for (int i = 0; i < 10; ++i)
            all += label(name(u"lblHotKeyNote", i));
        return all.join(u'|');
    };
    EXPECT_EQ(notes(), u"|in use by another program||same as \"Use Painter Tool\"||no such hot key||||"
                       "same as \"Begin Capture Multi Screens\""_s);
    select(u"cmbAction"_s, 5);
    EXPECT_EQ(listText(u"cmbHotKey"_s), QString());
    select(u"cmbHotKey"_s, 41); // Z: half a hot key so far
    EXPECT_EQ(label(u"lblHotKey_5"_s), u"Win-F7"_s);
    select(u"cmbKey1"_s, 2);
    EXPECT_EQ(label(u"lblHotKey_5"_s), u"Shift-Z"_s);
    select(u"cmbAction"_s, 1);
    EXPECT_EQ(listText(u"cmbHotKey"_s), u"F2"_s);
    select(u"cmbHotKey"_s, 51);
    select(u"cmbAction"_s, 9);
    select(u"cmbHotKey"_s, 3);
    EXPECT_EQ(notes(), u"|||||||||"_s);

    press(u"Command1"_s);
    EXPECT_EQ(label(u"lblHotKey_5"_s), u"Ctrl-F7"_s);
    EXPECT_EQ(listText(u"cmbHotKey"_s), u"F11"_s);
    EXPECT_EQ(options.HotKeyNames[5], u"Win-F7"_s); // saved by Save alone
    save();
    EXPECT_EQ(kept().HotKeyNames[9], u"Ctrl-F11"_s);
}

TEST_F(OptionTest, TheSheetsShowTheStyles)
{
    qApp->setStyleSheet(u"#other { color: red }"_s); // the program has one
    options.WordStyles[0].FontSize = 12;
    open();
    select(u"cmbFont_0"_s, 2);
    select(u"cmbFontSize_0"_s, 6);
    select(u"cmbFontStyle_0"_s, 1);
    select(u"cmbColor_0"_s, 3);
    select(u"cmbAlign_0"_s, 2);
    auto *html = control<QLabel>(u"lblHtmlPreview_0"_s);
    EXPECT_EQ(html->font().families(), (QStringList{u"Courier New"_s, u"Courier"_s, u"mono"_s}));
    EXPECT_EQ(html->font().pixelSize(), 48);
    EXPECT_TRUE(html->font().italic() && !html->font().bold());
    EXPECT_TRUE(shows(*html, qRgb(0xff, 0xd7, 0x00)));
    EXPECT_TRUE(html->alignment() & Qt::AlignRight);

    press(u"chkWuline_0"_s);
    select(u"cmbwColor_0"_s, 10);
    auto *document = control<QLabel>(u"lblWordPreview_0"_s);
    EXPECT_EQ(document->font().pixelSize(), 16);
    EXPECT_TRUE(document->font().underline() && document->font().bold());
    EXPECT_TRUE(shows(*document, qRgb(0x00, 0x80, 0x80)));
    user.expectFile(Question::WordStyleFont, std::nullopt);
    press(u"cmdWfont_0"_s);
    EXPECT_EQ(label(u"LwfontName_0"_s), u"Times New Roman"_s);
    user.expectFile(Question::WordStyleFont,
                    QFont(u"Liberation Serif"_s, 72, QFont::Normal, true).toString());
    press(u"cmdWfont_0"_s);
    EXPECT_EQ(document->font().pixelSize(), 96);
    EXPECT_TRUE(checked(u"chkWitalic_0"_s) && checked(u"chkWBold_0"_s));
    qApp->setStyleSheet({});
}

TEST_F(OptionTest, HelpAndTestsAreOffered)
{
    open();
    for (const int layout : {0, 1}) {
        select(u"cmbLayout"_s, layout);
        press(u"cmdLayout"_s);
    }
    press(u"cmdHelp"_s);
    press(u"cmdPaintTest"_s);
    EXPECT_EQ(workspace.calls, (QStringList{u"help style1.htm"_s, u"help style2.htm"_s, u"help option.htm"_s,
                                            u"paint tab"_s}));
    select(u"cmbPaintSoftware"_s, 1);
    type(u"txtPaintProgram"_s, u"gimp"_s);
    press(u"cmdPaintTest"_s);
    EXPECT_EQ(programs.painted, QStringList(u"gimp "_s));
}

TEST_F(OptionTest, OpensOnAnyFile)
{
    OptionsStore::SaveOptions(state.OptionsFilePath, options);
    const QByteArray whole = file();
    std::mt19937 random(20260321);
    for (int round = 0; round < 30; ++round) {
        QByteArray bytes = whole;
        for (int change = 0; change < 200; ++change) // mostly values, and sections that end
            bytes[static_cast<qsizetype>(random() % static_cast<unsigned>(bytes.size()))] =
                static_cast<char>(change % 8 == 0 ? random() : '0' + random() % 10);
        putFile(state.OptionsFilePath, bytes);
        options = kept();
        open();
        EXPECT_EQ(label(u"LwfontSize_0"_s).toInt(), options.WordStyles[0].FontSize);
    }
}
