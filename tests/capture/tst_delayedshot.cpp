#include "CaptureFixture.h"

#include "capture/DelayedShot.h"
#include "platform/ImageFile.h"
#include "platform/RunTimeError.h"
#include "support/FakePrograms.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
class DelayedShotTest : public ::testing::Test, protected CaptureFixture
{
protected:
    FakePrograms programs;
    DelayedShot shot{{state, screen, sound, prompter, workspace, programs}, grabbing};
    const QString path = folder.path() + u"/one.bmp"_s;
};
} // namespace

TEST_F(DelayedShotTest, TheDelayIsAskedUntilItIsAPositiveWholeNumber)
{
    for (const QString &answer : {u"abc"_s, u"3s"_s})
        prompter.expectInput(Question::ShotDelay, answer); // asked again without a word
    for (const QString &answer : {u"2.5"_s, u"0"_s, u"-4"_s, u"99999999999"_s}) {
        prompter.expectInput(Question::ShotDelay, answer);
        prompter.expectTell(Question::ShotDelayNotPositive);
    }
    prompter.expectInput(Question::ShotDelay, u" 5 "_s);
    EXPECT_EQ(shot.askDelay(), 5);
    EXPECT_EQ(prompter.asked[0].proposal, u"3"_s);
    EXPECT_EQ(prompter.asked[0].title, u"How long to wait?"_s);
    EXPECT_EQ(prompter.asked[3].text, u"Must enter an integer number greater than 0, such as 1,2,3.."_s);

    prompter.expectInput(Question::ShotDelay, u""_s);
    EXPECT_EQ(shot.askDelay(), std::nullopt);
    prompter.expectInput(Question::ShotDelay, std::nullopt);
    EXPECT_EQ(shot.askDelay(), std::nullopt);
}

TEST_F(DelayedShotTest, TheSnapshotComesOnTheTickAfterTheDelay)
{
    shot.tick();
    EXPECT_FALSE(QFile::exists(path));
    shot.arm(true, 2, path);
    EXPECT_EQ(workspace.calls, QStringList{u"minimise"_s});
    shot.tick();
    EXPECT_EQ(shot.countdown(), 2);
    shot.tick();
    EXPECT_FALSE(QFile::exists(path));
    shot.tick();
    EXPECT_EQ(ImageFile::load(path).size(), QSize(300, 150));
    EXPECT_FALSE(shot.armed());
    EXPECT_EQ(sound.played.size(), 1);
    EXPECT_EQ(workspace.calls, (QStringList{u"minimise"_s, u"restore"_s, u"viewer current"_s}));
    EXPECT_EQ(state.CurrentImagePath, path);
    EXPECT_TRUE(state.ImageFileRequested);
    shot.tick();
    EXPECT_EQ(sound.played.size(), 1);
}

TEST_F(DelayedShotTest, ThePaintToolOptionSaysWhoShowsIt)
{
    state.AppOptions.OptionFlags[PaintTool] = 1;
    state.AppOptions.PaintProgram = u"mypaint"_s;
    shot.arm(false, 1, path);
    shot.tick();
    shot.tick();
    EXPECT_EQ(ImageFile::load(path).size(), QSize(800, 600));
    EXPECT_EQ(programs.painted, QStringList{u"mypaint "_s + path});
    state.AppOptions.OptionFlags[PaintTool] = 2;
    shot.arm(false, 1, path);
    shot.tick();
    shot.tick();
    EXPECT_EQ(programs.painted.size(), 1);
    EXPECT_FALSE(workspace.calls.contains(u"viewer current"_s));
}

TEST_F(DelayedShotTest, ASnapshotThatCannotBeWrittenIsGivenUpAndTheWindowComesBack)
{
    shot.arm(true, 1, folder.path() + u"/missing/one.bmp"_s);
    shot.tick();
    EXPECT_THROW(shot.tick(), RunTimeError);
    EXPECT_FALSE(shot.armed());
    EXPECT_EQ(workspace.calls.last(), u"restore"_s);
    shot.tick();
    EXPECT_TRUE(sound.played.isEmpty());
}

TEST_F(DelayedShotTest, ASessionThatAsksItsUserMayRefuse)
{
    struct AskingScreen : FakeScreen {
        DelayedShot *shot = nullptr;
        QImage grab(const QRect &) override
        {
            EXPECT_TRUE(shot->armed());
            shot->tick(); // the clock goes on while the user thinks
            grabs.emplace_back();
            throw RunTimeError(RunTimeError::PermissionDenied, u"The snapshot was cancelled."_s);
        }
    } asking;
    ScreenGrabbing askingGrabbing(state, asking);
    DelayedShot asked({state, asking, sound, prompter, workspace, programs}, askingGrabbing);
    asking.shot = &asked;
    asked.arm(false, 1, path);
    asked.tick();
    prompter.expectTell(Question::CaptureNotPossible);
    asked.tick();
    EXPECT_EQ(prompter.asked[0].text, u"The snapshot was cancelled."_s);
    EXPECT_EQ(asking.grabs.size(), 1U);
    EXPECT_EQ(workspace.calls, (QStringList{u"minimise"_s, u"restore"_s}));
    EXPECT_FALSE(asked.armed());
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_TRUE(sound.played.isEmpty());
}
