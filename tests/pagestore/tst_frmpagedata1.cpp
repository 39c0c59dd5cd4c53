// The page editor, driven by keys and clicks over a real database.

#include "pagestore/PageEditorFixture.h"

TEST_F(PageEditorTest, WhatIsTypedIsInTheDatabaseAfterSave)
{
    openProject();
    EXPECT_EQ(text(PageTitle) + text(Date) + text(ID), u"one11/23/20261"_s);
    EXPECT_EQ(status(), u"Edit record"_s);
    EXPECT_FALSE(shown(u"cmdAdd"_s) || shown(u"cmdDelete"_s) || shown(u"cmdRefresh"_s));
    type(PageTitle, u"Say \"hello\" & 100%"_s);
    type(PageSummary, u"first line"_s);
    QTest::keyClick(box(PageSummary), Qt::Key_Return);
    QTest::keyClicks(box(PageSummary), u"second"_s);
    type(KeyWord, u"greeting"_s);
    type(PageStatus, u" ok "_s);
    EXPECT_EQ(stored(u"PageTitle"_s, 1), u"one"_s);
    press(u"cmdUpdate"_s);
    EXPECT_EQ(stored(u"PageTitle"_s, 1), u"Say \"hello\" & 100%"_s);
    EXPECT_EQ(stored(u"PageSummary"_s, 1), u"first line\r\nsecond"_s);
    EXPECT_EQ(stored(u"KeyWord"_s, 1), u"greeting"_s);
    EXPECT_EQ(stored(u"PageStatus"_s, 1), u"OK"_s);
    EXPECT_TRUE(shown(u"cmdDelete"_s) && shown(u"cmdRefresh"_s));
    EXPECT_FALSE(shown(u"cmdUpdate"_s));

    type(SubTitle, u"by key"_s);
    QTest::keyClick(box(SubTitle), Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(stored(u"SubTitle"_s, 1), u"by key"_s);
}

TEST_F(PageEditorTest, MovesSaveWhatIsPendingAndStopAtTheEnds)
{
    openProject();
    type(PageTitle, u"changed"_s);
    press(u"cmdNext"_s);
    EXPECT_EQ(stored(u"PageTitle"_s, 1), u"changed"_s);
    EXPECT_EQ(text(PageTitle), u"three"_s); // the deleted one is not among them
    EXPECT_EQ(status(), u"2 of 2 Record(s)"_s);
    press(u"cmdNext"_s);
    EXPECT_EQ(text(PageTitle), u"three"_s);
    press(u"cmdFirst"_s);
    press(u"cmdPrevious"_s);
    EXPECT_EQ(text(PageTitle), u"changed"_s);

    // A value that its column refuses keeps the page.
    type(Date, u"13/45/2003"_s);
    prompter.expectTell(Question::PageRecordFailed);
    press(u"cmdLast"_s);
    EXPECT_EQ(text(Date), u"13/45/2003"_s);
    press(u"cmdCancel"_s);
    EXPECT_EQ(text(Date), u"11/23/2026"_s);
}

TEST_F(PageEditorTest, SaveRefusesWhatIsMissingAndWarnsOfABlockedPage)
{
    openProject();
    type(PageNumber, u""_s);
    prompter.expectTell(Question::BlankNotAllowed);
    press(u"cmdUpdate"_s);
    EXPECT_EQ(prompter.asked.back().text,
              u"Blank is not allowed in Page Number field, please enter data for this field."_s);
    type(PageNumber, u"12"_s);
    type(Date, u"13/45/2003"_s);
    prompter.expectTell(Question::DateInvalid);
    press(u"cmdUpdate"_s);
    EXPECT_EQ(stored(u"PageNumber"_s, 1), u"1"_s);
    type(Date, u"2/29/2024"_s);
    type(PageStatus, u"Hold"_s);
    prompter.expectTell(Question::PageBlocked);
    press(u"cmdUpdate"_s);
    EXPECT_EQ(prompter.asked.back().title, u"One page blocked!"_s);
    EXPECT_EQ(stored(u"PageStatus"_s, 1), u"Hold"_s);
    EXPECT_EQ(stored(u"Date"_s, 1), u"2024-02-29"_s);
    EXPECT_EQ(stored(u"PageNumber"_s, 1), u"12"_s);
}

TEST_F(PageEditorTest, BoxesTakeTheirKeysAndNoMoreThanTheyHold)
{
    openProject();
    type(Date, u"1a/2 -:;3"_s); // silently
    EXPECT_EQ(text(Date), u"1/2:;3"_s);
    prompter.expectTell(Question::NumbersOnly);
    type(OrderInPage, u"4x2"_s);
    EXPECT_EQ(text(OrderInPage), u"42"_s);
    QTest::keyClick(box(OrderInPage), Qt::Key_Return);
    EXPECT_FALSE(box(OrderInPage)->hasFocus());
    QTest::keyClicks(box(ProjectName), u"x"_s);
    EXPECT_EQ(text(ProjectName), u"Demo"_s);

    prompter.expectTell(Question::TextTooLong);
    paste(PageTitle, QString(1'000'000, u'a'));
    EXPECT_EQ(text(PageTitle), QString(255, u'a'));
    EXPECT_TRUE(prompter.asked.back().text.contains(u"for this box is 255."_s));
    EXPECT_LT(prompter.asked.back().text.size(), 2000); // a box that fits on the screen
    const QString body(100'000, u'b');
    paste(PageSummary, body);
    type(Date, u"1/2/2003"_s);
    press(u"cmdUpdate"_s);
    EXPECT_EQ(stored(u"PageSummary"_s, 1), body);
    EXPECT_EQ(stored(u"PageTitle"_s, 1).size(), 255);
}

TEST_F(PageEditorTest, LeavingABoxChecksPathsAndLayout)
{
    openProject();
    type(Layout, u"3"_s);
    prompter.expectTell(Question::LayoutInvalid);
    leave(Layout);
    EXPECT_EQ(text(Layout), u"0"_s);

    type(ScreenShotFilePath, u"/no/such.bmp"_s);
    prompter.expectTell(Question::FilePathMissing);
    leave(ScreenShotFilePath);
    EXPECT_TRUE(box(ScreenShotFilePath)->hasFocus());
    prompter.expectTell(Question::FilePathMissing); // clicking Save leaves it as well
    press(u"cmdUpdate"_s);
    EXPECT_EQ(stored(u"ScreenShotFilePath"_s, 1), QString());
    const QString path = inProject(u"there.bmp"_s);
    write(path, "picture");
    prompter.expectFile(Question::ChoosePageFile, path);
    press(u"cmdBrowse_0"_s);
    EXPECT_EQ(prompter.asked.back().directory, state.ProjectDirectory);
    control<QTabWidget>(u"TabStrip1"_s)->setCurrentIndex(1);
    prompter.expectFile(Question::ChoosePageFile, path + u'2');
    press(u"cmdBrowse_1"_s);
    type(Layout, u"2"_s);
    press(u"cmdUpdate"_s);
    EXPECT_EQ(stored(u"ScreenShotFilePath] || [HTMLFilePath] || [Layout"_s, 1), path + path + u"22"_s);
}

TEST_F(PageEditorTest, ANewPageIsAddedOnceAndItsTabGoes)
{
    openNewPage();
    EXPECT_EQ(status(), u"Add record"_s);
    EXPECT_EQ(text(PageNumber) + text(ProjectName) + text(Date) + text(PageStatus) + text(Layout),
              u"4Demo03/21/2026OK0"_s);
    EXPECT_EQ(text(ProjectDirectory), state.ProjectDirectory);
    type(PageTitle, u"text only"_s);
    press(u"cmdUpdate"_s);
    EXPECT_EQ(value(u"select count(*) from PageData"_s), u"4"_s);
    EXPECT_EQ(stored(u"PageTitle"_s, 4), u"text only"_s);
    EXPECT_EQ(state.EditorLastPageNumber, 4);
    EXPECT_FALSE(state.EditorAddPage);
    EXPECT_EQ(workspace.calls, QStringList{u"deleteTab 7"_s});
    EXPECT_FALSE(form->isVisible());

    workspace.calls.clear();
    openNewPage();
    type(PageTitle, u"never"_s);
    press(u"cmdCancel"_s);
    EXPECT_EQ(value(u"select count(*) from PageData"_s), u"4"_s);
    EXPECT_EQ(workspace.calls, QStringList{u"deleteTab 7"_s});
}

TEST_F(PageEditorTest, ClosingAsksOnlyForWhatTheUserHasTyped)
{
    openProject();
    EXPECT_TRUE(form->close()); // nothing to ask about

    openProject();
    type(PageTitle, u"kept"_s);
    prompter.expectAsk(Question::SavePendingPage, Answer::Cancel);
    EXPECT_FALSE(form->close());
    EXPECT_EQ(text(PageTitle), u"kept"_s);
    type(Date, u"never"_s);
    prompter.expectAsk(Question::SavePendingPage, Answer::Yes);
    prompter.expectTell(Question::DateInvalid);
    EXPECT_FALSE(form->close()); // what cannot be saved keeps it open
    type(Date, u"1/1/2026"_s);
    prompter.expectAsk(Question::SavePendingPage, Answer::Yes);
    EXPECT_TRUE(form->close());
    EXPECT_EQ(stored(u"PageTitle"_s, 1), u"kept"_s);

    openProject();
    type(PageTitle, u"dropped"_s);
    prompter.expectAsk(Question::SavePendingPage, Answer::No);
    EXPECT_TRUE(form->close());
    EXPECT_EQ(stored(u"PageTitle"_s, 1), u"kept"_s);
}

TEST_F(PageEditorTest, DeleteAndRefreshWorkOnTheTable)
{
    openProject();
    press(u"cmdUpdate"_s);
    execute(u"update PageData set PageTitle=\"elsewhere\" where ID=1"_s);
    press(u"cmdRefresh"_s);
    EXPECT_EQ(text(PageTitle), u"elsewhere"_s);
    press(u"cmdDelete"_s); // no question
    EXPECT_EQ(text(PageTitle), u"three"_s);
    EXPECT_EQ(status(), u"1 of 1 Record(s)"_s);
    type(PageTitle, u"pending"_s);
    prompter.expectTell(Question::PageRecordFailed); // nothing typed is lost by it
    press(u"cmdRefresh"_s);
    EXPECT_EQ(text(PageTitle), u"pending"_s);
    press(u"cmdDelete"_s);
    EXPECT_EQ(value(u"select count(*) from PageData"_s), u"1"_s);
    EXPECT_EQ(text(PageTitle), QString());
    QTest::keyClicks(box(PageTitle), u"x"_s);
    EXPECT_EQ(text(PageTitle), QString()) << "there is no page to write to";
}

TEST_F(PageEditorTest, AJumpToNoPageStandsBehindTheLastUntilTheUserMoves)
{
    execute(u"update PageData set HTMLFilePath=\"/g/three.htm\" where ID=3"_s);
    state.EditorJumpToPage = true;
    state.EditorPageId = -1;
    open();
    EXPECT_EQ(text(PageTitle) + text(ID), QString());
    press(u"cmdPrevious"_s);
    EXPECT_EQ(text(PageTitle), u"three"_s);
    EXPECT_EQ(status(), u"3 of 3 Record(s)"_s);
    control<QTabWidget>(u"TabStrip1"_s)->setCurrentIndex(1);
    EXPECT_EQ(text(HTMLFilePath), u"/g/three.htm"_s); // though the rows are opened without it
    press(u"cmdViewHTML"_s);
    EXPECT_EQ(state.ContentsPagePath, u"/g/three.htm"_s);
    EXPECT_EQ(workspace.calls, QStringList{u"contents"_s});
}

TEST_F(PageEditorTest, SpellingIsCheckedInTheYellowBoxesOfTheTab)
{
    openProject();
    spelling.present = false;
    prompter.expectTell(Question::SpellingNotInstalled);
    press(u"cmdSpellCheck"_s);
    EXPECT_FALSE(state.WordInstalled);
    spelling.present = true;
    type(PageTitle, u"teh title"_s);
    type(PageSummary, u"teh body"_s);
    type(Note2, u"teh note"_s);
    type(Chapter, u"teh chapter"_s);
    control<QTabWidget>(u"TabStrip1"_s)->setCurrentIndex(0);
    spelling.cancelAt = u"teh title"_s;
    press(u"cmdSpellCheck"_s); // broken off: nothing is said to be completed
    EXPECT_EQ(text(PageTitle), u"teh title"_s);
    spelling.cancelAt.clear();
    spelling.checked.clear();
    prompter.expectTell(Question::SpellingCompleted);
    press(u"cmdSpellCheck"_s);
    EXPECT_EQ(spelling.checked, (QStringList{u"teh title"_s, u"teh body"_s, u"teh note"_s}));
    EXPECT_EQ(text(PageTitle), u"the title"_s);
    EXPECT_EQ(text(Chapter), u"teh chapter"_s);
    press(u"cmdUpdate"_s);
    EXPECT_EQ(stored(u"PageSummary"_s, 1), u"the body"_s);
    control<QTabWidget>(u"TabStrip1"_s)->setCurrentIndex(1);
    prompter.expectTell(Question::SpellingCompleted);
    press(u"cmdSpellCheck"_s);
    EXPECT_EQ(text(Chapter), u"the chapter"_s);
    QTest::keyClick(box(Chapter), Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(stored(u"Chapter"_s, 1), u"the chapter"_s);
    EXPECT_EQ(state.SpellCheckText, u"the chapter"_s);
}

TEST_F(PageEditorTest, ADatabaseThatCannotBeReadOpensNoEditorAndLosesNothingThatIsTyped)
{
    openProject();
    type(PageTitle, u"typed"_s);
    const QByteArray bytes = read(state.DatabasePath);
    write(state.DatabasePath, QByteArray("This is no database.\n").repeated(900));
    prompter.expectTell(Question::PageRecordFailed);
    press(u"cmdUpdate"_s);
    EXPECT_THROW(frmPageData1({state, pages, prompter, workspace, programs, spelling, clock, word}),
                 RunTimeError);
    write(state.DatabasePath, bytes);
    press(u"cmdUpdate"_s);
    EXPECT_EQ(stored(u"PageTitle"_s, 1), u"typed"_s);
}
