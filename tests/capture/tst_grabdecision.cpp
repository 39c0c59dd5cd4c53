#include "capture/GrabDecision.h"

#include <gtest/gtest.h>

#include <string>

namespace
{
// A window whose top lies at 700 of 1000 is low enough for a shot of its own; one at 100 is not.
constexpr QRect screen(0, 0, 1600, 1000);
constexpr QRect low(200, 700, 800, 250);
constexpr QRect high(200, 100, 800, 800);
constexpr QRect none;

struct Row {
    std::string name;
    GrabSituation situation;
    Grab grab;
    bool reduce;
    bool whole;
};
} // namespace

TEST(GrabDecision, TheTableRowByRow)
{
    const Row rows[] = {
        {"no window, reduction", {screen, none, true, 90, false, false}, Grab::Screen, true, true},
        {"no window, full size", {screen, none, true, 100, false, false}, Grab::Screen, false, true},
        {"no window, wide left over", {screen, none, true, 90, true, true}, Grab::Screen, true, true},
        {"low and wide, reduction", {screen, low, true, 90, true, false}, Grab::ActiveWindow, true, false},
        {"high, reduction", {screen, high, true, 90, false, false}, Grab::Screen, true, true},
        {"high and wide, reduction", {screen, high, true, 90, true, false}, Grab::Screen, true, true},
        {"high, reduction, switched", {screen, high, true, 90, false, true}, Grab::Screen, true, true},
        {"low and narrow, reduction",
         {screen, low, true, 90, false, false},
         Grab::ActiveWindow,
         false,
         false},
        {"high, full size, switched",
         {screen, high, true, 100, false, true},
         Grab::ScreenAdjust,
         false,
         true},
        {"high, full size", {screen, high, true, 100, true, false}, Grab::Screen, false, true},
        {"high, size of a damaged options file",
         {screen, high, true, 0, false, false},
         Grab::Screen,
         false,
         true},
        {"low, full size", {screen, low, true, 100, true, true}, Grab::ActiveWindow, false, false},
    };
    for (const Row &row : rows) {
        const GrabDecision decision = decideGrab(row.situation);
        EXPECT_EQ(decision.grab, row.grab) << row.name;
        EXPECT_EQ(decision.reduce, row.reduce) << row.name;
        EXPECT_EQ(decision.wholeScreenShot, row.whole) << row.name;
    }
}

TEST(GrabDecision, TheTopEdgeDecidesBetweenWindowAndScreen)
{
    struct Case {
        QRect desktop;
        int top = 0;
        bool xp = false;
        bool whole = false;
    };
    const QRect right(1600, 200, 1000, 1000); // a second monitor, lower than the first
    for (const Case &each :
         {Case{screen, 600, true, true},  // 0.4 in single precision is a little more than 0.4
          Case{screen, 601, true, false}, // 0.399
          Case{screen, 599, true, true}, Case{screen, 940, true, false},   // 60 pixels above the bottom
          Case{screen, 941, true, true},                                   // 59
          Case{screen, 941, false, true}, Case{screen, 100, false, false}, // before XP height does not count
          Case{screen, 1200, true, true},                                  // below the screen
          Case{screen, -40, true, true}, Case{right, 801, true, false}, Case{right, 700, true, true},
          Case{right, 1141, true, true}}) {
        const GrabSituation situation{
            each.desktop, QRect(each.desktop.x(), each.top, 300, 100), each.xp, 100, false, false};
        EXPECT_EQ(wantsWholeScreen(situation), each.whole) << each.top << (each.xp ? " xp" : "");
    }
}

TEST(GrabDecision, AWindowAtTheThresholdIsNotWide)
{
    EXPECT_FALSE(isWideWindow(1440, 1600, 90));
    EXPECT_TRUE(isWideWindow(1441, 1600, 90));
    EXPECT_FALSE(isWideWindow(922, 1025, 90)); // 922.5 rounds to the even 922
    EXPECT_TRUE(isWideWindow(923, 1025, 90));
    EXPECT_FALSE(isWideWindow(1600, 1600, 100));
}
