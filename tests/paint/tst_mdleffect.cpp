#include "paint/mdlEffect.h"

#include <gtest/gtest.h>

#include <cmath>

using mdlEffect::Kind;
using mdlEffect::RotatePicture;
using mdlEffect::TransformPicture;

namespace
{
constexpr QRgb background = qRgb(0, 0, 77);

/// A letter is a pixel of this red; '.' is the background.
QImage letters(const std::vector<std::string> &rows)
{
    QImage picture(static_cast<int>(rows[0].size()), static_cast<int>(rows.size()), QImage::Format_RGB32);
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            const char letter = rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
            picture.setPixel(x, y, letter == '.' ? background : qRgb(letter, 0, 0));
        }
    return picture;
}

/// Every pixel tells its place.
QImage places(QSize size)
{
    QImage picture(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            picture.setPixel(x, y, qRgb(x, y, 99));
    return picture;
}
} // namespace

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

TEST(Resize, HalfIsTheMeanOfFourPixels)
{
    QImage picture(2, 2, QImage::Format_RGB32);
    picture.setPixel(0, 0, qRgb(255, 10, 0));
    picture.setPixel(1, 0, qRgb(255, 20, 0));
    picture.setPixel(0, 1, qRgb(255, 30, 1));
    picture.setPixel(1, 1, qRgb(255, 44, 0));
    const QImage half = TransformPicture(picture, Kind::Resize, {0.5F, 0.5F});
    EXPECT_EQ(half.size(), QSize(1, 1));
    EXPECT_EQ(half.pixel(0, 0), qRgb(255, 26, 0));
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

TEST(Effects, SixPixels)
{
    const QImage picture = letters({"abc", "def"});
    const auto turned = [&](float angle, bool counterClockwise = false) {
        return TransformPicture(
            picture, Kind::Rotate,
            {.angle = angle, .counterClockwise = counterClockwise, .background = background});
    };
    EXPECT_EQ(TransformPicture(picture, Kind::FlipHorizontal), letters({"cba", "fed"}));
    EXPECT_EQ(TransformPicture(picture, Kind::FlipVertical), letters({"def", "abc"}));
    EXPECT_EQ(turned(90), letters({"da", "eb", "fc"}));
    EXPECT_EQ(turned(270), letters({"cf", "be", "ad"}));
    EXPECT_EQ(turned(180), letters({"fed", "cba"}));
    EXPECT_EQ(turned(90, true), turned(270));
    EXPECT_EQ(turned(-90), turned(270));
    EXPECT_EQ(turned(450), turned(90));
    EXPECT_EQ(turned(0), picture);
    EXPECT_EQ(turned(360), picture);
    EXPECT_EQ(turned(0, true), picture);
    EXPECT_EQ(turned(std::nanf("")), picture);
    // The pixel left above the middle comes from 0.707 (-1 - 0.5) + 1.5 = 0.4 and 0.707 (1 - 0.5) + 1 = 1.4.
    EXPECT_EQ(turned(45), letters({"db.", ".ec"}));
    EXPECT_EQ(turned(45, true), letters({".bf", "ae."}));

    const QRgb inverted = TransformPicture(places({3, 2}), Kind::Invert).pixel(2, 1);
    EXPECT_EQ(inverted, qRgb(253, 254, 156));
}

TEST(Effects, DoneAgainTheyGiveThePictureBack)
{
    const QImage picture = places({167, 41});
    for (const Kind kind : {Kind::FlipHorizontal, Kind::FlipVertical, Kind::Invert}) {
        const QImage once = TransformPicture(picture, kind);
        EXPECT_NE(once, picture);
        EXPECT_EQ(TransformPicture(once, kind), picture);
    }
    const QImage quarter = RotatePicture(picture, 90, false, background);
    EXPECT_EQ(quarter.size(), QSize(41, 167));
    EXPECT_EQ(RotatePicture(quarter, 270, false, background), picture);
    EXPECT_EQ(RotatePicture(quarter, 90, true, background), picture);
    const QImage half = RotatePicture(quarter, 90, false, background);
    EXPECT_EQ(half, TransformPicture(TransformPicture(picture, Kind::FlipHorizontal), Kind::FlipVertical));
    EXPECT_EQ(half, RotatePicture(picture, 180, false, background));
    EXPECT_EQ(RotatePicture(RotatePicture(half, 90, false, background), 90, false, background), picture);
}

TEST(Effects, AnyAngleShowsThePixelThatComesToLieThere)
{
    for (const QSize size : {QSize(100, 63), QSize(40, 120), QSize(1, 1), QSize(2, 1)}) {
        const QImage picture = places(size);
        for (const float angle : {45.0F, 135.0F, 225.0F, 315.0F, 1.0F, 30.5F, 89.5F, 359.0F}) {
            const QImage result = RotatePicture(picture, angle, false, background);
            ASSERT_EQ(result.size(), size);
            EXPECT_EQ(RotatePicture(picture, 360 - angle, true, background), result);
            const double radians = static_cast<double>(angle) * M_PI / 180;
            for (int y = 0; y < size.height(); ++y)
                for (int x = 0; x < size.width(); ++x) {
                    // Back by the angle, from the centre of the pixel.
                    const double dx = x + 0.5 - size.width() / 2.0;
                    const double dy = y + 0.5 - size.height() / 2.0;
                    const double fromX = std::cos(radians) * dx + std::sin(radians) * dy + size.width() / 2.0;
                    const double fromY =
                        std::cos(radians) * dy - std::sin(radians) * dx + size.height() / 2.0;
                    const QRgb shown = result.pixel(x, y);
                    constexpr double little = 1e-5;
                    if (shown == background) {
                        const double inside =
                            std::min({fromX, fromY, size.width() - fromX, size.height() - fromY});
                        ASSERT_LT(inside, little) << angle << " at " << x << "," << y;
                    } else {
                        ASSERT_LT(std::abs(qRed(shown) + 0.5 - fromX), 0.5 + little)
                            << angle << " at " << x << "," << y;
                        ASSERT_LT(std::abs(qGreen(shown) + 0.5 - fromY), 0.5 + little)
                            << angle << " at " << x << "," << y;
                    }
                }
        }
    }
}

TEST(Effects, OtherFormatsScaledPicturesAndNoPictureAtAll)
{
    QImage picture = places({33, 21}).convertToFormat(QImage::Format_ARGB32);
    picture.setDevicePixelRatio(2);
    picture.setDotsPerMeterX(1234);
    for (const Kind kind :
         {Kind::FlipHorizontal, Kind::FlipVertical, Kind::Resize, Kind::Rotate, Kind::Invert}) {
        const QImage result = TransformPicture(picture, kind);
        EXPECT_EQ(result.format(), QImage::Format_RGB32);
        EXPECT_EQ(result.devicePixelRatio(), 1);
        EXPECT_EQ(result.dotsPerMeterX(), 1234);
        EXPECT_EQ(result, TransformPicture(places({33, 21}), kind));
        EXPECT_TRUE(TransformPicture(QImage(), kind).isNull());
    }
}
