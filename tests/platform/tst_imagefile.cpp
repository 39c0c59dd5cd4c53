#include "platform/BitmapRows.h"
#include "platform/ImageFile.h"
#include "platform/RunTimeError.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

namespace
{
struct ImageFileTest : testing::Test {
    QTemporaryDir folder;
    QString path(const char *name) const { return folder.filePath(QString::fromLatin1(name)); }
    QByteArray bytesOf(const char *name, const QByteArray &toWrite = {}) const
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::ReadWrite));
        file.write(toWrite);
        file.seek(0);
        return file.readAll();
    }
    int errorOfLoading(const char *name) const
    {
        try {
            ImageFile::load(path(name));
        } catch (const RunTimeError &error) {
            EXPECT_TRUE(error.description().contains(path(name)));
            return error.number();
        }
        return 0;
    }
};

QImage threeByTwo(QImage::Format format)
{
    QImage picture(3, 2, format);
    const std::vector<QRgb> colours{0xff010203, 0x80040506, 0x00070809, 0xff0a0b0c, 0xff0d0e0f, 0xff101112};
    for (int i = 0; i < 6; ++i)
        picture.setPixel(i % 3, i / 3, colours[static_cast<std::size_t>(i)]);
    return picture;
}
} // namespace

TEST_F(ImageFileTest, BitmapBytesAreThoseOfTheFormat)
{
    const QByteArray expected = QByteArray::fromHex("424d"
                                                    "4e000000"
                                                    "0000"
                                                    "0000"
                                                    "36000000" // 78 bytes, pixels at 54
                                                    "28000000"
                                                    "03000000"
                                                    "02000000"
                                                    "0100"
                                                    "1800"
                                                    "00000000" // 3 x 2, 24 bits
                                                    "18000000"
                                                    "130b0000"
                                                    "130b0000"
                                                    "00000000"
                                                    "00000000" // 24 bytes, 2835 a metre
                                                    "0c0b0a"
                                                    "0f0e0d"
                                                    "121110"
                                                    "000000" // the lower row, filled up
                                                    "030201"
                                                    "060504"
                                                    "090807"
                                                    "000000");
    QByteArray(expected.size(), '\xcc').clear(); // so that fresh memory is not zero by chance
    EXPECT_EQ(ImageFile::toBitmap(threeByTwo(QImage::Format_ARGB32)).toHex(), expected.toHex());
    EXPECT_EQ(ImageFile::toBitmap(threeByTwo(QImage::Format_RGB888)).toHex(), expected.toHex());
    const QByteArray none = ImageFile::toBitmap({});
    EXPECT_EQ(none.size(), 54);
    EXPECT_EQ(none.mid(2, 4).toHex(), "36000000");
    EXPECT_EQ(none.mid(18, 8).toHex(), "0000000000000000");
}

TEST(BitmapRowsTest, PacksEveryLengthAndNothingBeyond)
{
    for (std::size_t count : {0U, 1U, 15U, 16U, 17U, 37U, 64U}) {
        std::vector<std::uint32_t> pixels;
        for (std::uint32_t i = 0; i < count; ++i)
            pixels.push_back(0xee000000 | (3 * i + 2) << 16 | (3 * i + 1) << 8 | 3 * i);
        std::vector<std::uint8_t> packed(3 * count + 16, 0xcc);
        packPixels(pixels.data(), packed.data(), count);

        std::vector<std::uint8_t> expected(3 * count); // 0, 1, 2, 3 and so on
        std::iota(expected.begin(), expected.end(), std::uint8_t{0});
        expected.resize(3 * count + 16, 0xcc);
        EXPECT_EQ(packed, expected) << count;
    }
}

TEST_F(ImageFileTest, NameTellsTheFormatAndBitmapIsTheRest)
{
    const QImage picture = threeByTwo(QImage::Format_RGB32);
    for (const char *name : {"a.bmp", "b@2x.bmp", "c", "d.gif", "e.png", "f.PNG"}) {
        ImageFile::save(picture, path(name));
        const QImage loaded = ImageFile::load(path(name));
        EXPECT_EQ(loaded, picture) << name;
        EXPECT_EQ(loaded.format(), QImage::Format_RGB32);
        EXPECT_EQ(loaded.devicePixelRatio(), 1) << name;
    }
    ImageFile::save(picture, path("g.jpeg"));
    EXPECT_EQ(ImageFile::load(path("g.jpeg")).size(), QSize(3, 2));
    EXPECT_TRUE(bytesOf("d.gif").startsWith("BM"));
    EXPECT_TRUE(bytesOf("f.PNG").startsWith("\x89PNG"));
    EXPECT_TRUE(bytesOf("g.jpeg").startsWith("\xff\xd8"));
}

TEST_F(ImageFileTest, TransparentPartsOfAFileAreWhite)
{
    QImage picture(2, 1, QImage::Format_ARGB32);
    picture.setPixel(0, 0, 0x00000000);
    picture.setPixel(1, 0, 0xff102030);
    ASSERT_TRUE(picture.save(path("clear.png")));
    const QImage loaded = ImageFile::load(path("clear.png"));
    EXPECT_EQ(loaded.pixel(0, 0), 0xffffffffU);
    EXPECT_EQ(loaded.pixel(1, 0), 0xff102030U);
}

TEST_F(ImageFileTest, FailuresNameTheFile)
{
    EXPECT_EQ(errorOfLoading("missing.bmp"), RunTimeError::FileNotFound);
    bytesOf("text.bmp", "BM is how this begins, but it is no picture");
    EXPECT_EQ(errorOfLoading("text.bmp"), RunTimeError::InvalidPicture);
    EXPECT_THROW(ImageFile::save({}, path("nothing.png")), RunTimeError);
    EXPECT_FALSE(QFile::exists(path("nothing.png")));
    EXPECT_THROW(ImageFile::save(threeByTwo(QImage::Format_RGB32), path("no/such/folder.bmp")), RunTimeError);
}
