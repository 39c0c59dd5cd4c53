#include "paint/SlowFilters.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <map>
#include <random>
#include <vector>

using namespace mdlFilter;

namespace
{
bool sameBits(const QImage &one, const QImage &other)
{
    if (one.size() != other.size() || one.format() != other.format())
        return false;
    for (int y = 0; y < one.height(); ++y)
        if (std::memcmp(one.constScanLine(y), other.constScanLine(y),
                        4 * static_cast<std::size_t>(one.width())) != 0)
            return false;
    return true;
}

/// Half of the components are where formulas bend.
QImage randomPicture(QSize size, std::uint32_t seed)
{
    constexpr std::array<int, 12> special{0, 1, 2, 31, 32, 33, 127, 128, 191, 192, 254, 255};
    std::mt19937 numbers(seed);
    const auto component = [&] {
        const auto number = static_cast<std::uint32_t>(numbers());
        return number % 2 == 0 ? special[number / 2 % special.size()] : static_cast<int>(number / 2 % 256);
    };
    QImage picture(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            picture.setPixel(x, y, qRgb(component(), component(), component()));
    return picture;
}

QImage flat(QSize size, QRgb colour)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(colour);
    return picture;
}

QRgb filtered(int number, const QImage &picture, QPoint where, const Region &region = {})
{
    return ApplyFilter(number, picture, region).pixel(where);
}
} // namespace

TEST(mdlFilter, EveryFilterGivesWhatItsFormulaSays)
{
    const std::array<QSize, 6> sizes{QSize{1, 1}, {2, 3}, {16, 17}, {37, 21}, {1100, 23}, {19, 530}};
    for (std::uint32_t seed = 0; seed < sizes.size(); ++seed) {
        const int w = sizes[seed].width();
        const int h = sizes[seed].height();
        const QImage picture = randomPicture(sizes[seed], seed);
        const QImage before = picture.copy();
        for (const Region &region :
             {Region{}, Region{0, 0, w - 1, h - 1}, Region{w / 4, h / 4, w * 3 / 4, h * 3 / 4},
              Region{3, 4, 9, 9}, Region{-1, -1, -1, 7}, Region{-3, -2, w / 2, h / 2},
              Region{w / 2, h / 2, w + 1, h + 3}, Region{w / 3, -5, w / 2, h + 5},
              Region{-7, -7, w + 7, h + 7}, Region{w + 4, h + 4, w + 40, h + 40}, Region{-40, -40, -2, -2},
              Region{9, 9, 3, 3}}) {
            for (int number = -1; number <= 14; ++number) {
                Random random(seed);
                Random same(seed);
                Random watched(seed);
                Parameters parameters{picture.pixel(w / 2, h / 2) & 0xffffffU, 0x123456U, &random};
                const QImage expected = SlowFilters::apply(number, picture, region, parameters);
                parameters.random = &same;
                const QImage result = ApplyFilter(number, picture, region, parameters);
                parameters.random = &watched;
                const QImage other = ApplyFilter(number, picture, region, parameters,
                                                 [](int, const QImage &, int) { return true; });
                const auto where = [&] {
                    return testing::Message()
                           << "filter " << number << ", " << w << "x" << h << ", region " << region.x1 << ","
                           << region.y1 << "," << region.x2 << "," << region.y2;
                };
                ASSERT_TRUE(sameBits(result, expected)) << where();
                ASSERT_TRUE(sameBits(other, expected)) << where() << ", watched";
                ASSERT_EQ(same.state(), random.state()) << where();
                ASSERT_EQ(watched.state(), random.state()) << where();
                ASSERT_TRUE(sameBits(picture, before)) << where();
            }
        }
    }
}

TEST(mdlFilter, FlatPictures)
{
    const QSize size(40, 30);
    const QPoint middle(20, 15);
    const Region brush{15, 10, 25, 20};
    EXPECT_EQ(filtered(Blur, flat(size, qRgb(200, 200, 200)), middle), qRgb(180, 180, 180)); // 9 x 200 / 10
    EXPECT_EQ(filtered(Blur, flat(size, qRgb(5, 15, 25)), middle), qRgb(4, 14, 22)); // 4.5, 13.5, 22.5
    EXPECT_EQ(filtered(Blur, flat(size, qRgb(200, 200, 200)), {0, 15}), qRgb(200, 200, 200));
    EXPECT_EQ(filtered(Blur, flat(size, qRgb(200, 200, 200)), {39, 15}),
              qRgb(120, 120, 120)); // 1,200 less 3 red
    EXPECT_EQ(filtered(Emboss, flat(size, qRgb(1, 100, 255)), middle), qRgb(128, 128, 128));
    EXPECT_EQ(filtered(Emboss, flat(size, qRgb(1, 100, 10)), {39, 29}), qRgb(126, 28, 118)); // red against -1
    EXPECT_EQ(filtered(Darkness, flat(size, qRgb(10, 32, 255)), middle), qRgb(22, 0, 223));
    EXPECT_EQ(filtered(Darkness, flat(size, qRgb(1, 2, 255)), middle, brush), qRgb(1, 0, 253));
    EXPECT_EQ(filtered(Brightness, flat(size, qRgb(255, 224, 7)), middle), qRgb(255, 255, 39));
    EXPECT_EQ(filtered(Brightness, flat(size, qRgb(255, 252, 7)), middle, brush), qRgb(255, 254, 9));
    EXPECT_EQ(filtered(BlackAndWhite, flat(size, qRgb(191, 191, 191)), middle), qRgb(0, 0, 0));
    EXPECT_EQ(filtered(BlackAndWhite, flat(size, qRgb(192, 0, 0)), middle), qRgb(255, 255, 255));
    EXPECT_EQ(filtered(Grayscale, flat(size, qRgb(10, 20, 30)), middle), qRgb(19, 19, 19)); // 19.2
    // r' = 40 x 10 / 256 = 1.5625, g' = (60 - 20 + 2) x 2 / 256, b' = 0
    EXPECT_EQ(filtered(GrayBlackAndWhite, flat(size, qRgb(10, 30, 30)), middle), qRgb(1, 1, 1));
    // (3 x 7 - 0) / 2 = 10.5 and (3 x 9 - 0) / 2 = 13.5: to the even one
    QImage dot = flat(size, qRgb(0, 0, 0));
    dot.setPixel(middle, qRgb(7, 9, 200));
    EXPECT_EQ(filtered(Sharpen, dot, middle), qRgb(10, 14, 255));
    EXPECT_EQ(filtered(Snow, dot, middle), qRgb(175, 225, 255));
    EXPECT_EQ(filtered(Snow, dot, middle + QPoint(1, 1)), qRgb(168, 216, 255)); // not from the written pixel
}

TEST(mdlFilter, ASmallRegionHasLessThan256Pixels)
{
    EXPECT_TRUE(isSmall({0, 0, 15, 17}));
    EXPECT_FALSE(isSmall({0, 0, 16, 16}));
    EXPECT_FALSE(isSmall({0, 0, 65536, 65536}));
}

TEST(mdlFilter, WaveAndCreaseMoveColumns)
{
    QImage picture = flat({5, 440}, qRgb(1, 2, 3));
    for (int x = 0; x < 5; ++x)
        picture.setPixel(x, 5, qRgb(9, 9, 9));
    const QImage wave = ApplyFilter(Wave, picture, {});
    for (const QPoint moved :
         {QPoint(0, 5), QPoint(1, 8), QPoint(2, 9), QPoint(4, 2)}) // 4 sin: 0, 3.4, 3.6, -3.0
        EXPECT_EQ(wave.pixel(moved), qRgb(9, 9, 9)) << moved.x();
    const QImage crease = ApplyFilter(Crease, picture, {});
    EXPECT_EQ(crease.pixel(1, 436), qRgb(9, 9, 9)); // 430.8 down
    EXPECT_EQ(crease.pixel(1, 5), qRgb(9, 9, 9));   // nothing has come here
}

TEST(mdlFilter, RandomOffsetsAreEquallyOften)
{
    std::map<int, int> counts;
    for (std::uint64_t number = 0; number < 65536; ++number)
        ++counts[Random::offset(number << 32, 2)];
    EXPECT_EQ(counts, (std::map<int, int>{{-2, 13108}, {-1, 13107}, {0, 13107}, {1, 13107}, {2, 13107}}));
    Random random(7);
    Random ahead(7);
    for (int i = 0; i < 3; ++i)
        random.next();
    ahead.skip(3);
    EXPECT_EQ(random.next(), ahead.next());
    EXPECT_NE(random.next(), Random(8).next());
}

TEST(mdlFilter, TheWatcherHearsOfColumnsAndEndsTheFilter)
{
    const QImage picture = randomPicture({600, 40}, 1);
    const QImage whole = ApplyFilter(Darkness, picture, {});
    std::vector<std::pair<int, int>> heard;
    const auto watcher = [&](int percent, const QImage &result, int done) {
        heard.emplace_back(percent, done);
        EXPECT_TRUE(sameBits(result.copy(0, 0, done, 40), whole.copy(0, 0, done, 40)));
        EXPECT_TRUE(sameBits(result.copy(done, 0, 600 - done, 40), picture.copy(done, 0, 600 - done, 40)));
        return true;
    };
    ApplyFilter(Darkness, picture, {}, {}, watcher);
    EXPECT_EQ(heard, (std::vector<std::pair<int, int>>{{42, 256}, {85, 512}, {99, 600}}));
    heard.clear();
    ApplyFilter(Brightness, picture, {100, 10, 110, 20}, {}, watcher);
    EXPECT_TRUE(heard.empty());

    int calls = 0;
    EXPECT_TRUE(
        ApplyFilter(Blur, picture, {}, {}, [&](int, const QImage &, int) { return ++calls < 2; }).isNull());
    EXPECT_EQ(calls, 2);
    std::vector<int> retrieved;
    const QImage tall = randomPicture({20, 600}, 1);
    ApplyFilter(Blur, tall, {}, {}, [&](int percent, const QImage &result, int done) {
        EXPECT_EQ(result.isNull(), done == 0);
        retrieved.push_back(done == 0 ? percent : -1);
        return true;
    });
    EXPECT_EQ(retrieved, (std::vector<int>{0, 42, 85, -1})) << "the snapshot comes first";
}

TEST(mdlFilter, InPlaceIsTheSameAsOnTheWholePicture)
{
    const QImage picture = randomPicture({90, 1300}, 3);
    for (int number = 0; number <= 13; ++number) {
        for (const Region &region :
             {Region{20, 600, 36, 616}, Region{-3, -3, 5, 5}, Region{80, 1290, 96, 1306},
              Region{40, 40, 44, 44}, Region{100, 10, 110, 20}}) {
            Random random(5);
            Random again(5);
            const QImage whole = ApplyFilter(number, picture, region, {0, 1, &random});
            QImage inPlace = picture;
            ApplyFilterInPlace(number, inPlace, region, {0, 1, &again});
            EXPECT_TRUE(sameBits(inPlace, whole)) << number << " at " << region.x1;
        }
    }
}

TEST(mdlFilter, OtherFormatsAndNoPictureAtAll)
{
    QImage picture = randomPicture({30, 20}, 2);
    picture.setDotsPerMeterY(1234);
    EXPECT_EQ(ApplyFilter(Snow, picture, {}).dotsPerMeterY(), 1234);
    EXPECT_TRUE(sameBits(ApplyFilter(Snow, picture.convertToFormat(QImage::Format_ARGB32), {}),
                         ApplyFilter(Snow, picture, {})));
    EXPECT_TRUE(ApplyFilter(Blur, QImage(), {}).isNull());
}
