#include "platform/qt/QtPrintJob.h"

#include "FileChecks.h"
#include "support/PdfFile.h"

#include <QPainter>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

namespace
{
struct FileJob {
    QTemporaryDir folder;
    QString path = folder.filePath(u"printed.pdf"_s);
    QtPrintJob job;

    /// What the dialog does when the user prints into a file.
    FileJob()
    {
        job.printer().setOutputFormat(QPrinter::PdfFormat);
        choose(path);
    }
    void choose(const QString &file)
    {
        job.printer().setOutputFileName(file);
        job.printer().setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Landscape,
                                                {20, 10, 30, 40}, QPageLayout::Millimeter));
    }
    bool paint(const QImage &picture)
    {
        QPainter painter;
        if (!painter.begin(&job.device()))
            return false;
        painter.setRenderHint(QPainter::LosslessImageRendering);
        painter.drawImage(QRect(0, 0, job.device().width() / 2, job.device().height()), picture);
        return painter.end();
    }
    QStringList files() const { return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden); }
    unsigned permissions() const
    {
        struct stat status = {};
        EXPECT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0);
        return status.st_mode & 07777U;
    }
};

QImage redAndBlue()
{
    QImage picture(2, 1, QImage::Format_RGB32);
    picture.setPixel(0, 0, 0xffff0000);
    picture.setPixel(1, 0, 0xff0000ff);
    return picture;
}

/// Incompressible.
QImage noise()
{
    QImage picture(300, 300, QImage::Format_RGB32);
    std::uint32_t number = 1;
    for (int i = 0; i < 300 * 300; ++i) {
        number = number * 1664525 + 1013904223;
        picture.setPixel(i % 300, i / 300, 0xff000000 | number >> 8);
    }
    return picture;
}
} // namespace

TEST(PrintJob, WhatWasPaintedIsInTheFileWhenItIsFinished)
{
    const auto mask = ::umask(0026);
    FileJob t;
    t.job.begin();
    ASSERT_TRUE(t.paint(redAndBlue()));
    EXPECT_FALSE(QFile::exists(t.path));
    t.job.finish();
    ::umask(mask);
    EXPECT_EQ(t.permissions(), 0640U) << "like every other file that the user makes";
    const QList<QImage> pages = PdfFile::pages(t.path);
    ASSERT_EQ(pages.size(), 1);
    EXPECT_TRUE(PdfFile::nearlyEqual(pages[0].rect(), QRect(0, 0, 2970, 2100)));
    const QRect printed = PdfFile::printedArea(pages[0]);
    EXPECT_TRUE(PdfFile::nearlyEqual(printed, QRect(200, 100, 1235, 1600)))
        << testing::PrintToString(printed);
    EXPECT_EQ(pages[0].pixelColor(500, 900), QColor(Qt::red));
    EXPECT_EQ(pages[0].pixelColor(1100, 900), QColor(Qt::blue));
    EXPECT_EQ(PdfFile::pictures(t.path), QList<QImage>{redAndBlue()});
}

TEST(PrintJob, AnExistingFileStaysUntilTheEnd)
{
    FileJob t;
    putFile(t.path, "old");
    ASSERT_EQ(::chmod(QFile::encodeName(t.path).constData(), 0604), 0);
    {
        FileJob dropped;
        dropped.choose(t.path);
        dropped.job.begin();
        ASSERT_TRUE(dropped.paint(redAndBlue()));
        EXPECT_EQ(contents(t.path), "old");
    }
    EXPECT_EQ(contents(t.path), "old");
    EXPECT_EQ(t.files(), QStringList{u"printed.pdf"_s}) << "a job that is given up leaves nothing behind";
    t.job.begin();
    ASSERT_TRUE(t.paint(redAndBlue()));
    t.job.finish();
    EXPECT_EQ(PdfFile::pages(t.path).size(), 1);
    EXPECT_EQ(t.permissions(), 0604U);
}

TEST(PrintJob, AFolderThatCannotBeWrittenIsRefusedAtOnce)
{
    FileJob t;
    ASSERT_EQ(::chmod(QFile::encodeName(t.folder.path()).constData(), 0555), 0);
    const OrdinaryUser user(t.folder.path());
    for (const QString &path : {t.path, t.folder.filePath(u"missing/printed.pdf"_s)}) {
        t.choose(path);
        try {
            t.job.begin();
            ADD_FAILURE() << path.toStdString();
        } catch (const RunTimeError &error) {
            EXPECT_EQ(error.number(), RunTimeError::PathAccess);
            EXPECT_TRUE(error.description().contains(path)) << error.what();
        }
    }
}

TEST(PrintJob, WhatCouldNotBePrintedIsAFailure)
{
    const auto finish = [](FileJob &t) { return errorOf([&t] { t.job.finish(); }); };
    {
        FileJob t;
        t.job.begin();
        EXPECT_EQ(finish(t), RunTimeError::PrinterError) << "nothing was painted";
        EXPECT_FALSE(QFile::exists(t.path));
    }
    {
        FileJob t;
        t.choose(t.folder.filePath(u"missing/device"_s)); // like a printer that has gone
        EXPECT_FALSE(t.paint(redAndBlue()));
        EXPECT_EQ(finish(t), RunTimeError::PrinterError);
    }
    // A disk that is full, for good or for a while.
    for (const bool forAWhile : {false, true}) {
        FileJob t;
        t.job.begin();
        rlimit old{};
        ::getrlimit(RLIMIT_FSIZE, &old);
        const rlimit small{100'000, old.rlim_max};
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        QPainter painter(&t.job.device());
        painter.setRenderHint(QPainter::LosslessImageRendering);
        ::setrlimit(RLIMIT_FSIZE, &small);
        painter.drawImage(0, 0, noise());
        if (forAWhile)
            ::setrlimit(RLIMIT_FSIZE, &old);
        painter.end();
        ::setrlimit(RLIMIT_FSIZE, &old);
        std::signal(SIGXFSZ, handler);
        EXPECT_EQ(finish(t), RunTimeError::PrinterError);
        EXPECT_FALSE(QFile::exists(t.path));
    }
}
