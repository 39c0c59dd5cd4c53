#include "PaintFixture.h"

#include "paint/PaintShapes.h"

#include <gtest/gtest.h>

#include <numeric>

using namespace PaintShapes;

namespace
{
using Rows = PaintFixture::Rows;

QImage white(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}

Rows drawn(int width, int height, const Path &path, const Pen &pen = {Qt::black})
{
    QImage image = white(width, height);
    stroke(image, path, pen);
    return PaintFixture::rowsOf(image);
}

Rows flooded(const Rows &rows, QPoint at, bool inside = true)
{
    QImage image = PaintFixture::image(rows);
    EXPECT_EQ(floodFill(image, at, Qt::blue), inside);
    return PaintFixture::rowsOf(image);
}

std::size_t count(const Rows &rows, char sign)
{
    return std::accumulate(
        rows.begin(), rows.end(), std::size_t{0}, [&](std::size_t sum, const std::string &row) {
            return sum + static_cast<std::size_t>(std::count(row.begin(), row.end(), sign));
        });
}
} // namespace

TEST(PaintShapesTest, LinesHaveBothEndsAndTheWidthOfThePen)
{
    EXPECT_EQ(drawn(7, 4, line({1, 1}, {5, 3})), (Rows{".......", ".##....", "...##..", ".....#."}));
    EXPECT_EQ(drawn(3, 4, line({1, 3}, {1, 0})), (Rows{".#.", ".#.", ".#.", ".#."}));
    EXPECT_EQ(drawn(3, 3, line({2, 2}, {2, 2})), (Rows{"...", "...", "..#"}));
    EXPECT_EQ(drawn(4, 2, line({-2, -2}, {9, 9})), (Rows{"#...", ".#.."})) << "clipped";
    EXPECT_EQ(drawn(5, 3, line({2, 1}, {3, 1}), {Qt::black, 2}), (Rows{".###.", ".###.", "....."}));
    EXPECT_EQ(drawn(6, 6, line({3, 3}, {3, 3}), {Qt::black, 4}),
              (Rows{"......", "..##..", ".####.", ".####.", "..##..", "......"}))
        << "the tip is round";
}

TEST(PaintShapesTest, DashesAreMeasuredInWidthsOfThePen)
{
    const auto dashed = [](BorderStyle style, int width = 1) {
        return drawn(24, 3, line({0, 1}, {23, 1}), {Qt::black, width, style})[1];
    };
    EXPECT_EQ(dashed(BorderStyle::Solid), "########################");
    EXPECT_EQ(dashed(BorderStyle::Dash), "####..####..####..####..");
    EXPECT_EQ(dashed(BorderStyle::Dot), "#..#..#..#..#..#..#..#..");
    EXPECT_EQ(dashed(BorderStyle::DashDot), "####..#..####..#..####..");
    EXPECT_EQ(dashed(BorderStyle::DashDotDot), "####..#..#..####..#..#..");
    // The tip reaches one pixel to both sides.
    EXPECT_EQ(dashed(BorderStyle::Dot, 3), "##......###......###....");
    EXPECT_EQ(drawn(6, 4, rectangle({0, 0}, {5, 3}), {Qt::black, 1, BorderStyle::Dash}),
              (Rows{"####..", "#....#", "#....#", "##..##"}))
        << "the dashes go round the corner";
}

TEST(PaintShapesTest, ClosedShapesTouchTheSidesOfTheirBox)
{
    EXPECT_EQ(drawn(5, 4, rectangle({4, 3}, {1, 0})), (Rows{".####", ".#..#", ".#..#", ".####"}));
    EXPECT_EQ(drawn(7, 5, ellipse({6, 4}, {0, 0})),
              (Rows{".#####.", "#.....#", "#.....#", "#.....#", ".#####."}));
    EXPECT_EQ(drawn(9, 9, ellipse({0, 0}, {8, 8})),
              (Rows{"..#####..", ".#.....#.", "#.......#", "#.......#", "#.......#", "#.......#", "#.......#",
                    ".#.....#.", "..#####.."}));
    EXPECT_EQ(drawn(9, 9, roundedRectangle({0, 0}, {8, 8})),
              (Rows{".#######.", "#.......#", "#.......#", "#.......#", "#.......#", "#.......#", "#.......#",
                    "#.......#", ".#######."}));
    for (const auto shape : {rectangle, ellipse, roundedRectangle}) {
        EXPECT_EQ(drawn(3, 3, shape({1, 1}, {1, 1})), (Rows{"...", ".#.", "..."}));
        EXPECT_EQ(drawn(4, 1, shape({0, 0}, {3, 0})), Rows{"####"});
        EXPECT_EQ(drawn(1, 3, shape({0, 2}, {0, 0})), (Rows{"#", "#", "#"}));
    }
}

TEST(PaintShapesTest, InsidesHaveThePatternOfTheFillStyle)
{
    const auto filled = [](FillStyle style, QPoint from = {0, 0}) {
        QImage image = white(10, 10);
        fillRectangle(image, from, {9, 9}, {Qt::black, style});
        return PaintFixture::rowsOf(image);
    };
    EXPECT_EQ(count(filled(FillStyle::Solid), '#'), 100U);
    EXPECT_EQ(count(filled(FillStyle::Transparent), '#'), 0U);
    const std::string full = "##########";
    EXPECT_EQ(filled(FillStyle::Horizontal)[8], full);
    EXPECT_EQ(count(filled(FillStyle::Horizontal), '#'), 20U);
    EXPECT_EQ(filled(FillStyle::Vertical)[3], "#.......#.");
    EXPECT_EQ(count(filled(FillStyle::Vertical), '#'), 20U);
    EXPECT_EQ(filled(FillStyle::DownwardDiagonal)[3], "...#......");
    EXPECT_EQ(filled(FillStyle::DownwardDiagonal)[9], ".#.......#");
    EXPECT_EQ(filled(FillStyle::UpwardDiagonal)[3], "....#.....");
    EXPECT_EQ(filled(FillStyle::UpwardDiagonal)[4], "...#......");
    EXPECT_EQ(filled(FillStyle::Cross)[3], "#.......#.");
    EXPECT_EQ(filled(FillStyle::Cross)[0], full);
    EXPECT_EQ(filled(FillStyle::DiagonalCross)[2], "..#..#....");
    EXPECT_EQ(filled(FillStyle::Vertical, {5, 5})[6], "........#.") << "the pattern lies still";
}

TEST(PaintShapesTest, APolygonIsFilledOddEven)
{
    QImage image = white(7, 7);
    const std::vector<QPoint> triangle{{1, 1}, {5, 1}, {1, 5}};
    fillPolygon(image, triangle, {Qt::blue});
    EXPECT_EQ(PaintFixture::rowsOf(image),
              (Rows{".......", ".bbbbb.", ".bbbb..", ".bbb...", ".bb....", ".b.....", "......."}));
    image = white(7, 7);
    // Twice round, the second time smaller: a frame.
    const std::vector<QPoint> frame{{0, 0}, {6, 0}, {6, 6}, {0, 6}, {0, 0},
                                    {2, 2}, {4, 2}, {4, 4}, {2, 4}, {2, 2}};
    fillPolygon(image, frame, {Qt::blue});
    EXPECT_EQ(image.pixelColor(3, 3), QColor(Qt::white));
    EXPECT_EQ(count(PaintFixture::rowsOf(image), 'b'), 48U);
}

TEST(PaintShapesTest, TheHeadOfAnArrowPointsWhereItGoes)
{
    const auto ends = [](QPoint from, QPoint to) {
        const auto paths = arrow(from, to);
        EXPECT_EQ(paths[0].front(), from);
        EXPECT_EQ(paths[1].front(), to);
        return std::pair(paths[1].back(), paths[2].back());
    };
    EXPECT_EQ(ends({0, 10}, {20, 10}), std::pair(QPoint(13, 3), QPoint(13, 17)));
    EXPECT_EQ(ends({25, 10}, {5, 10}), std::pair(QPoint(12, 17), QPoint(12, 3)));
    EXPECT_EQ(ends({15, 2}, {15, 15}), std::pair(QPoint(22, 8), QPoint(8, 8)));
    EXPECT_EQ(ends({15, 15}, {15, 5}), std::pair(QPoint(8, 12), QPoint(22, 12)));
    EXPECT_EQ(ends({0, 0}, {20, 20}), std::pair(QPoint(20, 10), QPoint(10, 20)));
}

TEST(PaintShapesTest, ACurveGoesFromEndToEndBesideItsControlPoints)
{
    EXPECT_EQ(drawn(10, 2, curve({QPoint(0, 1), QPoint(3, 1), QPoint(6, 1), QPoint(9, 1)})),
              (Rows{"..........", "##########"}));
    const Rows bent = drawn(10, 5, curve({QPoint(0, 0), QPoint(3, 6), QPoint(6, 0), QPoint(9, 0)}));
    EXPECT_EQ(bent[0][0], '#');
    EXPECT_EQ(bent[0][9], '#');
    EXPECT_EQ(bent[3][3], '#') << "4/9 of the way at a third";
    EXPECT_EQ(count({bent[4]}, '#'), 0U);
}

TEST(PaintShapesTest, AFloodStopsAtOtherColours)
{
    EXPECT_EQ(flooded({"."}, {0, 0}), Rows{"b"});
    EXPECT_EQ(flooded({"..", ".."}, {2, 0}, false), (Rows{"..", ".."}));
    EXPECT_EQ(flooded({"..", ".."}, {0, -1}, false), (Rows{"..", ".."}));
    EXPECT_EQ(flooded({"bb", ".b"}, {0, 0}, false), (Rows{"bb", ".b"})) << "the colour that is there already";
    EXPECT_EQ(flooded({".#.", "#.#", ".#."}, {1, 1}), (Rows{".#.", "#b#", ".#."})) << "not over corners";
    EXPECT_EQ(flooded({"#.##", "#..#", "##.#", "#..."}, {3, 3}), (Rows{"#b##", "#bb#", "##b#", "#bbb"}));
    // Back up behind a wall, on both sides.
    EXPECT_EQ(flooded({".....", ".###.", ".#.#.", ".....", "####."}, {2, 2}),
              (Rows{"bbbbb", "b###b", "b#b#b", "bbbbb", "####b"}));
    QImage nearly = white(2, 1);
    nearly.setPixel(1, 0, 0xfffffffe);
    floodFill(nearly, {0, 0}, Qt::blue);
    EXPECT_EQ(nearly.pixel(1, 0), 0xfffffffe) << "only the very colour";
    QImage large = white(2000, 1500);
    floodFill(large, {1000, 700}, Qt::blue);
    EXPECT_TRUE(large.pixelColor(0, 0) == Qt::blue && large.pixelColor(1999, 1499) == Qt::blue);
}

TEST(PaintShapesTest, TheAirBrushSpraysIntoItsSquare)
{
    const auto sprayed = [](int size, std::uint32_t seed) {
        QImage image = white(24, 24);
        airBrush(image, {12, 12}, size, Qt::black, seed);
        return image;
    };
    EXPECT_EQ(count(PaintFixture::rowsOf(sprayed(1, 5)), '#'), 1U) << "a quarter of a point is one";
    EXPECT_EQ(count(PaintFixture::rowsOf(sprayed(2, 5)), '#'), 1U);
    const QImage large = sprayed(16, 5);
    const std::size_t all = count(PaintFixture::rowsOf(large), '#');
    EXPECT_LE(all, 64U);
    EXPECT_GE(all, 40U) << "few of the 64 points meet";
    EXPECT_EQ(count(PaintFixture::rowsOf(large.copy(4, 4, 16, 16)), '#'), all);
    EXPECT_EQ(sprayed(16, 5), large);
    EXPECT_NE(sprayed(16, 6), large);
}

TEST(PaintShapesTest, TheBrushHasTenShapes)
{
    const std::string full = "#######";
    const std::string sides = "#.....#";
    const std::string middle = "...#...";
    const Rows circle{"..###..", ".#...#.", sides, sides, sides, ".#...#.", "..###.."};
    const Rows rising{"......#", ".....#.", "....#..", middle, "..#....", ".#.....", "#......"};
    const Rows falling(rising.rbegin(), rising.rend());
    const std::vector<Rows> shapes{Rows(7, full),
                                   {"..###..", ".#####.", full, full, full, ".#####.", "..###.."},
                                   {full, sides, sides, sides, sides, sides, full},
                                   circle,
                                   {middle, middle, middle, full, middle, middle, middle},
                                   {sides, ".#...#.", "..#.#..", middle, "..#.#..", ".#...#.", sides},
                                   rising,
                                   falling,
                                   Rows(7, middle),
                                   {".......", ".......", ".......", full, ".......", ".......", "......."}};
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        QImage image = white(7, 7);
        brush(image, {3, 3}, static_cast<BrushShape>(i), 1, {Qt::black});
        EXPECT_EQ(PaintFixture::rowsOf(image), shapes[i]) << i;
    }
    QImage image = white(7, 7);
    brush(image, {3, 3}, BrushShape::Square, 1, {Qt::black, FillStyle::Transparent});
    EXPECT_EQ(PaintFixture::rowsOf(image), shapes[2]);
}

TEST(PaintShapesTest, TextHasLines)
{
    QFont font;
    font.setPointSize(9);
    EXPECT_EQ(textHeight(font), 12);
    const auto lowest = [&](const QString &lines, int dotsPerMetre = 3780) {
        QImage image = white(60, 80);
        image.setDotsPerMeterX(dotsPerMetre);
        image.setDotsPerMeterY(dotsPerMetre);
        text(image, {5, 10}, font, Qt::black, lines);
        int row = -1;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixel(x, y) == 0xffffffff)
                    continue;
                row = y;
                EXPECT_TRUE(x >= 4 && y >= 10) << x << ' ' << y;
            }
        }
        return row;
    };
    const int first = lowest(QStringLiteral("HH"));
    EXPECT_GE(first, 10);
    EXPECT_GT(lowest(QStringLiteral("HH\r\nH")), first + 8);
    EXPECT_EQ(lowest(QStringLiteral("HH\nH")), lowest(QStringLiteral("HH\r\nH")));
    EXPECT_EQ(lowest(QStringLiteral("HH"), 12000), first) << "whatever the file says of its resolution";
}
