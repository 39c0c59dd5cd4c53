// Snapshots on a display of two monitors, of different size and beginning at different heights. The mouse and
// all positions are in physical pixels; the program runs under several scales of Qt's.

#include "DesktopFixture.h"

#include <QAction>
#include <QRegularExpression>
#include <QScreen>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int patience = desktopPatience;
constexpr QRect left(0, 124, 560, 900);
constexpr QRect right(560, 0, 720, 600); // the primary one

/// What the arrow covers whose tip is at a click.
QRect arrow(int x, int y)
{
    return {x, y, 12, 22};
}

/// A window of another program, as far as the snapshots are concerned.
class Canvas : public QWidget
{
public:
    Canvas()
    {
        setStyleSheet(u"background: #204080"_s);
        setWindowTitle(u"canvas"_s);
        show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(this));
    }
};

/// The screen's background has a colour of its own in each pixel, none of them a colour of the arrow.
class MonitorsTest : public DesktopTest
{
protected:
    QImage before; ///< the screen, before somebody clicks on it

    MonitorsTest()
    {
        window->minimise();
        setMonitors(left, right);
        EXPECT_TRUE(QTest::qWaitFor([] { return QGuiApplication::screens().size() == 2; }, patience));
        QImage pattern(platform.screen->desktop().size(), QImage::Format_RGB32);
        for (int y = 0; y < pattern.height(); ++y)
            for (int x = 0; x < pattern.width(); ++x)
                pattern.setPixel(x, y, qRgb(x % 256, y % 256, 0x80 | x / 256 | 8 * (y / 256)));
        const QString file = folder.filePath(u"pattern.png"_s);
        EXPECT_TRUE(pattern.save(file));
        // It ends with a failure also when all went well.
        run(u"sh"_s, {u"-c"_s, u"display -window root \"$0\" || true"_s, file});
        look();
        EXPECT_EQ(before, pattern);
    }
    ~MonitorsTest() override
    {
        run(u"xsetroot"_s, {u"-solid"_s, u"black"_s});
        for (const QString &name : {u"left"_s, u"right"_s})
            if (run(u"xrandr"_s, {u"--listmonitors"_s}).contains(name))
                removeMonitor(name);
    }

    void begin()
    {
        window->setProjectText(u"monitors"_s);
        window->findChild<QAction *>(u"mnuBeginCap"_s)->trigger();
        ASSERT_TRUE(state.CaptureRunning);
        for (const QWidget *widget : QApplication::topLevelWidgets()) {
            if (widget->objectName() == u"frmToolBar"_s && widget->isVisible()) {
                EXPECT_TRUE(QGuiApplication::primaryScreen()->geometry().contains(widget->frameGeometry()));
            }
        }
        look();
    }
    void look()
    {
        platform.screen->waitUntilAtRest(patience);
        before = root();
    }
    /// The next snapshot is of the monitor or window `area`, and besides that there is only a mark on it,
    /// which covers `mark`; both in the screen's pixels.
    void expectNext(const QRect &area, const QRect &mark)
    {
        m_expected.push_back({area, mark});
        ASSERT_TRUE(shots(static_cast<int>(m_expected.size())));
    }
    void expectClick(QPoint position, const QRect &area, const QRect &mark)
    {
        click(position);
        expectNext(area, mark);
    }
    /// Marks are drawn at the end.
    void stop()
    {
        window->findChild<QAction *>(u"mnuStopCap"_s)->trigger();
        ASSERT_FALSE(state.CaptureRunning);
        ASSERT_EQ(state.ShotTable.size(), m_expected.size() + 1);
        for (std::size_t i = 0; i < m_expected.size(); ++i) {
            SCOPED_TRACE(i + 1);
            compare(state.ShotTable[i + 1][ShotPath], m_expected[i].first, m_expected[i].second);
        }
    }
    void compare(const QString &path, const QRect &area, const QRect &mark)
    {
        const QImage picture = pictureIn(path);
        ASSERT_EQ(picture.size(), area.size());
        const QRect found = difference(picture, before.copy(area));
        EXPECT_EQ(found.isNull() ? found : found.translated(area.topLeft()), mark);
    }
    /// A window's place with its frame, as another program reads it.
    static QRect frameOf(const QWidget &widget)
    {
        const QString text =
            run(u"xwininfo"_s, {u"-stats"_s, u"-wm"_s, u"-id"_s, QString::number(widget.winId())});
        const QRegularExpression pattern(
            u"left X: +(-?\\d+).*?left Y: +(-?\\d+).*Width: (\\d+).*Height: (\\d+)"
            ".*extents: (\\d+), (\\d+), (\\d+), (\\d+)"_s, // left, right, top, bottom
            QRegularExpression::DotMatchesEverythingOption);
        const QRegularExpressionMatch match = pattern.match(text);
        const auto number = [&match](int i) { return match.captured(i).toInt(); };
        return QRect(number(1), number(2), number(3), number(4)) +
               QMargins(number(5), number(7), number(6), number(8));
    }
    /// Puts a window of 360 x 160 somewhere, and waits until it is there.
    void place(const QWidget &widget, QPoint corner)
    {
        const QString id = QString::number(widget.winId());
        xdotool({u"windowsize"_s, id, u"360"_s, u"160"_s, u"windowmove"_s, id, QString::number(corner.x()),
                 QString::number(corner.y())});
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                const QRect frame = frameOf(widget);
                return frame.contains(corner) && !frame.contains(corner - QPoint(30, 30)) &&
                       frame.size().boundedTo({390, 190}) == frame.size();
            },
            patience));
        look();
    }

private:
    std::vector<std::pair<QRect, QRect>> m_expected; ///< what each snapshot shows, and its mark
};
} // namespace

TEST_F(MonitorsTest, EveryPictureIsTheMonitorThatWasClicked)
{
    begin();
    expectClick({200, 500}, left, arrow(200, 500));
    expectClick({1000, 300}, right, arrow(1000, 300));
    // Left and right of the seam; of the arrow at the left one only its outline's first column is seen.
    expectClick({559, 400}, left, {559, 400, 1, 18});
    expectClick({560, 400}, right, arrow(560, 400));
    // The outermost pixels.
    expectClick({0, 124}, left, arrow(0, 124));
    expectClick({1279, 599}, right, {1279, 599, 1, 1});
    stop();
}

TEST_F(MonitorsTest, AWindowOnBothMonitorsIsJudgedByTheOneThatWasClicked)
{
    begin();
    Canvas canvas;
    // Low on the right monitor, but not on the left one, which reaches farther down.
    place(canvas, {400, 420});
    expectClick({700, 480}, frameOf(canvas), arrow(700, 480));
    click({710, 490}, 3); // lies outside the next picture
    expectClick({500, 480}, left, arrow(500, 480));
    stop();
}

TEST_F(MonitorsTest, AWindowPartlyOffTheDesktopIsClippedToIt)
{
    begin();
    Canvas canvas;
    const int end = before.width();
    place(canvas, {end - 100, 420});
    expectClick({end - 60, 480}, frameOf(canvas) & before.rect(), arrow(end - 60, 480));
    stop();
}

TEST_F(MonitorsTest, ASnapshotByAKeyShowsTheMonitorOfThePointer)
{
    state.AppOptions.SnapShotByPressTab = 1;
    xdotool({u"mousemove"_s, u"1000"_s, u"300"_s});
    begin();
    xdotool({u"key"_s, u"Tab"_s});
    expectNext(right, {}); // nobody clicked
    xdotool({u"mousemove"_s, u"200"_s, u"500"_s, u"key"_s, u"Tab"_s});
    expectNext(left, {});
    stop();
}

TEST_F(MonitorsTest, TheNextPictureKnowsOfAChangeOfTheMonitors)
{
    begin();
    expectClick({1000, 300}, right, arrow(1000, 300));
    removeMonitor(u"left"_s);
    expectClick({200, 500}, right, {}); // on no monitor: the nearest one, and the click lies outside it
    removeMonitor(u"right"_s);
    expectClick({200, 500}, before.rect(), arrow(200, 500));
    const QRect lower(0, 350, 1200, 640);
    const QRect upper(100, 0, 900, 350);
    setMonitors(lower, upper);
    expectClick({300, 349}, upper, {300, 349, 1, 1});
    expectClick({300, 350}, lower, arrow(300, 350));
    const QRect narrow(50, 400, 800, 500);
    removeMonitor(u"left"_s);
    addMonitor(u"left"_s, narrow, u"none"_s);
    expectClick({300, 500}, narrow, arrow(300, 500));
    stop();
}

TEST_F(MonitorsTest, ADelayedSnapshotShowsTheMonitorOfThePointer)
{
    look();
    const std::pair<QPoint, QRect> cases[] = {{{700, 500}, right}, {{300, 800}, left}};
    for (const auto &[pointer, monitor] : cases) {
        const QString path = folder.filePath(u"at%1.bmp"_s.arg(pointer.x()));
        user.expectInput(Question::ShotDelay, u"1"_s);
        user.expectFile(Question::SaveSnapshotAs, path);
        xdotool({u"mousemove"_s, QString::number(pointer.x()), QString::number(pointer.y())});
        window->findChild<QAction *>(u"mnuDesktop"_s)->trigger();
        ASSERT_TRUE(QTest::qWaitFor([&] { return state.CurrentImagePath == path; }, patience));
        compare(path, monitor, {});
        window->minimise();
    }
}
