#include "paint/ShownPaint.h"

#include "paint/frmPaintPanels.h"
#include "paint/frmPaintProgress.h"

#include <gtest/gtest.h>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QScrollBar>
#include <QTest>
#include <QToolButton>
#include <QWheelEvent>

using namespace Qt::Literals::StringLiterals;

TEST_F(frmPaintTest, ItShowsThePictureAndBeginsWithThePencil)
{
    EXPECT_EQ(shown(), original);
    EXPECT_EQ(form.windowTitle(), path + u" - Easel"_s);
    EXPECT_TRUE(control<QToolButton>(u"optTools_4"_s).isChecked());
    EXPECT_EQ(status(), u"Draws using a pencil with the selected dot size"_s);
    EXPECT_FALSE(control<QAction>(u"mnuUndo"_s).isEnabled());
    EXPECT_FALSE(control<QAction>(u"mnuRedo"_s).isEnabled());
    EXPECT_FALSE(control<QAction>(u"mnuCrop"_s).isEnabled());
    EXPECT_TRUE(control<QAction>(u"mnuFilterTools_2"_s).isChecked());
    EXPECT_EQ(control<QAction>(u"mnuFilterTools_2"_s).text(), u"&Light"_s);

    drag({5, 5}, {9, 5});
    for (int x = 5; x <= 9; ++x)
        original.setPixel(x, 5, qRgb(0, 0, 0));
    EXPECT_EQ(shown(), original);
    EXPECT_EQ(position(), u"9,5"_s);
    prompter.expectAsk(Question::PaintSaveChanges, Answer::Cancel);
    EXPECT_FALSE(form.close());
    prompter.expectAsk(Question::PaintSaveChanges, Answer::Yes);
    EXPECT_TRUE(form.close());
    EXPECT_EQ(QImage(path).convertToFormat(QImage::Format_RGB32), original);
}

TEST_F(frmPaintTest, PanelsBelongToTheTools)
{
    const auto panels = [this] {
        QString shownPanels;
        for (const QString &name : {u"fraOptDot"_s, u"fraOptFill"_s, u"fraBrush"_s})
            shownPanels += control<QWidget>(name).isVisible() ? u'1' : u'0';
        return shownPanels;
    };
    const QStringList expected{u"000"_s, u"000"_s, u"100"_s, u"000"_s, u"100"_s, u"100"_s,
                               u"110"_s, u"110"_s, u"000"_s, u"100"_s, u"100"_s, u"110"_s,
                               u"110"_s, u"100"_s, u"100"_s, u"000"_s, u"001"_s, u"000"_s};
    for (int index = 0; index < 18; ++index) {
        tool(index);
        EXPECT_EQ(panels(), expected[index]) << index;
        if (index == 14)
            control<QMenu>(u"mnuTFilter"_s).close();
    }
}

TEST_F(frmPaintTest, AShapeTakesColourWidthAndFilling)
{
    tool(6);
    QTest::mouseClick(&control<QToolButton>(u"shpRect_1"_s), Qt::LeftButton);
    QTest::mouseClick(&control<QLabel>(u"lblColor_7"_s), Qt::LeftButton);   // red
    QTest::mouseClick(&control<QLabel>(u"lblColor_11"_s), Qt::RightButton); // yellow
    QTest::mousePress(&canvas(), Qt::LeftButton, {}, {10, 10});
    QTest::mouseMove(&canvas(), {14, 13});
    EXPECT_TRUE(position().endsWith(u"5x4"_s)) << position().toStdString();
    EXPECT_EQ(status(), u"Press and hold down SHIFT to draw a square"_s);
    EXPECT_NE(shown(), original) << "the band is seen";
    QTest::mouseRelease(&canvas(), Qt::LeftButton, {}, {14, 13});
    for (int y = 10; y <= 13; ++y)
        for (int x = 10; x <= 14; ++x)
            original.setPixel(x, y,
                              x == 10 || x == 14 || y == 10 || y == 13 ? qRgb(255, 0, 0) : qRgb(255, 255, 0));
    EXPECT_EQ(shown(), original);

    // Pick Color: the left button takes the foreground, the right one the other.
    tool(1);
    click({12, 11});
    click({50, 30}, Qt::RightButton);
    auto &colours = *form.findChild<ColourPanel *>();
    EXPECT_EQ(colours.foreground(), QColor(255, 255, 0));
    EXPECT_EQ(colours.fill(), QColor(154, 174, 220)); // 410, 430 and 1500, each modulo 256
    closeUnsaved();
}

TEST_F(frmPaintTest, EveryCommandIsUndoneAndRedone)
{
    tool(0);
    const QStringList commands{u"mnuFlipHorizontal"_s, u"mnuFlipVertical"_s, u"mnuInvert"_s,
                               u"mnuClear"_s,          u"mnuResize_50"_s,    u"mnuResize_150"_s,
                               u"mnuRotate_45"_s,      u"mnuRotate_90"_s,    u"mnuRotate_180"_s,
                               u"mnuFilter_0"_s,       u"mnuFilter_1"_s,     u"mnuFilter_2"_s,
                               u"mnuFilter_3"_s,       u"mnuFilter_4"_s,     u"mnuFilter_5"_s,
                               u"mnuFilter_6"_s,       u"mnuFilter_7"_s,     u"mnuFilter_8"_s,
                               u"mnuFilter_11"_s,      u"mnuFilter_12"_s,    u"mnuFilter_13"_s};
    for (const QString &command : commands) {
        menu(command);
        const QImage changed = shown();
        EXPECT_NE(changed, original) << command.toStdString();
        menu(u"mnuUndo"_s);
        EXPECT_EQ(shown(), original) << command.toStdString();
        menu(u"mnuRedo"_s);
        EXPECT_EQ(shown(), changed) << command.toStdString();
        menu(u"mnuUndo"_s);
    }
    EXPECT_FALSE(control<QAction>(u"mnuUndo"_s).isEnabled());
    closeUnsaved();
}

TEST_F(frmPaintTest, EffectsFollowTheChoicesOfTheirMenus)
{
    menu(u"mnuResizeSide_1"_s); // the width alone
    menu(u"mnuResize_50"_s);
    EXPECT_EQ(shown().size(), QSize(30, 40));
    menu(u"mnuUndo"_s);
    menu(u"mnuRotate_90"_s);
    EXPECT_EQ(shown().size(), QSize(40, 60));
    EXPECT_EQ(shown().pixel(39, 0), original.pixel(0, 0)) << "clockwise";
    menu(u"mnuUndo"_s);
    menu(u"mnuRotateWay_1"_s);
    menu(u"mnuRotate_90"_s);
    EXPECT_EQ(shown().pixel(0, 59), original.pixel(0, 0));
    menu(u"mnuUndo"_s);
    // Replace colours: foreground by fill.
    QTest::mouseClick(&control<QLabel>(u"lblColor_7"_s), Qt::RightButton);
    tool(1);
    click({3, 2});
    menu(u"mnuFilter_10"_s);
    original.setPixel(3, 2, qRgb(255, 0, 0));
    EXPECT_EQ(shown(), original);
    closeUnsaved();
}

TEST_F(frmPaintTest, ASelectionGoesThroughTheClipboard)
{
    tool(0);
    drag({10, 10}, {13, 12});
    const QImage part = original.copy(10, 10, 4, 3);
    QGuiApplication::clipboard()->clear();
    EXPECT_FALSE(control<QAction>(u"mnuPaste"_s).isEnabled());
    menu(u"mnuCopy"_s);
    EXPECT_EQ(QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32), part);
    menu(u"mnuCrop"_s);
    tool(4);
    EXPECT_EQ(shown(), part);
    menu(u"mnuUndo"_s);
    EXPECT_EQ(shown(), original);

    // From another program.
    QImage foreign(2, 2, QImage::Format_RGB32);
    foreign.fill(Qt::magenta);
    QGuiApplication::clipboard()->setImage(foreign);
    menu(u"mnuPaste"_s);
    tool(4); // commits it
    for (const QPoint corner : {QPoint(0, 0), QPoint(1, 0), QPoint(0, 1), QPoint(1, 1)})
        original.setPixel(corner, qRgb(255, 0, 255));
    EXPECT_EQ(shown(), original);
    closeUnsaved();
}

TEST_F(frmPaintTest, ZoomedPixelsAreEditedExactly)
{
    tool(15);
    for (int i = 0; i < 5; ++i)
        click({8, 8});                           // 1.25 to the fifth is 3.05
    EXPECT_EQ(canvas().size(), QSize(184, 123)); // 183.1 x 122.1
    tool(4);
    click({31, 31}); // pixel 10
    EXPECT_EQ(position(), u"10,10"_s);
    tool(15);
    for (int i = 0; i < 5; ++i)
        click({8, 8}, Qt::LeftButton, Qt::ControlModifier);
    original.setPixel(10, 10, qRgb(0, 0, 0));
    EXPECT_EQ(shown(), original);
    closeUnsaved();
}

TEST_F(frmPaintTest, ATextIsTypedOnThePicture)
{
    tool(8);
    click({10, 5});
    auto &box = control<QPlainTextEdit>(u"txtText"_s);
    EXPECT_TRUE(box.isVisible());
    EXPECT_EQ(status(), u"Press ENTER or double-click to finish inserting the text"_s);
    QTest::keyClicks(&box, u"Hi"_s);
    QTest::keyClick(&box, Qt::Key_Escape);
    EXPECT_FALSE(box.isVisible());
    EXPECT_EQ(shown(), original);
    click({10, 5});
    EXPECT_EQ(box.toPlainText(), QString()) << "the dropped text is gone";
    QTest::keyClicks(&box, u"Hi"_s);
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_FALSE(box.isVisible());
    EXPECT_NE(shown(), original);
    menu(u"mnuUndo"_s);
    EXPECT_EQ(shown(), original);
    closeUnsaved();
}

TEST_F(frmPaintTest, ATextBoxIsWholeOnASmallPicture)
{
    tool(8);
    click({50, 35});
    auto &box = control<QPlainTextEdit>(u"txtText"_s);
    const auto isWhole = [&box] { return box.visibleRegion().boundingRect().size() == box.size(); };
    EXPECT_TRUE(isWhole());
    EXPECT_GE(box.width(), 150);
    const int height = box.height();
    QTest::mouseClick(&control<QLabel>(u"lblColor_7"_s), Qt::LeftButton);
    QTest::mouseClick(&control<QLabel>(u"lblColor_11"_s), Qt::RightButton);
    EXPECT_EQ(box.palette().color(QPalette::Text), QColor(Qt::red));
    EXPECT_EQ(box.palette().color(QPalette::Base), QColor(Qt::yellow));
    QTest::keyClicks(&box, u"A line that is a good deal wider than the box"_s);
    QTest::keyClick(&box, Qt::Key_Return, Qt::ShiftModifier);
    QTest::keyClicks(&box, u"and one more"_s);
    EXPECT_TRUE(isWhole());
    EXPECT_GT(box.height(), height + 8);
    EXPECT_GE(box.viewport()->width(),
              box.fontMetrics().horizontalAdvance(box.toPlainText().section(u'\n', 0, 0)));
    QTest::keyClick(&box, Qt::Key_Escape);
    EXPECT_EQ(shown(), original);
}

TEST_F(frmPaintTest, ATextBoxShowsItsGroundInAProgramWithAStyleSheet)
{
    qApp->setStyleSheet(u"QToolBar { padding: 2px; }"_s);
    const auto restore = qScopeGuard([] { qApp->setStyleSheet({}); });
    frmPaint styled{{state, prompter, workspace}};
    styled.show();
    QTest::mouseClick(styled.findChild<QLabel *>(u"lblColor_11"_s), Qt::RightButton);
    auto *box = styled.findChild<QPlainTextEdit *>(u"txtText"_s);
    box->show();
    EXPECT_EQ(box->grab().toImage().pixelColor(box->width() - 8, 8), QColor(Qt::yellow));
}

TEST_F(frmPaintTest, TheWheelZoomsWithControlAndTheRightButtonDoesNot)
{
    const auto turn = [this](int eighths) {
        QWheelEvent event({30, 20}, canvas().mapToGlobal(QPointF(30, 20)), {}, {0, eighths}, Qt::NoButton,
                          Qt::ControlModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&canvas(), &event);
    };
    turn(120);
    EXPECT_EQ(canvas().size(), QSize(75, 50));
    turn(-60);
    EXPECT_EQ(canvas().size(), QSize(75, 50)) << "half a step of a touch pad";
    turn(-60);
    EXPECT_EQ(shown(), original);
    tool(15);
    click({8, 8}, Qt::RightButton);
    EXPECT_EQ(shown(), original);
}

TEST_F(frmPaintTest, HandlesResizeThePicture)
{
    auto &corner = control<QWidget>(u"picPaintResize_2"_s);
    QTest::mousePress(&corner, Qt::RightButton, {}, {3, 3});
    QTest::mouseMove(&corner, {13, 8});
    QTest::mouseRelease(&corner, Qt::RightButton, {}, {13, 8});
    EXPECT_EQ(shown().size(), original.size()) << "the left button's";
    QTest::mousePress(&corner, Qt::LeftButton, {}, {3, 3});
    QTest::mouseMove(&corner, {13, 8});
    QTest::mouseRelease(&corner, Qt::LeftButton, {}, {13, 8});
    const QImage larger = shown();
    EXPECT_EQ(larger.size(), QSize(70, 45));
    EXPECT_EQ(larger.copy(original.rect()), original);
    EXPECT_EQ(larger.pixelColor(69, 44), QColor(Qt::white));
    menu(u"mnuUndo"_s);
    EXPECT_EQ(shown(), original);
    closeUnsaved();
}

TEST_F(frmPaintTest, ColoursAndFontsAreAskedFor)
{
    prompter.expectColour(Question::PaintColour, u"#102030"_s);
    QTest::mouseDClick(&control<QLabel>(u"lblForeColor"_s), Qt::LeftButton);
    prompter.expectColour(Question::PaintColour, std::nullopt);
    menu(u"mnuFillColor"_s);
    auto &colours = *form.findChild<ColourPanel *>();
    EXPECT_EQ(colours.foreground(), QColor(0x10, 0x20, 0x30));
    EXPECT_EQ(colours.fill(), QColor(Qt::white));
    prompter.expectColour(Question::PaintFont, u"Sans Serif,20,-1,5,75,0,0,0,0,0"_s);
    menu(u"mnuFont"_s);
    tool(8);
    click({5, 5});
    EXPECT_EQ(control<QPlainTextEdit>(u"txtText"_s).font().pixelSize(), 27) << "20 points at 96 to the inch";
}

TEST_F(frmPaintTest, APictureIsPrintedOrTheUserHearsWhyNot)
{
    const QString pdf = folder.filePath(u"picture.pdf"_s);
    prompter.expectFile(Question::PrintImage, pdf);
    menu(u"mnuPrint"_s);
    QFile file(pdf);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().startsWith("%PDF"));
    prompter.expectFile(Question::PrintImage, std::nullopt);
    menu(u"mnuPrint"_s);
    prompter.expectFile(Question::PrintImage, u""_s);
    prompter.expectTell(Question::PaintPrintFailed);
    menu(u"mnuPrint"_s);
}

TEST_F(frmPaintTest, AClickElsewhereBeginsANewTextAndPastingNothingIsHarmless)
{
    QGuiApplication::clipboard()->clear();
    tool(8);
    click({5, 5});
    auto &box = control<QPlainTextEdit>(u"txtText"_s);
    QTest::keyClicks(&box, u"Hi"_s);
    QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
    click({30, 20});
    EXPECT_EQ(box.toPlainText(), QString()) << "it is drawn at the place before";
    EXPECT_TRUE(box.isVisible());
    QTest::keyClick(&box, Qt::Key_Escape);
    menu(u"mnuUndo"_s);
    EXPECT_EQ(shown(), original) << "drawn once";
    closeUnsaved();
}

TEST_F(frmPaintTest, TheInvertBrushInvertsEachPixelOnce)
{
    control<QAction>(u"mnuFilterTools_9"_s).trigger();
    tool(14);
    control<QMenu>(u"mnuTFilter"_s).close();
    QTest::mouseClick(&control<QToolButton>(u"shpDot_1"_s), Qt::LeftButton); // 2 pixels to each side
    drag({20, 10}, {22, 10});
    for (int y = 8; y <= 12; ++y) {
        for (int x = 18; x <= 24; ++x)
            original.setPixel(x, y, ~original.pixel(x, y) | 0xff000000);
    }
    EXPECT_EQ(shown(), original);
    closeUnsaved();
}

TEST(FilterProgress, EscapeCancelsAndEverythingElseWaits)
{
    int percent = -1;
    QImage partial;
    bool retrieves = false;
    FilterProgress progress([&](int now, bool retrieving, const QImage &picture) {
        percent = now;
        retrieves = retrieving;
        partial = picture;
    });
    QPushButton other(u"other"_s);
    bool pressed = false;
    QObject::connect(&other, &QPushButton::clicked, [&] { pressed = true; });
    other.show();
    const QImage picture(3, 2, QImage::Format_RGB32);
    {
        ProgressScope scope(progress, QString(), 100);
        EXPECT_TRUE(progress.active());
        EXPECT_TRUE(progress.take(7, picture, true));
        while (percent < 0)
            EXPECT_TRUE(scope.step(0)); // a filter that is quick shows nothing
        EXPECT_EQ(percent, 7);
        EXPECT_TRUE(retrieves);
        EXPECT_TRUE(partial.isNull()) << "no picture had been wanted yet";
        EXPECT_TRUE(progress.take(8, picture));
        while (percent < 8)
            EXPECT_TRUE(scope.step(0));
        EXPECT_EQ(partial.size(), picture.size());
        EXPECT_FALSE(retrieves);

        QCoreApplication::postEvent(&other, new QKeyEvent(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier));
        QCoreApplication::postEvent(&other, new QKeyEvent(QEvent::KeyRelease, Qt::Key_Space, Qt::NoModifier));
        QCoreApplication::postEvent(&other, new QKeyEvent(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier));
        while (scope.step(0)) {
        }
        EXPECT_FALSE(progress.take(9, picture));
    }
    EXPECT_FALSE(progress.active());
    EXPECT_FALSE(pressed);
    QTest::keyClick(&other, Qt::Key_Space);
    EXPECT_TRUE(pressed) << "afterwards it goes on";
}
