// What is begun and not part of the picture yet: how it is seen, and how it is undone.

#include "PaintFixture.h"

#include "paint/PaintTools.h"

#include <gtest/gtest.h>
#include <QPainter>

using namespace Qt::Literals::StringLiterals;

namespace
{
class PaintPendingTest : public ::testing::Test, protected PaintFixture
{
};
} // namespace

TEST_F(PaintPendingTest, WhatIsPendingIsNewerThanWhatCouldBeRedone)
{
    begin({"#b.", "..."});
    picture.Clear();
    picture.undo();
    EXPECT_TRUE(picture.redoEnabled());
    const int entry = picture.history().current();
    bool exists = true;
    picture.setPendingWork({[&] { return exists; }, [&] { exists = false; }}); // an empty text box
    EXPECT_TRUE(picture.undoEnabled() && !picture.redoEnabled());
    picture.undo();
    EXPECT_EQ(picture.history().current(), entry) << "the box goes, and nothing else";
    picture.setPendingWork({});

    picture.select({0, 0, 2, 1});
    picture.lift(false);
    EXPECT_FALSE(picture.redoEnabled());
    picture.moveSelection({1, 1});
    EXPECT_TRUE(picture.apply([](const QImage &from) { return from.mirrored(true, false); }));
    const int moved = picture.history().current();
    picture.lift(true);
    EXPECT_EQ(picture.history().current(), moved) << "that picture is in the history already";
}

TEST_F(PaintPendingTest, TheOverlayIsSeenWhereThePictureIsShownSmaller)
{
    PaintTools tools{{settings, picture, {}, {}, {}, {}}};
    const auto inverted = [&tools](double zoom) {
        QImage screen(100, 100, QImage::Format_RGB32);
        screen.fill(Qt::white);
        QPainter painter(&screen);
        painter.translate(1, 2);
        painter.scale(zoom, zoom);
        tools.drawOverlay(painter);
        painter.end();
        return rowsOf(screen);
    };
    begin(Rows(40, std::string(40, '.')));
    tools.choose(DrawingTool::Rectangle);
    tools.press(PaintTools::Button::Left, {0, 0}, {});
    tools.move({39, 39}, {});
    Rows frame(100, std::string(100, '.'));
    for (std::size_t i = 0; i < 10; ++i)
        frame[2][1 + i] = frame[11][1 + i] = frame[2 + i][1] = frame[2 + i][10] = '#';
    EXPECT_EQ(inverted(0.25), frame);
    tools.escape();
    tools.release(PaintTools::Button::Left, {}, {});
    picture.select({0, 0, 40, 40});
    EXPECT_EQ(inverted(0.25)[2].substr(0, 12), ".####....##.") << "dashes as long as ever";
    EXPECT_EQ(inverted(1)[2].substr(0, 12), ".####....###");
    EXPECT_EQ(inverted(2)[2].substr(0, 20), ".########........###");
}
