// Drawing regions on a real display. The mouse and all positions are in physical pixels; the program runs
// under several scales of Qt's.

#include "DesktopFixture.h"

#include "capture/mHotKey.h"
#include "platform/ImageFile.h"
#include "platform/qt/WidgetPrompter.h"
#include "platform/VirtualKeys.h"

#include <QAction>
#include <QMessageBox>
#include <QPainter>
#include <QWindow>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int patience = desktopPatience;

/// A window of another program, as far as the overlay is concerned. Each of its physical pixels has a colour
/// of its own.
class Pattern : public QWidget
{
public:
    Pattern()
    {
        const qreal ratio = devicePixelRatioF();
        setWindowTitle(u"pattern"_s);
        setGeometry(QRectF(60 / ratio, 60 / ratio, 900 / ratio, 600 / ratio).toRect());
        show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(this));
    }
    void invert()
    {
        m_mask ^= 0xffffff;
        repaint();
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        const qreal ratio = devicePixelRatioF();
        QImage picture(size() * ratio, QImage::Format_RGB32);
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                picture.setPixel(x, y, qRgb(x % 256, y % 256, x / 256 + 16 * (y / 256)) ^ m_mask);
        QPainter painter(this);
        painter.scale(1 / ratio, 1 / ratio);
        painter.drawImage(0, 0, picture);
    }

private:
    QRgb m_mask = 0;
};

class RegionTest : public DesktopTest
{
protected:
    const QString path = folder.filePath(u"region.bmp"_s);
    std::unique_ptr<Pattern> pattern;

    RegionTest()
    {
        window->minimise();
        pattern = std::make_unique<Pattern>();
        xdotool({u"mousemove"_s, u"200"_s, u"200"_s});
        platform.screen->waitUntilAtRest(patience);
    }

    static QWidget *overlay()
    {
        for (QWidget *widget : QApplication::topLevelWidgets())
            if (widget->objectName() == u"frmRegion"_s && widget->isVisible())
                return widget;
        return nullptr;
    }
    void open()
    {
        user.expectFile(Question::SaveSnapshotAs, path);
        window->findChild<QAction *>(u"mnuRegion"_s)->trigger();
        ASSERT_TRUE(overlay());
        EXPECT_TRUE(QTest::qWaitForWindowActive(overlay()));
    }
    static void moves(std::initializer_list<QPoint> points, bool down, bool up)
    {
        QStringList words;
        const auto add = [&words](const QString &command) { words += command.split(u' '); };
        for (const QPoint point : points) {
            add(u"mousemove %1 %2 sleep 0.05"_s.arg(point.x()).arg(point.y()));
            if (std::exchange(down, false))
                add(u"mousedown 1 sleep 0.05"_s);
        }
        if (up)
            add(u"mouseup 1 sleep 0.05"_s);
        xdotool(words);
    }
    static void drag(QPoint from, QPoint to) { moves({from, (from + to) / 2, to}, true, true); }
    /// Until the open box has the keyboard.
    static void waitForBox()
    {
        EXPECT_TRUE(QTest::qWaitFor([] { return QApplication::activeModalWidget() != nullptr; }, patience));
        EXPECT_TRUE(QTest::qWaitForWindowActive(QApplication::activeModalWidget()));
    }
    static bool gone()
    {
        return QTest::qWaitFor([] { return !overlay(); }, patience);
    }
    /// The picture that is saved when this is dragged.
    QImage captured(QPoint from, QPoint to)
    {
        state.CurrentImagePath.clear();
        drag(from, to);
        EXPECT_TRUE(QTest::qWaitFor([this] { return state.CurrentImagePath == path; }, patience));
        EXPECT_FALSE(overlay());
        return ImageFile::load(path);
    }
};
} // namespace

TEST_F(RegionTest, TheRegionHasThePixelsOfTheMomentWhenTheOverlayOpened)
{
    const QRect region(201, 151, 322, 233);
    const QPoint topLeft(201, 151), topRight(523, 151), bottomLeft(201, 384), bottomRight(523, 384);
    const std::pair<QPoint, QPoint> drags[] = {
        {topLeft, bottomRight}, {bottomRight, topLeft}, {topRight, bottomLeft}, {bottomLeft, topRight}};
    for (const auto &[from, to] : drags) {
        window->minimise();
        platform.screen->waitUntilAtRest(patience);
        const QImage before = root();
        const QImage wanted = before.copy(region);
        EXPECT_NE(wanted, before.copy(region.translated(1, 0)));
        EXPECT_NE(wanted, before.copy(region.translated(0, 1)));
        open();
        EXPECT_EQ(difference(root(), before), QRect()); // nobody sees that it is there
        pattern->invert();
        const QImage got = captured(from, to);
        EXPECT_EQ(got, wanted);
        EXPECT_TRUE(QTest::qWaitFor([this] { return !window->isMinimized(); }, patience));
    }
}

TEST_F(RegionTest, TheBoxWithTheTipsIsNotInThePicture)
{
    state.AppOptions.ShowLessMessage = 0;
    const QImage before = root();
    user.expectFile(Question::SaveSnapshotAs, path);
    user.expectTell(Question::RegionTips);
    user.whileOpen([this] {
        QTimer::singleShot(0, window.get(), [] {
            waitForBox();
            QApplication::activeModalWidget()->close(); // and no event is handled any more
        });
        WidgetPrompter().tell(Question::RegionTips, {u"text"_s, u"title"_s});
    });
    window->findChild<QAction *>(u"mnuRegion"_s)->trigger();
    ASSERT_TRUE(overlay());
    // The pattern, on whose middle the box was.
    EXPECT_EQ(captured({250, 200}, {750, 600}), before.copy(250, 200, 500, 400));
}

TEST_F(RegionTest, AClickAndEscapeCancel)
{
    const auto cancelled = [this] {
        EXPECT_TRUE(gone());
        EXPECT_TRUE(QTest::qWaitFor([this] { return state.NextSnapshotPath.isEmpty(); }, patience));
        EXPECT_TRUE(QTest::qWaitForWindowActive(pattern.get())); // the keyboard goes back
        EXPECT_TRUE(window->isMinimized());
    };
    open();
    click({300, 300}, 3);
    EXPECT_TRUE(overlay()); // the right button does nothing
    click({300, 300});
    cancelled();
    open();
    drag({300, 300}, {301, 400});
    cancelled();
    open();
    xdotool({u"key"_s, u"Escape"_s});
    cancelled();
    open();
    moves({{300, 300}, {400, 400}}, true, false);
    xdotool({u"key"_s, u"Escape"_s});
    cancelled();
    moves({{400, 400}}, false, true);
    EXPECT_FALSE(QFile::exists(path));
    open();
    EXPECT_FALSE(captured({300, 300}, {400, 400}).isNull());
}

TEST_F(RegionTest, TheBandAndItsSizeAreSeenAndLeaveNoTrace)
{
    const QImage before = root();
    const qreal ratio = pattern->devicePixelRatioF();
    const int line = static_cast<int>(ratio);
    open();
    moves({{101, 111}, {705, 611}, {433, 333}}, true, false);
    const QRect band(101, 111, 332, 222);
    const QImage drawn = root();
    for (const QPoint corner : {band.topLeft(), band.bottomRight()})
        EXPECT_EQ(drawn.pixel(corner), qRgb(0, 0, 0));
    EXPECT_EQ(drawn.pixel(band.topLeft() + QPoint(line, line)), qRgb(255, 255, 255));
    EXPECT_EQ(drawn.pixel(band.bottomRight() - QPoint(line, line)), qRgb(255, 255, 255));
    const QRect inside = band.adjusted(2 * line, 2 * line, -2 * line, -2 * line);
    EXPECT_EQ(drawn.copy(inside), before.copy(inside));
    // Besides the band only the label, which is readable.
    const QRect label = difference(drawn, before, band);
    EXPECT_EQ(label.topLeft(), QPoint(433, 333) + QPoint(1, 1) * qRound(14 * ratio));
    EXPECT_GT(label.height(), 14 * ratio);
    EXPECT_GT(label.width(), 3 * label.height() / 2);
    EXPECT_LT(label.width(), 8 * label.height());

    moves({before.rect().bottomRight(), {101, 111}}, false, false);
    const QRect small = difference(root(), before);
    EXPECT_EQ(small.topLeft(), QPoint(101, 111) + QPoint(1, 1) * qRound(14 * ratio)); // "0 x 0" alone
    moves({{101, 111}}, false, true);
    EXPECT_TRUE(gone());
}

TEST_F(RegionTest, ABoxOfTheProgramIsNeverCovered)
{
    open();
    QTimer::singleShot(0, window.get(), [this] {
        EXPECT_TRUE(gone());
        waitForBox();
        EXPECT_TRUE(QTest::qWaitFor([this] { return state.NextSnapshotPath.isEmpty(); }, patience));
        open(); // over the box this time
        xdotool({u"key"_s, u"Escape"_s});
        EXPECT_TRUE(gone());
        waitForBox();
        xdotool({u"key"_s, u"Return"_s});
    });
    WidgetPrompter().tell(Question::CommandFailed, {u"text"_s, u"title"_s});
    QApplication::processEvents();
    EXPECT_TRUE(state.NextSnapshotPath.isEmpty());
    open();
    EXPECT_FALSE(captured({300, 300}, {400, 400}).isNull());
}

TEST_F(RegionTest, TheHotKeyWorksOnceAndARunTakesNoSnapshotOfTheDrawing)
{
    ASSERT_TRUE(
        platform.hotKeys->registerKey(mHotKey::RegionShot, HotKeys::Modifier::Control, VirtualKey::F1 + 6));
    window->setProjectText(u"region"_s);
    window->findChild<QAction *>(u"mnuBeginCap"_s)->trigger();
    ASSERT_TRUE(state.CaptureRunning);
    user.expectFile(Question::SaveSnapshotAs, path);
    xdotool({u"key"_s, u"ctrl+F7"_s});
    EXPECT_TRUE(QTest::qWaitFor([] { return overlay() != nullptr; }, patience));
    EXPECT_TRUE(QTest::qWaitForWindowActive(overlay()));
    xdotool({u"key"_s, u"ctrl+F7"_s}); // is open already
    EXPECT_EQ(captured({300, 300}, {350, 340}).size(), QSize(50, 40));
    EXPECT_EQ(state.ShotCounter, 1);
    click({400, 400});
    EXPECT_TRUE(shots(1));
    window->findChild<QAction *>(u"mnuStopCap"_s)->trigger();
    EXPECT_FALSE(state.CaptureRunning);
}

TEST_F(RegionTest, AllMonitorsAreCoveredWhereverThePrimaryOneIs)
{
    const QSize desktop = platform.screen->desktop().size();
    const int half = desktop.width() / 2;
    const int third = desktop.width() / 3;
    const std::pair<QRect, QRect> layouts[] = {
        {{0, 0, half, desktop.height()}, {half, 0, desktop.width() - half, desktop.height()}},
        // Of different size, and none has the desktop's corner.
        {{0, 101, third, desktop.height() - 101}, {third, 0, desktop.width() - third, 555}},
    };
    for (const auto &[left, right] : layouts) {
        window->minimise();
        setMonitors(left, right);
        EXPECT_TRUE(QTest::qWaitFor([] { return QGuiApplication::screens().size() == 2; }, patience));
        platform.screen->waitUntilAtRest(patience);
        const QImage before = root();
        open();
        EXPECT_EQ(difference(root(), before), QRect());
        const QRect region(right.x() - 150, 200, 300, 100);
        EXPECT_EQ(captured(region.topLeft(), region.bottomRight() + QPoint(1, 1)), before.copy(region));
        removeMonitor(u"left"_s);
        removeMonitor(u"right"_s);
        EXPECT_TRUE(QTest::qWaitFor([] { return QGuiApplication::screens().size() == 1; }, patience));
    }
}
