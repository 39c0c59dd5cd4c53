#include "platform/BitmapRows.h"
#include "platform/ByteHash.h"
#include "platform/ImageFile.h"
#include "platform/PictureEnd.h"
#include "platform/RunTimeError.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <numeric>
#include <sys/resource.h>
#include <vector>

using namespace Qt::Literals::StringLiterals;

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
    QByteArray saved(const QImage &picture)
    {
        QFile::remove(path("saved.bmp"));
        ImageFile::save(picture, path("saved.bmp"));
        return bytesOf("saved.bmp");
    }
    template <typename Action>
    int errorOf(const char *name, Action action) const
    {
        try {
            action(path(name));
        } catch (const RunTimeError &error) {
            EXPECT_TRUE(error.description().contains(path(name)));
            return error.number();
        }
        return 0;
    }
    int errorOfLoading(const char *name) const { return errorOf(name, ImageFile::load); }
};

/// Every pixel another one; large enough to be written in several pieces that end within rows.
QImage many()
{
    QImage picture(701, 500, QImage::Format_RGB32);
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            picture.setPixel(x, y, 0xff000000U | static_cast<QRgb>(y * 701 + x) * 37U);
    return picture;
}

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
    EXPECT_EQ(saved(threeByTwo(QImage::Format_ARGB32)).toHex(), expected.toHex());
    EXPECT_EQ(saved(threeByTwo(QImage::Format_RGB888)).toHex(), expected.toHex());
    const QByteArray none = saved({});
    EXPECT_EQ(none.size(), 54);
    EXPECT_EQ(none.mid(2, 4).toHex(), "36000000");
    EXPECT_EQ(none.mid(18, 8).toHex(), "0000000000000000");
}

TEST(BitmapRowsTest, PacksAndUnpacksEveryLengthAndNothingBeyond)
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

        packed.resize(3 * count); // so that a sanitizer sees whoever reads further
        std::vector<std::uint32_t> unpacked(count + 4, 0xcccccccc);
        unpackPixels(packed.data(), unpacked.data(), count);
        for (std::uint32_t &pixel : pixels)
            pixel |= 0xff000000;
        pixels.resize(count + 4, 0xcccccccc);
        EXPECT_EQ(unpacked, pixels) << count;
    }
}

TEST_F(ImageFileTest, LargeBitmapsAreCutIntoPiecesAndPutTogetherAgain)
{
    const QImage picture = many();
    const std::uint64_t hash = ImageFile::save(picture, path("many.bmp"));
    EXPECT_EQ(QImage(path("many.bmp")).convertToFormat(QImage::Format_RGB32), picture);
    EXPECT_EQ(ImageFile::load(path("many.bmp")), picture);
    ByteHash whole;
    whole.add(bytesOf("many.bmp"));
    EXPECT_EQ(hash, whole.value());
}

TEST_F(ImageFileTest, HeadersThatDifferOrLieAreUnderstoodOrRefused)
{
    const QImage picture = threeByTwo(QImage::Format_RGB32);
    const QByteArray plain = saved(picture);
    QByteArray gap = plain; // four bytes between the headers and the rows
    gap.insert(54, "gap!").replace(10, 1, QByteArray::fromHex("3a"));
    bytesOf("gap.bmp", gap);
    EXPECT_EQ(ImageFile::load(path("gap.bmp")), picture);
    QByteArray topDown = plain;
    topDown.replace(22, 4, QByteArray::fromHex("feffffff"));
    bytesOf("topdown.bmp", topDown);
    EXPECT_EQ(ImageFile::load(path("topdown.bmp")), picture.mirrored());
    bytesOf("cut.bmp", plain.chopped(1));
    EXPECT_EQ(errorOfLoading("cut.bmp"), RunTimeError::InvalidPicture);

    const struct {
        const char *name;
        int at;
        const char *value;
    } lies[] = {{"width.bmp", 18, "ffffff7f"},
                {"negative.bmp", 18, "fdffffff"},
                {"height.bmp", 22, "ffffff7f"},
                {"smallest.bmp", 22, "00000080"},
                {"both.bmp", 18, "ffffff7fffffff7f"}};
    for (const auto &lie : lies) {
        const QByteArray value = QByteArray::fromHex(lie.value);
        bytesOf(lie.name, QByteArray(plain).replace(lie.at, value.size(), value));
        EXPECT_EQ(errorOfLoading(lie.name), RunTimeError::InvalidPicture) << lie.name;
    }
    QByteArray largest = plain; // its bytes are more than 64 bits can count
    largest.replace(18, 8, QByteArray::fromHex("ffffff7fffffff7f")).replace(28, 2, "\xff\xff");
    EXPECT_TRUE(PictureEnd::isMissing(largest));
    EXPECT_FALSE(PictureEnd::isMissing(plain));
}

TEST_F(ImageFileTest, EditingChangesTheRowsThatArePainted)
{
    const auto paint = [](QImage &part, int firstRow) {
        for (int y = 0; y < 500; ++y) // a slanting line over the whole picture
            part.setPixel(QPoint(y, qBound(0, y - firstRow, part.height() - 1)), 0xff00ff00);
    };
    const struct {
        ImageFile::RowRange asked;
        ImageFile::RowRange got;
    } ranges[] = {{{200, 290}, {200, 290}}, {{-20, 40}, {0, 40}},     {{460, 600}, {460, 499}},
                  {{-9, 9999}, {0, 499}},   {{499, 499}, {499, 499}}, {{0, 0}, {0, 0}}};
    for (const char *name : {"a.bmp", "a.png"}) {
        for (const auto &[asked, got] : ranges) {
            QImage expected = many();
            const bool whole = name[2] == 'p';
            const int first = whole ? 0 : got.first;
            const int last = whole ? 499 : got.last;
            for (int y = 0; y < 500; ++y)
                expected.setPixel(y, qBound(first, y, last), 0xff00ff00);
            const std::uint64_t hash = ImageFile::save(many(), path(name));
            EXPECT_TRUE(ImageFile::edit(path(name), hash, asked, paint));
            EXPECT_EQ(ImageFile::load(path(name)), expected) << name << asked.first;
            EXPECT_FALSE(ImageFile::edit(path(name), hash, asked, paint));
            EXPECT_EQ(ImageFile::load(path(name)), expected) << name << asked.first;
        }
        const std::uint64_t hash = ImageFile::save(many(), path(name));
        EXPECT_TRUE(ImageFile::edit(path(name), hash, {500, 600}, [](QImage &, int) {}));
        EXPECT_EQ(ImageFile::load(path(name)), many());
    }
    // Rows of another program, the highest first.
    QByteArray topDown = saved(many());
    topDown.replace(22, 4, QByteArray::fromHex("0cfeffff"));
    bytesOf("topdown.bmp", topDown);
    ByteHash hash;
    hash.add(topDown);
    EXPECT_TRUE(ImageFile::edit(path("topdown.bmp"), hash.value(), {10, 10}, [](QImage &part, int firstRow) {
        part.setPixel(7, 10 - firstRow, 0xff00ff00);
    }));
    QImage expected = many().mirrored();
    expected.setPixel(7, 10, 0xff00ff00);
    EXPECT_EQ(ImageFile::load(path("topdown.bmp")), expected);
}

TEST_F(ImageFileTest, OnlyWhatMustBeWrittenCanFailToBe)
{
    const std::uint64_t hash = ImageFile::save(many(), path("a.bmp"));
    const auto edit = [](std::uint64_t expected) {
        return [expected](const QString &file) {
            EXPECT_FALSE(
                ImageFile::edit(file, expected, {0, 9}, [](QImage &part, int) { part.fill(Qt::red); }));
        };
    };
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit old = {};
    ::getrlimit(RLIMIT_FSIZE, &old);
    const rlimit small{300'000, old.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_EQ(errorOf("a.bmp", edit(hash)), RunTimeError::DiskFull);
    EXPECT_EQ(errorOf("a.bmp", edit(hash + 1)), 0);
    EXPECT_EQ(errorOf("new.bmp", [](const QString &file) { ImageFile::save(many(), file); }),
              RunTimeError::DiskFull);
    ::setrlimit(RLIMIT_FSIZE, &old);
    EXPECT_EQ(ImageFile::load(path("a.bmp")), many());
    EXPECT_FALSE(QFile::exists(path("new.bmp")));
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

TEST_F(ImageFileTest, HalfAFileIsNoPicture)
{
    QImage picture(40, 30, QImage::Format_RGB32);
    for (int y = 0; y < 30; ++y) {
        for (int x = 0; x < 40; ++x)
            picture.setPixel(x, y, qRgb(x * 6, y * 8, x * y % 256));
    }
    for (const QString &format : {u"bmp"_s, u"bmp2"_s, u"png"_s, u"jpg"_s, u"gif"_s}) {
        const QString path = folder.filePath(u"whole."_s + format);
        ImageFile::save(picture, folder.filePath(u"source.bmp"_s));
        ASSERT_EQ(QProcess::execute(u"convert"_s, {folder.filePath(u"source.bmp"_s), format + u':' + path}),
                  0);
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray whole = file.readAll();
        EXPECT_EQ(ImageFile::load(path).size(), picture.size());
        for (const qsizetype kept : {whole.size() / 2, whole.size() * 9 / 10}) {
            const QString cut = folder.filePath(u"cut."_s + format);
            QFile half(cut);
            ASSERT_TRUE(half.open(QIODevice::WriteOnly) && half.write(whole.first(kept)) == kept);
            half.close();
            EXPECT_THROW(ImageFile::load(cut), RunTimeError) << format.toStdString() << ' ' << kept;
        }
    }
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
