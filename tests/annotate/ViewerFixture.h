#pragma once

#include "platform/ImageFile.h"
#include "support/TestPages.h"

/// A project folder with pictures of one colour each, and a database with a page for each.
struct ViewerFixture : TestPages {
    /// Writes a picture; its page is number `page` of the project, if that is not 0.
    QString addPicture(const QString &name, QColor colour, int page = 0, QSize size = QSize(40, 30))
    {
        QImage picture(size, QImage::Format_RGB32);
        picture.fill(colour);
        const QString path = inProject(name);
        ImageFile::save(picture, path);
        if (page > 0)
            execute(QStringLiteral(
                        "insert into PageData (ProjectName, ScreenShotFilePath, PageStatus, PageNumber) "
                        "values (\"Demo\", \"%1\", \"OK\", %2)")
                        .arg(path)
                        .arg(page));
        return path;
    }

    /// The colour of a file's top left pixel as another reader of bitmaps has it.
    static QColor colourOf(const QString &path) { return QImage(path).pixelColor(0, 0); }
};
