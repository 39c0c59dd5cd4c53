// What the pictures and the documents of a guide cost: encoding a screen of 1920 x 1080 pixels, beside the
// toolkit's own writer and beside a copy of its bytes, and a Word document and a PDF of a hundred pages with
// a picture each, beside copying the files and beside LibreOffice.

#include "Comparison.h"

#include "platform/AtomicFile.h"
#include "platform/ImageFile.h"
#include "platform/office/FlatOdt.h"
#include "platform/office/LibreOfficeBackend.h"
#include "platform/office/PdfDocument.h"
#include "platform/office/PngEncoder.h"
#include "platform/office/WordBinary.h"

#include <QBuffer>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImageWriter>
#include <QLinearGradient>
#include <QPainter>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <sys/resource.h>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr QSize screenSize(1920, 1080);

/// Windows with title bars, text and a shaded desktop or, without `shades`, one of few colours.
QImage screen(bool shades, int number = 0)
{
    QImage picture(screenSize, QImage::Format_RGB32);
    QPainter painter(&picture);
    QLinearGradient desktop(0, 0, 0, screenSize.height());
    desktop.setColorAt(0, QColor(0x20, 0x40, 0x70));
    desktop.setColorAt(1, QColor(0x90, 0xb0, 0xd0));
    painter.fillRect(picture.rect(), shades ? QBrush(desktop) : QBrush(QColor(0x3a, 0x6e, 0xa5)));
    for (int window = 0; window < 5; ++window) {
        const QRect frame(60 + 330 * window, 40 + 60 * window + number, 560, 700);
        painter.fillRect(frame, Qt::white);
        QLinearGradient bar(frame.topLeft(), frame.topRight());
        bar.setColorAt(0, QColor(0, 0x30, 0x90));
        bar.setColorAt(1, QColor(0x80, 0xa0, 0xf0));
        painter.fillRect(QRect(frame.topLeft(), QSize(560, 26)), shades ? QBrush(bar) : QBrush(Qt::darkBlue));
        painter.setPen(Qt::black);
        painter.setFont(QFont(window % 2 ? u"DejaVu Sans"_s : u"DejaVu Sans Mono"_s, 9));
        for (int line = 0; line < 36; ++line)
            painter.drawText(frame.left() + 10, frame.top() + 50 + 18 * line,
                             u"drwxr-xr-x %1 Click the button “Save as…” %2"_s.arg(line * 7919).arg(number));
    }
    painter.end();
    for (int y = 0; !shades && y < picture.height(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(picture.scanLine(y));
        std::transform(row, row + picture.width(), row, [](QRgb color) { return color & 0xffe0e0c0U; });
    }
    return picture;
}

/// What no screen looks like: a photograph with its noise.
QImage photograph()
{
    QImage picture(screenSize, QImage::Format_RGB32);
    unsigned seed = 1;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            seed = seed * 1664525U + 1013904223U;
            const int noise = static_cast<int>(seed >> 28);
            picture.setPixel(x, y, qRgb(x / 9 + noise, y / 5 + noise, (x + y) / 13 + noise));
        }
    }
    return picture;
}

QByteArray writtenByQt(const QImage &picture, int quality)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, "png");
    writer.setQuality(quality);
    writer.write(picture);
    return bytes;
}

enum class Picture { Shaded, FewColors, Photograph };
enum class Peer { Default, Fast, Copy };

void encode(benchmark::State &state, Picture which, Peer peer)
{
    const QImage picture = which == Picture::Photograph ? photograph() : screen(which == Picture::Shaded);
    constexpr int defaultQuality = -1;
    constexpr int fastQuality = 80; // level 1 of zlib
    const auto target = std::make_unique<char[]>(static_cast<std::size_t>(picture.sizeInBytes()));
    const auto round = [&] {
        if (peer == Peer::Copy)
            std::memcpy(target.get(), picture.constBits(), static_cast<std::size_t>(picture.sizeInBytes()));
        else
            writtenByQt(picture, peer == Peer::Fast ? fastQuality : defaultQuality);
        benchmark::ClobberMemory();
    };
    const char *name = peer == Peer::Copy ? "copy" : peer == Peer::Fast ? "Qt, level 1" : "Qt";
    const char *counter = peer == Peer::Copy ? "least_ms" : "program_ms";
    compare(state, [&] { return timeOf([&] { encodePng(picture); }); },
            {name, [&] { return timeOf(round); }, counter});
    state.counters["kilobytes"] = static_cast<double>(encodePng(picture).size()) / 1024;
    if (peer != Peer::Copy)
        state.counters["beside_kilobytes"] =
            static_cast<double>(
                writtenByQt(picture, peer == Peer::Fast ? fastQuality : defaultQuality).size()) /
            1024;
}

/// A hundred pages with a picture of their own each, as bitmaps or encoded already.
struct Guide {
    static constexpr int pageCount = 100;
    QTemporaryDir folder;
    DocumentContent content;

    explicit Guide(const QString &suffix)
    {
        constexpr int differentPictures = 10;
        for (int page = 0; page < pageCount; ++page) {
            const QString picture = picturePath(page, suffix);
            if (page < differentPictures)
                ImageFile::save(screen(true, 3 * page), picture);
            else // read and encoded like any other
                QFile::link(picturePath(page % differentPictures, suffix), picture);
            content.paragraphs.push_back({u"Step %1"_s.arg(page), {}, {u"Arial"_s, 14}, page > 0});
            content.paragraphs.push_back({u"Click the button and wait. "_s.repeated(15), {}, {}, false});
            content.paragraphs.push_back({{}, DocumentPicture{picture, u"Step"_s}, {}, false});
        }
    }
    QString picturePath(int page, const QString &suffix) const
    {
        return folder.filePath(QString::number(page) + suffix);
    }
};

enum class Kind { Word, Pdf };
constexpr PageFormat a4{{11906, 16838}, 1417};

void write(const Guide &guide, Kind kind)
{
    DocumentPictures pictures;
    if (kind == Kind::Word)
        writeWordDocument(guide.content, pictures, a4, guide.folder.filePath(u"guide.doc"_s), {});
    else
        writePdfDocument(guide.content, pictures, a4, guide.folder.filePath(u"guide.pdf"_s), {});
}

void hundredPages(benchmark::State &state, Kind kind, const QString &suffix)
{
    const Guide guide(suffix);
    const auto copy = [&] {
        for (int page = 0; page < Guide::pageCount; ++page)
            AtomicFile::copy(guide.picturePath(page, suffix), guide.folder.filePath(u"copy"_s));
    };
    compare(state, [&] { return timeOf([&] { write(guide, kind); }); },
            {"copying the pictures", [&] { return timeOf(copy); }});
    const QString name = kind == Kind::Word ? u"guide.doc"_s : u"guide.pdf"_s;
    state.counters["megabytes"] =
        static_cast<double>(QFileInfo(guide.folder.filePath(name)).size()) / (1 << 20);
}

double largestMegabytes(int who)
{
    rusage usage{};
    getrusage(who, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

/// LibreOffice converts the same content, whose pictures are encoded already for it.
void besideLibreOffice(benchmark::State &state, Kind kind, const QString &suffix)
{
    const Guide guide(suffix);
    const OfficeProgram office(guide.folder.filePath(u"profiles"_s));
    if (!office.installed()) {
        state.SkipWithError("LibreOffice is not installed");
        return;
    }
    const QString flat = guide.folder.filePath(u"guide.fodt"_s);
    {
        QFile file(flat);
        DocumentPictures pictures;
        if (!file.open(QIODevice::WriteOnly))
            std::abort();
        FlatOdt::write(guide.content, pictures, OdtSkeleton::plain(a4), file, {});
    }
    const OfficeConversion conversion =
        kind == Kind::Word
            ? OfficeConversion{u"fodt"_s, {}, u"doc"_s, u"MS Word 97"_s}
            : OfficeConversion{u"fodt"_s, {}, u"pdf"_s, QString::fromLatin1(LibreOfficeBackend::losslessPdf)};
    const auto others = [&] {
        office.convert(conversion, [&](const QString &path) { QFile::link(flat, path); },
                       guide.folder.filePath(u"libreoffice"_s), {});
    };
    compare(state, [&] { return timeOf([&] { write(guide, kind); }); },
            {"LibreOffice", [&] { return timeOf(others); }, "program_ms"});
    state.counters["ours_MB"] = largestMegabytes(RUSAGE_SELF);
    state.counters["program_MB"] = largestMegabytes(RUSAGE_CHILDREN);
}
} // namespace

#define ENCODE(name, picture, peer)                                                                          \
    BENCHMARK_CAPTURE(encode, name, picture, peer)                                                           \
        ->UseManualTime()                                                                                    \
        ->Unit(benchmark::kMillisecond)                                                                      \
        ->Iterations(15)
ENCODE(screen, Picture::Shaded, Peer::Default);
ENCODE(screenBesideFast, Picture::Shaded, Peer::Fast);
ENCODE(screenBesideCopy, Picture::Shaded, Peer::Copy);
ENCODE(fewColors, Picture::FewColors, Peer::Default);
ENCODE(photograph, Picture::Photograph, Peer::Default);
#define PAGES(function, name, kind, suffix, rounds)                                                          \
    BENCHMARK_CAPTURE(function, name, kind, suffix)                                                          \
        ->UseManualTime()                                                                                    \
        ->Unit(benchmark::kMillisecond)                                                                      \
        ->Iterations(rounds)
PAGES(hundredPages, wordOfBitmaps, Kind::Word, u".bmp"_s, 5);
PAGES(hundredPages, wordOfPngs, Kind::Word, u".png"_s, 5);
PAGES(hundredPages, pdfOfBitmaps, Kind::Pdf, u".bmp"_s, 5);
PAGES(hundredPages, pdfOfPngs, Kind::Pdf, u".png"_s, 5);
PAGES(besideLibreOffice, wordOfBitmaps, Kind::Word, u".bmp"_s, 2);
PAGES(besideLibreOffice, wordOfPngs, Kind::Word, u".png"_s, 2);
PAGES(besideLibreOffice, pdfOfBitmaps, Kind::Pdf, u".bmp"_s, 2);
PAGES(besideLibreOffice, pdfOfPngs, Kind::Pdf, u".png"_s, 2);

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
