#include "annotate/ImageHistory.h"

#include "support/NumberedPicture.h"

#include <gtest/gtest.h>

namespace
{
class ImageHistoryTest : public ::testing::Test
{
protected:
    ImageHistory history;

    /// As drawing does: a new entry, and Undo can be used.
    void draw(int number)
    {
        history.push(numbered(number));
        history.setUndoEnabled(true);
    }
    int undo() { return numberOf(history.undo(false)); }
    int redo() { return numberOf(history.redo()); }
    std::array<int, 3> places() const { return {history.current(), history.newest(), history.oldest()}; }
    std::array<bool, 2> buttons() const { return {history.undoEnabled(), history.redoEnabled()}; }
};

using Places = std::array<int, 3>;
using Buttons = std::array<bool, 2>;
} // namespace

TEST_F(ImageHistoryTest, UndoGoesBackToTheFirstLoadedPictureAndRedoToTheNewest)
{
    history.push(numbered(10)); // loaded: slot 1
    EXPECT_EQ(buttons(), (Buttons{false, false}));
    draw(11);
    draw(12);
    EXPECT_EQ(places(), (Places{3, 3, 0}));
    EXPECT_EQ(buttons(), (Buttons{true, false}));

    EXPECT_EQ(undo(), 11);
    EXPECT_EQ(buttons(), (Buttons{true, true}));
    EXPECT_EQ(undo(), 10);
    EXPECT_EQ(buttons(), (Buttons{false, true}));
    EXPECT_EQ(undo(), 10) << "never below slot 1";

    EXPECT_EQ(redo(), 11);
    EXPECT_EQ(buttons(), (Buttons{true, true}));
    EXPECT_EQ(redo(), 12);
    EXPECT_EQ(buttons(), (Buttons{true, false}));
    EXPECT_EQ(redo(), 12) << "nothing above the highest slot";
}

TEST_F(ImageHistoryTest, DrawingAfterUndoEndsTheRoadToWhatWasUndone)
{
    history.push(numbered(1));
    draw(2);
    draw(3);
    draw(4);
    undo();
    undo(); // slot 2 is shown
    draw(5);
    EXPECT_EQ(places(), (Places{3, 3, 0}));
    EXPECT_FALSE(history.redoEnabled());
    EXPECT_EQ(undo(), 2);
    EXPECT_EQ(redo(), 5);
    EXPECT_FALSE(history.redoEnabled()) << "slot 4 lies above, but slot 3 is the newest";
}

TEST_F(ImageHistoryTest, TheRingGoesRoundAfterTenEntries)
{
    for (int number = 1; number <= 9; ++number)
        draw(number);
    EXPECT_EQ(places(), (Places{9, 9, 0}));
    draw(10); // into slot 0
    EXPECT_EQ(places(), (Places{0, 0, 1}));
    EXPECT_EQ(undo(), 10) << "slot 0 is no step above slot 1";
    EXPECT_EQ(buttons(), (Buttons{true, true}));
    EXPECT_EQ(redo(), 1);
    EXPECT_EQ(places(), (Places{1, 0, 1}));

    history.redo(); // slot 2 is shown
    draw(12);
    EXPECT_EQ(places(), (Places{3, 3, 1}));
}

TEST_F(ImageHistoryTest, TheOldestMovesOnWithTheRingAndEndsUndo)
{
    for (int number = 1; number <= 12; ++number)
        draw(number); // 10, 11, 12 in the slots 0, 1, 2
    EXPECT_EQ(places(), (Places{2, 2, 3}));
    EXPECT_EQ(undo(), 11);
    EXPECT_FALSE(history.undoEnabled());
    EXPECT_EQ(redo(), 12);
    EXPECT_EQ(redo(), 3);
    history.undo(true);
    EXPECT_FALSE(history.undoEnabled()) << "the oldest is shown";
    for (int number = 13; number <= 18; ++number)
        draw(number);
    EXPECT_EQ(places(), (Places{9, 9, 3})) << "the oldest moves only when its slot is written";
    draw(19);
    draw(20);
    draw(21);
    draw(22);
    EXPECT_EQ(places(), (Places{3, 3, 4}));
}

TEST_F(ImageHistoryTest, StayingTakesBackWhatWasDrawnSinceTheLastEntry)
{
    history.push(numbered(1));
    draw(2);
    draw(3);
    EXPECT_EQ(numberOf(history.undo(true)), 3);
    EXPECT_EQ(history.current(), 3);
    EXPECT_EQ(buttons(), (Buttons{true, true}));
}

TEST_F(ImageHistoryTest, AResetLeavesOnePicture)
{
    for (int number = 1; number <= 12; ++number)
        draw(number);
    history.reset(numbered(30));
    EXPECT_EQ(places(), (Places{0, 0, 0}));
    EXPECT_EQ(buttons(), (Buttons{false, false}));
    EXPECT_EQ(redo(), 30) << "no other slot is left";
    EXPECT_EQ(undo(), 30);
}

TEST_F(ImageHistoryTest, EqualPicturesShareTheirPixels)
{
    const QImage first = numbered(7);
    history.push(first);
    history.push(numbered(7));
    EXPECT_EQ(history.undo(true).constBits(), first.constBits());
}
