#include "ViewerFixture.h"

#include "annotate/frmVpic.h"
#include "annotate/frmVpicFiles.h"
#include "support/FakeSpelling.h"

#include <gtest/gtest.h>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <QToolBar>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int patience = 10'000; // milliseconds

/// A viewer in a window of its own, 900 x 600.
struct ShownViewer {
    explicit ShownViewer(const frmVpic::Services &services) : form(services)
    {
        form.setProperty("formID", 7);
        form.resize(900, 600);
        form.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&form));
    }

    template <typename Control>
    Control &control(const QString &name)
    {
        auto *found = form.findChild<Control *>(name);
        EXPECT_TRUE(found) << name.toStdString();
        return *found;
    }
    bool enabled(const QString &key) { return control<QAction>(key).isEnabled(); }
    void press(const QString &key)
    {
        auto *button = control<QToolBar>(key.startsWith(u't') ? u"tlbcolor"_s : u"tlbmain"_s)
                           .widgetForAction(&control<QAction>(key));
        QTest::mouseClick(button, Qt::LeftButton);
    }
    QWidget &canvas() { return control<QWidget>(u"Picture1"_s); }
    /// A pixel of the picture, as it is on the screen.
    QColor pixel(int x, int y) { return canvas().grab().toImage().pixelColor(x + 1, y + 1); }
    void drag(QPoint from, QPoint to)
    {
        const QPoint border(1, 1);
        QTest::mousePress(&canvas(), Qt::LeftButton, {}, from + border);
        QTest::mouseMove(&canvas(), to + border);
        QTest::mouseRelease(&canvas(), Qt::LeftButton, {}, to + border);
    }
    FileList &files() { return *form.findChild<FileList *>(); }
    QString fileName() { return control<QLineEdit>(u"txtFileName"_s).text(); }
    bool shows(const QString &name)
    {
        return QTest::qWaitFor([&] { return fileName() == name; }, patience);
    }
    /// On the file list.
    void key(Qt::Key key)
    {
        QTest::keyClick(&files(), key);
        QTest::qWait(0);
    }

    frmVpic form;
};

class frmVpicTest : public ::testing::Test, protected ViewerFixture
{
protected:
    FakeSpelling spelling;
    frmVpic::Services services{state, pages, prompter, workspace, spelling};
    const QString first = addPicture(u"sh2.bmp"_s, Qt::red, 1);
    const QString second = addPicture(u"sh10.bmp"_s, Qt::blue, 2);

    /// Types into the text dialog when it appears, and closes it with a button.
    void answerTextDialog(const QString &expected, const QString &text, const QString &button)
    {
        QTimer::singleShot(0, qApp, [=] {
            QWidget *dialog = QApplication::activeModalWidget();
            ASSERT_TRUE(dialog);
            auto *box = dialog->findChild<QPlainTextEdit *>(u"text1"_s);
            EXPECT_EQ(box->toPlainText(), expected);
            box->setPlainText(text);
            dialog->findChild<QPushButton *>(button)->click();
        });
    }
};
} // namespace

TEST_F(frmVpicTest, ItOpensOnTheProjectsFolderWithoutAPicture)
{
    ShownViewer viewer(services);
    EXPECT_EQ(viewer.form.fileNames(), (QStringList{u"sh2.bmp"_s, u"sh10.bmp"_s}));
    EXPECT_EQ(viewer.files().selectedRow(), -1);
    EXPECT_EQ(viewer.fileName(), QString());
    EXPECT_EQ(viewer.canvas().size(), QSize(202, 202));
    for (const QString &key : {u"Undo"_s, u"Redo"_s, u"Save"_s, u"Show"_s})
        EXPECT_FALSE(viewer.enabled(key)) << key.toStdString();
    for (const QString &key :
         {u"drawtext"_s, u"drawbox"_s, u"drawline"_s, u"Hide"_s, u"PrintPic"_s, u"pDelete"_s})
        EXPECT_TRUE(viewer.enabled(key)) << key.toStdString();
    EXPECT_EQ(viewer.control<QAction>(u"drawline"_s).toolTip(), u"Step 3: Draw a line to point to it"_s);
    EXPECT_EQ(viewer.control<QToolBar>(u"tlbcolor"_s).actions().size(), 16);
    EXPECT_TRUE(viewer.control<QAction>(u"t0"_s).isChecked());
    EXPECT_TRUE(viewer.form.findChild<QAction *>(u"t8388608"_s)) << "navy";
}

TEST_F(frmVpicTest, TheFolderIsTheRequestedPicturesElseTheProjectsElseTheBase)
{
    state.FileSystem.createFolder(state.AppOptions.BaseDirectory + u"/Other"_s);
    const QString other = state.AppOptions.BaseDirectory + u"/Other/x.bmp"_s;
    state.FileSystem.copyFile(first, other);
    state.CurrentImagePath = other;
    state.ImageFileRequested = true;
    ShownViewer requested(services);
    EXPECT_EQ(requested.form.fileNames(), QStringList{u"x.bmp"_s});
    EXPECT_EQ(requested.fileName(), u"x.bmp"_s);
    EXPECT_EQ(requested.files().selectedRow(), 0);
    EXPECT_EQ(requested.form.windowTitle(), u"Screen Shots "_s + other);
    EXPECT_TRUE(requested.enabled(u"Save"_s));
    EXPECT_EQ(requested.pixel(0, 0), QColor(Qt::red));

    state.ProjectDirectory = u"  "_s;
    ShownViewer base(services);
    auto &folders = base.control<QListWidget>(u"Dir1"_s);
    EXPECT_EQ(folders.currentItem()->toolTip(), state.AppOptions.BaseDirectory);

    // A path on the command line is for the first viewer alone.
    state.CommandLinePath = u'"' + other + u'"';
    ShownViewer named(services);
    EXPECT_EQ(named.form.fileNames(), QStringList{u"x.bmp"_s});
    ShownViewer next(services);
    EXPECT_EQ(next.form.fileNames(), QStringList());
}

TEST_F(frmVpicTest, ARequestedPictureThatIsNoneIsToldOnce)
{
    write(first, "BM no picture");
    state.CurrentImagePath = first;
    state.ImageFileRequested = true;
    prompter.expectTell(Question::ViewerFailed);
    ShownViewer viewer(services);
    viewer.form.selectFile(0);
    EXPECT_EQ(viewer.fileName(), QString());
    prompter.expectTell(Question::ViewerFailed);
    viewer.form.selectFile(0); // whoever tries again is told again
}

TEST_F(frmVpicTest, KeysStepThroughTheFilesAndPassABrokenOne)
{
    write(inProject(u"sh3.bmp"_s), "BM no picture");
    ShownViewer viewer(services);
    viewer.form.selectFile(0);
    EXPECT_TRUE(viewer.shows(u"sh2.bmp"_s));
    EXPECT_EQ(state.CurrentImagePath, first);

    prompter.expectTell(Question::ViewerFailed);
    viewer.key(Qt::Key_Down);
    EXPECT_TRUE(QTest::qWaitFor([&] { return prompter.asked.size() == 1; }, patience));
    EXPECT_EQ(viewer.fileName(), u"sh2.bmp"_s);
    EXPECT_EQ(viewer.files().selectedRow(), 0) << "the list says what is shown";
    viewer.key(Qt::Key_Down);
    EXPECT_TRUE(viewer.shows(u"sh10.bmp"_s));
    EXPECT_EQ(viewer.pixel(0, 0), QColor(Qt::blue));
    EXPECT_EQ(viewer.form.windowTitle(), u"Screen Shots "_s + second);

    // A right click makes it changed; the user stays.
    QTest::mouseClick(&viewer.canvas(), Qt::RightButton);
    prompter.expectAsk(Question::SaveImageChanges, Answer::Cancel);
    viewer.key(Qt::Key_Home);
    EXPECT_TRUE(QTest::qWaitFor([&] { return prompter.asked.size() == 2; }, patience));
    EXPECT_EQ(viewer.files().selectedRow(), 2);
    prompter.expectAsk(Question::SaveImageChanges, Answer::No);
    viewer.form.selectFile(0);
    EXPECT_EQ(viewer.fileName(), u"sh2.bmp"_s);
    viewer.form.selectFile(-1);
    EXPECT_EQ(viewer.fileName(), u"sh2.bmp"_s);
}

TEST_F(frmVpicTest, TheFileListFollowsTheFolder)
{
    ShownViewer viewer(services);
    viewer.form.selectFile(1);
    addPicture(u"sh1.bmp"_s, Qt::green);
    EXPECT_TRUE(QTest::qWaitFor([&] { return viewer.form.fileNames().size() == 3; }, patience));
    EXPECT_EQ(viewer.files().selectedRow(), 2) << "the same file as before";
    EXPECT_EQ(viewer.fileName(), u"sh10.bmp"_s);

    // A folder that vanishes while it is shown.
    ASSERT_TRUE(QDir(state.ProjectDirectory).removeRecursively());
    EXPECT_TRUE(QTest::qWaitFor([&] { return viewer.form.fileNames().isEmpty(); }, patience));
    prompter.expectTell(Question::ViewerFailed);
    auto &folders = viewer.control<QListWidget>(u"Dir1"_s);
    Q_EMIT folders.itemActivated(folders.currentItem());
    EXPECT_EQ(viewer.pixel(0, 0), QColor(Qt::blue));

    QTest::mouseClick(&viewer.canvas(), Qt::RightButton);
    prompter.expectAsk(Question::SaveImageChangesOnClose, Answer::Yes);
    prompter.expectFile(Question::SaveImageAs, second);
    prompter.expectTell(Question::SaveImageFailed);
    EXPECT_FALSE(viewer.form.close());
    prompter.expectAsk(Question::SaveImageChangesOnClose, Answer::No);
    EXPECT_TRUE(viewer.form.close());
}

TEST_F(frmVpicTest, FoldersAndDrivesLeadElsewhere)
{
    state.FileSystem.createFolder(inProject(u"inner"_s));
    ShownViewer viewer(services);
    viewer.form.selectFile(0);
    auto &folders = viewer.control<QListWidget>(u"Dir1"_s);
    auto *inner = folders.item(folders.count() - 1);
    EXPECT_EQ(inner->text().trimmed(), u"inner"_s);
    QTest::mouseClick(folders.viewport(), Qt::LeftButton, {}, folders.visualItemRect(inner).center());
    QTest::mouseDClick(folders.viewport(), Qt::LeftButton, {}, folders.visualItemRect(inner).center());
    EXPECT_EQ(viewer.form.fileNames(), QStringList());
    EXPECT_EQ(folders.currentItem()->text().trimmed(), u"inner"_s);
    EXPECT_EQ(viewer.pixel(0, 0), QColor(Qt::red)) << "the picture stays";

    auto &drives = viewer.control<QComboBox>(u"Drive1"_s);
    drives.setCurrentIndex(0);
    Q_EMIT drives.activated(0);
    EXPECT_EQ(folders.currentItem()->text(), u"/"_s);
}

TEST_F(frmVpicTest, ScrollingFollowsTheBars)
{
    addPicture(u"wide.bmp"_s, Qt::green, 0, {2000, 100});
    ShownViewer viewer(services);
    viewer.form.selectFile(2);
    auto &across = viewer.control<QScrollBar>(u"HScroll1"_s);
    auto &down = viewer.control<QScrollBar>(u"VScroll1"_s);
    const QWidget &view = viewer.control<QWidget>(u"picResize"_s);
    EXPECT_TRUE(across.isVisible());
    EXPECT_FALSE(down.isVisible());
    EXPECT_EQ(across.maximum(), 2002 - view.width());
    EXPECT_FALSE(viewer.control<QWidget>(u"Line1"_s).isVisible());
    EXPECT_TRUE(viewer.control<QWidget>(u"Line2"_s).isVisible());
    EXPECT_EQ(viewer.canvas().pos(), QPoint(1, 0));
    across.setValue(4);
    EXPECT_EQ(viewer.canvas().x(), 1);
    across.setValue(5);
    EXPECT_EQ(viewer.canvas().x(), -135); // the file list is 130 wide

    const int before = view.width();
    viewer.press(u"Hide"_s);
    EXPECT_FALSE(viewer.files().isVisible());
    EXPECT_FALSE(viewer.enabled(u"Hide"_s));
    EXPECT_TRUE(viewer.enabled(u"Show"_s));
    EXPECT_EQ(state.CurrentTool, u"Hide"_s);
    EXPECT_EQ(view.width(), before + 136);
    EXPECT_EQ(viewer.canvas().x(), -5);
    viewer.press(u"Show"_s);
    EXPECT_EQ(view.width(), before);
    EXPECT_EQ(viewer.canvas().x(), -135);

    // A picture exactly as large as the view has no bars.
    addPicture(u"x.bmp"_s, Qt::green, 0, view.size() - QSize(2, 2));
    addPicture(u"y.bmp"_s, Qt::green, 0, view.size() - QSize(2, 1));
    EXPECT_TRUE(QTest::qWaitFor([&] { return viewer.form.fileNames().size() == 5; }, patience));
    viewer.form.selectFile(3);
    EXPECT_FALSE(across.isVisible() || down.isVisible());
    EXPECT_EQ(viewer.canvas().x(), 1) << "a new picture begins at its corner";
    viewer.form.selectFile(4);
    EXPECT_TRUE(down.isVisible());
    down.setValue(down.maximum());
    EXPECT_EQ(down.maximum(), 1);
    EXPECT_EQ(viewer.canvas().y(), 0);
}

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
    prompter.whileOpen([&] { EXPECT_FALSE(darkRows().isEmpty()) << "the user sees what he is asked about"; });
    prompter.expectTell(Question::ClickTextPlace);
    viewer.drag({10, 20}, {10, 20});
    EXPECT_EQ(darkRows(), QList<int>());
    EXPECT_TRUE(state.TextRetry);
    EXPECT_EQ(prompter.asked[0].title, u"Confirm location of the text"_s);

    answerTextDialog(u"HHH\nHHH"_s, u"HHH\nHHH"_s, u"cmdOK"_s);
    prompter.expectAsk(Question::ConfirmTextPlace, Answer::Yes);
    viewer.drag({10, 50}, {10, 50});
    EXPECT_FALSE(state.TextRetry);
    const QList<int> rows = darkRows();
    ASSERT_FALSE(rows.isEmpty());
    EXPECT_GE(rows.first(), 50) << "the click is its top left corner";
    // Two equal lines, fourteen pixels apart.
    ASSERT_EQ(rows.size() % 2, 0);
    EXPECT_EQ(rows[rows.size() / 2] - rows.first(), 14);

    answerTextDialog(QString(), u"more"_s, u"cmdCancel"_s);
    viewer.drag({10, 5}, {10, 5});
    EXPECT_EQ(darkRows(), rows);
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

TEST_F(frmVpicTest, TheViewerThatIsSeenIsMeant)
{
    ShownViewer one(services);
    one.form.selectFile(0);
    ShownViewer two(services);
    two.form.selectFile(1);
    EXPECT_EQ(state.CurrentImagePath, second);
    one.form.hide();
    one.form.show();
    EXPECT_EQ(state.CurrentImagePath, first);
}

TEST_F(frmVpicTest, KeysOfTheViewer)
{
    ShownViewer viewer(services);
    viewer.form.selectFile(0);
    QTest::keyClick(&viewer.files(), Qt::Key_F1);
    EXPECT_EQ(workspace.calls, QStringList{u"help notes.htm"_s});
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
