#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <QList>
#include <QProcess>
#include <QRect>
#include <QTemporaryDir>

#include <algorithm>

/// Reads documents with the programs of poppler-utils.
namespace PdfFile
{
inline QList<QImage> picturesMadeBy(const QString &program, const QStringList &arguments)
{
    const QTemporaryDir folder;
    QProcess process;
    process.start(program, arguments + QStringList{folder.filePath(QStringLiteral("picture"))});
    EXPECT_TRUE(process.waitForFinished() && process.exitCode() == 0)
        << program.toStdString() << ": " << process.readAllStandardError().constData();
    QList<QImage> pictures;
    for (const QFileInfo &file : QDir(folder.path()).entryInfoList(QDir::Files, QDir::Name))
        pictures += QImage(file.filePath());
    return pictures;
}

/// Its pages; a pixel is a tenth of a millimetre.
inline QList<QImage> pages(const QString &path)
{
    const QStringList options = QStringLiteral("-r 254 -png").split(u' ');
    return picturesMadeBy(QStringLiteral("pdftoppm"), options + QStringList{path});
}

/// The pictures that lie in it, as they were put there.
inline QList<QImage> pictures(const QString &path)
{
    return picturesMadeBy(QStringLiteral("pdfimages"), {QStringLiteral("-png"), path});
}

/// What is not white.
inline QRect printedArea(const QImage &page)
{
    QRect area;
    for (int y = 0; y < page.height(); ++y) {
        for (int x = 0; x < page.width(); ++x) {
            if (page.pixel(x, y) != 0xffffffff)
                area |= QRect(x, y, 1, 1);
        }
    }
    return area;
}

/// Do all edges agree, but for a point (3.5 pixels of pages())? Documents are laid out in whole points.
inline bool nearlyEqual(const QRect &one, const QRect &other)
{
    const QPoint corners[] = {one.topLeft() - other.topLeft(), one.bottomRight() - other.bottomRight()};
    return std::all_of(std::begin(corners), std::end(corners),
                       [](QPoint distance) { return qAbs(distance.x()) <= 4 && qAbs(distance.y()) <= 4; });
}
} // namespace PdfFile
