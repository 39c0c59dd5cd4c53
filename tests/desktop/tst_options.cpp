// The options dialog in the main window of a real display: hot keys from the dialog to the next start, and
// the places where its pages stand.

#include "DesktopFixture.h"

#include "platform/VirtualKeys.h"
#include "platform/x11/X11HotKeys.h"
#include "settings/OptionsStore.h"

#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabWidget>

using namespace Qt::Literals::StringLiterals;

namespace
{
class OptionsTest : public DesktopTest
{
protected:
    static void defaults(Module1 &state)
    {
        const QString base = state.AppOptions.BaseDirectory;
        state.AppOptions = OptionsStore::LoadOptions(state.OptionsFilePath); // there is none
        state.AppOptions.BaseDirectory = base;
        state.AppOptions.ShowLessMessage = 1;
    }

    OptionsTest() : DesktopTest(&OptionsTest::defaults) {}

    static void key(const QString &name) { xdotool({u"key"_s, name}); }
    void press(const QString &name) { click(middleOf(control(name))); }

    void open()
    {
        key(u"alt+a"_s); // the menu
        ASSERT_TRUE(QTest::qWaitFor([] { return QApplication::activePopupWidget(); }, desktopPatience));
        key(u"o"_s);
        ASSERT_TRUE(QTest::qWaitFor([this] { return window->findChild<QWidget *>(u"frmOption"_s); },
                                    desktopPatience));
        ASSERT_TRUE(QTest::qWaitFor([this] { return tabs()->hasFocus(); }, desktopPatience));
    }
    QTabWidget *tabs() { return static_cast<QTabWidget *>(control(u"TabStrip1"_s)); }
    void turnToHotKeys()
    {
        const QTabBar *bar = tabs()->tabBar();
        click(bar->mapToGlobal(bar->tabRect(2).center()));
        EXPECT_TRUE(
            QTest::qWaitFor([this] { return control(u"cmbAction"_s)->isVisible(); }, desktopPatience));
    }
    /// From the list, with the keyboard.
    void select(const QString &name, int entry)
    {
        auto *box = static_cast<QComboBox *>(control(name));
        box->setFocus();
        for (int next = box->currentIndex() + 1; next <= entry; ++next) {
            key(u"Down"_s);
            ASSERT_TRUE(QTest::qWaitFor([&] { return box->currentIndex() == next; }, desktopPatience));
        }
    }
    QString label(const QString &name) { return static_cast<QLabel *>(control(name))->text(); }
    void save()
    {
        user.expectTell(Question::HotKeysAfterRestart);
        press(u"cmdSave"_s);
        EXPECT_TRUE(QTest::qWaitFor([this] { return !window->findChild<QWidget *>(u"frmOption"_s); },
                                    desktopPatience));
    }

    /// The program ends and is started again, with what the file has.
    void restart()
    {
        window.reset();
        platform.hotKeys.reset();
        platform.hotKeys = std::make_unique<X11HotKeys>();
        state.AppOptions = OptionsStore::LoadOptions(state.OptionsFilePath);
        window = std::make_unique<frmMain>(state, platform, user, settings, display);
        window->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }

    /// Presses both while another program has the keyboard: the second one takes a single snapshot, of which
    /// the user thinks better; the first one is nobody's.
    void expectOnlyTheSecond(const QString &unused, const QString &used)
    {
        QProcess other;
        other.start(u"xterm"_s, {u"-geometry"_s, u"40x5-0-0"_s, u"-name"_s, u"somebody"_s});
        ASSERT_TRUE(other.waitForStarted());
        // It gives up when a window, whoever's, goes while it looks: asked again then.
        EXPECT_TRUE(QTest::qWaitFor(
            [] {
                return QProcess::execute(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--classname"_s,
                                                        u"somebody"_s, u"windowfocus"_s, u"--sync"_s}) == 0;
            },
            desktopPatience));
        EXPECT_TRUE(QTest::qWaitFor([this] { return !window->isActiveWindow(); }, desktopPatience));
        const std::size_t before = user.asked.size();
        user.expectInput(Question::ShotDelay, std::nullopt);
        key(unused);
        key(used);
        EXPECT_TRUE(QTest::qWaitFor([&] { return user.asked.size() > before; }, desktopPatience))
            << used.toStdString();
        EXPECT_EQ(user.asked.size(), before + 1) << unused.toStdString();
        other.kill();
        other.waitForFinished();
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }
};

/// Another program has Ctrl-F2 before this one starts.
class TakenKeyTest : public OptionsTest
{
protected:
    static inline std::unique_ptr<X11HotKeys> taken;

    static void SetUpTestSuite()
    {
        taken = std::make_unique<X11HotKeys>();
        ASSERT_TRUE(taken->registerKey(1, HotKeys::Modifier::Control, VirtualKey::F1 + 1));
    }
    static void TearDownTestSuite() { taken.reset(); }
};
} // namespace

TEST_F(OptionsTest, AChangedHotKeyWorksAfterARestart)
{
    open();
    turnToHotKeys();
    select(u"cmbAction"_s, 2);
    select(u"cmbKey1"_s, 1);
    EXPECT_EQ(label(u"lblHotKey_2"_s), u"Alt-F3"_s);
    save();
    expectOnlyTheSecond(u"alt+F3"_s, u"ctrl+F3"_s); // as it was registered
    restart();
    expectOnlyTheSecond(u"ctrl+F3"_s, u"alt+F3"_s);
}

TEST_F(TakenKeyTest, ATakenCombinationIsQuietAndMarked)
{
    EXPECT_TRUE(user.asked.empty());
    expectOnlyTheSecond(u"ctrl+F2"_s, u"ctrl+F3"_s); // the others work
    open();
    turnToHotKeys();
    EXPECT_EQ(label(u"lblHotKeyNote_1"_s), u"in use by another program"_s);
    select(u"cmbAction"_s, 3);
    select(u"cmbHotKey"_s, 5);
    EXPECT_EQ(label(u"lblHotKeyNote_3"_s), u"same as \"End Capture Multi Screens\""_s);
    EXPECT_EQ(label(u"lblHotKeyNote_4"_s), u"same as \"Begin Capture Multi Screens\""_s);
    EXPECT_EQ(label(u"lblHotKeyNote_2"_s), QString());
    press(u"cmdCancel"_s);
    EXPECT_TRUE(
        QTest::qWaitFor([this] { return !window->findChild<QWidget *>(u"frmOption"_s); }, desktopPatience));
}

TEST_F(OptionsTest, EveryPageFitsTheMainWindowAsItOpens)
{
    open();
    for (int page = 0; page < tabs()->count(); ++page) {
        tabs()->setCurrentIndex(page);
        const auto *area = static_cast<QScrollArea *>(tabs()->widget(page));
        EXPECT_TRUE(QTest::qWaitFor([&] { return area->isVisible(); }, desktopPatience));
        EXPECT_EQ(area->horizontalScrollBar()->maximum(), 0) << page;
        EXPECT_EQ(area->verticalScrollBar()->maximum(), 0) << page;
    }
}
