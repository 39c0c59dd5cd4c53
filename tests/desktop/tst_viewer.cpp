// The snapshot viewer on a real display: what is seen while somebody draws and afterwards, pixel by pixel,
// and what is in the files then, read by ImageMagick. Positions are pixels of the picture and of the screen;
// the program is also run where these are not the toolkit's units.

#include "DesktopViewer.h"

#include <QFile>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTabBar>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr QRgb black = qRgb(0, 0, 0);
constexpr QRgb red = qRgb(0xff, 0, 0);

/// Every pixel has a colour of its own: an odd factor repeats nothing within 24 bits.
QImage pattern(unsigned seed, QSize size = small)
{
    QImage picture(size, QImage::Format_RGB32);
    unsigned number = seed << 21;
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            picture.setPixel(x, y, 0xff000000 | ++number * 0x9e3779b1);
    return picture;
}

QRgb inverse(QRgb colour)
{
    return ~colour | 0xff000000;
}

/// The outline of a rectangle, which is a line when it is flat, in a colour or inverted.
QImage drawn(QImage picture, QRect outline, std::optional<QRgb> colour)
{
    for (int y = outline.top(); y <= outline.bottom(); ++y) {
        for (int x = outline.left(); x <= outline.right(); ++x) {
            const bool edge =
                y == outline.top() || y == outline.bottom() || x == outline.left() || x == outline.right();
            if (edge && picture.valid(x, y))
                picture.setPixel(x, y, colour.value_or(inverse(picture.pixel(x, y))));
        }
    }
    return picture;
}
} // namespace

TEST_F(ViewerTest, TheBandFollowsThePointerAndOnlyTheShapeStays)
{
    QImage picture = pattern(1);
    openViewer({{u"sh1.bmp"_s, picture}});
    EXPECT_EQ(visible(small), QRect(QPoint(0, 0), small));
    expectSeen(picture, "loaded");

    choose(u"drawline"_s);
    press(at(20, 30));
    move(at(120, 30));
    expectSeen(drawn(picture, {20, 30, 101, 1}, {}), "a band to the right");
    move(at(20, 90));
    expectSeen(drawn(picture, {20, 30, 1, 61}, {}), "a band down");
    xdotool({u"click"_s, u"3"_s}); // means nothing here
    move(at(60, 60));
    EXPECT_TRUE(becomes([&] {
        const QList<QPoint> band = changed(picture);
        return band.size() == 41 && band.front() == QPoint(20, 30) && band.back() == QPoint(60, 60);
    }));
    EXPECT_TRUE(std::ranges::all_of(changed(picture), [&, now = seen(picture.rect())](const QPoint &pixel) {
        return now.pixel(pixel) == inverse(picture.pixel(pixel));
    }));
    release(at(200, 30));
    expectSeen(picture = drawn(picture, {20, 30, 181, 1}, black), "a line");

    choose(u"t255"_s);
    choose(u"drawbox"_s);
    press(at(150, 120));
    move(at(250, 180));
    expectSeen(drawn(picture, {150, 120, 101, 61}, {}), "a band of a box");
    move(at(60, 70));
    expectSeen(drawn(picture, {60, 70, 91, 51}, {}), "a band up and to the left");
    release(at(70, 80));
    expectSeen(picture = drawn(picture, {70, 80, 81, 41}, red), "a box");
    drag(at(250, 60), at(600, 160)); // over the edge
    expectSeen(picture = drawn(picture, {250, 60, 351, 101}, red), "half a box");
    drag(at(11, 195), at(11, 195)); // the middle of a unit where that is two pixels
    expectSeen(picture = drawn(picture, {11, 195, 1, 1}, red), "a point");

    press(at(200, 100));
    move(at(280, 190));
    expectSeen(drawn(picture, {200, 100, 81, 91}, {}), "a band");
    key(u"Escape"_s);
    expectSeen(picture, "given up");
    release(at(290, 195));
    save(u"sh1.bmp"_s, picture);
    expectSeen(picture, "saved");
}

TEST_F(ViewerTest, TextIsPlacedAndPlacedAgain)
{
    const QImage picture = pattern(2);
    openViewer({{u"sh1.bmp"_s, picture}});
    choose(u"t255"_s);
    choose(u"drawtext"_s);
    inTextDialog([&](frmText &dialog) {
        xdotool({u"type"_s, u"--delay"_s, u"20"_s, u"Hello"_s});
        key(u"Return"_s);
        xdotool({u"type"_s, u"--delay"_s, u"20"_s, u"World"_s});
        click(middleOf(dialog.findChild<QWidget *>(u"cmdOK"_s)));
    });
    // Two lines of 14 pixels from the place on; letters do not fill them. It is there to be judged.
    const auto isAt = [&](int x, int y) {
        const QRect area = changedArea(picture);
        return QRect(x, y, 60, 28).contains(area) && area.contains(QRect(x + 3, y + 6, 24, 17));
    };
    user.expectAsk(Question::ConfirmTextPlace, Answer::No);
    user.whileOpen([&] { EXPECT_TRUE(becomes([&] { return isAt(40, 50); })); });
    user.expectTell(Question::ClickTextPlace);
    click(at(40, 50));
    ASSERT_TRUE(becomes([this] { return user.asked.size() == 2; }));
    expectSeen(picture, "taken back");

    inTextDialog([&](frmText &dialog) {
        EXPECT_EQ(dialog.findChild<QPlainTextEdit *>(u"text1"_s)->toPlainText(), u"Hello\nWorld"_s);
        key(u"ctrl+Return"_s);
    });
    user.expectAsk(Question::ConfirmTextPlace, Answer::Yes);
    click(at(180, 120));
    ASSERT_TRUE(becomes([this] { return user.asked.size() == 3; }));
    EXPECT_TRUE(becomes([&] { return isAt(180, 120); }));
    const QImage now = seen(picture.rect());
    // Letters are smooth: towards red, more or less.
    EXPECT_TRUE(std::ranges::all_of(changed(picture), [&](const QPoint &pixel) {
        const QColor old(picture.pixel(pixel));
        const QColor mixed(now.pixel(pixel));
        return mixed.red() >= old.red() && mixed.green() <= old.green() && mixed.blue() <= old.blue();
    }));

    inTextDialog([&](frmText &dialog) {
        EXPECT_EQ(dialog.findChild<QPlainTextEdit *>(u"text1"_s)->toPlainText(), QString());
        xdotool({u"type"_s, u"no"_s});
        key(u"Escape"_s);
    });
    click(at(100, 20));
    save(u"sh1.bmp"_s, now);
}

TEST_F(ViewerTest, UndoGoesBackToTheFirstPictureUntilTheRingIsFull)
{
    const QImage picture = pattern(3);
    openViewer({{u"sh1.bmp"_s, picture}});
    EXPECT_FALSE(enabled(u"Undo"_s) || enabled(u"Redo"_s));
    choose(u"drawline"_s);
    std::vector<QImage> states{picture};
    const auto drawNext = [&] {
        const int y = 10 * static_cast<int>(states.size());
        states.push_back(drawn(states.back(), {20, y, 201, 1}, black));
        drag(at(20, y), at(220, y));
        expectSeen(states.back(), "drawn");
    };
    // The picture in slot 1, eight lines in slots 2 to 9.
    for (int line = 1; line <= 8; ++line)
        drawNext();
    for (std::size_t back = 8; back-- > 0;) {
        EXPECT_TRUE(enabled(u"Undo"_s));
        choose(u"Undo"_s);
        expectSeen(states[back], "undone");
    }
    EXPECT_FALSE(enabled(u"Undo"_s));
    for (std::size_t forth = 1; forth <= 8; ++forth) {
        EXPECT_TRUE(enabled(u"Redo"_s));
        choose(u"Redo"_s);
        expectSeen(states[forth], "redone");
    }
    EXPECT_FALSE(enabled(u"Redo"_s));

    // Slot 0: from here nothing leads back.
    choose(u"drawline"_s);
    drawNext();
    choose(u"Undo"_s);
    EXPECT_TRUE(becomes([this] { return enabled(u"Redo"_s); }));
    expectSeen(states[9], "slot 0");
    // Slots 1 and 2: one step back, to what has replaced the first picture.
    choose(u"drawline"_s);
    drawNext();
    drawNext();
    key(u"ctrl+z"_s);
    expectSeen(states[10], "undone in the second round");
    EXPECT_FALSE(enabled(u"Undo"_s));
    save(u"sh1.bmp"_s, states[10]);
}

TEST_F(ViewerTest, TheKeysStepThroughTheFilesInTheirOrderAndOverABrokenOne)
{
    const QImage first = pattern(1);
    const QImage second = pattern(2, {260, 150});
    const QImage tenth = pattern(4);
    openViewer(
        {{u"sh10.bmp"_s, tenth}, {u"sh2.bmp"_s, second}, {u"sh1.bmp"_s, first}, {u".sh4.bmp"_s, first}});
    QFile broken(path(u"sh3.bmp"_s));
    EXPECT_TRUE(broken.open(QIODevice::WriteOnly) && broken.write("no picture") > 0);
    broken.close();
    EXPECT_TRUE(becomes([this] {
        return viewer->fileNames() == QStringList{u"sh1.bmp"_s, u"sh2.bmp"_s, u"sh3.bmp"_s, u"sh10.bmp"_s};
    }));
    expectSeen(first, "sh1");
    key(u"Down"_s);
    expectSeen(second, "sh2");
    EXPECT_EQ(name->text(), u"sh2.bmp"_s);
    EXPECT_EQ(viewer->windowTitle(), u"Screen Shots "_s + path(u"sh2.bmp"_s));

    user.expectTell(Question::ViewerFailed);
    key(u"Down"_s);
    ASSERT_TRUE(becomes([this] { return user.asked.size() == 1; }));
    expectSeen(second, "sh2 stays");
    EXPECT_EQ(name->text(), u"sh2.bmp"_s);
    EXPECT_EQ(list->selectionModel()->selectedIndexes().value(0).row(), 1);
    key(u"Down"_s);
    expectSeen(tenth, "sh10");
    user.expectTell(Question::ViewerFailed);
    key(u"Up"_s);
    ASSERT_TRUE(becomes([this] { return user.asked.size() == 2; }));
    key(u"Up"_s);
    expectSeen(second, "sh2 again");
}

TEST_F(ViewerTest, ChangesAreAskedAboutBeforeTheNextPicture)
{
    const QImage first = pattern(1);
    const QImage second = pattern(2);
    openViewer({{u"sh1.bmp"_s, first}, {u"sh2.bmp"_s, second}});
    choose(u"drawline"_s);
    drag(at(20, 30), at(120, 30));
    const QImage line = drawn(first, {20, 30, 101, 1}, black);
    expectSeen(line, "drawn");

    user.expectAsk(Question::SaveImageChanges, Answer::Cancel);
    clickRow(1);
    ASSERT_TRUE(becomes([this] { return user.asked.size() == 1; }));
    expectSeen(line, "cancelled");
    EXPECT_EQ(list->selectionModel()->selectedIndexes().value(0).row(), 0);
    user.expectAsk(Question::SaveImageChanges, Answer::Yes);
    user.expectFile(Question::SaveImageAs, path(u"sh1.bmp"_s));
    clickRow(1);
    expectSeen(second, "sh2");
    EXPECT_EQ(inFile(u"sh1.bmp"_s), line);

    click(at(50, 50), 3); // changed, although nothing is drawn
    user.expectAsk(Question::SaveImageChanges, Answer::No);
    clickRow(0);
    expectSeen(line, "sh1 as it was saved");
    EXPECT_EQ(inFile(u"sh2.bmp"_s), second);
    key(u"Down"_s);
    expectSeen(second, "nothing to ask");

    click(at(50, 50), 3);
    user.expectAsk(Question::SaveImageChangesOnClose, Answer::Yes);
    user.expectFile(Question::SaveImageAs, std::nullopt);
    click(middleOf(control(u"cmdCloseTab"_s)));
    ASSERT_TRUE(becomes([this] { return user.asked.size() == 6; }));
    expectSeen(second, "not saved, not closed");
    user.expectAsk(Question::SaveImageChangesOnClose, Answer::No);
    click(middleOf(control(u"cmdCloseTab"_s)));
    EXPECT_TRUE(becomes([this] { return window->findChild<QTabBar *>(u"tab1"_s)->count() == 0; }));
}

TEST_F(ViewerTest, ALargePictureIsScrolledAndTheDirectoryHidden)
{
    const QSize size(2500, 2000);
    QImage picture = pattern(1, size);
    openViewer({{u"sh1.bmp"_s, picture}});
    expectSeen(picture, "its corner");
    key(u"F1"_s);
    EXPECT_TRUE(becomes([this] { return !browsers->calls.isEmpty(); }));
    EXPECT_TRUE(becomes([] { return QApplication::activeWindow()->objectName() == u"frmHelp"_s; }));
    key(u"Escape"_s);
    EXPECT_TRUE(becomes([this] { return window->isActiveWindow(); }));

    const auto pull = [this](const QString &bar, QPoint distance) {
        const auto *found = viewer->findChild<QScrollBar *>(bar);
        const QPoint handle = onScreen(found, QPoint(found->width(), found->height()) / 4);
        press(handle);
        release(handle + distance);
        EXPECT_TRUE(becomes([found] { return found->value() > 20; }));
        return found->value();
    };
    const int x = pull(u"HScroll1"_s, {100, 0});
    const int y = pull(u"VScroll1"_s, {0, 60});
    EXPECT_EQ(canvas->pos(), QPoint(-x - 130, -y)); // the file list's width as well
    expectSeen(picture, "scrolled");
    click(middleOf(button(u"Hide"_s)));
    EXPECT_TRUE(becomes([this] { return !list->isVisible() && enabled(u"Show"_s); }));
    EXPECT_EQ(canvas->pos(), QPoint(-x, -y));
    expectSeen(picture, "without the directory");

    choose(u"drawbox"_s);
    const QPoint corner = visible(size).topLeft();
    drag(at(corner.x() + 50, corner.y() + 40), at(corner.x() + 150, corner.y() + 90));
    expectSeen(picture = drawn(picture, {corner + QPoint(50, 40), QSize(101, 51)}, black), "a box");
    choose(u"Show"_s);
    EXPECT_TRUE(becomes([this] { return list->isVisible(); }));
    expectSeen(picture, "with the directory");

    click(middleOf(control(u"cmbProj"_s)));
    key(u"F1"_s);
    EXPECT_TRUE(becomes([this] { return browsers->calls.size() > 1; }));
    EXPECT_EQ(browsers->calls,
              (QStringList{state.HelpFilePath + u"/notes.htm"_s, state.HelpFilePath + u"/features.htm"_s}));
}

namespace
{
/// The program was started with a picture.
class ViewerFromCommandLine : public ViewerTest
{
protected:
    ViewerFromCommandLine()
        : ViewerTest([](Module1 &made) {
              const QString place = made.AppOptions.BaseDirectory + u"/else where"_s;
              made.FileSystem.createFolder(place);
              EXPECT_TRUE(pattern(5).save(place + u"/a.bmp"_s));
              EXPECT_TRUE(pattern(6).save(place + u"/b.bmp"_s));
              made.CommandLinePath = u"\"%1/b.bmp\""_s.arg(place);
          })
    {
        findControls();
    }
};
} // namespace

TEST_F(ViewerFromCommandLine, ShowsItAmongTheOthersOfItsFolder)
{
    expectSeen(pattern(6), "b");
    EXPECT_EQ(viewer->fileNames(), (QStringList{u"a.bmp"_s, u"b.bmp"_s}));
    EXPECT_EQ(name->text(), u"b.bmp"_s);
    EXPECT_TRUE(state.CommandLinePath.isEmpty());
    key(u"Up"_s);
    expectSeen(pattern(5), "a");
    EXPECT_FALSE(enabled(u"Undo"_s));
}
