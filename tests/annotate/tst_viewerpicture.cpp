#include "ViewerFixture.h"

#include "annotate/ViewerPicture.h"

#include <gtest/gtest.h>
#include <QFileInfo>

#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace
{
class ViewerPictureTest : public ::testing::Test, protected ViewerFixture
{
protected:
    const QString red = addPicture(u"a.bmp"_s, Qt::red, 1);
    const QString blue = addPicture(u"b.bmp"_s, Qt::blue, 2);
    ViewerPicture viewer{{state, pages, prompter}};

    QColor shown() const { return viewer.image().pixelColor(0, 0); }
    void choose(const QString &path)
    {
        EXPECT_EQ(viewer.chooseFile(path, u"x.bmp"_s), ViewerPicture::Choice::Shown);
    }
    /// As a tool does.
    void draw(QColor colour)
    {
        viewer.canvas().fill(colour);
        viewer.touch();
        viewer.SetImageBuffer();
    }
    QString status(const QString &path)
    {
        return value(u"select PageStatus from PageData where ScreenShotFilePath=\"%1\""_s.arg(path));
    }
};
} // namespace

TEST_F(ViewerPictureTest, ItBeginsWithAWhiteSheet)
{
    EXPECT_EQ(viewer.image().size(), QSize(200, 200));
    EXPECT_EQ(shown(), QColor(Qt::white));
    viewer.UndoImage();
    EXPECT_EQ(shown(), QColor(Qt::white)) << "the history has it, too";
}

TEST_F(ViewerPictureTest, ARequestedPictureIsInTheHistory)
{
    state.CurrentImagePath = red;
    EXPECT_FALSE(viewer.loadRequested()) << "nobody has asked";
    state.ImageFileRequested = true;
    EXPECT_TRUE(viewer.loadRequested());
    EXPECT_FALSE(state.ImageFileRequested);
    EXPECT_EQ(viewer.path(), red);
    EXPECT_EQ(shown(), QColor(Qt::red));
    // A text that is taken back before anything else was drawn.
    viewer.canvas().fill(Qt::green);
    state.TextRetry = true;
    viewer.UndoImage();
    EXPECT_EQ(shown(), QColor(Qt::red));
    state.TextRetry = false;
    draw(Qt::green);
    viewer.UndoImage();
    EXPECT_EQ(shown(), QColor(Qt::red)) << "the first drawing can be undone";
}

TEST_F(ViewerPictureTest, ARequestThatCannotBeFulfilledIsGivenUp)
{
    state.ImageFileRequested = true;
    state.CurrentImagePath = inProject(u"none.bmp"_s);
    EXPECT_FALSE(viewer.loadRequested());
    EXPECT_FALSE(state.ImageFileRequested);
    EXPECT_EQ(state.CurrentImagePath, inProject(u"none.bmp"_s)) << "its page can still be marked";

    write(inProject(u"bad.bmp"_s), "BM no picture");
    state.ImageFileRequested = true;
    state.CurrentImagePath = inProject(u"bad.bmp"_s);
    prompter.expectTell(Question::ViewerFailed);
    EXPECT_FALSE(viewer.loadRequested());
    EXPECT_EQ(shown(), QColor(Qt::white));
}

TEST_F(ViewerPictureTest, ChoosingAFileAsksForUnsavedChanges)
{
    choose(red);
    EXPECT_EQ(state.CurrentImagePath, red);
    choose(blue); // unchanged: no question
    draw(Qt::green);

    prompter.expectAsk(Question::SaveImageChanges, Answer::Cancel);
    EXPECT_EQ(viewer.chooseFile(red, u"b.bmp"_s), ViewerPicture::Choice::Cancelled);
    EXPECT_EQ(prompter.asked.back().title, u"Save Changes?"_s);
    EXPECT_TRUE(viewer.dirty());
    EXPECT_EQ(shown(), QColor(Qt::green));
    EXPECT_EQ(viewer.path(), blue);

    prompter.expectAsk(Question::SaveImageChanges, Answer::Yes);
    prompter.expectFile(Question::SaveImageAs, blue);
    EXPECT_EQ(viewer.chooseFile(red, u" b.bmp "_s), ViewerPicture::Choice::Shown);
    EXPECT_EQ(prompter.asked.back().proposal, u"b.bmp"_s);
    EXPECT_EQ(prompter.asked.back().directory, state.AppOptions.BaseDirectory + u"/Demo"_s);
    EXPECT_EQ(colourOf(blue), QColor(Qt::green));
    EXPECT_EQ(shown(), QColor(Qt::red));
    EXPECT_FALSE(viewer.dirty());

    draw(Qt::yellow);
    prompter.expectAsk(Question::SaveImageChanges, Answer::No);
    EXPECT_EQ(viewer.chooseFile(blue, u"a.bmp"_s), ViewerPicture::Choice::Shown);
    EXPECT_EQ(colourOf(red), QColor(Qt::red));
    viewer.UndoImage();
    EXPECT_EQ(shown(), QColor(Qt::yellow)) << "the history goes on";
}

TEST_F(ViewerPictureTest, AFileThatCannotBeShownLeavesEverythingAsItWas)
{
    choose(red);
    write(inProject(u"bad.bmp"_s), "BM no picture");
    write(inProject(u"empty.bmp"_s), "");
    for (const QString &name : {u"bad.bmp"_s, u"empty.bmp"_s, u"none.bmp"_s}) {
        prompter.expectTell(Question::ViewerFailed);
        EXPECT_EQ(viewer.chooseFile(inProject(name), u"a.bmp"_s), ViewerPicture::Choice::Unreadable);
        EXPECT_TRUE(prompter.asked.back().text.startsWith(u"Shotly: "_s));
        EXPECT_TRUE(prompter.asked.back().text.contains(name));
        EXPECT_EQ(prompter.asked.back().icon, Icon::Critical);
    }
    EXPECT_EQ(viewer.path(), red);
    EXPECT_EQ(state.CurrentImagePath, red);
    EXPECT_EQ(shown(), QColor(Qt::red));

    // What was not to be saved is still there, so it may be saved after all; what was saved is.
    draw(Qt::green);
    prompter.expectAsk(Question::SaveImageChanges, Answer::No);
    prompter.expectTell(Question::ViewerFailed);
    EXPECT_EQ(viewer.chooseFile(inProject(u"bad.bmp"_s), u"a.bmp"_s), ViewerPicture::Choice::Unreadable);
    EXPECT_TRUE(viewer.dirty());
    prompter.expectAsk(Question::SaveImageChanges, Answer::Yes);
    prompter.expectFile(Question::SaveImageAs, red);
    prompter.expectTell(Question::ViewerFailed);
    EXPECT_EQ(viewer.chooseFile(inProject(u"bad.bmp"_s), u"a.bmp"_s), ViewerPicture::Choice::Unreadable);
    EXPECT_FALSE(viewer.dirty());
}

TEST_F(ViewerPictureTest, SavingWritesTheDrawingAndNothingElse)
{
    choose(red);
    draw(Qt::green);
    prompter.expectFile(Question::SaveImageAs, std::nullopt);
    EXPECT_FALSE(viewer.SaveImage(u"a.bmp"_s));
    EXPECT_FALSE(viewer.dirty());
    EXPECT_EQ(colourOf(red), QColor(Qt::red));

    // Another file that is there already is replaced only when the user means it.
    draw(Qt::green);
    prompter.expectFile(Question::SaveImageAs, blue);
    prompter.expectAsk(Question::ReplaceImageFile, Answer::No);
    EXPECT_FALSE(viewer.SaveImage(u"b.bmp"_s));
    EXPECT_TRUE(viewer.dirty());
    EXPECT_EQ(colourOf(blue), QColor(Qt::blue));
    prompter.expectFile(Question::SaveImageAs, blue);
    prompter.expectAsk(Question::ReplaceImageFile, Answer::Yes);
    EXPECT_TRUE(viewer.SaveImage(u"b.bmp"_s));
    EXPECT_EQ(colourOf(blue), QColor(Qt::green));

    EXPECT_FALSE(viewer.dirty());
    viewer.UndoImage();
    EXPECT_TRUE(viewer.dirty()) << "that is not what was saved";
    prompter.expectFile(Question::SaveImageAs, inProject(u"new.PNG"_s));
    EXPECT_TRUE(viewer.SaveImage(u"b.bmp"_s));
    EXPECT_TRUE(read(inProject(u"new.PNG"_s)).startsWith("\x89PNG"));
    EXPECT_TRUE(read(blue).startsWith("BM"));
}

TEST_F(ViewerPictureTest, WhatCannotBeWrittenStaysUnsaved)
{
    choose(red);
    const QByteArray before = read(red);
    draw(Qt::green);
    const QString nowhere = inProject(u"none/a.bmp"_s);
    prompter.expectFile(Question::SaveImageAs, nowhere);
    prompter.expectTell(Question::SaveImageFailed);
    EXPECT_FALSE(viewer.SaveImage(u"a.bmp"_s));
    EXPECT_TRUE(prompter.asked.back().text.startsWith(u"Cannot save the file. Error number=76 "_s))
        << prompter.asked.back().text.toStdString();
    EXPECT_TRUE(viewer.dirty());

    prompter.expectAsk(Question::SaveImageChanges, Answer::Yes);
    prompter.expectFile(Question::SaveImageAs, nowhere);
    prompter.expectTell(Question::SaveImageFailed);
    EXPECT_EQ(viewer.chooseFile(blue, u"a.bmp"_s), ViewerPicture::Choice::Cancelled);
    EXPECT_EQ(shown(), QColor(Qt::green));

    prompter.expectAsk(Question::SaveImageChangesOnClose, Answer::Yes);
    prompter.expectFile(Question::SaveImageAs, nowhere);
    prompter.expectTell(Question::SaveImageFailed);
    EXPECT_FALSE(viewer.QuerySaveOnClose(u"a.bmp"_s)) << "the viewer stays";
    prompter.expectAsk(Question::SaveImageChangesOnClose, Answer::Yes);
    prompter.expectFile(Question::SaveImageAs, std::nullopt);
    EXPECT_FALSE(viewer.QuerySaveOnClose(u"a.bmp"_s));
    EXPECT_EQ(read(red), before);

    prompter.expectAsk(Question::SaveImageChangesOnClose, Answer::No);
    EXPECT_TRUE(viewer.QuerySaveOnClose(u"a.bmp"_s));
    prompter.expectAsk(Question::SaveImageChangesOnClose, Answer::Yes);
    prompter.expectFile(Question::SaveImageAs, red);
    EXPECT_TRUE(viewer.QuerySaveOnClose(u"a.bmp"_s));
    EXPECT_TRUE(viewer.QuerySaveOnClose(u"a.bmp"_s)) << "unchanged: no question";
}

TEST_F(ViewerPictureTest, AFileThatAnotherProgramHasWrittenIsShownAgain)
{
    choose(red);
    EXPECT_FALSE(viewer.follow());
    draw(Qt::green);
    prompter.expectFile(Question::SaveImageAs, red);
    EXPECT_TRUE(viewer.SaveImage(u"a.bmp"_s));
    EXPECT_FALSE(viewer.follow()) << "that was the viewer itself";
    addPicture(u"a.bmp"_s, Qt::yellow, 0, {50, 50});
    state.CurrentImagePath = blue;
    EXPECT_TRUE(viewer.follow());
    EXPECT_EQ(shown(), QColor(Qt::yellow));
    EXPECT_EQ(state.CurrentImagePath, blue) << "nobody has chosen anything";
    viewer.UndoImage();
    EXPECT_EQ(shown(), QColor(Qt::green));

    // Not over a drawing, not for what is no picture, not for what is gone.
    addPicture(u"a.bmp"_s, Qt::cyan, 0, {60, 60});
    EXPECT_TRUE(viewer.dirty());
    EXPECT_FALSE(viewer.follow());
    prompter.expectAsk(Question::SaveImageChanges, Answer::No);
    choose(red);
    write(red, "BM no picture");
    EXPECT_FALSE(viewer.follow());
    EXPECT_TRUE(QFile::remove(red));
    EXPECT_FALSE(viewer.follow());
    EXPECT_EQ(shown(), QColor(Qt::cyan));
}

TEST_F(ViewerPictureTest, OpeningAFileForgetsTheHistory)
{
    choose(red);
    draw(Qt::green);
    prompter.expectAsk(Question::SaveImageChanges, Answer::Cancel);
    EXPECT_FALSE(viewer.OpenImage(u"a.bmp"_s));
    EXPECT_EQ(viewer.history().current(), 0);
    EXPECT_TRUE(viewer.dirty());

    prompter.expectAsk(Question::SaveImageChanges, Answer::No);
    prompter.expectFile(Question::OpenImage, std::nullopt);
    EXPECT_FALSE(viewer.OpenImage(u"a.bmp"_s));
    EXPECT_EQ(prompter.asked.back().directory, state.AppOptions.BaseDirectory + u"/Demo"_s);
    EXPECT_TRUE(viewer.dirty()) << "it is still shown and still not saved";

    prompter.expectAsk(Question::SaveImageChanges, Answer::No);
    prompter.expectFile(Question::OpenImage, state.DatabasePath);
    prompter.expectTell(Question::OpenImageFailed);
    EXPECT_FALSE(viewer.OpenImage(u"a.bmp"_s));
    EXPECT_TRUE(prompter.asked.back().text.startsWith(u"Cannot open the file Error number=481 "_s));
    EXPECT_EQ(shown(), QColor(Qt::green));

    state.AppOptions.ProjectName = u"Nobody"_s; // whose folder does not exist
    prompter.expectAsk(Question::SaveImageChanges, Answer::No);
    prompter.expectFile(Question::OpenImage, blue);
    EXPECT_TRUE(viewer.OpenImage(u"a.bmp"_s));
    EXPECT_EQ(prompter.asked.back().directory, QString());
    EXPECT_EQ(shown(), QColor(Qt::blue));
    EXPECT_EQ(viewer.path() + state.CurrentImagePath, blue + blue);
    EXPECT_EQ(viewer.history().current(), 1);
    EXPECT_FALSE(viewer.dirty());
}

TEST_F(ViewerPictureTest, DeletingKeepsACopyAndMarksThePage)
{
    prompter.expectTell(Question::SelectImageFirst);
    EXPECT_FALSE(viewer.DeleteImage());
    EXPECT_EQ(prompter.asked.back().title, u"Select an image file first"_s);

    choose(red);
    const QByteArray bytes = read(red);
    prompter.expectAsk(Question::DeleteImage, Answer::No);
    EXPECT_FALSE(viewer.DeleteImage());
    EXPECT_EQ(prompter.asked.back().text, u"Delete image file: \r\n"_s + red + u"\r\nAre you sure?"_s);
    EXPECT_EQ(status(red), u"OK"_s);

    write(red + u".removed"_s, "an older copy");
    prompter.expectAsk(Question::DeleteImage, Answer::Yes);
    EXPECT_TRUE(viewer.DeleteImage());
    EXPECT_EQ(filesOf(state.ProjectDirectory), u"a.bmp.removed b.bmp"_s);
    EXPECT_EQ(read(red + u".removed"_s), bytes);
    EXPECT_EQ(status(red) + status(blue), u"DeletedOK"_s);

    // Gone behind our back: the page is marked all the same.
    choose(blue);
    EXPECT_TRUE(QFile::remove(blue));
    prompter.expectAsk(Question::DeleteImage, Answer::Yes);
    prompter.expectTell(Question::ImageToDeleteMissing);
    EXPECT_TRUE(viewer.DeleteImage());
    EXPECT_EQ(prompter.asked.back().text, u"File: "_s + blue + u"\r\nnot exist."_s);
    EXPECT_EQ(status(blue), u"Deleted"_s);
}

TEST_F(ViewerPictureTest, AFileWhoseCopyFailsIsNotDeleted)
{
    choose(red);
    state.FileSystem.createFolder(red + u".removed"_s); // in the copy's place
    prompter.expectAsk(Question::DeleteImage, Answer::Yes);
    EXPECT_THROW(viewer.DeleteImage(), RunTimeError);
    EXPECT_EQ(colourOf(red), QColor(Qt::red));
    EXPECT_EQ(status(red), u"OK"_s);
}

TEST_F(ViewerPictureTest, APrinterThatFailsIsToldAndACancelIsNot)
{
    choose(red);
    prompter.expectFile(Question::PrintImage, std::nullopt);
    viewer.PrintImage();
    prompter.expectFile(Question::PrintImage, u""_s);
    prompter.expectTell(Question::ViewerFailed);
    viewer.PrintImage();
    EXPECT_EQ(prompter.asked.back().text, u"Cannot print the file.\r\n\r\nMake sure the printer is ready."_s);
}
