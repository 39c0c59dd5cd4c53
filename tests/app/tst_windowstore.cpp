#include "app/WindowPlace.h"
#include "app/WorkingSpace.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

namespace
{
class WindowStoreTest : public ::testing::Test
{
protected:
    QTemporaryDir folder;
    UserSettings settings{folder.filePath(u"settings.ini"_s)};
    const QRect desktop{0, 0, 1920, 1080};
};
} // namespace

TEST_F(WindowStoreTest, ChildWindowsTakeWhatTheMainWindowLeaves)
{
    EXPECT_EQ(WindowPlace::childSize({1000, 700}), QSize(15000 - 180, 10500 - 1740));
    EXPECT_EQ(WindowPlace::childSize({100, 100}), QSize(10700, 6100)); // never smaller
    EXPECT_EQ(WindowPlace::smallestMainWindow(), QSize(726, 523));     // 10880 and 7840 twips, rounded up
}

TEST_F(WindowStoreTest, ThePlaceIsKeptInTwips)
{
    EXPECT_EQ(WindowPlace::load(settings, {15000, 9000}, desktop), QRect(66, 66, 1000, 600));
    WindowPlace::save(settings, {100, 40, 1200, 800});
    EXPECT_EQ(settings.value(u"Settings"_s, u"MainLeft"_s), u"1500"_s);
    EXPECT_EQ(settings.value(u"Settings"_s, u"MainHeight"_s), u"12000"_s);
    EXPECT_EQ(WindowPlace::load(settings, {15000, 9000}, desktop), QRect(100, 40, 1200, 800));
}

TEST_F(WindowStoreTest, AWindowThatLayOnAScreenThatHasGoneIsBroughtBack)
{
    WindowPlace::save(settings, {5000, -900, 2500, 800});
    const QRect place = WindowPlace::load(settings, {15000, 9000}, desktop);
    EXPECT_EQ(place, QRect(0, 0, 1920 - 8, 800)) << "with room for its frame";
    const QRect small(0, 0, 800, 600); // also where the display has become small
    WindowPlace::save(settings, {66, 66, 1000, 700});
    EXPECT_EQ(WindowPlace::load(settings, {15000, 9000}, small), QRect(0, 0, 792, 560));
    WindowPlace::save(settings, {66, 66, 726, 523});
    EXPECT_EQ(WindowPlace::load(settings, {15000, 9000}, small), QRect(66, 37, 726, 523));
}

TEST_F(WindowStoreTest, OnlyBrowserWindowsAreReopened)
{
    EXPECT_EQ(WorkingSpace::load(settings, u"Shotly"_s).user, u"Administrator"_s);
    WorkingSpace::save(settings, {u"Page List"_s, u"Shotly"_s, u"<file:///a.htm"_s, u">odd"_s, u"<b"_s},
                       u"Shotly"_s, u"anna"_s);
    EXPECT_EQ(settings.value(u"WorkingSpace"_s, u"form1"_s), u"Page List-"_s);
    EXPECT_EQ(settings.value(u"WorkingSpace"_s, u"form2"_s), u"<file:///a.htm"_s);
    EXPECT_EQ(settings.value(u"WorkingSpace"_s, u"form3"_s), u">odd"_s);
    EXPECT_EQ(settings.value(u"WorkingSpace"_s, u"count"_s), u"4"_s);

    const WorkingSpace::Kept kept = WorkingSpace::load(settings, u"Shotly"_s);
    EXPECT_EQ(kept.user, u"anna"_s);
    EXPECT_EQ(kept.pageAddresses, QStringList({u"file:///a.htm"_s, u"b"_s}));

    // A later save with fewer windows forgets the rest.
    WorkingSpace::save(settings, {}, u"Shotly"_s, u"anna"_s);
    EXPECT_TRUE(WorkingSpace::load(settings, u"Shotly"_s).pageAddresses.isEmpty());
}
