#include "paint/mdlEffect.h"

#include <gtest/gtest.h>

using mdlEffect::Kind;
using mdlEffect::TransformPicture;

TEST(Resize, SizesAreRoundedWithHalvesToEven)
{
    struct Case {
        QSize before;
        float width = 1;
        float height = 1;
        QSize after;
    };
    for (const Case &each : {Case{{1920, 1080}, 0.9F, 0.9F, {1728, 972}}, Case{{5, 7}, 0.5F, 0.5F, {2, 4}},
                             Case{{3, 3}, 0.1F, 1.0F, {1, 3}}, Case{{10, 10}, 1.0F, 2.0F, {10, 20}}}) {
        QImage picture(each.before, QImage::Format_RGB32);
        picture.fill(Qt::gray);
        EXPECT_EQ(TransformPicture(picture, Kind::Resize, {each.width, each.height}).size(), each.after);
    }
}

TEST(Resize, ShrinkingAveragesSoThatThinLinesStayVisible)
{
    // White with a black line one pixel wide: at half the width the line is grey, never gone.
    QImage picture(8, 4, QImage::Format_RGB32);
    picture.fill(Qt::white);
    for (int y = 0; y < 4; ++y)
        picture.setPixel(3, y, qRgb(0, 0, 0));
    const QImage half = TransformPicture(picture, Kind::Resize, {0.5F, 0.5F});
    ASSERT_EQ(half.size(), QSize(4, 2));
    EXPECT_NEAR(qRed(half.pixel(1, 0)), 128, 3);
    EXPECT_EQ(qRed(half.pixel(3, 1)), 255);
}

TEST(Resize, AFlatPictureStaysFlatAndOpaque)
{
    QImage picture(33, 17, QImage::Format_RGB32);
    picture.fill(qRgb(10, 200, 90));
    for (const float factor : {0.7F, 1.0F, 1.3F}) {
        const QImage result = TransformPicture(picture, Kind::Resize, {factor, factor});
        EXPECT_EQ(result.format(), QImage::Format_RGB32);
        for (int y = 0; y < result.height(); ++y)
            for (int x = 0; x < result.width(); ++x)
                ASSERT_EQ(result.pixel(x, y), qRgb(10, 200, 90)) << factor << " at " << x << "," << y;
    }
    EXPECT_TRUE(TransformPicture(QImage(), Kind::Resize, {0.5F, 0.5F}).isNull());
}
