// The screens that the main window shows.

#include "MainWindowFixture.h"

#include "app/TabHost.h"
#include "paint/frmPaint.h"

#include <QDialog>
#include <QPlainTextEdit>

TEST_F(MainWindowTest, TheOptionsOpenOnce)
{
    auto *tabs = control<QTabBar>(u"tab1"_s);
    control<QAction>(u"mnuOption"_s)->trigger();
    EXPECT_EQ(tabs->tabText(0), u"Options"_s);
    EXPECT_EQ(control<QLabel>(u"lblHotKeyNote_9"_s)->text().count(u"same as"_s), 8); // of Ctrl-F5
    window->addTab(new QWidget, u"Page List"_s);
    control<QAction>(u"mnuOption"_s)->trigger();
    EXPECT_EQ(tabs->count(), 2);
    EXPECT_EQ(tabs->tabText(tabs->currentIndex()), u"Options"_s);
    QTest::keyClick(control<QWidget>(u"txtFileNamePrefix"_s), Qt::Key_F1); // not the main window's
    EXPECT_TRUE(QTest::qWaitFor([&] { return !browsers->calls.isEmpty(); }, 10'000));
    EXPECT_EQ(browsers->calls, QStringList(state.HelpFilePath + u"/option.htm"_s));
    press(u"cmdCancel"_s);
    EXPECT_EQ(tabs->count(), 1);
}

TEST_F(MainWindowTest, PagesAreShownInATabThatIsUsedAgain)
{
    auto *tabs = control<QTabBar>(u"tab1"_s);
    const auto view = [this](const QString &path) {
        user.expectFile(Question::OpenFailed, path);
        press(u"HTMLindex"_s);
    };
    view(u"/g/a.htm"_s);
    EXPECT_EQ(tabs->tabText(0), u"Contents"_s);
    window->addTab(new QWidget, u"Page List"_s);
    view(u"/g/b.htm"_s);
    EXPECT_EQ(tabs->count(), 2);
    EXPECT_EQ(tabs->tabText(tabs->currentIndex()), u"Contents"_s);
    EXPECT_EQ(browsers->calls, (QStringList{u"file:///g/a.htm"_s, u"file:///g/b.htm"_s}));
    window->closeWebSearchTab();
    EXPECT_EQ(tabs->count(), 1);

    // The working space keeps the address, and opens it in a tab of its own.
    view(u"/g/c.htm"_s);
    browsers->last->complete(u"file:///g/c.htm"_s);
    window->close();
    EXPECT_EQ(settings.value(u"WorkingSpace"_s, u"form1"_s), u"<file:///g/c.htm"_s);
    browsers->calls.clear();
    state.AppOptions.OptionFlags[LoadLastWorkingSpace] = 1;
    open();
    tabs = control<QTabBar>(u"tab1"_s);
    EXPECT_EQ(tabs->tabText(0), u"Browser"_s);
    EXPECT_EQ(browsers->calls, QStringList(u"file:///g/c.htm"_s));

    // The help key is about the screen that is seen.
    QTest::keyClick(control<QWidget>(u"cboAddress"_s), Qt::Key_F1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return browsers->calls.size() == 2; }, 10'000));
    EXPECT_EQ(browsers->calls.last(), state.HelpFilePath + u"/browser.htm"_s);
    press(u"Help"_s);
    EXPECT_EQ(browsers->calls.last(), state.HelpFilePath + u"/features.htm"_s);

    // The user may want the system's browser.
    state.AppOptions.OptionFlags[BrowserChoice] = 0;
    view(u"/g/d.htm"_s);
    EXPECT_EQ(programs->opened, QStringList(u"/g/d.htm"_s));
    EXPECT_EQ(tabs->count(), 1);

    user.expectTell(Question::OpenFailed);
    window->openHelp(u"nothing.htm"_s);
}

TEST_F(MainWindowTest, TheAboutBoxNamesTheBuildAndStartsTheSystemInformation)
{
    QTimer::singleShot(0, [this] {
        QDialog *box = window->findChild<QDialog *>(u"frmAbout"_s);
        ASSERT_TRUE(box);
        EXPECT_EQ(box->windowTitle(), u"About Shotly"_s);
        const QString version = box->findChild<QLabel *>(u"lblVersion"_s)->text();
        EXPECT_TRUE(version.startsWith(u"Version " SHOTLY_VERSION "\nBuild "_s)) << version.toStdString();
        const QString licences = box->findChild<QPlainTextEdit *>(u"txtLicences"_s)->toPlainText();
        for (const QString &library : {u"Qt"_s, u"SQLite"_s, u"XCB"_s, u"ALSA"_s, u"Hunspell"_s, u"QPDF"_s,
                                       u"libdeflate"_s, u"xxHash"_s})
            EXPECT_TRUE(licences.contains(library)) << library.toStdString();
        QTest::mouseClick(box->findChild<QPushButton *>(u"cmdSysInfo"_s), Qt::LeftButton);
        EXPECT_EQ(programs->informed, 1);
        EXPECT_TRUE(box->isVisible());
        QTest::keyClick(box, Qt::Key_Return);
        EXPECT_FALSE(box->isVisible());
    });
    control<QAction>(u"mnuHelpAbout"_s)->trigger();
}

TEST_F(MainWindowTest, ThePaintEditorIsAWindowOrATab)
{
    const auto *tabs = control<QTabBar>(u"tab1"_s);
    const auto isTab = [this, tabs] { return tabs->count() == 1 && window->findChild<frmPaint *>(); };
    window->openPaintTab();
    EXPECT_TRUE(isTab());
    EXPECT_EQ(tabs->tabText(0), u"Screen Shots"_s);
    control<QAction>(u"mnuPaintEditor"_s)->trigger();
    EXPECT_TRUE(isTab()) << "it stays where it is";
    QTest::mouseClick(control<QWidget>(u"picPaint"_s), Qt::LeftButton);
    user.expectAsk(Question::PaintSaveChanges, Answer::Cancel);
    press(u"cmdCloseTab"_s);
    EXPECT_TRUE(isTab());
    user.expectAsk(Question::PaintSaveChanges, Answer::No);
    press(u"cmdCloseTab"_s);
    EXPECT_EQ(tabs->count(), 0);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    control<QAction>(u"mnuPaintEditor"_s)->trigger();
    frmPaint *editor = nullptr;
    for (QWidget *widget : QApplication::topLevelWidgets())
        editor = editor ? editor : qobject_cast<frmPaint *>(widget);
    ASSERT_TRUE(editor && editor->isVisible()) << "the same, as a window again";
    window->openPaintTab();
    EXPECT_TRUE(isTab());
    control<QAction>(u"mnuExit"_s)->trigger();
    EXPECT_EQ(tabs->count(), 0) << "its own Exit closes the tab";
    window->openPaintTab();
    EXPECT_TRUE(isTab() && editor->isVisible());
    window.reset();
}

TEST_F(MainWindowTest, APictureNamedAtTheStartIsShown)
{
    const QString path = folder.filePath(u"a.bmp"_s);
    ImageFile::save(screen->picture, path);
    ImageFile::save(screen->picture, folder.filePath(u"b.bmp"_s));
    state.CommandLinePath = u'"' + path + u'"';
    open();
    EXPECT_TRUE(QTest::qWaitFor([&] { return control<QTabBar>(u"tab1"_s)->count() == 1; }, 10'000));
    EXPECT_EQ(control<QTabBar>(u"tab1"_s)->tabToolTip(0), u"Screen Shots "_s + path);
    EXPECT_EQ(control<QLineEdit>(u"txtFileName"_s)->text(), u"a.bmp"_s);

    // One that is not there leaves a message and the files of its folder.
    state.CommandLinePath = folder.filePath(u"c.bmp"_s);
    user.expectTell(Question::OpenFailed);
    open();
    EXPECT_TRUE(QTest::qWaitFor([&] { return control<QTabBar>(u"tab1"_s)->count() == 1; }, 10'000));
    EXPECT_EQ(control<QListView>(u"File1"_s)->model()->rowCount(), 2);
    EXPECT_EQ(control<QLineEdit>(u"txtFileName"_s)->text(), QString());
}
