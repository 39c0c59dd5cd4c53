#include "ViewerFixture.h"

#include "annotate/AnnotationTools.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;
using Button = AnnotationTools::Button;

namespace
{
constexpr QColor ground(10, 20, 30);

/// In pixels.
QPoint at(int x, int y)
{
    return QPoint(x, y) * Drawing::twipsPerPixel;
}

class AnnotationToolsTest : public ::testing::Test, protected ViewerFixture
{
protected:
    ViewerPicture picture{{state, pages, prompter}};
    int dialogs = 0;
    QString typed;
    AnnotationTools tools{{state, prompter, picture,
                           [this] {
                               ++dialogs;
                               state.TextMessage = typed;
                           },
                           [] {}}};

    AnnotationToolsTest()
    {
        EXPECT_EQ(picture.chooseFile(addPicture(u"a.bmp"_s, ground), u"a.bmp"_s),
                  ViewerPicture::Choice::Shown);
    }

    bool drag(const QString &tool, QPoint from, const std::vector<QPoint> &way, QPoint to)
    {
        state.CurrentTool = tool;
        tools.mouseDown(Button::Left, from);
        for (const QPoint point : way)
            tools.mouseMove(point);
        return tools.mouseUp(Button::Left, to);
    }
    /// Every pixel that is not the ground: "x,y x,y ..." by rows.
    QString drawn(QColor colour) const
    {
        QStringList list;
        for (int y = 0; y < picture.image().height(); ++y) {
            for (int x = 0; x < picture.image().width(); ++x) {
                const QColor pixel = picture.image().pixelColor(x, y);
                if (pixel == ground)
                    continue;
                EXPECT_EQ(pixel, colour) << x << ' ' << y;
                list += u"%1,%2"_s.arg(x).arg(y);
            }
        }
        return list.join(u' ');
    }
};
} // namespace

TEST_F(AnnotationToolsTest, ALineIsDrawnFromTheAnchorToWhereTheButtonIsReleased)
{
    tools.setColour(255); // red in the low byte
    EXPECT_TRUE(drag(u"drawline"_s, at(2, 3), {at(30, 3), at(2, 20)}, at(5, 3)));
    EXPECT_EQ(drawn(Qt::red), u"2,3 3,3 4,3 5,3"_s);
    EXPECT_FALSE(tools.band());
    EXPECT_TRUE(picture.dirty());
    EXPECT_EQ(picture.history().current(), 2);
    EXPECT_TRUE(picture.history().undoEnabled());
    EXPECT_FALSE(picture.history().redoEnabled());
}

TEST_F(AnnotationToolsTest, ABoxIsTheSameFromEveryCorner)
{
    const QString outline = u"2,2 3,2 4,2 5,2 2,3 5,3 2,4 3,4 4,4 5,4"_s;
    const std::pair<QPoint, QPoint> corners[] = {
        {at(2, 2), at(5, 4)}, {at(5, 4), at(2, 2)}, {at(5, 2), at(2, 4)}, {at(2, 4), at(5, 2)}};
    for (const auto &[from, to] : corners) {
        EXPECT_TRUE(drag(u"drawbox"_s, from, {at(20, 20)}, to));
        EXPECT_EQ(drawn(Qt::black), outline);
        picture.UndoImage();
    }
    EXPECT_TRUE(drag(u"drawbox"_s, at(2, 2), {}, at(4, 2))); // flat
    EXPECT_EQ(drawn(Qt::black), u"2,2 3,2 4,2"_s);
    picture.UndoImage();
    EXPECT_TRUE(drag(u"drawbox"_s, at(-3, -3), {}, at(1, 1))); // over the edge
    EXPECT_EQ(drawn(Qt::black), u"1,0 0,1 1,1"_s);
    picture.UndoImage();
    EXPECT_TRUE(drag(u"drawline"_s, at(-3, 1), {}, at(2, 1)));
    EXPECT_EQ(drawn(Qt::black), u"0,1 1,1 2,1"_s);
}

TEST_F(AnnotationToolsTest, TheBandIsNoPartOfThePicture)
{
    state.CurrentTool = u"drawbox"_s;
    tools.mouseDown(Button::Left, at(2, 2));
    EXPECT_FALSE(tools.band());
    tools.mouseMove(at(9, 9));
    tools.mouseMove(at(20, 12));
    ASSERT_TRUE(tools.band());
    EXPECT_EQ(tools.band()->from, at(2, 2));
    EXPECT_EQ(tools.band()->to, at(20, 12));
    EXPECT_EQ(drawn(Qt::black), QString());
    tools.cancelGesture();
    EXPECT_FALSE(tools.band());
    EXPECT_FALSE(tools.mouseUp(Button::Left, at(20, 12))) << "the gesture is over";
    EXPECT_EQ(drawn(Qt::black), QString());
}

TEST_F(AnnotationToolsTest, InvertingTwiceRestoresThePicture)
{
    const QImage before = picture.image();
    for (const Drawing::Shape shape : {Drawing::Shape::Line, Drawing::Shape::Box}) {
        QImage image = before;
        {
            QPainter painter(&image);
            Drawing::draw(painter, shape, at(3, 4), at(17, 11), Qt::red, Drawing::Mode::Invert);
        }
        for (const QPoint corner : {QPoint(3, 4), QPoint(17, 11)})
            EXPECT_EQ(image.pixelColor(corner), QColor(245, 235, 225));
        if (shape == Drawing::Shape::Box) { // all four corners, also those where two sides meet
            EXPECT_EQ(image.pixelColor(17, 4), QColor(245, 235, 225));
            EXPECT_EQ(image.pixelColor(3, 11), QColor(245, 235, 225));
        }
        QPainter painter(&image);
        Drawing::draw(painter, shape, at(3, 4), at(17, 11), Qt::red, Drawing::Mode::Invert);
        painter.end();
        EXPECT_EQ(image, before);
    }
}

TEST_F(AnnotationToolsTest, WithoutAToolOrWithAnotherButtonNothingIsDrawn)
{
    EXPECT_FALSE(drag(u"Undo"_s, at(2, 2), {at(9, 9)}, at(9, 9)));
    EXPECT_FALSE(tools.band());
    EXPECT_TRUE(picture.dirty()) << "any press counts as a change";
    EXPECT_EQ(picture.history().current(), 1);
}

TEST_F(AnnotationToolsTest, TheRightButtonMakesThePictureChangedButDrawsNothing)
{
    state.CurrentTool = u"drawline"_s;
    EXPECT_FALSE(picture.dirty());
    tools.mouseDown(Button::Other, at(2, 2));
    tools.mouseMove(at(9, 9));
    EXPECT_FALSE(tools.mouseUp(Button::Other, at(9, 9)));
    EXPECT_TRUE(picture.dirty());
    EXPECT_EQ(drawn(Qt::black), QString());

    // Nor does it end what the left one does.
    tools.mouseDown(Button::Left, at(2, 2));
    tools.mouseDown(Button::Other, at(4, 4));
    EXPECT_FALSE(tools.mouseUp(Button::Other, at(5, 5)));
    EXPECT_TRUE(tools.mouseUp(Button::Left, at(4, 2)));
    EXPECT_EQ(drawn(Qt::black), u"2,2 3,2 4,2"_s);
}

TEST(Drawing, ColoursAreCountedWithRedInTheLowByte)
{
    EXPECT_EQ(Drawing::value(Drawing::palette()[1]), 8388608U); // navy
    EXPECT_EQ(Drawing::value(Drawing::palette()[12]), 255U);
    EXPECT_EQ(Drawing::fromValue(8388608), QColor(0, 0, 128));
}

TEST_F(AnnotationToolsTest, PositionsFarOutAreKept)
{
    EXPECT_EQ(Drawing::toPixel({-1, -16}), QPoint(-1, -2)) << "left of the picture is not in it";
    QImage wide(70'000, 2, QImage::Format_RGB32); // 1,050,000 twips
    wide.fill(ground);
    ImageFile::save(wide, inProject(u"wide.bmp"_s));
    ASSERT_EQ(picture.chooseFile(inProject(u"wide.bmp"_s), u"a.bmp"_s), ViewerPicture::Choice::Shown);
    EXPECT_TRUE(drag(u"drawline"_s, at(69'997, 1), {}, at(69'999, 1)));
    EXPECT_EQ(drawn(Qt::black), u"69997,1 69998,1 69999,1"_s);
}

TEST_F(AnnotationToolsTest, ACancelledTextLeavesNoTrace)
{
    EXPECT_FALSE(drag(u"drawtext"_s, at(2, 2), {at(9, 9)}, at(2, 2)));
    EXPECT_EQ(dialogs, 1);
    EXPECT_EQ(drawn(Qt::black), QString());
    EXPECT_EQ(picture.history().current(), 1);
    EXPECT_FALSE(state.TextRetry);
}
