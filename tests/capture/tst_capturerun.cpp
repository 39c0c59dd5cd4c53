#include "CaptureFixture.h"

#include "platform/ImageFile.h"
#include "platform/VirtualKeys.h"
#include "settings/OptionsStore.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
class CaptureRunTest : public ::testing::Test, protected CaptureFixture
{
protected:
    const QString project = u"Demo"_s;

    void addPages(int count)
    {
        for (int i = 1; i <= count; ++i)
            execute(u"Insert into PageData(ProjectName,ScreenShotFilePath,PageStatus, PageNumber, [Date], "
                    "ProjectDirectory) values(\"Demo\",\"%1\",\"OK\",%2, #03/21/2026#,\"%3\")"_s
                        .arg(inProject(u"old%1.bmp"_s.arg(i)))
                        .arg(i)
                        .arg(state.ProjectDirectory));
    }
    void newProject(const QString &name)
    {
        workspace.text = name;
        workspace.names.removeAll(name);
    }
};
} // namespace

TEST_F(CaptureRunTest, AnEmptyOrForbiddenNameStartsNothing)
{
    for (const QString &name : {u""_s, u"   "_s}) {
        workspace.text = name;
        prompter.expectTell(Question::ProjectNameMissing);
        begin();
    }
    EXPECT_EQ(prompter.asked[0].title, u"Enter or Select a Project Name"_s);
    EXPECT_EQ(prompter.asked[0].text,
              u"Please enter a new project name into the pink\r\n'Multi-Snapshot Project' drop "
              "down list\r\n\r\nor\r\n\r\nselect an existing project from the "
              "pink\r\n'Multi-Snapshot Project' list."_s);
    for (const QString &name : {u"two words"_s, u"../up"_s, u"ä"_s}) {
        workspace.text = name;
        prompter.expectTell(Question::ProjectNameCharacter);
        begin();
    }
    EXPECT_FALSE(state.CaptureRunning);
    EXPECT_FALSE(hook.running());
    EXPECT_TRUE(workspace.calls.isEmpty());
}

TEST_F(CaptureRunTest, ANewProjectGetsADirectoryAndAnEntryInTheList)
{
    state.AppOptions.ShowLessMessage = 0;
    state.PageNumberBase = 40; // left by an earlier run
    newProject(u"fresh-1"_s);
    prompter.expectTell(Question::SnapshotsWillBeSavedAt);
    begin();

    const QString directory = state.AppOptions.BaseDirectory + u"/fresh-1"_s;
    EXPECT_EQ(prompter.asked[0].text, u"All screen-shots will be saved at "_s + directory);
    EXPECT_TRUE(state.FileSystem.folderExists(directory));
    EXPECT_TRUE(workspace.names.contains(u"fresh-1"_s));
    EXPECT_EQ(OptionsStore::LoadOptions(state.OptionsFilePath).ProjectName, u"fresh-1"_s);
    EXPECT_TRUE(state.CaptureRunning);
    EXPECT_FALSE(state.TrayAllowed);
    EXPECT_TRUE(hook.running());
    EXPECT_EQ(view.calls, (QStringList{u"show"_s, u"tray"_s}));
    EXPECT_TRUE(workspace.calls.contains(u"minimise"_s));

    click({150, 420});
    EXPECT_EQ(entry(1).section(u' ', 0, 2), u"sh0001.bmp 50 20"_s);
}

TEST_F(CaptureRunTest, EveryAnswerToKeepExistingPages)
{
    addPages(7);
    prompter.expectAsk(Question::KeepExistingPages, Answer::Cancel);
    begin();
    EXPECT_FALSE(state.CaptureRunning);
    EXPECT_EQ(prompter.asked[0].title, u"Keep existing pages?"_s);
    EXPECT_TRUE(prompter.asked[0].text.contains(u"The project diretory is:\r\n\r\n"_s +
                                                state.ProjectDirectory + u"\r\n\r\nClick Yes"_s));

    prompter.expectAsk(Question::KeepExistingPages, Answer::Yes);
    begin();
    ASSERT_TRUE(state.CaptureRunning);
    click({150, 420});
    EXPECT_EQ(entry(1).section(u' ', 0, 0), u"sh0008.bmp"_s);
    run.stop(0);
    EXPECT_EQ(pageNumbers(), u"1 2 3 4 5 6 7 8"_s);

    write(inProject(u"sh0001.htm"_s), "old page");
    prompter.expectAsk(Question::KeepExistingPages, Answer::No);
    begin();
    ASSERT_TRUE(state.CaptureRunning);
    EXPECT_EQ(filesOf(state.ProjectDirectory), QString());
    EXPECT_EQ(filesOf(inProject(u"oldDocument"_s)), u"sh0001.htm sh0008.bmp"_s);
    EXPECT_TRUE(workspace.calls.contains(u"closeWebSearch"_s));
    click({150, 420});
    EXPECT_EQ(entry(1).section(u' ', 0, 0), u"sh0001.bmp"_s);
    run.stop(0);
    EXPECT_EQ(pageNumbers(), u"1"_s);
}

TEST_F(CaptureRunTest, WithoutTheDatabaseNoRunTakesTheNumbersOfExistingPages)
{
    addPages(3);
    const QString connection = state.ConnectionString;
    for (const Answer answer : {Answer::Yes, Answer::No}) {
        prompter.expectAsk(Question::KeepExistingPages, answer);
        prompter.whileOpen([this] { state.ConnectionString = u"Data Source=/gone.mdb"_s; });
        EXPECT_THROW(begin(), RunTimeError);
        EXPECT_FALSE(state.CaptureRunning);
        state.ConnectionString = connection;
        EXPECT_EQ(pageNumbers(), u"1 2 3"_s);
    }
}

TEST_F(CaptureRunTest, AProjectWhoseFolderHasGoneGoesOnBehindItsLastPage)
{
    addPages(3);
    QDir(state.ProjectDirectory).removeRecursively();
    prompter.expectTell(Question::ProjectDirectoryMissing);
    begin();
    ASSERT_TRUE(state.CaptureRunning);
    EXPECT_EQ(state.PageNumberBase, 3);
    EXPECT_TRUE(state.FileSystem.folderExists(state.ProjectDirectory));
}

TEST_F(CaptureRunTest, ClicksAndKeysThatTakeSnapshots)
{
    newProject(u"keys"_s);
    begin();
    click({150, 420});
    click({160, 430}, 4); // middle
    click({170, 440}, 2); // right: marks the next one
    EXPECT_EQ(state.ShotCounter, 3);
    click({180, 450});
    EXPECT_EQ(entry(2), u"sh0002.bmp 60 30 OK False False 0 0"_s);
    EXPECT_EQ(entry(3), u"sh0003.bmp 80 50 OK False True 70 40"_s);

    key(InputEvent::Kind::KeyUp, VirtualKey::Tab);
    key(InputEvent::Kind::KeyUp, VirtualKey::Return);
    EXPECT_EQ(state.ShotCounter, 4);
    state.AppOptions.SnapShotByPressTab = 1;
    key(InputEvent::Kind::KeyUp, VirtualKey::Tab);
    key(InputEvent::Kind::KeyUp, VirtualKey::Return);
    EXPECT_EQ(state.ShotCounter, 5);
    state.AppOptions.SnapShotByPressReturn = 1;
    key(InputEvent::Kind::KeyUp, VirtualKey::Return);
    key(InputEvent::Kind::KeyUp, VirtualKey::A);
    key(InputEvent::Kind::KeyDown, VirtualKey::Tab);
    EXPECT_EQ(state.ShotCounter, 6);
    EXPECT_EQ(entry(5).section(u' ', 1, 2), u"-200 -750"_s); // no click since: outside the picture
}

TEST_F(CaptureRunTest, StopMarksRegistersAndShowsTheFirstPage)
{
    newProject(u"stop"_s);
    begin();
    click({150, 420});
    click({350, 500});
    run.stop(0);
    EXPECT_FALSE(state.CaptureRunning);
    EXPECT_TRUE(state.TrayAllowed);
    EXPECT_FALSE(hook.running());
    EXPECT_EQ(view.calls.last(), u"hide"_s);
    EXPECT_EQ(pageNumbers(), u"1 2"_s);
    EXPECT_EQ(ImageFile::load(state.ShotTable[2][ShotPath]).pixel(250, 100),
              qRgb(0, 0, 0)); // the arrow's tip
    EXPECT_EQ(state.CurrentImagePath, state.AppOptions.BaseDirectory + u"/stop/sh0001.bmp"_s);
    EXPECT_EQ(workspace.status, u"2 snapshots are pages of the project stop."_s);
    EXPECT_TRUE(workspace.calls.contains(u"viewer first"_s));

    run.stop(0); // nothing is on: nothing happens
    EXPECT_EQ(pageNumbers(), u"1 2"_s);
}

TEST_F(CaptureRunTest, TheClickThatChoseStopIsASnapshotAndWhatCameLaterIsNot)
{
    newProject(u"order"_s);
    begin();
    hook.send({InputEvent::Kind::MouseUp, 0, 1, 0, {150, 420}, 50});
    hook.send({InputEvent::Kind::MouseUp, 0, 1, 0, {20, 10}, 60});
    hook.send({InputEvent::Kind::MouseUp, 0, 1, 0, {300, 500}, 70});
    run.stop(60);
    EXPECT_EQ(pageNumbers(), u"1 2"_s);
}

TEST_F(CaptureRunTest, EscapeEndsTheSnapshotsAndStopTheRun)
{
    newProject(u"escape"_s);
    begin();
    click({150, 420});
    prompter.expectTell(Question::CaptureWillStop);
    prompter.whileOpen([this] { click({200, 450}); }); // the hook is left running while the box is open
    key(InputEvent::Kind::KeyDown, VirtualKey::Escape);
    EXPECT_EQ(prompter.asked[0].text, u"Please wait, the multi Screen Capture will stop now."_s);
    EXPECT_FALSE(hook.running());
    EXPECT_TRUE(state.CaptureRunning);
    EXPECT_EQ(view.calls.count(u"hide"_s), 0);
    run.stop(0);
    EXPECT_EQ(pageNumbers(), u"1 2"_s);
}

TEST_F(CaptureRunTest, StopWhileTheEscapeBoxIsOpenEndsTheRunOnce)
{
    newProject(u"both"_s);
    begin();
    click({150, 420});
    prompter.expectTell(Question::CaptureWillStop);
    prompter.whileOpen([this] { run.stop(0); });
    key(InputEvent::Kind::KeyDown, VirtualKey::Escape);
    EXPECT_FALSE(state.CaptureRunning);
    EXPECT_EQ(pageNumbers(), u"1"_s);
}

TEST_F(CaptureRunTest, BeginDuringARunBringsTheStopBarForward)
{
    newProject(u"twice"_s);
    begin();
    click({150, 420});
    begin();
    EXPECT_EQ(view.calls.last(), u"raise"_s);
    EXPECT_EQ(state.ShotCounter, 2);
}

TEST_F(CaptureRunTest, WithoutAStopBarNoneIsShown)
{
    state.AppOptions.OptionFlags[HideStopButtonDuringCapture] = 1;
    newProject(u"bare"_s);
    begin();
    click({150, 420});
    run.stop(0);
    EXPECT_EQ(view.calls, (QStringList{u"tray"_s, u"hide"_s}));
    EXPECT_EQ(pageNumbers(), u"1"_s);

    // Shown when the run began, so it goes, whatever the option has become.
    state.AppOptions.OptionFlags[HideStopButtonDuringCapture] = 0;
    newProject(u"shown"_s);
    begin();
    state.AppOptions.OptionFlags[HideStopButtonDuringCapture] = 1;
    run.stop(0);
    EXPECT_EQ(view.calls.last(), u"hide"_s);
}

TEST_F(CaptureRunTest, AFailedSnapshotIsToldAndTheRunGoesOn)
{
    newProject(u"fault"_s);
    begin();
    click({150, 420});
    QDir(state.ProjectDirectory).removeRecursively();
    prompter.expectTell(Question::CommandFailed);
    prompter.whileOpen([this] {
        EXPECT_EQ(hook.suspended, 1);
        click({10, 10}); // on the box: no snapshot
    });
    click({160, 430});
    EXPECT_TRUE(prompter.asked[0].text.contains(u"sh0002.bmp"_s));
    state.FileSystem.createFolder(state.ProjectDirectory);
    click({170, 440});
    EXPECT_EQ(entry(2).section(u' ', 0, 2), u"sh0002.bmp 70 40"_s);

    // The first snapshot's file has gone: it cannot be marked, but both pages are there.
    prompter.expectTell(Question::SnapshotsNotMarked);
    run.stop(0);
    EXPECT_EQ(pageNumbers(), u"1 2"_s);
}

TEST_F(CaptureRunTest, StopIsNotLostWhereItsOwnSnapshotFails)
{
    newProject(u"fault"_s);
    begin();
    click({150, 420});
    const QString away = state.ProjectDirectory + u"-away"_s;
    ASSERT_TRUE(QDir().rename(state.ProjectDirectory, away));
    view.waitingInput = [this, &away] {
        ASSERT_TRUE(QDir().rename(away, state.ProjectDirectory));
        run.stop(0);
    };
    prompter.expectTell(Question::CommandFailed);
    click({10, 10});
    EXPECT_TRUE(prompter.asked[0].text.startsWith(u"A snapshot could not be taken.\r\n"_s));
    EXPECT_FALSE(state.CaptureRunning || hook.running());
    EXPECT_EQ(hook.suspended, 0);
    EXPECT_EQ(pageNumbers(), u"1"_s);
}

TEST_F(CaptureRunTest, PagesThatAreMissingAfterwardsAreTold)
{
    newProject(u"lost"_s);
    begin();
    click({150, 420});
    state.ConnectionString = u"Data Source="_s + folder.path() + u"/gone.mdb"_s;
    prompter.expectTell(Question::PagesNotRegistered);
    prompter.expectTell(Question::DatabaseUnreachable); // looking for the first page
    run.stop(0);
    EXPECT_TRUE(prompter.asked[0].text.startsWith(u"1 of 1 snapshots"_s));
    EXPECT_TRUE(prompter.asked[0].text.contains(u"gone.mdb"_s)) << "the reason";
    EXPECT_EQ(journals().size(), 1); // for the next stop or start

    state.ConnectionString = u"Data Source="_s + state.DatabasePath;
    newProject(u"next"_s);
    begin();
    click({160, 430});
    prompter.expectAsk(Question::RegisterAbandonedRun, Answer::Yes);
    run.stop(0);
    EXPECT_TRUE(prompter.asked.back().text.startsWith(u"A capture of the project lost on 03/21/2026"_s));
    EXPECT_EQ(pageNumbers(), u"1 1"_s);
    EXPECT_TRUE(journals().isEmpty());
}

TEST_F(CaptureRunTest, AnInterruptedRunOfTheProjectIsSettledBeforeItsPagesAreNumbered)
{
    addPages(2);
    prompter.expectAsk(Question::KeepExistingPages, Answer::Yes);
    begin();
    click({150, 420});
    click({160, 430});
    // The program dies here: its journal stays, its lock goes.
    const QString journal = state.ApplicationPath + u'/' + journals().first();
    const QString copy = folder.path() + u"/left"_s;
    ASSERT_TRUE(QFile::copy(journal, copy));
    const QByteArray picture = read(state.ShotTable[1][ShotPath]);
    run.stop(0);
    execute(u"delete from PageData where PageNumber > 2"_s);
    write(inProject(u"sh0003.bmp"_s), picture);
    ASSERT_TRUE(QFile::rename(copy, journal));

    prompter.expectAsk(Question::RegisterAbandonedRun, Answer::Yes);
    prompter.expectAsk(Question::KeepExistingPages, Answer::Yes);
    begin();
    EXPECT_EQ(prompter.asked[prompter.asked.size() - 2].title, u"Unfinished capture: 2 snapshots"_s);
    EXPECT_EQ(state.PageNumberBase, 4);
    click({170, 440});
    EXPECT_EQ(entry(1).section(u' ', 0, 0), u"sh0005.bmp"_s);
    run.stop(0);
    EXPECT_EQ(pageNumbers(), u"1 2 3 4 5"_s);
    EXPECT_TRUE(journals().isEmpty());
}

TEST_F(CaptureRunTest, WithoutAJournalNoRunBegins)
{
    state.ApplicationPath = u"/proc/nowhere"_s;
    newProject(u"unsafe"_s);
    prompter.expectTell(Question::CaptureNotPossible);
    begin();
    EXPECT_FALSE(state.CaptureRunning);
    EXPECT_FALSE(hook.running());
}

TEST_F(CaptureRunTest, AHookThatCannotStartLeavesNothingRunning)
{
    hook.failsToStart = true;
    newProject(u"blind"_s);
    prompter.expectTell(Question::CaptureNotPossible);
    begin();
    EXPECT_EQ(prompter.asked[0].text, u"The display cannot be watched."_s);
    EXPECT_FALSE(state.CaptureRunning);
    EXPECT_TRUE(state.TrayAllowed);
    EXPECT_EQ(view.calls.last(), u"hide"_s);
    EXPECT_EQ(workspace.calls.last(), u"restore"_s);
    EXPECT_TRUE(journals().isEmpty());
}
