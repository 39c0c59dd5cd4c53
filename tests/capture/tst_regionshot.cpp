#include "CaptureFixture.h"

#include "capture/RegionSelection.h"
#include "capture/RegionShot.h"
#include "platform/ImageFile.h"
#include "platform/RunTimeError.h"
#include "support/FakePrograms.h"

#include <QClipboard>
#include <QGuiApplication>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// The selection after a drag over a desktop of 800 x 600 pixels.
RegionSelection dragged(QPoint from, QPoint to)
{
    RegionSelection selection(QRect(0, 0, 800, 600));
    selection.press(from);
    selection.move(to);
    selection.release();
    return selection;
}

class RegionShotTest : public ::testing::Test, protected CaptureFixture
{
protected:
    FakePrograms programs;
    RegionShot shot{{state, screen, sound, clock, hook, prompter, workspace, programs}, files};
    const QString path = folder.path() + u"/region.bmp"_s;

    RegionShotTest()
    {
        for (int y = 0; y < 600; ++y)
            for (int x = 0; x < 800; ++x)
                screen.picture.setPixel(x, y, qRgb(x % 256, y % 256, x / 256 + 16 * (y / 256)));
    }
    bool begin()
    {
        prompter.expectFile(Question::SaveSnapshotAs, path);
        return shot.begin();
    }
};
} // namespace

TEST(RegionSelectionTest, ARectangleIsTheSameInAllFourDirectionsAndClippedToTheDesktop)
{
    const QRect wanted(100, 50, 300, 200);
    const QPoint topLeft(100, 50), topRight(400, 50), bottomLeft(100, 250), bottomRight(400, 250);
    EXPECT_EQ(dragged(topLeft, bottomRight).rectangle(), wanted);
    EXPECT_EQ(dragged(bottomRight, topLeft).rectangle(), wanted);
    EXPECT_EQ(dragged(topRight, bottomLeft).rectangle(), wanted);
    EXPECT_EQ(dragged(bottomLeft, topRight).rectangle(), wanted);
    EXPECT_EQ(dragged(topLeft, bottomRight).sizeText(), u"300 x 200"_s);

    EXPECT_EQ(dragged({700, 500}, {900, 40'000}).rectangle(), QRect(700, 500, 100, 100));
    EXPECT_EQ(dragged({60, 70}, {-5, -1}).rectangle(), QRect(0, 0, 60, 70));
}

TEST(RegionSelectionTest, TwoPixelsAreARegionAndOneIsNot)
{
    EXPECT_TRUE(dragged({10, 10}, {12, 12}).isRegion());
    EXPECT_TRUE(dragged({10, 10}, {8, 8}).isRegion());
    EXPECT_FALSE(dragged({10, 10}, {11, 300}).isRegion());
    EXPECT_FALSE(dragged({10, 10}, {300, 9}).isRegion());
    EXPECT_FALSE(dragged({10, 10}, {10, 10}).isRegion());

    // Neither what went on before the drag nor what comes after it counts.
    RegionSelection selection(QRect(0, 0, 800, 600));
    selection.move({500, 500});
    EXPECT_FALSE(selection.isRegion());
    selection.press({20, 20});
    selection.move({90, 90});
    selection.release();
    selection.move({500, 500});
    EXPECT_EQ(selection.rectangle(), QRect(20, 20, 70, 70));
    selection.press({300, 300});
    EXPECT_FALSE(selection.isRegion());
}

TEST(RegionSelectionTest, TheLabelStaysBesideThePointerAndOnTheDesktop)
{
    const QSize label(80, 20);
    EXPECT_EQ(dragged({10, 10}, {300, 200}).labelPlace(label, 15), QRect(315, 215, 80, 20));
    EXPECT_EQ(dragged({10, 10}, {705, 565}).labelPlace(label, 15), QRect(720, 580, 80, 20));
    EXPECT_EQ(dragged({10, 10}, {706, 566}).labelPlace(label, 15), QRect(611, 531, 80, 20));
    EXPECT_EQ(dragged({10, 10}, {20, 590}).labelPlace({790, 20}, 15), QRect(0, 555, 790, 20));
}

TEST_F(RegionShotTest, TheRegionIsSavedWithThePixelsOfTheFrozenDesktopAndShown)
{
    QGuiApplication::clipboard()->setText(u"old"_s);
    ASSERT_TRUE(begin());
    EXPECT_TRUE(QGuiApplication::clipboard()->text().isEmpty());
    // What was closed last is gone from the screen, and what lay below it painted.
    EXPECT_EQ(clock.eventsRun, 2);
    ASSERT_EQ(screen.waits.size(), 2U);
    EXPECT_EQ(screen.waits[1].limitMilliseconds, 1000);
    EXPECT_EQ(screen.grabs, std::vector<QRect>{QRect(0, 0, 800, 600)});
    EXPECT_EQ(shot.frozenDesktop(), screen.picture);
    EXPECT_EQ(state.NextSnapshotPath, path);
    EXPECT_FALSE(shot.begin()); // one at a time

    const QImage before = screen.picture.copy(300, 200, 40, 30);
    screen.picture.fill(Qt::black);
    sound.whilePlaying = [&] {
        EXPECT_EQ(ImageFile::load(path), before);
        EXPECT_TRUE(workspace.calls.isEmpty());
    };
    shot.SaveRegionSnapshot(QRect(300, 200, 40, 30));
    EXPECT_EQ(sound.played, QStringList{state.ApplicationPath + u"/camera.wav"_s});
    EXPECT_EQ(workspace.calls, (QStringList{u"restore"_s, u"viewer current"_s}));
    EXPECT_EQ(state.CurrentImagePath, path);
    EXPECT_TRUE(state.ImageFileRequested);
    EXPECT_TRUE(state.NextSnapshotPath.isEmpty());
    EXPECT_TRUE(shot.frozenDesktop().isNull());

    sound.whilePlaying = {};
    state.AppOptions.OptionFlags[PaintTool] = 1;
    state.AppOptions.PaintProgram = u"mypaint"_s;
    ASSERT_TRUE(begin());
    shot.SaveRegionSnapshot(QRect(0, 0, 2, 2));
    EXPECT_EQ(programs.painted, QStringList{u"mypaint "_s + path});
    EXPECT_EQ(workspace.calls.last(), u"restore"_s);
}

TEST_F(RegionShotTest, TheUserIsAskedForAPathAndToldHow)
{
    prompter.expectFile(Question::SaveSnapshotAs, std::nullopt);
    EXPECT_FALSE(shot.begin());
    EXPECT_TRUE(screen.grabs.empty());

    state.AppOptions.ShowLessMessage = 0;
    prompter.expectFile(Question::SaveSnapshotAs, path);
    prompter.expectTell(Question::RegionTips);
    prompter.whileOpen([&] { EXPECT_FALSE(shot.begin()); });
    EXPECT_TRUE(shot.begin());
    EXPECT_EQ(prompter.asked.back().title, u"Tips: How to make a region snapshot?"_s);
    EXPECT_EQ(prompter.asked.back().text,
              u"After you click the 'OK' button, move mouse to the top-left of the\r\n"
              "region you want to make a region snapshot, press left button on the\r\n"
              "mouse. The mouse showing a crossas cursor. Hold the button, and\r\n"
              "move the mouse until the whole region is covered. Release the button,\r\n"
              "then, the screen shot is made and saved on your compute.\r\n"
              "\r\n"
              "Click 'OK' to continue."_s);
    shot.cancel();
    EXPECT_TRUE(state.NextSnapshotPath.isEmpty());
    EXPECT_TRUE(workspace.calls.isEmpty());
}

TEST_F(RegionShotTest, WithoutAPathNothingIsSavedOrPlayedAndTheRestHappens)
{
    ASSERT_TRUE(begin());
    state.NextSnapshotPath.clear();
    state.CurrentImagePath = u"before"_s;
    shot.SaveRegionSnapshot(QRect(0, 0, 10, 10));
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_TRUE(sound.played.isEmpty());
    EXPECT_TRUE(state.CurrentImagePath.isEmpty());
    EXPECT_EQ(workspace.calls, (QStringList{u"restore"_s, u"viewer current"_s}));
}

TEST_F(RegionShotTest, ARegionThatCannotBeWrittenIsGivenUpAndTheWindowComesBack)
{
    prompter.expectFile(Question::SaveSnapshotAs, folder.path() + u"/missing/region.bmp"_s);
    ASSERT_TRUE(shot.begin());
    EXPECT_THROW(shot.SaveRegionSnapshot(QRect(0, 0, 10, 10)), RunTimeError);
    EXPECT_TRUE(state.NextSnapshotPath.isEmpty());
    EXPECT_TRUE(state.CurrentImagePath.isEmpty());
    EXPECT_TRUE(sound.played.isEmpty());
    EXPECT_EQ(workspace.calls, QStringList{u"restore"_s});
    EXPECT_TRUE(begin()); // the next one is taken
}

TEST_F(RegionShotTest, AScreenThatGivesNoPictureIsTold)
{
    screen.refusesGrabs = true;
    prompter.expectFile(Question::SaveSnapshotAs, path);
    prompter.expectTell(Question::CaptureNotPossible);
    EXPECT_FALSE(shot.begin());

    struct RefusingScreen : FakeScreen {
        QImage grab(const QRect &) override
        {
            throw RunTimeError(RunTimeError::PermissionDenied, u"The snapshot was cancelled."_s);
        }
    } refusing;
    RegionShot refused({state, refusing, sound, clock, hook, prompter, workspace, programs}, files);
    prompter.expectFile(Question::SaveSnapshotAs, path);
    prompter.expectTell(Question::CaptureNotPossible);
    EXPECT_FALSE(refused.begin());
    EXPECT_EQ(prompter.asked.back().text, u"The snapshot was cancelled."_s);
    EXPECT_TRUE(state.NextSnapshotPath.isEmpty());
    EXPECT_EQ(hook.suspended, 0);
}

TEST_F(RegionShotTest, ARunGoesOnAndTakesNoSnapshotOfTheDrawing)
{
    workspace.text = u"Fresh"_s;
    CaptureFixture::begin();
    const auto clickNow = [&] { click({200, 450}); };
    hook.send({InputEvent::Kind::MouseUp, 0, 1, 0, {200, 450}, 1}); // has not been handled yet
    prompter.expectFile(Question::SaveSnapshotAs, path);
    prompter.whileOpen(clickNow);
    ASSERT_TRUE(shot.begin());
    EXPECT_EQ(state.ShotCounter, 2); // the one before the command
    clickNow();
    shot.SaveRegionSnapshot(QRect(0, 0, 10, 10));
    EXPECT_EQ(state.ShotCounter, 2);
    clickNow();
    EXPECT_EQ(state.ShotCounter, 3);

    ASSERT_TRUE(begin());
    run.stop(0);
    shot.cancel();
    EXPECT_EQ(hook.suspended, 0); // the next run sees everything
}
