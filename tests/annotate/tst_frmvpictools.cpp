#include "ShownViewer.h"

TEST_F(frmVpicTest, ABoxIsDrawnUndoneAndRedone)
{
    ShownViewer viewer(services);
    viewer.form.selectFile(0);
    viewer.press(u"drawbox"_s);
    EXPECT_TRUE(viewer.control<QAction>(u"drawbox"_s).isChecked());
    viewer.press(u"t65280"_s); // lime
    viewer.drag({5, 5}, {20, 15});
    EXPECT_EQ(viewer.pixel(20, 15), QColor(0, 255, 0));
    EXPECT_EQ(viewer.pixel(12, 10), QColor(Qt::red));
    viewer.press(u"Undo"_s);
    EXPECT_EQ(viewer.pixel(20, 15), QColor(Qt::red));
    EXPECT_FALSE(viewer.control<QAction>(u"drawbox"_s).isChecked()) << "no tool is active now";
    EXPECT_FALSE(viewer.enabled(u"Undo"_s));
    viewer.drag({5, 5}, {20, 15});
    EXPECT_EQ(viewer.pixel(20, 15), QColor(Qt::red));
    viewer.press(u"Redo"_s);
    EXPECT_EQ(viewer.pixel(20, 15), QColor(0, 255, 0));
    EXPECT_FALSE(viewer.enabled(u"Redo"_s));

    // The tool is common to all viewers, the picture is not.
    viewer.press(u"drawline"_s);
    ShownViewer other(services);
    EXPECT_TRUE(other.control<QAction>(u"drawline"_s).isChecked());
    other.form.selectFile(1);
    other.drag({1, 1}, {9, 1});
    EXPECT_EQ(other.pixel(5, 1), QColor(Qt::black)) << "colours are its own, too";
    EXPECT_FALSE(viewer.enabled(u"Redo"_s));
    EXPECT_EQ(viewer.pixel(5, 1), QColor(Qt::red));

    prompter.expectFile(Question::SaveImageAs, second);
    other.press(u"Save"_s);
    EXPECT_EQ(QImage(second).pixelColor(5, 1), QColor(Qt::black));
    EXPECT_EQ(QImage(second).pixelColor(5, 2), QColor(Qt::blue));
    EXPECT_TRUE(other.form.close());
    prompter.expectAsk(Question::SaveImageChangesOnClose, Answer::No);
    EXPECT_TRUE(viewer.form.close());
}

TEST_F(frmVpicTest, ATextIsPlacedTakenBackAndPlacedAgain)
{
    addPicture(u"sheet.bmp"_s, Qt::white, 0, {200, 100});
    ShownViewer viewer(services);
    viewer.form.selectFile(2);
    viewer.press(u"drawline"_s);
    viewer.drag({5, 95}, {50, 95}); // an entry of its own, which must stay
    viewer.press(u"drawtext"_s);
    const auto darkRows = [&] {
        const QImage shown = viewer.canvas().grab().toImage();
        QList<int> rows;
        for (int y = 1; y <= 100; ++y) {
            for (int x = 1; x <= 200; ++x) {
                if (qGray(shown.pixel(x, y)) < 128) {
                    rows += y - 1;
                    break;
                }
            }
        }
        return rows;
    };
    answerTextDialog(QString(), u"HHH\nHHH"_s, u"cmdOK"_s);
    prompter.expectAsk(Question::ConfirmTextPlace, Answer::No);
    prompter.whileOpen([&] { EXPECT_GT(darkRows().size(), 1) << "the user sees what he is asked about"; });
    prompter.expectTell(Question::ClickTextPlace);
    viewer.drag({10, 20}, {10, 20});
    EXPECT_EQ(darkRows(), QList<int>{95});
    EXPECT_TRUE(state.TextRetry);
    EXPECT_EQ(prompter.asked[0].title, u"Confirm location of the text"_s);

    answerTextDialog(u"HHH\nHHH"_s, u"HHH\nHHH"_s, u"cmdOK"_s);
    prompter.expectAsk(Question::ConfirmTextPlace, Answer::Yes);
    viewer.drag({10, 50}, {10, 50});
    EXPECT_FALSE(state.TextRetry);
    QList<int> rows = darkRows();
    ASSERT_GT(rows.size(), 1);
    rows.removeLast(); // the line
    EXPECT_GE(rows.first(), 50) << "the click is its top left corner";
    // Two equal lines, fourteen pixels apart.
    ASSERT_EQ(rows.size() % 2, 0);
    EXPECT_EQ(rows[rows.size() / 2] - rows.first(), 14);

    answerTextDialog(QString(), u"more"_s, u"cmdCancel"_s);
    viewer.drag({10, 5}, {10, 5});
    EXPECT_EQ(darkRows(), rows + QList<int>{95});
    prompter.expectAsk(Question::SaveImageChangesOnClose, Answer::No);
    viewer.form.close();
}

TEST_F(frmVpicTest, DeletingAFileLeavesAViewerWhoseDrawingCannotBeSaved)
{
    ShownViewer viewer(services);
    viewer.form.selectFile(0);
    QTest::mouseClick(&viewer.canvas(), Qt::RightButton);
    prompter.expectAsk(Question::DeleteImage, Answer::Yes);
    prompter.expectAsk(Question::SaveImageChangesOnClose, Answer::Yes);
    prompter.expectFile(Question::SaveImageAs, inProject(u"none/a.bmp"_s));
    prompter.expectTell(Question::SaveImageFailed);
    viewer.press(u"pDelete"_s);
    EXPECT_EQ(workspace.calls, QStringList{u"refresh"_s});
    EXPECT_TRUE(viewer.form.isVisible());
    prompter.expectAsk(Question::SaveImageChangesOnClose, Answer::No);
    viewer.form.close();
}

TEST_F(frmVpicTest, DeletingClosesTheTab)
{
    ShownViewer viewer(services);
    viewer.form.selectFile(0);
    prompter.expectAsk(Question::DeleteImage, Answer::Yes);
    viewer.press(u"pDelete"_s);
    EXPECT_EQ(workspace.calls, (QStringList{u"refresh"_s, u"deleteTab 7"_s}));
    EXPECT_FALSE(viewer.form.isVisible());
    EXPECT_EQ(filesOf(state.ProjectDirectory), u"sh10.bmp sh2.bmp.removed"_s);
}

TEST_F(frmVpicTest, KeysOfTheViewer)
{
    ShownViewer viewer(services);
    viewer.form.selectFile(0);
    QTest::keyClick(&viewer.files(), Qt::Key_F1);
    viewer.press(u"PaintEditor"_s);
    EXPECT_EQ(workspace.calls, (QStringList{u"help notes.htm"_s, u"paint "_s + first}));
    prompter.expectFile(Question::OpenImage, second);
    QTest::keyClick(&viewer.files(), Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(viewer.fileName(), u"sh10.bmp"_s);
    EXPECT_EQ(viewer.files().selectedRow(), 1);

    // Escape gives a gesture up.
    viewer.press(u"drawline"_s);
    QTest::mousePress(&viewer.canvas(), Qt::LeftButton, {}, {3, 3});
    QTest::mouseMove(&viewer.canvas(), {20, 3});
    EXPECT_EQ(viewer.pixel(10, 2), QColor(255, 255, 0)) << "the band inverts blue";
    QTest::keyClick(&viewer.canvas(), Qt::Key_Escape);
    EXPECT_EQ(viewer.pixel(10, 2), QColor(Qt::blue));
    QTest::mouseRelease(&viewer.canvas(), Qt::LeftButton, {}, {20, 3});
    EXPECT_EQ(viewer.pixel(10, 2), QColor(Qt::blue));
    prompter.expectAsk(Question::SaveImageChangesOnClose, Answer::No);
    viewer.form.close();
}
