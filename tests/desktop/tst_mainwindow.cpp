// Recording on a real display, in the main window.

#include "DesktopFixture.h"

#include "platform/ImageFile.h"

#include <QAction>
#include <QLineEdit>
#include <QSystemTrayIcon>
#include <QToolButton>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int patience = desktopPatience;
constexpr QRgb pink = qRgb(0xff, 0xd6, 0xe7);
constexpr QRgb countdownGround = qRgb(0x1e, 0x29, 0x3b);

/// A plain window of another program, as far as the hook is concerned; blue, low on the screen.
class Canvas : public QWidget
{
public:
    Canvas()
    {
        setStyleSheet(u"background: #204080"_s);
        setWindowTitle(u"canvas"_s);
        setGeometry(100, 700, 500, 250);
        show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(this));
        QTest::qWait(0);
    }
    QPoint at(int x, int y) { return mapToGlobal(QPoint(x, y)); }
};

class RecordingTest : public DesktopTest
{
protected:
    QImage shot(std::size_t number) const { return ImageFile::load(state.ShotTable.at(number)[ShotPath]); }
    QPoint pointer(std::size_t number) const
    {
        return {state.ShotTable.at(number)[ShotPointerX].toInt(),
                state.ShotTable.at(number)[ShotPointerY].toInt()};
    }
};

bool contains(const QImage &picture, QRgb colour)
{
    for (int y = 0; y < picture.height(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        if (std::find(row, row + picture.width(), colour) != row + picture.width())
            return true;
    }
    return false;
}
} // namespace

TEST_F(RecordingTest, ARunFromTheProjectBoxToTheStopBar)
{
    begin(u"real-1"_s);
    Canvas canvas;
    click(canvas.at(40, 50));
    ASSERT_TRUE(shots(1));
    click(canvas.at(200, 100), 3);
    click(canvas.at(260, 140));
    ASSERT_TRUE(shots(2));

    const QWidget *stop = nullptr;
    for (QWidget *widget : QApplication::topLevelWidgets())
        if (widget->objectName() == u"frmToolBar"_s)
            stop = widget->findChild<QToolButton *>(u"picStop"_s);
    ASSERT_TRUE(stop);
    EXPECT_EQ(stop->window()->geometry().topLeft(), QPoint(0, 0));
    EXPECT_NE(QApplication::activeWindow(), stop->window());
    const QPoint stopClick = middleOf(stop);
    click(stopClick);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !state.CaptureRunning; }, patience));
    EXPECT_TRUE(QTest::qWaitFor([this] { return !window->isMinimized() && window->isVisible(); }, patience));

    // Two clicks and the one on Stop.
    ASSERT_EQ(state.ShotTable.size(), 4U);
    EXPECT_EQ(window->findChild<QLineEdit *>(u"txtFileName"_s)->text(), u"sh0001.bmp"_s);
    const QRect frame = canvas.frameGeometry();
    EXPECT_EQ(shot(1).size(), frame.size());
    EXPECT_EQ(pointer(1), canvas.at(40, 50) - frame.topLeft());
    EXPECT_EQ(shot(1).pixel(pointer(1)), qRgb(0, 0, 0)); // the arrow's tip
    EXPECT_EQ(state.ShotTable[2][ShotRightClick], u"True"_s);
    const QPoint rightClick = canvas.at(200, 100) - frame.topLeft();
    EXPECT_EQ(state.ShotTable[2][ShotRightClickX].toInt(), rightClick.x());
    EXPECT_EQ(state.ShotTable[2][ShotRightClickY].toInt(), rightClick.y());
    EXPECT_EQ(shot(2).pixel(rightClick + QPoint(30, -6)), qRgb(0xff, 0, 0)); // the label's frame
    EXPECT_FALSE(contains(shot(1), pink)); // nothing of the main window in the way
    EXPECT_TRUE(contains(shot(1), qRgb(0x20, 0x40, 0x80)));
}

TEST_F(RecordingTest, TheHotKeyStopsWithCapsLockOnAndAHeldKeyCountsOnce)
{
    state.AppOptions.SnapShotByPressTab = 1;
    begin(u"real-2"_s);
    Canvas canvas;
    xdotool({u"keydown"_s, u"Tab"_s, u"sleep"_s, u"1.2"_s, u"keyup"_s, u"Tab"_s});
    ASSERT_TRUE(shots(1));
    xdotool({u"key"_s, u"shift+Tab"_s});
    ASSERT_TRUE(shots(2));
    xdotool({u"key"_s, u"Caps_Lock"_s});
    xdotool({u"key"_s, u"ctrl+F6"_s});
    EXPECT_TRUE(QTest::qWaitFor([this] { return !state.CaptureRunning; }, patience));
    xdotool({u"key"_s, u"Caps_Lock"_s});
    EXPECT_EQ(state.ShotCounter, 3);
    EXPECT_EQ(state.ShotTable.size(), 3U);
}

TEST_F(RecordingTest, NoClickIsLostHoweverQuickTheHand)
{
    // Ten clicks a second, faster than snapshots are taken; SHOTLY_LOAD_CLICKS asks for more than a few.
    const int clicks = std::max(60, qEnvironmentVariableIntValue("SHOTLY_LOAD_CLICKS"));
    begin(u"quick"_s);
    Canvas canvas;
    const auto position = [&canvas](int i) { return canvas.at(10 + i * 37 % 480, 10 + i * 23 % 220); };
    QStringList words;
    for (int i = 0; i < clicks; ++i)
        words << u"mousemove"_s << QString::number(position(i).x()) << QString::number(position(i).y())
              << u"mousedown"_s << u"1"_s << u"sleep"_s << u"0.03"_s << u"mouseup"_s << u"1"_s << u"sleep"_s
              << u"0.07"_s;
    QProcess hand;
    hand.start(u"xdotool"_s, words);
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return hand.state() == QProcess::NotRunning; }, 200 * clicks + patience));
    // Stop comes while many are still waiting: they happened before it and count.
    EXPECT_LT(state.ShotCounter, clicks);
    xdotool({u"key"_s, u"ctrl+F6"_s});
    ASSERT_TRUE(QTest::qWaitFor([this] { return !state.CaptureRunning; }, 400 * clicks + patience));
    ASSERT_EQ(state.ShotTable.size(), static_cast<std::size_t>(clicks) + 1);
    const QPoint corner = canvas.frameGeometry().topLeft();
    for (int i = 0; i < clicks; ++i) {
        const auto number = static_cast<std::size_t>(i) + 1;
        EXPECT_TRUE(
            state.ShotTable[number][ShotPath].endsWith(u"sh%1.bmp"_s.arg(number, 4, 10, QChar(u'0'))));
        EXPECT_EQ(pointer(number), position(i) - corner) << number;
    }
}

TEST_F(RecordingTest, ADelayedSnapshotShowsTheDesktopWithoutTheMainWindow)
{
    const QString path = folder.filePath(u"one.bmp"_s);
    user.expectInput(Question::ShotDelay, u"1"_s);
    user.expectFile(Question::SaveSnapshotAs, path);
    click(middleOf(control(u"Desktop"_s)));
    EXPECT_TRUE(QTest::qWaitFor(
        [this] { return contains(platform.screen->grab(platform.screen->desktop()), countdownGround); },
        patience))
        << "the seconds that are left";
    ASSERT_TRUE(QTest::qWaitFor([&] { return state.CurrentImagePath == path; }, patience));
    const QImage picture = ImageFile::load(path);
    EXPECT_EQ(picture.size(), platform.screen->desktop().size());
    EXPECT_FALSE(contains(picture, pink));
    EXPECT_FALSE(contains(picture, countdownGround));
    EXPECT_FALSE(window->isMinimized());
}

TEST_F(RecordingTest, IntoTheTrayAndBack)
{
    // Without a tray the window is only minimised.
    click(middleOf(control(u"cmdIntoTray"_s)));
    ASSERT_TRUE(QTest::qWaitFor([this] { return window->isMinimized(); }, patience));
    EXPECT_TRUE(window->isVisible());
    window->restoreNormal();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));

    QProcess tray;
    tray.start(u"trayer"_s, {u"--edge"_s, u"bottom"_s, u"--align"_s, u"right"_s, u"--widthtype"_s,
                             u"request"_s, u"--height"_s, u"26"_s});
    ASSERT_TRUE(tray.waitForStarted());
    ASSERT_TRUE(QTest::qWaitFor([] { return QSystemTrayIcon::isSystemTrayAvailable(); }, patience));
    click(middleOf(control(u"cmdIntoTray"_s)));
    ASSERT_TRUE(QTest::qWaitFor([this] { return !window->isVisible(); }, patience));
    EXPECT_TRUE(state.TrayIconData.added);

    // The icon is the only thing in the tray, which is at the bottom right.
    const QRect desktop = platform.screen->desktop();
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            click(desktop.bottomRight() - QPoint(12, 12));
            return window->isVisible();
        },
        patience));
    EXPECT_FALSE(state.TrayIconData.added);
    tray.terminate();
    tray.waitForFinished();
}
