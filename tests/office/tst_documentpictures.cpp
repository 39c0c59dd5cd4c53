#include "office/OtherPrograms.h"
#include "platform/FileChecks.h"
#include "platform/ImageFile.h"
#include "platform/office/DocumentPictures.h"

#include <QFileInfo>
#include <QImageWriter>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

using namespace Qt::Literals::StringLiterals;
using Format = EncodedPicture::Format;

namespace
{
struct DocumentPicturesTest : testing::Test {
    QTemporaryDir folder;
    DocumentPictures pictures;

    QString path(const QString &name) const { return folder.filePath(name); }
    QString saved(const QImage &picture, const QString &name, bool progressive = false) const
    {
        QImageWriter writer(path(name));
        writer.setProgressiveScanWrite(progressive);
        EXPECT_TRUE(writer.write(picture));
        return path(name);
    }
    /// Made by ImageMagick from a picture of its own.
    QString converted(const char *options, const QString &name) const
    {
        printedBy(options, {path(name)});
        return path(name);
    }
    /// The number of the error, which names the file.
    int errorOfReading(const QString &file)
    {
        try {
            pictures.bytes(file);
        } catch (const RunTimeError &error) {
            EXPECT_TRUE(error.description().contains(file)) << error.what();
            return error.number();
        }
        return 0;
    }
};

/// As many colours as there are pixels, at most `colors`.
QImage colorful(QSize size, int colors)
{
    QImage picture(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            picture.setPixel(x, y, 0xff000000U | static_cast<QRgb>((y * size.width() + x) % colors) * 40503U);
    return picture;
}

QImage read(const QByteArray &file)
{
    return QImage::fromData(file).convertToFormat(QImage::Format_RGB32);
}
} // namespace

TEST_F(DocumentPicturesTest, BitmapsBecomeSimplePngsOfTheSamePixels)
{
    QImage smooth(300, 200, QImage::Format_RGB32);
    for (int y = 0; y < smooth.height(); ++y)
        for (int x = 0; x < smooth.width(); ++x)
            smooth.setPixel(x, y, qRgb(x * 255 / 299, y, (x + y) / 2));
    QImage lines = colorful({64, 600}, 1000);
    for (int y = 1; y < lines.height(); ++y) // each row as the one above, but for one pixel
        for (int x = 0; x < lines.width(); ++x)
            lines.setPixel(x, y, x == y % 64 ? 0xff123456U + static_cast<QRgb>(y) : lines.pixel(x, y - 1));
    const std::vector<std::pair<QImage, bool>> cases = {{colorful({1, 1}, 1), true},
                                                        {colorful({2, 3}, 6), true},
                                                        {colorful({1, 700}, 256), true},
                                                        {colorful({257, 3}, 256), true},
                                                        {colorful({257, 3}, 257), false},
                                                        {colorful({701, 1}, 701), false},
                                                        {colorful({123, 77}, 1 << 24), false},
                                                        {smooth, false},
                                                        {lines, false}};
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const QString file = path(u"%1.bmp"_s.arg(i));
        ImageFile::save(cases[i].first, file);
        const QByteArray bytes = pictures.bytes(file);
        EXPECT_EQ(read(bytes), cases[i].first) << i;
        putFile(path(u"a.png"_s), bytes);
        const QByteArray checked = printedBy("pngcheck -v", {path(u"a.png"_s)});
        EXPECT_TRUE(checked.contains(cases[i].second ? "8-bit palette, non-inter" : "24-bit RGB, non-inter"))
            << checked.constData();
        const EncodedPicture expected{Format::Png, cases[i].first.size(), bytes.size(),
                                      cases[i].second ? 1 : 3, cases[i].second};
        EXPECT_EQ(pictures.describe(file), expected) << i;
    }
}

TEST_F(DocumentPicturesTest, FilesThatDocumentsCanHoldStayAsTheyAre)
{
    const QImage picture = colorful({40, 30}, 1 << 24);
    const QImage grey = picture.convertToFormat(QImage::Format_Grayscale8);
    const EncodedPicture color{Format::Jpeg, {40, 30}, 0, 3, false};
    const EncodedPicture onePart{Format::Jpeg, {40, 30}, 0, 1, false};
    const EncodedPicture palette{Format::Png, {40, 30}, 0, 1, true};
    const std::vector<std::pair<QString, EncodedPicture>> cases = {
        {saved(picture, u"a.jpg"_s), color},
        {saved(picture, u"progressive.jpeg"_s, true), color},
        {saved(grey, u"grey.jpg"_s), onePart},
        {converted("convert rose: -resize 40x30! -sampling-factor 4:2:0 -define jpeg:restart-interval=1",
                   u"r.jpg"_s),
         color},
        {saved(picture, u"rgb.png"_s), {Format::Png, {40, 30}, 0, 3, false}},
        {saved(grey, u"grey.png"_s), {Format::Png, {40, 30}, 0, 1, false}},
        {saved(picture.convertToFormat(QImage::Format_Indexed8), u"palette.png"_s), palette},
        {saved(picture.convertToFormat(QImage::Format_Mono), u"mono.png"_s), palette},
        {converted("convert rose: -resize 40x30! -colors 9 -define png:bit-depth=4 -define png:color-type=3",
                   u"four.png"_s),
         palette}};
    for (const auto &[file, expected] : cases) {
        EncodedPicture description = expected;
        description.size = QFileInfo(file).size();
        EXPECT_EQ(pictures.describe(file), description) << file.toStdString();
        EXPECT_EQ(pictures.bytes(file), contents(file)) << file.toStdString();
    }
}

TEST_F(DocumentPicturesTest, OtherFilesAreWrittenAnew)
{
    QImage transparent(2, 1, QImage::Format_ARGB32);
    transparent.setPixel(0, 0, 0x00ff0000);
    transparent.setPixel(1, 0, 0xff0000ff);
    const QImage onWhite = read(pictures.bytes(saved(transparent, u"alpha.png"_s)));
    EXPECT_EQ(onWhite.pixel(0, 0), 0xffffffff);
    EXPECT_EQ(onWhite.pixel(1, 0), 0xff0000ff);

    const QString interlaced = converted("convert rose: -interlace PNG", u"interlaced.png"_s);
    const QString deep = converted("convert rose: -depth 16 -evaluate add 99", u"deep.png"_s);
    QImage indexed = colorful({70, 46}, 7).convertToFormat(QImage::Format_Indexed8);
    indexed.setColor(3, 0x00ffffff); // writes tRNS
    const QString key = saved(indexed, u"key.png"_s);
    const QString animation = converted("convert rose: rose: -loop 0", u"two.gif"_s);
    const QString print = converted("convert rose: -colorspace CMYK", u"print.jpg"_s);
    for (const QString &file : {interlaced, deep, key, animation, print}) {
        const QByteArray bytes = pictures.bytes(file);
        EXPECT_NE(bytes, contents(file)) << file.toStdString();
        putFile(path(u"new.png"_s), bytes);
        const QByteArray checked = printedBy("pngcheck -v", {path(u"new.png"_s)});
        EXPECT_TRUE(checked.contains("70 x 46 image, 24-bit RGB, non-interlaced") ||
                    checked.contains("70 x 46 image, 8-bit palette, non-interlaced"))
            << checked.constData();
        EXPECT_FALSE(checked.contains("tRNS"));
        // Fails where a pixel differs by more than what 16 bits have more than 8; colours of print do.
        if (file != print)
            printedBy("compare -metric AE -fuzz 0.5% -background white -alpha remove",
                      {file + u"[0]"_s, path(u"new.png"_s), u"null:"_s});
    }
}

TEST_F(DocumentPicturesTest, LargePicturesAreRead)
{
    // More than Qt's own limit of 128 megabytes.
    QImage large(20000, 3000, QImage::Format_ARGB32);
    large.fill(0x80ff0000);
    QImageWriter writer(path(u"large.png"_s));
    writer.setCompression(1);
    ASSERT_TRUE(writer.write(large));
    large = QImage();
    const EncodedPicture description = pictures.describe(path(u"large.png"_s));
    EXPECT_EQ(description.pixels, QSize(20000, 3000));
    putFile(path(u"new.png"_s), pictures.bytes(path(u"large.png"_s)));
    EXPECT_TRUE(printedBy("pngcheck -v", {path(u"new.png"_s)}).contains("20000 x 3000 image"));
}

TEST_F(DocumentPicturesTest, WhatIsNoPictureIsToldByName)
{
    EXPECT_EQ(errorOfReading(path(u"missing.png"_s)), RunTimeError::FileNotFound);
    EXPECT_EQ(errorOf([&] { pictures.describe(path(u"missing.png"_s)); }), RunTimeError::FileNotFound);
    EXPECT_NE(errorOfReading(folder.path()), 0);

    putFile(path(u"huge.ppm"_s), "P6 20000 20000 255\n");
    putFile(path(u"huge.bmp"_s), QByteArray::fromHex("424d00000000000000003600000028000000204e0000204e0000"
                                                     "0100180000000000000000000000000000000000000000000000"
                                                     "0000"));
    ASSERT_TRUE(QFile::resize(path(u"huge.bmp"_s), 54 + qint64{60000} * 20000)); // holds nothing
    for (const QString &file : {path(u"huge.ppm"_s), path(u"huge.bmp"_s)}) {
        try {
            pictures.describe(file);
            ADD_FAILURE() << file.toStdString();
        } catch (const RunTimeError &error) {
            EXPECT_EQ(error.description(), file + u" is too large: 20000 x 20000 pixels"_s);
        }
    }

    const QImage picture = colorful({9, 7}, 1 << 24);
    ImageFile::save(picture, path(u"whole.bmp"_s));
    const QByteArray bitmap = contents(path(u"whole.bmp"_s));
    const QByteArray png = contents(saved(picture, u"whole.png"_s));
    const QByteArray jpeg = contents(saved(picture, u"whole.jpg"_s));
    const QByteArray alpha =
        contents(saved(picture.convertToFormat(QImage::Format_ARGB32_Premultiplied), u"alpha.png"_s));
    QByteArray wrong = png;
    wrong[wrong.indexOf("IDAT") + 20] = static_cast<char>(wrong[wrong.indexOf("IDAT") + 20] ^ 1);
    const QByteArray threeBits = QByteArray::fromHex( // a component, which no PNG file has
        "89504e470d0a1a0a0000000d49484452000000010000000103000000004daeaa44000000"
        "0a49444154789c636000000002000148afa4710000000049454e44ae426082");
    std::vector<QByteArray> broken{{}, "text", bitmap.chopped(1), wrong, threeBits};
    for (const QByteArray &whole : {png, jpeg, alpha}) {
        for (qsizetype length = 1; length < whole.size(); ++length)
            broken.push_back(whole.first(length));
    }
    for (std::size_t i = 0; i < broken.size(); ++i) {
        const QString file = path(u"broken%1"_s.arg(i));
        putFile(file, broken[i]);
        EXPECT_EQ(errorOfReading(file), RunTimeError::InvalidPicture)
            << i << ": " << broken[i].toHex().constData();
    }
}

TEST_F(DocumentPicturesTest, EachFileIsReadOnceHoweverManyThreadsAsk)
{
    constexpr int count = 40;
    const auto file = [&](int number) { return path(u"%1.bmp"_s.arg(number)); };
    for (int number = 0; number < count; ++number)
        ImageFile::save(colorful({200 + number, 100}, 1 << 24), file(number));
    std::vector<std::vector<QByteArray>> found(4);
    {
        std::vector<std::jthread> threads;
        threads.reserve(found.size());
        for (std::vector<QByteArray> &bytes : found) {
            threads.emplace_back([&] {
                for (int number = 0; number < count; ++number)
                    pictures.request(file(number));
                for (int number = count - 1; number >= 0; --number)
                    bytes.push_back(pictures.bytes(file(number)));
            });
        }
    }
    for (const std::vector<QByteArray> &bytes : found) {
        for (int number = 0; number < count; ++number)
            ASSERT_EQ(read(bytes[static_cast<std::size_t>(count - 1 - number)]),
                      colorful({200 + number, 100}, 1 << 24));
    }
    putFile(file(3), "changed");
    EXPECT_EQ(pictures.describe(file(3)).pixels, QSize(203, 100));
    EXPECT_EQ(pictures.bytes(file(3)), found[0][count - 1 - 3]);

    DocumentPictures given; // ends before all of them are encoded
    for (int number = 0; number < count; ++number)
        given.request(file(number));
}
