#include "MainWindowFixture.h"

#include "app/CommandTable.h"
#include "app/TabHost.h"

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
    EXPECT_EQ(control<QToolButton>(u"StopCap"_s)->toolTip(), u"Step 2. Stop capturing (Ctrl+F6)"_s);
    EXPECT_EQ(control<QToolButton>(u"StartCap"_s)->toolTip(), u"Step 1. Begin to capture screens"_s)
        << "its hot key is another command's";
    EXPECT_EQ(control<QToolButton>(u"Help"_s)->toolTip(), u"Help contents (F1)"_s);
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
    QTest::keyClick(window.get(), Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_TRUE(first->isVisible());
    QTest::keyClick(window.get(), Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(second->isVisible());
    QTest::keyClick(window.get(), Qt::Key_W, Qt::ControlModifier); // it refuses
    EXPECT_EQ(tabs->count(), 2);
    second->mayClose = true;
    press(u"cmdCloseWebSearch"_s);
    EXPECT_EQ(tabs->count(), 0);
    EXPECT_FALSE(closeTab->isVisible());
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

TEST_F(MainWindowTest, AFailureInACommandIsShownAndTheProgramGoesOn)
{
    state.AppOptions.BaseDirectory = u"/proc/nowhere"_s;
    type(u"broken"_s);
    user.expectTell(Question::CommandFailed);
    press(u"StartCap"_s);
    EXPECT_TRUE(user.asked[0].text.startsWith(u"Run-time error '"_s));
    EXPECT_FALSE(state.CaptureRunning);
}
