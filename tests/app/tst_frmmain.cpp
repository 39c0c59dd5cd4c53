#include "app/CommandTable.h"
#include "app/frmMain.h"
#include "app/TabHost.h"
#include "capture/DisplaySwitch.h"
#include "paint/frmPaint.h"
#include "platform/ImageFile.h"
#include "platform/sqlite/SqliteDatabase.h"
#include "support/FakeClock.h"
#include "support/FakeDisplayModes.h"
#include "support/FakeHotKeys.h"
#include "support/FakeInputHook.h"
#include "support/FakePrograms.h"
#include "support/FakeScreen.h"
#include "support/FakeSound.h"
#include "support/FakeSpelling.h"
#include "support/FakeWordProcessor.h"
#include "support/ScriptedPrompter.h"
#include "support/TestState.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QToolButton>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// The main window over fakes and a real database, driven by clicks and keys.
class MainWindowTest : public ::testing::Test, protected TestState
{
protected:
    ScriptedPrompter user;
    UserSettings settings{folder.filePath(u"settings.ini"_s)};
    Platform platform;
    FakeDisplayModes displayModes;
    DisplaySwitch display{{state, displayModes, settings, user, folder.path()}};
    FakeScreen *screen = nullptr;
    FakeInputHook *hook = nullptr;
    FakeHotKeys *hotKeys = nullptr;
    FakePrograms *programs = nullptr;
    std::unique_ptr<frmMain> window;

    MainWindowTest()
    {
        const auto add = [](auto &place, auto part) {
            auto *raw = part.get();
            place = std::move(part);
            return raw;
        };
        add(platform.clock, std::make_unique<FakeClock>());
        screen = add(platform.screen, std::make_unique<FakeScreen>());
        hook = add(platform.inputHook, std::make_unique<FakeInputHook>());
        hotKeys = add(platform.hotKeys, std::make_unique<FakeHotKeys>());
        add(platform.sound, std::make_unique<FakeSound>());
        add(platform.database, std::make_unique<SqliteDatabase>());
        programs = add(platform.programs, std::make_unique<FakePrograms>());
        add(platform.wordProcessor, std::make_unique<FakeWordProcessor>());
        add(platform.spelling, std::make_unique<FakeSpelling>());
        screen->picture = QImage(400, 300, QImage::Format_RGB32);
        screen->picture.fill(Qt::gray);
        state.AppOptions.ShowLessMessage = 1;
        state.AppOptions.HotKeyNames.fill(u"Ctrl-F5"_s); // only the first is available
        state.AppOptions.HotKeyNames[4] = u"Ctrl-F6"_s;
        open();
    }

    void open()
    {
        window.reset();
        window = std::make_unique<frmMain>(state, platform, user, settings, display);
        window->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    }

    template <typename T>
    T *control(const QString &name)
    {
        T *found = window->findChild<T *>(name);
        EXPECT_TRUE(found) << name.toStdString();
        return found;
    }
    void click(QPoint position, int button = 1)
    {
        hook->send({InputEvent::Kind::MouseUp, 0, button, 0, position, ++m_time});
        hook->deliver();
    }
    void pressHotKey(int id)
    {
        hotKeys->press(id, ++m_time);
        QApplication::processEvents();
    }
    void press(const QString &name) { QTest::mouseClick(control<QAbstractButton>(name), Qt::LeftButton); }
    void type(const QString &text)
    {
        auto *edit = control<QComboBox>(u"cmbProj"_s)->lineEdit();
        edit->setFocus();
        edit->clear();
        QTest::keyClicks(edit, text);
    }

private:
    std::uint32_t m_time = 1;
};
} // namespace

TEST_F(MainWindowTest, EveryCommandIsInItsMenu)
{
    QStringList menus;
    for (const QAction *menu : window->menuBar()->actions())
        menus += menu->text();
    EXPECT_EQ(menus, (QStringList{u"&Multi-Snapshot-Project"_s, u"&Edit"_s, u"&Admin"_s,
                                  u"&Single-Snapshot"_s, u"&Help"_s}));
    for (const Command &row : CommandTable::commands()) {
        const auto *action = control<QAction>(QString::fromLatin1(row.name));
        EXPECT_FALSE(action->icon().isNull()) << row.name;
        EXPECT_TRUE(row.handler) << row.name;
    }
    EXPECT_EQ(control<QAction>(u"mnuBeginCap"_s)->text(), u"Step 1. &Begin Capture Screens"_s);
    EXPECT_FALSE(control<QAction>(u"mnuStopCap"_s)->isEnabled());
    for (const ToolButton &row : CommandTable::toolButtons()) {
        const auto *button = control<QToolButton>(QString::fromLatin1(row.key));
        EXPECT_EQ(button->text(), QString::fromLatin1(row.label));
        EXPECT_EQ(button->isEnabled(), control<QAction>(QString::fromLatin1(row.command))->isEnabled());
    }
    EXPECT_EQ(control<QMenu>(u"mPopupSys"_s)->actions().size(), 8);
}

TEST_F(MainWindowTest, LettersAndKeysOfTheMenusAreUnique)
{
    QList<QKeySequence> keys;
    std::vector<QWidget *> menus{window->menuBar()};
    for (QAction *menu : window->menuBar()->actions())
        menus.push_back(menu->menu());
    for (const QWidget *menu : menus) {
        QList<QKeySequence> letters;
        for (const QAction *action : menu->actions()) {
            const QKeySequence letter = QKeySequence::mnemonic(action->text());
            EXPECT_FALSE(!letter.isEmpty() && letters.contains(letter)) << action->text().toStdString();
            letters += letter;
            EXPECT_FALSE(!action->shortcut().isEmpty() && keys.contains(action->shortcut()))
                << action->text().toStdString();
            keys += action->shortcut();
            EXPECT_TRUE(action->isSeparator() || !action->text().isEmpty());
        }
    }
}

TEST_F(MainWindowTest, TheProjectBoxLetsOnlyNamesThrough)
{
    user.expectTell(Question::ProjectNameCharacter);
    type(u"my guide_1-A"_s);
    EXPECT_EQ(control<QComboBox>(u"cmbProj"_s)->currentText(), u"myguide_1-A"_s);
    EXPECT_EQ(user.asked[0].text, u"Only alphabet, number, - and _ allowed in this box."_s);

    // Pasted text comes as a whole.
    user.expectTell(Question::ProjectNameCharacter);
    auto *edit = control<QComboBox>(u"cmbProj"_s)->lineEdit();
    edit->clear();
    QApplication::clipboard()->setText(u"../etc/x y"_s);
    QTest::keyClick(edit, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(edit->text(), u"etcxy"_s);

    // Return moves on and adds nothing to the list.
    QTest::keyClick(edit, Qt::Key_Return);
    EXPECT_FALSE(edit->hasFocus());
    EXPECT_EQ(control<QComboBox>(u"cmbProj"_s)->count(), 0);
}

TEST_F(MainWindowTest, ARunFromTheFirstButtonToTheStopBar)
{
    type(u"guide"_s);
    press(u"StartCap"_s);
    ASSERT_TRUE(state.CaptureRunning);
    EXPECT_TRUE(control<QAction>(u"mnuStopCap"_s)->isEnabled());
    EXPECT_FALSE(control<QAction>(u"mnuCreateHTML"_s)->isEnabled());

    QWidget *stopBar = nullptr;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() == u"frmToolBar"_s)
            stopBar = widget;
    }
    ASSERT_TRUE(stopBar);
    EXPECT_EQ(stopBar->pos(), QPoint(0, 0));
    EXPECT_FALSE(stopBar->close()); // only Stop ends a run
    click({20, 30});
    click({20, 30}, 2);
    click({50, 60});

    // Into the tray: refused while the run is on.
    user.expectTell(Question::CannotGoIntoTray);
    press(u"cmdIntoTray"_s);

    QTest::mouseClick(stopBar->findChild<QToolButton *>(u"picStop"_s), Qt::LeftButton);
    EXPECT_FALSE(state.CaptureRunning);
    EXPECT_TRUE(window->isVisible());
    EXPECT_FALSE(window->isMinimized());
    EXPECT_FALSE(control<QAction>(u"mnuStopCap"_s)->isEnabled());
    EXPECT_EQ(control<QTabBar>(u"tab1"_s)->tabText(0), u"Screen Shots"_s);
    EXPECT_EQ(control<QLineEdit>(u"txtFileName"_s)->text(), u"sh0001.bmp"_s);
    EXPECT_EQ(state.CurrentImagePath, state.AppOptions.BaseDirectory + u"/guide/sh0001.bmp"_s);
    EXPECT_EQ(control<QComboBox>(u"cmbProj"_s)->findText(u"guide"_s), 0);
}

TEST_F(MainWindowTest, HotKeysRunWhatCanBeChosen)
{
    type(u"hot"_s);
    user.expectFile(Question::SaveSnapshotAs, std::nullopt);
    pressHotKey(1); // region: the user gives up
    pressHotKey(5); // stop: nothing to stop
    EXPECT_FALSE(state.CaptureRunning);
    control<QAction>(u"mnuBeginCap"_s)->trigger();
    ASSERT_TRUE(state.CaptureRunning);
    click({20, 30});
    pressHotKey(5);
    EXPECT_FALSE(state.CaptureRunning);
}

TEST_F(MainWindowTest, TabsComeFirstAndCloseOneByOne)
{
    struct Stubborn : QWidget {
        bool mayClose = false;
        void closeEvent(QCloseEvent *event) override { event->setAccepted(mayClose); }
    };
    auto *tabs = control<QTabBar>(u"tab1"_s);
    auto *closeTab = control<QToolButton>(u"cmdCloseTab"_s);
    EXPECT_FALSE(closeTab->isVisible());
    auto *first = new QWidget;
    auto *second = new Stubborn;
    window->addTab(first, u"Page List"_s);
    window->addTab(second, u"Add Notes"_s);
    EXPECT_EQ(tabs->tabText(0), u"Add Notes"_s);
    EXPECT_TRUE(second->isVisible());
    EXPECT_FALSE(first->isVisible());
    EXPECT_NE(first->property("formID"), second->property("formID"));

    window->turnTab(first->property("formID").toInt());
    EXPECT_TRUE(first->isVisible());
    QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(0).center());
    EXPECT_TRUE(second->isVisible());
    press(u"cmdCloseTab"_s); // it refuses
    EXPECT_EQ(tabs->count(), 2);
    second->mayClose = true;
    press(u"cmdCloseWebSearch"_s);
    EXPECT_EQ(tabs->count(), 0);
    EXPECT_FALSE(closeTab->isVisible());
}

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
    EXPECT_EQ(programs->opened, QStringList(state.HelpFilePath + u"/option.htm"_s));
    press(u"cmdCancel"_s);
    EXPECT_EQ(tabs->count(), 1);
}

TEST_F(MainWindowTest, ClosingStopsTheRunAndKeepsThePlace)
{
    window->resize(780, 640);
    type(u"closing"_s);
    press(u"StartCap"_s);
    window->restoreNormal();
    click({20, 30});
    window->close();
    EXPECT_FALSE(state.CaptureRunning);
    EXPECT_EQ(settings.value(u"Settings"_s, u"MainWidth"_s), u"11700"_s);
    EXPECT_EQ(settings.value(u"WorkingSpace"_s, u"count"_s), u"1"_s);
    EXPECT_EQ(settings.value(u"WorkingSpace"_s, u"form1"_s),
              u"Screen Shots "_s + state.AppOptions.BaseDirectory + u"/closing/sh0001.bmp-"_s);

    open();
    EXPECT_EQ(window->size(), QSize(780, 640));
    EXPECT_EQ(control<QComboBox>(u"cmbProj"_s)->currentText(), u"closing"_s);
    EXPECT_EQ(control<QComboBox>(u"cmbProj"_s)->count(), 1);
    EXPECT_EQ(state.ChildWidth, 780 * 15 - 180);
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

TEST_F(MainWindowTest, AFailureInACommandIsShownAndTheProgramGoesOn)
{
    state.AppOptions.BaseDirectory = u"/proc/nowhere"_s;
    type(u"broken"_s);
    user.expectTell(Question::CommandFailed);
    press(u"StartCap"_s);
    EXPECT_TRUE(user.asked[0].text.startsWith(u"Run-time error '"_s));
    EXPECT_FALSE(state.CaptureRunning);
}
