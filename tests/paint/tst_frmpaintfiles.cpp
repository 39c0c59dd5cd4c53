#include "paint/ShownPaint.h"

#include <QMenu>

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
