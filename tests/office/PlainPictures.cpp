// Pictures for tests of what is written with them: files that are PNG or JPEG already, as they are.

#include "platform/office/DocumentPictures.h"

#include "platform/InputFile.h"
#include "platform/RunTimeError.h"

#include <QFile>
#include <QImageReader>

using namespace Qt::Literals::StringLiterals;

class DocumentPictures::Work
{
};

DocumentPictures::DocumentPictures() = default;
DocumentPictures::~DocumentPictures() = default;

void DocumentPictures::request(const QString &) {}

EncodedPicture DocumentPictures::describe(const QString &path)
{
    QImageReader reader(path);
    EncodedPicture picture;
    picture.format = reader.format() == "png" ? EncodedPicture::Format::Png : EncodedPicture::Format::Jpeg;
    picture.pixels = reader.size();
    picture.size = QFile(path).size();
    if (!picture.pixels.isValid())
        throw RunTimeError(RunTimeError::InvalidPicture, u"\"%1\" is no picture."_s.arg(path));
    return picture;
}

QByteArray DocumentPictures::bytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
