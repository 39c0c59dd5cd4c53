// The programs and screens that the page editor opens.

#include "pagestore/PageEditorFixture.h"

TEST_F(PageEditorTest, TheEditButtonOpensTheWordFile)
{
    execute(u"update PageData set WordFilePath=\"/g/three.doc\""_s);
    openProject();
    control<QTabWidget>(u"TabStrip1"_s)->setCurrentIndex(1);
    press(u"cmdWord"_s);
    EXPECT_EQ(word.log, (QStringList{u"visible 1"_s, u"open three.doc"_s}));
    word.failsToOpen = RunTimeError(RunTimeError::WordFileMissing, u"gone"_s);
    prompter.expectTell(Question::WordFileFailed);
    press(u"cmdWord"_s);
    EXPECT_EQ(prompter.asked.back().text, u"File does not exist: /g/three.doc Error Number: 4198"_s);
}

TEST_F(PageEditorTest, ThePaintButtonSaysWhatIsMissingAndOpensTheRest)
{
    openProject();
    prompter.expectTell(Question::ImagePathEmpty);
    press(u"cmdOpenPic"_s);
    execute(u"update PageData set ScreenShotFilePath=\"%1\""_s.arg(inProject(u"a.bmp"_s)));
    press(u"cmdUpdate"_s);
    press(u"cmdRefresh"_s);
    prompter.expectTell(Question::ImageFileMissing);
    press(u"cmdOpenPic"_s);
    write(inProject(u"a.bmp"_s), "picture");
    QTest::mouseDClick(control<QLabel>(u"lblThumbnail"_s), Qt::LeftButton);
    EXPECT_EQ(state.CurrentImagePath, inProject(u"a.bmp"_s));
    press(u"cmdPaintEditor"_s);
    EXPECT_EQ(workspace.calls, (QStringList{u"viewer"_s, u"paint "_s + inProject(u"a.bmp"_s)}));
    state.AppOptions.OptionFlags[PaintTool] = 1;
    press(u"cmdOpenPic"_s);
    EXPECT_EQ(programs.painted, QStringList{u" "_s + inProject(u"a.bmp"_s)});
}
