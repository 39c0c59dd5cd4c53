#include "PaintFixture.h"

#include "paint/PaintTools.h"

#include <gtest/gtest.h>
#include <QPainter>

using namespace Qt::Literals::StringLiterals;

namespace
{
using Button = PaintTools::Button;
using Tool = DrawingTool;

class PaintToolsTest : public ::testing::Test, protected PaintFixture
{
protected:
    std::uint32_t seeds = 0;
    int colourChanges = 0;
    QString typed;
    std::vector<QRect> squares;
    PaintTools tools{{settings, picture, [this] { return ++seeds; },
                      [this](QImage &canvas, const QRect &square) {
                          squares.push_back(square);
                          if (settings.brushFilter != 0)
                              PaintShapes::fillRectangle(canvas, square.topLeft(), square.bottomRight(),
                                                         {Qt::black, FillStyle::Solid});
                      },
                      [this] { return typed; }, [this] { ++colourChanges; }}};

    PaintToolsTest() { begin(blank); }

    const Rows blank = Rows(6, ".......");

    /// Press, some positions, release at the last.
    void drag(const std::vector<QPoint> &way, PaintTools::Modifiers modifiers = {})
    {
        tools.press(Button::Left, way.front(), modifiers);
        for (std::size_t i = 1; i < way.size(); ++i)
            tools.move(way[i], modifiers);
        tools.release(Button::Left, way.back(), modifiers);
    }
    void click(QPoint at) { drag({at}); }
    void doubleClick(QPoint at)
    {
        click(at);
        tools.doubleClick(Button::Left, at, {});
        tools.release(Button::Left, at, {});
    }
    /// With a fresh white picture.
    Rows drawn(Tool tool, const std::vector<QPoint> &way)
    {
        begin(blank);
        tools.choose(tool);
        drag(way);
        return shown();
    }
    int entry() const { return picture.history().current(); }
};
} // namespace

TEST_F(PaintToolsTest, StrokesJoinThePositionsOfTheMouse)
{
    EXPECT_EQ(drawn(Tool::Pencil, {{0, 0}, {3, 0}, {3, 2}}),
              (Rows{"####...", "...#...", "...#...", ".......", ".......", "......."}));
    settings.sizeIndex = 2; // 3 pixels
    EXPECT_EQ(drawn(Tool::Eraser, {{1, 4}, {5, 4}}),
              (Rows{".......", ".......", ".......", "rrrrrrr", "rrrrrrr", "rrrrrrr"}));
    settings.sizeIndex = 1;
    EXPECT_EQ(drawn(Tool::Eraser, {{2, 2}}),
              (Rows{".......", ".rr....", ".rr....", ".......", ".......", "......."}));
    settings.sizeIndex = 0;
    settings.brushShape = BrushShape::HorizontalStroke;
    EXPECT_EQ(drawn(Tool::Brush, {{3, 0}, {3, 4}}),
              (Rows{"#######", ".......", ".......", ".......", "#######", "......."}))
        << "the brush is put down at the positions only";
}

TEST_F(PaintToolsTest, TheAirBrushTakesASeedForEachPosition)
{
    settings.sizeIndex = 4;
    const Rows first = drawn(Tool::AirBrush, {{3, 3}, {4, 3}, {5, 3}});
    EXPECT_EQ(seeds, 3U);
    QImage expected = image(blank);
    for (int i = 0; i < 3; ++i)
        PaintShapes::airBrush(expected, {3 + i, 3}, 6, Qt::black, static_cast<std::uint32_t>(i + 1));
    EXPECT_EQ(first, rowsOf(expected));
}

TEST_F(PaintToolsTest, TheFilterBrushFiltersTheSquareAroundTheMouse)
{
    settings.sizeIndex = 1;
    const int before = entry();
    tools.choose(Tool::FilterBrush);
    drag({{0, 1}, {6, 5}, {20, 20}});
    EXPECT_EQ(squares, (std::vector{QRect(-2, -1, 5, 5), QRect(4, 3, 5, 5)}))
        << "those that touch the picture";
    EXPECT_EQ(shown(), (Rows{"###....", "###....", "###....", "###.###", "....###", "....###"}));
    EXPECT_EQ(entry(), before + 1);
    settings.brushFilter = 0;
    click({3, 3});
    EXPECT_EQ(shown()[3], "###.###");
}

TEST_F(PaintToolsTest, ClosedShapesHaveThreeFillModes)
{
    settings.fill = Qt::blue;
    const std::vector<QPoint> box{{1, 1}, {4, 3}};
    const std::string none = ".......";
    const std::string line = ".####..";
    EXPECT_EQ(drawn(Tool::Rectangle, box), (Rows{none, line, ".#..#..", line, none, none}));
    settings.fillMode = FillMode::OutlineAndInside;
    EXPECT_EQ(drawn(Tool::Rectangle, box), (Rows{none, line, ".#bb#..", line, none, none}));
    settings.fillMode = FillMode::Inside;
    EXPECT_EQ(drawn(Tool::Rectangle, box), (Rows{none, ".bbbb..", ".bbbb..", ".bbbb..", none, none}));
    EXPECT_EQ(drawn(Tool::Ellipse, {{6, 4}, {0, 0}}),
              (Rows{".bbbbb.", "bbbbbbb", "bbbbbbb", "bbbbbbb", ".bbbbb.", none}));
    settings.fillMode = FillMode::OutlineAndInside;
    settings.borderStyle = BorderStyle::Dash;
    settings.fillStyle = FillStyle::Horizontal;
    EXPECT_EQ(drawn(Tool::RoundedRectangle, {{0, 0}, {5, 3}}),
              (Rows{"####bb.", "#....#.", "#....#.", "##..##.", none, none}))
        << "in the gaps of the outline the inside is seen";
}

TEST_F(PaintToolsTest, ShiftAndControlConstrainTheMouse)
{
    const auto constrained = [](Tool tool, QPoint at, bool shift, bool ctrl = false) {
        return PaintTools::ConstrainPoint(tool, {10, 10}, at, {shift, ctrl});
    };
    EXPECT_EQ(constrained(Tool::Ellipse, {13, 18}, false), QPoint(13, 18));
    EXPECT_EQ(constrained(Tool::Ellipse, {13, 18}, true), QPoint(13, 13));
    EXPECT_EQ(constrained(Tool::SelectArea, {13, 2}, true), QPoint(13, 7));
    EXPECT_EQ(constrained(Tool::Rectangle, {18, 13}, true), QPoint(13, 13));
    EXPECT_EQ(constrained(Tool::Line, {2, 13}, true, true), QPoint(7, 13)) << "SHIFT before CTRL";
    EXPECT_EQ(constrained(Tool::Line, {12, 18}, false, true), QPoint(10, 18));
    EXPECT_EQ(constrained(Tool::Arrow, {18, 12}, false, true), QPoint(18, 10));
    EXPECT_EQ(constrained(Tool::Arrow, {12, 12}, false, true), QPoint(10, 12)) << "equal: vertical";
    EXPECT_EQ(constrained(Tool::Rectangle, {12, 18}, false, true), QPoint(12, 18));
    EXPECT_EQ(constrained(Tool::Pencil, {12, 18}, true), QPoint(12, 18));
    settings.foreground = Qt::blue;
    tools.choose(Tool::Line);
    drag({{1, 1}, {4, 2}}, {false, true});
    EXPECT_EQ(shown()[1], ".bbbb..");
}

TEST_F(PaintToolsTest, ARubberBandLeavesNoTrace)
{
    for (const Tool tool : {Tool::SelectArea, Tool::Line, Tool::Rectangle, Tool::Ellipse, Tool::Arrow,
                            Tool::RoundedRectangle}) {
        tools.choose(tool);
        const int before = entry();
        tools.press(Button::Left, {1, 1}, {});
        tools.move({5, 3}, {});
        EXPECT_EQ(tools.sizeText(), u"5x3"_s);
        EXPECT_FALSE(tools.overlayPixels().empty());
        tools.move({3, 4}, {});
        EXPECT_EQ(tools.sizeText(), u"3x4"_s);
        EXPECT_EQ(shown(), blank);
        tools.escape();
        tools.release(Button::Left, {3, 4}, {});
        EXPECT_TRUE(tools.overlayPixels().empty() && tools.sizeText().isEmpty());
        EXPECT_EQ(shown(), blank);
        EXPECT_EQ(entry(), before);
    }
}

TEST_F(PaintToolsTest, TheOverlayInvertsEachPixelOnceAtEveryScale)
{
    tools.choose(Tool::Rectangle);
    tools.press(Button::Left, {1, 1}, {});
    tools.move({4, 3}, {});
    QImage view = image(blank);
    const auto paint = [&](double scale) {
        QPainter painter(&view);
        painter.scale(scale, scale);
        tools.drawOverlay(painter);
    };
    paint(1);
    EXPECT_EQ(rowsOf(view), (Rows{".......", ".####..", ".#..#..", ".####..", ".......", "......."}));
    paint(1);
    EXPECT_EQ(rowsOf(view), blank);
    view = view.scaled(14, 12);
    paint(2);
    EXPECT_EQ(rowsOf(view)[3], "..########....");
    EXPECT_EQ(rowsOf(view)[4], "..##....##....");
    // A line down at 1.25: pixel 3 of the picture is 3.75 to 5, which is 4 to 5.
    tools.escape();
    tools.choose(Tool::Line);
    tools.press(Button::Left, {3, 0}, {});
    tools.move({3, 5}, {});
    view = image(Rows(8, std::string(9, '.')));
    paint(1.25);
    EXPECT_EQ(rowsOf(view), Rows(8, "....#....")) << "no gap, nothing twice";
}

TEST_F(PaintToolsTest, PickColorTakesTheColourUnderTheMouseAndFillFloodsItsArea)
{
    begin({"b#r"});
    tools.choose(Tool::PickColor);
    settings.fill = Qt::white;
    tools.press(Button::Right, {2, 0}, {});
    tools.release(Button::Right, {2, 0}, {});
    EXPECT_EQ(settings.fill, QColor(Qt::red));
    EXPECT_EQ(settings.foreground, QColor(Qt::black));
    click({0, 0});
    EXPECT_EQ(settings.foreground, QColor(Qt::blue));
    EXPECT_EQ(settings.fill, QColor(Qt::red));
    EXPECT_EQ(colourChanges, 4) << "at each position";
    click({3, 0});
    EXPECT_EQ(colourChanges, 4) << "outside there is none";
    tools.choose(Tool::Fill);
    click({1, 0});
    EXPECT_EQ(shown(), Rows{"bbr"});
    const int before = entry();
    click({3, 0});
    EXPECT_EQ(entry(), before);
}

TEST_F(PaintToolsTest, APolygonIsClosedByEnterOrADoubleClick)
{
    settings.fill = Qt::blue;
    settings.fillMode = FillMode::OutlineAndInside;
    tools.choose(Tool::Polygon);
    const Rows triangle{".......", ".#####.", ".#bb#..", ".#b#...", ".##....", ".#....."};
    for (const bool enter : {true, false}) {
        begin(blank);
        const int before = entry();
        click({1, 1});
        drag({{4, 1}, {5, 1}}); // the corner is where the button goes up
        EXPECT_EQ(tools.overlay().polygon, (std::vector<QPoint>{{1, 1}, {5, 1}}));
        EXPECT_EQ(tools.overlayPixels().size(), 5U);
        EXPECT_EQ(tools.statusText(), u"Press ENTER or double-click to finish drawing the polygon"_s);
        if (enter) {
            click({1, 5});
            tools.enter();
        } else {
            doubleClick({1, 5});
        }
        EXPECT_EQ(shown(), triangle);
        EXPECT_FALSE(tools.pending());
        EXPECT_EQ(entry(), before + 1);
    }
    click({3, 3});
    tools.enter();
    EXPECT_EQ(shown(), triangle) << "a point is no polygon";
}

TEST_F(PaintToolsTest, ACurveIsBentByItsMarkers)
{
    begin(Rows(5, std::string(10, '.')));
    tools.choose(Tool::Curve);
    click({3, 3});
    EXPECT_FALSE(tools.pending()) << "a point has no ends";
    drag({{0, 0}, {9, 0}});
    EXPECT_EQ(*tools.overlay().curve, (std::array{QPoint(0, 0), QPoint(3, 0), QPoint(6, 0), QPoint(9, 0)}));
    EXPECT_EQ(tools.overlayPixels().size(), 68U) << "none twice where markers and curve meet";
    drag({{2, 1}, {2, 7}}); // in reach of the second marker alone
    EXPECT_EQ(tools.overlay().curve->at(1), QPoint(3, 6));
    EXPECT_EQ(shown()[0], "..........") << "nothing is drawn yet";
    tools.choose(Tool::Pencil); // another command
    EXPECT_EQ(shown()[3][3], '#');
    EXPECT_FALSE(tools.overlay().curve);

    tools.choose(Tool::Curve);
    drag({{0, 4}, {9, 4}});
    doubleClick({5, 1}); // a marker moves with the mouse, and that does not
    EXPECT_EQ(shown()[4], "##########");
}

TEST_F(PaintToolsTest, TextIsPlacedWhereItsBoxStands)
{
    begin(Rows(40, std::string(60, '.')));
    settings.font.setPixelSize(12);
    tools.choose(Tool::Text);
    const int before = entry();
    click({5, 4});
    EXPECT_EQ(tools.textPlace(), QPoint(5, 4));
    typed = u" \r\n"_s;
    tools.enter();
    EXPECT_EQ(entry(), before) << "an empty text is none";
    EXPECT_FALSE(tools.textPlace());
    click({5, 4});
    typed = u"Hi"_s;
    click({30, 20}); // the next text begins
    EXPECT_EQ(entry(), before + 1);
    EXPECT_EQ(tools.textPlace(), QPoint(30, 20));
    const Rows one = shown();
    tools.escape();
    tools.placeText(u"no box"_s);
    EXPECT_EQ(shown(), one);
    EXPECT_EQ(entry(), before + 1);
    click({30, 20});
    tools.doubleClick(Button::Left, {1, 1}, {});
    EXPECT_EQ(entry(), before + 2);
    EXPECT_FALSE(tools.textPlace());
}

TEST_F(PaintToolsTest, SelectAreaSelectsMovesAndCommits)
{
    begin({"#b.....", ".......", "......."});
    tools.choose(Tool::SelectArea);
    const QString idle = tools.statusText();
    tools.press(Button::Left, {1, 1}, {});
    EXPECT_EQ(tools.statusText(), u"Press and hold down SHIFT to select a square part"_s);
    tools.move({0, 0}, {});
    tools.release(Button::Left, {0, 0}, {});
    EXPECT_EQ(picture.selection().place, QRect(0, 0, 2, 2)) << "corners included";
    EXPECT_EQ(tools.overlayPixels().size(), 4U);
    EXPECT_EQ(tools.statusText(), u"Press and hold down CTRL before moving the selection to copy it"_s);

    click({1, 1});
    EXPECT_FALSE(picture.selection().floats()) << "a click inside is no move";
    drag({{1, 1}, {3, 1}, {4, 2}});
    EXPECT_EQ(shown(), (Rows{"rr.....", "rr.#b..", "......."}));
    drag({{3, 1}, {5, 1}}, {false, true});
    EXPECT_EQ(shown(), (Rows{"rr.....", "rr.#b#b", "......."}));
    tools.press(Button::Left, {5, 1}, {});
    tools.move({0, 0}, {});
    tools.escape();
    EXPECT_EQ(picture.selection().place.topLeft(), QPoint(5, 1)) << "only the move is given up";
    click({0, 2});
    EXPECT_FALSE(picture.selection().exists());
    EXPECT_EQ(rowsOf(picture.image()), (Rows{"rr.....", "rr.#b#b", "......."}));
    EXPECT_EQ(tools.statusText(), idle);

    tools.choose(Tool::Pencil);
    picture.Paste(image({"##"}), {0, 0});
    click({6, 2});
    EXPECT_EQ(shown(), (Rows{"##.....", "rr.#b#b", "......#"})) << "drawing commits what floats";
    EXPECT_FALSE(picture.selection().exists());
}

TEST_F(PaintToolsTest, EveryToolCanBeUndoneAndRedone)
{
    typed = u"H"_s;
    settings.font.setPixelSize(8);
    settings.sizeIndex = 2;
    for (int number = 0; number < paintToolCount; ++number) {
        const Tool tool = static_cast<Tool>(number);
        if (tool == Tool::PickColor || tool == Tool::Zoom || tool == Tool::Hand)
            continue;
        begin({".b.b.b.", ".......", "r.r.r.r", ".......", "..b....", ".......", "......."});
        const QImage before = picture.image();
        const int first = entry();
        tools.choose(tool);
        drag({{1, 0}, {3, 2}, {5, 4}});
        if (tool == Tool::SelectArea)
            drag({{3, 3}, {2, 4}});
        if (tool == Tool::Polygon)
            click({0, 6});
        EXPECT_TRUE(picture.undoEnabled());
        tools.finishPending();
        const QImage after = picture.image();
        EXPECT_NE(after, before) << number;
        EXPECT_EQ(entry(), (first + 1) % PaintHistory::slotCount) << "one entry";
        picture.undo();
        EXPECT_EQ(picture.image(), before) << number;
        picture.redo();
        EXPECT_EQ(picture.image(), after) << number;
    }
    // Undo while something is pending takes that back.
    begin(blank);
    tools.choose(Tool::Polygon);
    click({0, 0});
    click({6, 0});
    picture.undo();
    EXPECT_EQ(shown(), blank);
    picture.redo();
    EXPECT_EQ(shown()[0], "#######");
    tools.choose(Tool::Pencil);
    tools.press(Button::Left, {2, 2}, {});
    tools.move({4, 2}, {});
    tools.escape();
    EXPECT_EQ(shown()[2], ".......") << "a stroke that is given up";
}

TEST_F(PaintToolsTest, OnlyWholeGesturesOfTheLeftButtonDraw)
{
    tools.choose(Tool::Pencil);
    tools.move({1, 1}, {});
    tools.release(Button::Left, {1, 1}, {});
    tools.press(Button::Right, {1, 1}, {});
    tools.release(Button::Right, {1, 1}, {});
    EXPECT_EQ(shown(), blank);
    doubleClick({3, 3});
    EXPECT_EQ(shown()[3], "...#...");
    tools.doubleClick(Button::Left, {5, 3}, {}); // nothing to finish: a press
    tools.release(Button::Left, {5, 3}, {});
    EXPECT_EQ(shown()[3], "...#.#.");
    for (const Tool tool : {Tool::Zoom, Tool::Hand}) {
        tools.choose(tool);
        const int before = entry();
        drag({{0, 0}, {4, 4}});
        EXPECT_EQ(entry(), before);
    }
    EXPECT_EQ(PaintTools::positionText({12, -3}), u"12,-3"_s);
    for (int i = 0; i < paintToolCount; ++i)
        EXPECT_EQ(static_cast<int>(rowOf(static_cast<Tool>(i)).tool), i);
}
