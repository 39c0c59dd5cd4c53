#include "capture/CaptureFixture.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
class DisplaySwitchTest : public testing::Test, protected CaptureFixture
{
protected:
    const QSize small{800, 600};

    DisplaySwitchTest() { state.AppOptions.OptionFlags[ChangeResolution] = 1; }

    QString stored(const QString &key) const { return settings.value(u"Display"_s, key); }
    void store(const QString &width, const QString &height)
    {
        settings.setValue(u"Display"_s, u"resolutionX"_s, width);
        settings.setValue(u"Display"_s, u"resolutionY"_s, height);
    }
    /// The next start of the program, on the display as it is.
    DisplaySwitch nextStart()
    {
        return DisplaySwitch({state, displayModes, settings, prompter, folder.path()});
    }
    bool offer(Answer answer)
    {
        prompter.expectAsk(Question::ChangeDisplay, answer);
        if (answer == Answer::Yes && state.IsWinXPOrLater)
            prompter.expectTell(Question::RestartForDisplay);
        return display.OfferDisplaySwitch();
    }
};
} // namespace

TEST_F(DisplaySwitchTest, NothingIsOfferedWhereNothingCanBeGained)
{
    displayModes.size = {800, 1280};
    EXPECT_FALSE(display.OfferDisplaySwitch());
    displayModes.size = {1920, 1080};
    displayModes.modes = {{1920, 1080}, {640, 480}};
    EXPECT_FALSE(display.OfferDisplaySwitch()) << "there is no such mode";
    displayModes.modes = {small};
    state.AppOptions.OptionFlags[ChangeResolution] = 0;
    EXPECT_FALSE(display.OfferDisplaySwitch());
    EXPECT_EQ(stored(u"resolutionX"_s), QString());
    EXPECT_TRUE(displayModes.changes.empty());
}

TEST_F(DisplaySwitchTest, AfterYesTheNextStartOwesTheDisplayItsSize)
{
    EXPECT_TRUE(offer(Answer::Yes));
    EXPECT_EQ(prompter.asked[0].title, u"Change Display Resolution?"_s);
    EXPECT_TRUE(prompter.asked[1].text.endsWith(u"\r\n\r\nPlease RE-RUN Shotly, now."_s));
    EXPECT_EQ(displayModes.size, small);
    EXPECT_EQ(stored(u"resolutionX"_s) + u'x' + stored(u"resolutionY"_s), u"1920x1080"_s);

    state.DisplaySwitched = false;
    DisplaySwitch second = nextStart();
    second.settle();
    EXPECT_EQ(displayModes.size, small) << "this is the start that was asked for";
    EXPECT_FALSE(second.OfferDisplaySwitch());
    DisplaySwitch beside = nextStart();
    beside.settle();
    EXPECT_EQ(displayModes.size, small) << "the second one is still running";
    state.AppOptions.ShowLessMessage = 0;
    prompter.expectTell(Question::DisplayChangesBack);
    second.RestoreDisplay();
    EXPECT_EQ(prompter.asked.back().text + prompter.asked.back().title,
              u"Now change display backChanage Diplay Back"_s);
    EXPECT_EQ(displayModes.size, QSize(1920, 1080));
    EXPECT_EQ(stored(u"resolutionX"_s), u"0"_s);
    second.RestoreDisplay();
    nextStart().settle();
    EXPECT_EQ(displayModes.changes.size(), 2U) << "nothing is owed any more";
}

TEST_F(DisplaySwitchTest, AStartAfterADeadOneMakesTheDisplayLargeAgain)
{
    EXPECT_TRUE(offer(Answer::Yes));
    {
        DisplaySwitch second = nextStart();
        second.settle(); // and dies
    }
    state.AppOptions.ShowLessMessage = 0;
    nextStart().settle();
    EXPECT_EQ(displayModes.size, QSize(1920, 1080)) << "without a message";
    EXPECT_EQ(stored(u"resolutionX"_s), u"0"_s);
}

TEST_F(DisplaySwitchTest, NoLeavesWhatIsStored)
{
    EXPECT_FALSE(offer(Answer::No));
    EXPECT_FALSE(state.DisplaySwitched);
    EXPECT_EQ(stored(u"resolutionX"_s), u"1920"_s);
    display.RestoreDisplay();
    EXPECT_EQ(displayModes.changes, std::vector{QSize(1920, 1080)});
    for (const QString &width : {u"800"_s, u"many"_s, u"-5000"_s}) {
        store(width, u"600"_s);
        display.RestoreDisplay();
    }
    EXPECT_EQ(displayModes.changes.size(), 1U);
}

TEST_F(DisplaySwitchTest, OnOlderSystemsTheRunGoesOnAndItsStopSwitchesBack)
{
    state.IsWinXPOrLater = false;
    workspace.text = u"First"_s;
    prompter.expectAsk(Question::ChangeDisplay, Answer::Yes);
    begin();
    EXPECT_TRUE(state.CaptureRunning && state.DisplaySwitched);
    EXPECT_EQ(state.OriginalScreenWidth, 1920);
    EXPECT_EQ(displayModes.size, small);
    run.stop(0);
    EXPECT_EQ(displayModes.size, QSize(1920, 1080));
    EXPECT_FALSE(state.DisplaySwitched);

    state.IsWinXPOrLater = true;
    workspace.text = u"Second"_s;
    prompter.expectAsk(Question::ChangeDisplay, Answer::Yes);
    prompter.expectTell(Question::RestartForDisplay);
    begin();
    EXPECT_FALSE(state.CaptureRunning);
    EXPECT_EQ(workspace.calls.last(), u"end"_s);
    EXPECT_TRUE(QDir(state.ApplicationPath).entryList({u"run-*.journal"_s}).isEmpty());
}

TEST_F(DisplaySwitchTest, ADisplayThatRefusesOrWantsARestart)
{
    displayModes.answer = DisplayModes::Change::Refused;
    prompter.expectAsk(Question::ChangeDisplay, Answer::Yes);
    prompter.expectTell(Question::DisplayRefused);
    EXPECT_FALSE(display.OfferDisplaySwitch()) << "nobody must start the program again for nothing";
    EXPECT_EQ(prompter.asked[1].text, u"The display refuses the size of 800x600. It stays as it is."_s);
    EXPECT_FALSE(state.DisplaySwitched);
    EXPECT_EQ(stored(u"resolutionX"_s), u"0"_s) << "nothing is owed";
    prompter.asked.clear();
    displayModes.answer = DisplayModes::Change::NeedsRestart;
    prompter.expectAsk(Question::RestartComputer, Answer::Yes);
    EXPECT_TRUE(display.SetDisplayMode(800, 600));
    EXPECT_EQ(prompter.asked[0].text,
              u"You must restart your computer to apply these changes.\r\n\r\nRestart now?"_s);
    prompter.expectAsk(Question::RestartComputer, Answer::No);
    EXPECT_FALSE(display.SetDisplayMode(800, 600));
}

TEST_F(DisplaySwitchTest, WithoutSettingsItStaysLarge)
{
    UserSettings nowhere(u"/proc/shotly/settings.ini"_s);
    DisplaySwitch careful({state, displayModes, nowhere, prompter, folder.path()});
    prompter.expectTell(Question::DisplayNotRemembered);
    EXPECT_FALSE(careful.OfferDisplaySwitch());
    EXPECT_TRUE(prompter.asked[0].text.contains(u"/proc/shotly/settings.ini"_s));
    EXPECT_FALSE(careful.OfferDisplaySwitch()) << "it is said once";
    careful.RestoreDisplay();
    EXPECT_TRUE(displayModes.changes.empty());
}
