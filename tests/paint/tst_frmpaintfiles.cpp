#include "paint/ShownPaint.h"

#include "paint/CursorFile.h"

#include <QMenu>
#include <QTemporaryFile>

TEST_F(frmPaintTest, BadFilesLeaveThePicture)
{
    tool(4);
    drag({5, 5}, {9, 5});
    const QImage drawn = shown();
    QFile bad(folder.filePath(u"bad.bmp"_s));
    ASSERT_TRUE(bad.open(QIODevice::WriteOnly) && bad.write("BM no picture") > 0);
    bad.close();
    prompter.expectAsk(Question::PaintSaveChanges, Answer::No);
    prompter.expectTell(Question::PaintOpenFailed);
    form.showPic(bad.fileName());
    EXPECT_EQ(shown(), drawn);
    EXPECT_TRUE(control<QAction>(u"mnuUndo"_s).isEnabled());
    closeUnsaved();
}

TEST_F(frmPaintTest, AVeryWidePictureIsEditedAndSavedLikeAnyOther)
{
    QImage wide(30000, 12, QImage::Format_RGB32);
    wide.fill(Qt::white);
    const QString widePath = folder.filePath(u"wide.bmp"_s);
    ImageFile::save(wide, widePath);
    form.showPic(widePath);
    tool(4);
    drag({29990, 6}, {29995, 6});
    menu(u"mnuFlipHorizontal"_s);
    menu(u"mnuFilter_1"_s); // flat areas of white become 230: 9 x 255 / 10
    menu(u"mnuUndo"_s);
    menu(u"mnuSave"_s);
    const QImage saved = ImageFile::load(widePath);
    for (int x = 4; x <= 9; ++x)
        wide.setPixel(x, 6, qRgb(0, 0, 0));
    EXPECT_EQ(saved, wide);
    EXPECT_TRUE(form.close());
}

TEST_F(frmPaintTest, APointerShapeIsMadeOnce)
{
    state.ApplicationPath = QStringLiteral(SHOTLY_DELIVERED_DIR);
    const auto shapeOf = [this](int index) {
        tool(index);
        return canvas().cursor().pixmap().cacheKey();
    };
    const qint64 first = shapeOf(1);
    EXPECT_NE(shapeOf(2), first);
    EXPECT_EQ(shapeOf(1), first);
    form.showPic(path);
    EXPECT_EQ(canvas().cursor().pixmap().cacheKey(), first);
}

TEST(CursorFile, HotSpotsComeFromTheFile)
{
    const QString folder = QStringLiteral(SHOTLY_DELIVERED_DIR "/Cursors/");
    for (const QString &name : {u"airbrush"_s, u"brush"_s, u"cross"_s, u"eraser"_s, u"fill"_s, u"filter"_s,
                                u"handflat"_s, u"handgrab"_s, u"pencil"_s, u"pick"_s, u"text"_s, u"zoom"_s}) {
        const QCursor cursor = CursorFile::load(folder + name + u".cur"_s);
        EXPECT_EQ(cursor.shape(), Qt::BitmapCursor) << name.toStdString();
        EXPECT_EQ(cursor.pixmap().size(), QSize(32, 32));
    }
    EXPECT_EQ(CursorFile::load(folder + u"pencil.cur"_s).hotSpot(), QPoint(3, 28));
    EXPECT_EQ(CursorFile::load(folder + u"none.cur"_s).shape(), Qt::CrossCursor);
    EXPECT_EQ(CursorFile::load(QStringLiteral(SHOTLY_DELIVERED_DIR "/camera.wav")).shape(), Qt::CrossCursor);

    QFile pencil(folder + u"pencil.cur"_s);
    QTemporaryFile outside;
    ASSERT_TRUE(pencil.open(QIODevice::ReadOnly) && outside.open());
    outside.write(pencil.readAll().replace(10, 1, QByteArray(1, 32))); // right of the shape
    outside.close();
    EXPECT_EQ(CursorFile::load(outside.fileName()).shape(), Qt::CrossCursor);
}
