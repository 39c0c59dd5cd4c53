#include "paint/PaintHistory.h"

#include "support/NumberedPicture.h"

#include <gtest/gtest.h>

namespace
{
class PaintHistoryTest : public ::testing::Test
{
protected:
    PaintHistory history;

    PaintHistoryTest() { history.reset(numbered(0)); }
    void push(int first, int last)
    {
        for (int number = first; number <= last; ++number)
            history.push(numbered(number));
    }
    int undo() { return numberOf(history.undo()); }
    int redo() { return numberOf(history.redo()); }
    std::array<int, 3> places() const { return {history.current(), history.newest(), history.oldest()}; }
    std::array<bool, 2> buttons() const { return {history.undoEnabled(), history.redoEnabled()}; }
};

using Places = std::array<int, 3>;
using Buttons = std::array<bool, 2>;
} // namespace

TEST_F(PaintHistoryTest, UndoGoesBackToTheFirstPictureAndRedoToTheNewest)
{
    EXPECT_EQ(buttons(), (Buttons{false, false}));
    push(1, 2);
    EXPECT_EQ(places(), (Places{2, 2, 0}));
    EXPECT_EQ(buttons(), (Buttons{true, false}));
    EXPECT_EQ(undo(), 1);
    EXPECT_EQ(buttons(), (Buttons{true, true}));
    EXPECT_EQ(undo(), 0);
    EXPECT_EQ(buttons(), (Buttons{false, true}));
    EXPECT_EQ(undo(), 0) << "nothing below the oldest";
    EXPECT_EQ(redo(), 1);
    push(3, 3); // in the place of 2
    EXPECT_EQ(buttons(), (Buttons{true, false}));
    EXPECT_EQ(redo(), 3) << "nothing above the newest";
    EXPECT_EQ(undo(), 1);
}

TEST_F(PaintHistoryTest, TheEleventhPushOverwritesTheFirstPicture)
{
    push(1, 10);
    EXPECT_EQ(places(), (Places{10, 10, 0}));
    push(11, 11); // into slot 0
    EXPECT_EQ(places(), (Places{0, 0, 1}));
    EXPECT_EQ(undo(), 10);
    EXPECT_EQ(places(), (Places{10, 0, 1})) << "from slot 0 to slot 10";
    for (int number = 9; number >= 1; --number) {
        EXPECT_TRUE(history.undoEnabled());
        EXPECT_EQ(undo(), number);
    }
    EXPECT_EQ(buttons(), (Buttons{false, true})) << "ten steps";
    for (int number = 2; number <= 11; ++number)
        EXPECT_EQ(redo(), number);
    EXPECT_EQ(places(), (Places{0, 0, 1})) << "from slot 10 to slot 0";
    EXPECT_FALSE(history.redoEnabled());
}

TEST_F(PaintHistoryTest, APushIntoAFullRingAfterUndoKeepsWhatIsOlder)
{
    push(1, 11);
    undo();
    undo();
    undo(); // 8 in slot 8
    push(20, 20);
    EXPECT_EQ(places(), (Places{9, 9, 1}));
    for (const int number : {8, 7, 6, 5, 4, 3, 2, 1})
        EXPECT_EQ(undo(), number);
    EXPECT_FALSE(history.undoEnabled()) << "what had been undone does not come from behind";
    for (int step = 0; step < 8; ++step)
        redo();
    push(21, 23); // the last into slot 1
    EXPECT_EQ(places(), (Places{1, 1, 2}));

    history.reset(numbered(30));
    EXPECT_EQ(places(), (Places{0, 0, 0}));
    EXPECT_EQ(buttons(), (Buttons{false, false}));
    EXPECT_EQ(undo(), 30);
}

TEST_F(PaintHistoryTest, PicturesOfAnySizeComeBackAsTheyWere)
{
    std::vector<QImage> pictures;
    for (const QSize size :
         {QSize(1, 1), QSize(127, 129), QSize(128, 128), QSize(129, 300), QSize(129, 300)}) {
        QImage picture(size, QImage::Format_RGB32);
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x)
                picture.setPixel(x, y, qRgb(x % 256, y % 256, static_cast<int>(pictures.size())));
        }
        picture.setDotsPerMeterX(3780 + size.width());
        pictures.push_back(picture);
        history.push(picture);
    }
    for (std::size_t i = pictures.size() - 1; i-- > 0;) {
        EXPECT_EQ(history.undo(), pictures[i]);
        EXPECT_EQ(history.picture().dotsPerMeterX(), pictures[i].dotsPerMeterX());
    }
    EXPECT_EQ(history.redo(), pictures[1]);
}

TEST_F(PaintHistoryTest, SlotsCostOnlyWhatWasChanged)
{
    QImage picture(1000, 700, QImage::Format_RGB32);
    picture.fill(Qt::white);
    const qint64 whole = picture.sizeInBytes();
    history.reset(picture);
    EXPECT_EQ(history.bytes(), whole);
    for (int x = 0; x < 10; ++x) {
        picture.setPixel(x, 127, qRgb(255, 0, 0)); // the last row of a tile
        history.push(picture);
        EXPECT_EQ(history.picture().constBits(), picture.constBits()) << "shared until it is drawn on";
    }
    EXPECT_LE(history.bytes(), whole + 10 * 128 * 128 * 4);
    EXPECT_EQ(history.undo().pixelColor(9, 127), QColor(Qt::white));
    EXPECT_EQ(history.redo(), picture);
    picture.fill(Qt::black);
    history.push(picture); // over the first one
    EXPECT_LE(history.bytes(), 2 * whole + 9 * 128 * 128 * 4);
}
