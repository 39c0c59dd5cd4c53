#include "annotate/PicturePrinting.h"

#include "platform/FileChecks.h"
#include "support/PdfFile.h"

#include <QPdfWriter>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// No two neighbours are alike, none is white.
QImage pattern(QSize size)
{
    QImage picture(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            picture.setPixel(x, y, qRgb((x * 37) % 200, (y * 53) % 200, (x + y) % 2 * 200));
    }
    return picture;
}

void print(const QString &path, const QImage &picture, QPageLayout::Orientation chosen)
{
    QPdfWriter printer(path);
    printer.setPageLayout(
        QPageLayout(QPageSize(QPageSize::A4), chosen, {20, 10, 30, 40}, QPageLayout::Millimeter));
    PrintPictureToFitPage(printer, picture);
}

TEST(PicturePrinting, fillsTheWidthOrTheHeight)
{
    const QSizeF page(19000, 27700);
    EXPECT_EQ(sizeToFitPage({400, 200}, page), QSizeF(19000, 9500));
    EXPECT_EQ(sizeToFitPage({100, 400}, page), QSizeF(6925, 27700));
    EXPECT_EQ(sizeToFitPage({300, 300}, page), QSizeF(19000, 19000));
    EXPECT_EQ(sizeToFitPage({190, 277}, page), page);
    EXPECT_EQ(sizeToFitPage({6, 5}, {24000, 16000}), QSizeF(19200, 16000));
}

TEST(PicturePrinting, liesInTheCornerOfAPageThatSuitsIt)
{
    // The page without margins is 160 x 247 mm upright, 247 x 160 mm across.
    struct Case {
        QSize picture;
        QSize page;
        QSize printed; // tenths of a millimetre
    };
    for (const Case &each :
         {Case{{64, 32}, {2970, 2100}, {2470, 1235}}, Case{{60, 50}, {2970, 2100}, {1920, 1600}},
          Case{{40, 40}, {2100, 2970}, {1600, 1600}}, Case{{30, 60}, {2100, 2970}, {1235, 2470}}}) {
        const bool upright = each.page.height() > each.page.width();
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"printed.pdf"_s);
        print(path, pattern(each.picture), upright ? QPageLayout::Landscape : QPageLayout::Portrait);
        const QList<QImage> pages = PdfFile::pages(path);
        ASSERT_EQ(pages.size(), 1);
        EXPECT_TRUE(PdfFile::nearlyEqual(pages[0].rect(), QRect({0, 0}, each.page)))
            << testing::PrintToString(pages[0].size());
        const QRect printed = PdfFile::printedArea(pages[0]);
        EXPECT_TRUE(PdfFile::nearlyEqual(printed, QRect({200, 100}, each.printed)))
            << testing::PrintToString(printed);
    }
}

TEST(PicturePrinting, everyPixelArrives)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"printed.pdf"_s);
    for (const auto format : {QImage::Format_RGB32, QImage::Format_RGB16, QImage::Format_RGB888,
                              QImage::Format_Indexed8, QImage::Format_Mono, QImage::Format_Grayscale8}) {
        QImage picture = pattern({301, 207}).convertToFormat(format);
        if (format == QImage::Format_Mono)
            picture.setColorTable({qRgb(200, 10, 10), qRgb(0, 0, 0)});
        print(path, picture, QPageLayout::Portrait);
        const QList<QImage> arrived = PdfFile::pictures(path);
        ASSERT_EQ(arrived.size(), 1) << "format " << format;
        EXPECT_EQ(arrived[0].convertToFormat(QImage::Format_RGB32),
                  picture.convertToFormat(QImage::Format_RGB32))
            << "format " << format;
    }
    // Black and white, which printers know as a stencil: three quarters of it are black.
    for (const int black : {0, 1}) {
        QImage dots(2, 2, QImage::Format_Mono);
        dots.setColorTable({black == 0 ? 0xff000000 : 0xffffffff, black == 0 ? 0xffffffff : 0xff000000});
        dots.fill(static_cast<uint>(black));
        dots.setPixel(1, 1, static_cast<uint>(1 - black));
        print(path, dots, QPageLayout::Portrait);
        const QImage page = PdfFile::pages(path).value(0);
        EXPECT_EQ(page.pixelColor(600, 500), QColor(Qt::black));
        EXPECT_EQ(page.pixelColor(1400, 500), QColor(Qt::black));
        EXPECT_EQ(page.pixelColor(1400, 1300), QColor(Qt::white));
    }
}

TEST(PicturePrinting, withoutPictureOrPrinterItFails)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"printed.pdf"_s);
    EXPECT_EQ(errorOf([&] { print(path, {}, QPageLayout::Portrait); }), RunTimeError::PrinterError);
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_EQ(errorOf([&] {
                  print(path + u"/missing"_s, pattern({4, 4}), QPageLayout::Portrait);
              }),
              RunTimeError::PrinterError);
}
} // namespace
