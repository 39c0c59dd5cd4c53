// The paint editor on a real display: every tool with real mouse and key events, compared pixel by pixel.

#include "DesktopFixture.h"

#include "paint/frmPaint.h"
#include "platform/ImageFile.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QToolButton>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int patience = 3000; // milliseconds
constexpr QRgb black = qRgb(0, 0, 0);
constexpr QRgb white = qRgb(255, 255, 255);

class PaintTest : public DesktopTest
{
protected:
    frmPaint *form = nullptr;
    QWidget *canvas = nullptr;
    QImage expected; ///< what the picture should look like

    /// Opens the editor by the menu with a picture.
    void open(const QImage &picture)
    {
        const QString path = folder.filePath(u"picture.bmp"_s);
        ImageFile::save(picture, path);
        state.CurrentImagePath = path;
        expected = picture;
        window->findChild<QAction *>(u"mnuPaintEditor"_s)->trigger();
        for (QWidget *widget : QApplication::topLevelWidgets())
            if (auto *found = qobject_cast<frmPaint *>(widget))
                form = found;
        ASSERT_TRUE(form);
        ASSERT_TRUE(QTest::qWaitForWindowActive(form));
        ASSERT_TRUE(QTest::qWaitFor([this] { return form->x() > 0; }, desktopPatience));
        canvas = form->findChild<QWidget *>(u"picPaint"_s);
    }
    void openWhite()
    {
        QImage picture(300, 200, QImage::Format_RGB32);
        picture.fill(Qt::white);
        open(picture);
    }
    ~PaintTest() override
    {
        if (!form)
            return;
        user.expectAsk(Question::PaintSaveChanges, Answer::No);
        form->close();
    }

    template <typename Control>
    Control &find(const QString &name)
    {
        auto *found = form->findChild<Control *>(name);
        EXPECT_TRUE(found) << name.toStdString();
        return *found;
    }
    void press(const QString &name, int button = 1) { click(middleOf(&find<QWidget>(name)), button); }
    void tool(int index) { press(u"optTools_%1"_s.arg(index)); }
    void menu(const QString &name) { find<QAction>(name).trigger(); }
    QStringList at(QPoint pixel) const
    {
        const QPoint place = canvas->mapToGlobal(pixel);
        return {u"mousemove"_s, QString::number(place.x()), QString::number(place.y()), u"sleep"_s,
                u"0.03"_s};
    }
    void clickAt(QPoint pixel, int button = 1)
    {
        xdotool(at(pixel) + QStringList{u"click"_s, QString::number(button), u"sleep"_s, u"0.05"_s});
    }
    /// Over a point beside the straight way, so that a band that is left behind would be seen.
    void drag(QPoint from, QPoint to, const QString &held = {})
    {
        QStringList words;
        if (!held.isEmpty())
            words += {u"keydown"_s, held};
        words += at(from) + QStringList{u"mousedown"_s, u"1"_s};
        words += at(to + QPoint(9, 13)) + at(to);
        words += {u"mouseup"_s, u"1"_s, u"sleep"_s, u"0.03"_s};
        if (!held.isEmpty())
            words += {u"keyup"_s, held};
        xdotool(words);
    }
    void stroke(QPoint from, QPoint to)
    {
        xdotool(at(from) + QStringList{u"mousedown"_s, u"1"_s} + at(to) +
                QStringList{u"mouseup"_s, u"1"_s, u"sleep"_s, u"0.03"_s});
    }
    QImage shown() { return canvas->grab().toImage().convertToFormat(QImage::Format_RGB32); }
    bool becomesExpected()
    {
        return QTest::qWaitFor([this] { return shown() == expected; }, patience);
    }
    void box(QRect area, QRgb colour)
    {
        for (int y = area.top(); y <= area.bottom(); ++y)
            for (int x = area.left(); x <= area.right(); ++x)
                expected.setPixel(x, y, colour);
    }
};
} // namespace

TEST_F(PaintTest, StrokesAndStraightShapes)
{
    openWhite();
    tool(4); // pencil
    stroke({10, 10}, {30, 10});
    box({10, 10, 21, 1}, black);
    EXPECT_TRUE(becomesExpected()) << "pencil";

    tool(5); // line: CTRL makes it level, SHIFT diagonal
    drag({10, 20}, {40, 24}, u"ctrl"_s);
    box({10, 20, 31, 1}, black);
    drag({50, 20}, {60, 45}, u"shift"_s);
    for (int i = 0; i <= 10; ++i)
        expected.setPixel(50 + i, 20 + i, black);
    EXPECT_TRUE(becomesExpected()) << "line";

    tool(6); // rectangle: SHIFT makes a square
    drag({80, 10}, {110, 30});
    box({80, 10, 31, 21}, black);
    box({81, 11, 29, 19}, white);
    drag({120, 10}, {160, 25}, u"shift"_s);
    box({120, 10, 16, 16}, black);
    box({121, 11, 14, 14}, white);
    EXPECT_TRUE(becomesExpected()) << "rectangle";

    tool(9); // arrow: strokes of ten pixels at 45 degrees
    drag({180, 20}, {220, 20});
    box({180, 20, 41, 1}, black);
    for (int i = 0; i <= 7; ++i) {
        expected.setPixel(220 - i, 20 - i, black);
        expected.setPixel(220 - i, 20 + i, black);
    }
    EXPECT_TRUE(becomesExpected()) << "arrow";

    tool(12); // polygon: a right-angled triangle, closed by ENTER
    for (const QPoint corner : {QPoint(20, 60), QPoint(20, 80), QPoint(40, 80)})
        clickAt(corner);
    xdotool({u"key"_s, u"Return"_s});
    box({20, 60, 1, 21}, black);
    box({20, 80, 21, 1}, black);
    for (int i = 0; i <= 20; ++i)
        expected.setPixel(20 + i, 60 + i, black);
    EXPECT_TRUE(becomesExpected()) << "polygon";

    tool(13); // a curve whose points lie on a line is that line
    drag({60, 70}, {90, 70});
    xdotool({u"key"_s, u"Return"_s});
    box({60, 70, 31, 1}, black);
    EXPECT_TRUE(becomesExpected()) << "curve";

    // All of it undone, step by step, and redone.
    const QImage drawn = expected;
    for (int i = 0; i < 8; ++i)
        xdotool({u"key"_s, u"ctrl+z"_s});
    expected.fill(white);
    EXPECT_TRUE(becomesExpected()) << "undo";
    for (int i = 0; i < 8; ++i)
        xdotool({u"key"_s, u"ctrl+y"_s});
    expected = drawn;
    EXPECT_TRUE(becomesExpected()) << "redo";
}

TEST_F(PaintTest, RoundShapesTouchTheirBoxAndLeaveItsCorners)
{
    openWhite();
    for (const int number : {7, 11}) { // ellipse, rounded rectangle
        tool(number);
        drag({20, 20}, {61, 41});
        const QImage picture = shown();
        for (const QPoint touched : {QPoint(40, 20), QPoint(40, 41), QPoint(20, 30), QPoint(61, 30)})
            EXPECT_EQ(picture.pixel(touched), black) << number << ' ' << touched.x() << ' ' << touched.y();
        for (const QPoint corner : {QPoint(20, 20), QPoint(61, 20), QPoint(20, 41), QPoint(61, 41)})
            EXPECT_EQ(picture.pixel(corner), white) << number;
        EXPECT_EQ(picture.pixel(40, 30), white) << "not filled";
        xdotool({u"key"_s, u"ctrl+z"_s});
        EXPECT_TRUE(becomesExpected());
    }
}

TEST_F(PaintTest, AreasColoursAndBrushes)
{
    openWhite();
    press(u"lblColor_7"_s); // red; the fill colour becomes blue
    press(u"lblColor_23"_s, 3);
    tool(6);
    drag({20, 20}, {40, 40});
    tool(3); // fill
    clickAt({30, 30});
    box({20, 20, 21, 21}, qRgb(255, 0, 0));
    EXPECT_TRUE(becomesExpected()) << "fill";

    tool(2); // eraser: three pixels wide, in the fill colour
    press(u"shpDot_2"_s);
    stroke({60, 30}, {80, 30});
    box({59, 29, 23, 3}, qRgb(0, 0, 255));
    EXPECT_TRUE(becomesExpected()) << "eraser";

    tool(16); // brush: a square of 3 x 3 pixels to each side
    press(u"imgBrush_0"_s);
    clickAt({120, 40});
    box({111, 31, 19, 19}, qRgb(255, 0, 0));
    EXPECT_TRUE(becomesExpected()) << "brush";

    tool(1); // pick: the right button takes the fill colour
    clickAt({70, 30}, 1);
    clickAt({30, 30}, 3);
    tool(4);
    press(u"shpDot_0"_s);
    clickAt({200, 50});
    expected.setPixel(200, 50, qRgb(0, 0, 255));
    EXPECT_TRUE(becomesExpected()) << "pick";

    tool(10); // air brush: dots within its square only
    press(u"shpDot_7"_s);
    clickAt({250, 100});
    const QImage sprayed = shown();
    int dots = 0;
    for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 300; ++x)
            if (sprayed.pixel(x, y) != expected.pixel(x, y)) {
                ++dots;
                EXPECT_EQ(sprayed.pixel(x, y), qRgb(0, 0, 255));
                EXPECT_TRUE(QRect(242, 92, 17, 17).contains(x, y)) << x << ' ' << y;
            }
    EXPECT_GT(dots, 20);
    EXPECT_LE(dots, 64);
}

TEST_F(PaintTest, SelectionFilterBrushTextZoomAndHand)
{
    QImage picture(1600, 1200, QImage::Format_RGB32);
    picture.fill(qRgb(100, 100, 100));
    for (int y = 20; y <= 29; ++y)
        for (int x = 20; x <= 34; ++x)
            picture.setPixel(x, y, qRgb(5 * x, 7 * y, 9));
    open(picture);
    const QImage part = picture.copy(20, 20, 15, 10);
    const auto put = [this](const QImage &what, QPoint place) { QPainter(&expected).drawImage(place, what); };

    tool(0); // move: the place it leaves has the fill colour; CTRL copies
    stroke({20, 20}, {34, 29});
    stroke({25, 25}, {65, 35});
    tool(0);
    box({20, 20, 15, 10}, white);
    put(part, {60, 30});
    stroke({60, 30}, {74, 39});
    xdotool(QStringList{u"keydown"_s, u"ctrl"_s} + at({65, 35}) + QStringList{u"mousedown"_s, u"1"_s} +
            at({165, 35}) + QStringList{u"mouseup"_s, u"1"_s, u"keyup"_s, u"ctrl"_s});
    tool(4);
    put(part, {160, 30});
    EXPECT_TRUE(becomesExpected()) << "selection";

    tool(14); // filter brush: Light, on a small square, is 2 more
    auto &list = find<QMenu>(u"mnuTFilter"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return list.isVisible(); }, desktopPatience));
    xdotool({u"key"_s, u"Escape"_s});
    clickAt({200, 100});
    box({199, 99, 3, 3}, qRgb(102, 102, 102));
    EXPECT_TRUE(becomesExpected()) << "filter brush";

    tool(8); // text: black pixels right below the click, and nowhere else
    clickAt({300, 100});
    xdotool({u"type"_s, u"HHH"_s});
    EXPECT_EQ(find<QPlainTextEdit>(u"txtText"_s).toPlainText(), u"HHH"_s);
    xdotool({u"key"_s, u"Return"_s});
    const QImage written = shown();
    EXPECT_NE(written.copy(300, 100, 60, 30), expected.copy(300, 100, 60, 30));
    QImage elsewhere = written;
    QPainter(&elsewhere).drawImage(QPoint(300, 100), expected.copy(300, 100, 60, 30));
    EXPECT_EQ(elsewhere, expected);
    xdotool({u"key"_s, u"ctrl+z"_s});
    EXPECT_TRUE(becomesExpected()) << "text";

    tool(15);
    clickAt({0, 0});
    EXPECT_EQ(canvas->size(), QSize(2000, 1500));
    tool(17); // the hand drags the view
    auto &across = find<QScrollBar>(u"hscPaint"_s);
    const int before = across.value();
    const QPoint visible = canvas->mapFromGlobal(middleOf(&find<QWidget>(u"fraScroll"_s)));
    stroke(visible, visible - QPoint(60, 0));
    EXPECT_EQ(across.value(), before + 60);
    tool(15);
    xdotool(QStringList{u"keydown"_s, u"ctrl"_s} +
            at(canvas->mapFromGlobal(middleOf(&find<QWidget>(u"fraScroll"_s)))) +
            QStringList{u"click"_s, u"1"_s, u"keyup"_s, u"ctrl"_s});
    EXPECT_TRUE(becomesExpected()) << "zoomed back";
}
