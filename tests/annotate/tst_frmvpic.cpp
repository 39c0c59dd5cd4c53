#include "ShownViewer.h"

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
    prompter.expectTell(Question::ViewerFailed);
    viewer.key(Qt::Key_Up); // from what is shown on, to the broken one
    EXPECT_TRUE(QTest::qWaitFor([&] { return prompter.asked.size() == 4; }, patience));
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
