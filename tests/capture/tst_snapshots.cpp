#include "CaptureFixture.h"

#include "platform/ImageFile.h"
#include "platform/RunTimeError.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
class SnapshotTest : public ::testing::Test, protected CaptureFixture
{
};
} // namespace

TEST_F(SnapshotTest, NamesCountOnFromTheProjectsPages)
{
    struct Case {
        int base;
        int counter;
        QString name;
    };
    for (const Case &each : {Case{0, 1, u"sh0001.bmp"_s}, Case{12, 1, u"sh0013.bmp"_s},
                             Case{990, 10, u"sh1000.bmp"_s}, Case{9999, 1, u"sh10000.bmp"_s}}) {
        state.PageNumberBase = each.base;
        state.ShotCounter = each.counter;
        EXPECT_EQ(files.nextSnapshotFile(), inProject(each.name));
    }
}

TEST_F(SnapshotTest, AWindowShotIsSavedAndRecordedRelativeToTheWindow)
{
    state.PointerX = 150;
    state.PointerY = 420;
    state.RightClickPending = true;
    state.RightClickX = 110;
    state.RightClickY = 405;
    files.mkPic();

    EXPECT_EQ(ImageFile::load(inProject(u"sh0001.bmp"_s)).size(), QSize(300, 150));
    EXPECT_EQ(entry(1), u"sh0001.bmp 50 20 OK False True 10 5"_s);
    EXPECT_EQ(state.ShotCounter, 2);
    EXPECT_EQ(state.PointerX, -100);
    EXPECT_FALSE(state.RightClickPending);
    EXPECT_FALSE(grabbing.WideWindow);
    EXPECT_EQ(view.calls, QStringList{u"flash"_s});
    EXPECT_EQ(sound.played, QStringList{state.ApplicationPath + u"/camera.wav"_s});
    EXPECT_EQ(clock.slept, std::vector<int>{100});

    state.AppOptions.OptionFlags[HideStopButtonDuringCapture] = 1;
    files.mkPic();
    EXPECT_EQ(entry(2), u"sh0002.bmp -200 -380 OK False False 10 5"_s); // no click since: outside the picture
    EXPECT_EQ(view.calls.size(), 1);                                    // no flash without a stop bar
}

TEST_F(SnapshotTest, AWholeScreenShotIsReducedAndSaysSo)
{
    state.AppOptions.BigPicSize = 90;
    screen.foreground = QRect(100, 20, 300, 200);
    state.PointerX = 500;
    state.PointerY = 300;
    files.mkPic();
    EXPECT_EQ(ImageFile::load(inProject(u"sh0001.bmp"_s)).size(), QSize(720, 540));
    EXPECT_EQ(entry(1).section(u' ', 0, 4), u"sh0001.bmp 500 300 OK True"_s);

    // A low window that is not wide stays as it is.
    screen.foreground = QRect(100, 400, 300, 150);
    files.mkPic();
    EXPECT_EQ(ImageFile::load(inProject(u"sh0002.bmp"_s)).size(), QSize(300, 150));
    EXPECT_EQ(entry(2).section(u' ', 4, 4), u"False"_s);

    // Wide is what the grab before left behind: a single snapshot of the active window, for instance.
    grabbing.WideWindow = true;
    files.mkPic();
    EXPECT_EQ(ImageFile::load(inProject(u"sh0003.bmp"_s)).size(), QSize(270, 135));
    EXPECT_EQ(entry(3).section(u' ', 4, 4), u"True"_s);
    files.mkPic();
    EXPECT_EQ(entry(4).section(u' ', 4, 4), u"False"_s);
}

TEST_F(SnapshotTest, PositionsAreRelativeToTheMonitorOfTheLastEvent)
{
    screen.monitors = {QRect(0, 0, 300, 600), QRect(300, 0, 500, 600)};
    screen.foreground = QRect();
    grabbing.setLastPointer({450, 100});
    state.PointerX = 450;
    state.PointerY = 100;
    state.RightClickPending = true;
    state.RightClickX = 310;
    state.RightClickY = 90;
    files.mkPic();
    EXPECT_EQ(ImageFile::load(inProject(u"sh0001.bmp"_s)).size(), QSize(500, 600));
    EXPECT_EQ(entry(1), u"sh0001.bmp 150 100 OK False True 10 90"_s);
}

TEST_F(SnapshotTest, AWindowPartlyOffTheScreenIsClippedAndPositionsFollow)
{
    screen.foreground = QRect(-50, 400, 300, 400);
    state.PointerX = 10;
    state.PointerY = 420;
    files.mkPic();
    EXPECT_EQ(ImageFile::load(inProject(u"sh0001.bmp"_s)).size(), QSize(250, 200));
    EXPECT_EQ(entry(1).section(u' ', 1, 2), u"10 20"_s);
}

TEST_F(SnapshotTest, ASnapshotThatCannotBeWrittenLeavesItsNumberFree)
{
    state.ProjectDirectory += u"/missing"_s;
    state.RightClickPending = true;
    EXPECT_THROW(files.mkPic(), RunTimeError);
    EXPECT_EQ(state.ShotCounter, 1);
    EXPECT_TRUE(state.ShotTable.empty());
    EXPECT_FALSE(state.RightClickPending);
    EXPECT_TRUE(sound.played.isEmpty());

    state.FileSystem.createFolder(state.ProjectDirectory);
    files.mkPic();
    EXPECT_EQ(entry(1).section(u' ', 0, 0), u"sh0001.bmp"_s);
}

TEST_F(SnapshotTest, ThePathOfASingleSnapshotIsAsked)
{
    const QByteArray oldHome = qgetenv("HOME");
    qputenv("HOME", folder.path().toUtf8());
    prompter.expectFile(Question::SaveSnapshotAs, u"/tmp/one.bmp"_s);
    EXPECT_EQ(files.getSavePath(), u"/tmp/one.bmp"_s);
    EXPECT_EQ(prompter.asked[0].proposal, u"snapshot1.bmp"_s);
    EXPECT_EQ(prompter.asked[0].directory, folder.path() + u"/Shotly"_s);
    EXPECT_TRUE(state.FileSystem.folderExists(folder.path() + u"/Shotly"_s));
    prompter.expectFile(Question::SaveSnapshotAs, std::nullopt);
    EXPECT_EQ(files.getSavePath(), QString());
    qputenv("HOME", oldHome);
}
