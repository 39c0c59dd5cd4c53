// Picture files: what the viewer loads, what a run changes, and what documents take over.

#include "fuzz/Fuzz.h"

#include "platform/BitmapHeader.h"
#include "platform/ByteHash.h"
#include "platform/ImageFile.h"
#include "platform/office/PictureShapes.h"
#include "platform/PictureEnd.h"
#include "platform/RunTimeError.h"

#include <QBuffer>
#include <QImageReader>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// Pictures above this are allowed up to ImageFile's limit, but each would take seconds here.
constexpr qint64 manyPixels = qint64{1} << 22;

QSize sizeThatIsTold(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    return reader.size();
}

/// A bitmap of runs may leave pixels out; the reader leaves those as it finds them.
bool isRunLength(const QByteArray &bytes)
{
    constexpr int compressionAt = 30;
    return bytes.startsWith("BM") && bytes.size() > compressionAt && (bytes[compressionAt] & 3) != 0;
}

QImage loaded(const QString &path)
{
    try {
        return ImageFile::load(path);
    } catch (const RunTimeError &error) {
        Fuzz::require(error.number() == RunTimeError::InvalidPicture && error.description().contains(path),
                      "the message names the file");
        return {};
    }
}

/// A change of nothing keeps every pixel, and only the bytes that were expected are changed.
void requireKeptByEditing(const QString &path, const QByteArray &bytes, const QImage &picture)
{
    ByteHash hash;
    hash.add(bytes);
    const ImageFile::RowRange rows{picture.height() / 3, picture.height() / 2};
    const auto nothing = [](QImage &part, int firstRow) {
        Fuzz::require(!part.isNull() && firstRow >= 0, "there is a part to change");
    };
    Fuzz::require(!ImageFile::edit(path, hash.value() + 1, rows, nothing),
                  "a file of other bytes is left alone");
    Fuzz::require(Fuzz::read(path) == bytes, "a file of other bytes stays");
    Fuzz::require(ImageFile::edit(path, hash.value(), rows, nothing), "a file of these bytes is changed");
    Fuzz::require(loaded(path) == picture, "a change of nothing keeps the picture");
}

void lookAtShapes(const QByteArray &bytes)
{
    if (const auto png = PngShape::parse(bytes))
        Fuzz::require(PngShape::isPng(bytes) && png->pixels.width() > 0 && png->pixels.height() > 0,
                      "a PNG has a size");
    if (const auto jpeg = JpegShape::parse(bytes))
        Fuzz::require(JpegShape::isJpeg(bytes) && jpeg->pixels.width() > 0 && jpeg->pixels.height() > 0,
                      "a JPEG has a size");
    PictureEnd::isMissing(bytes);
    const auto header = BitmapHeader::parse(bytes, bytes.size());
    Fuzz::require(!header || (header->rowsEnd() <= bytes.size() && header->size.width() > 0 &&
                              header->size.height() > 0),
                  "a bitmap has its rows");
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const bool quiet = (qputenv("QT_LOGGING_RULES", "*=false"), true);
    Q_UNUSED(quiet)
    const QByteArray bytes = Fuzz::bytesOf(data, size);
    lookAtShapes(bytes);
    const QSize told = sizeThatIsTold(bytes);
    const bool tooLarge = ImageFile::isTooLarge(told);
    if (!tooLarge && qint64{told.width()} * told.height() > manyPixels)
        return -1;
    const QString path = Fuzz::path(u"picture.bmp"_s);
    Fuzz::write(path, bytes);
    const QImage picture = loaded(path);
    Fuzz::require(!tooLarge || picture.isNull(), "what is too large is refused");
    if (picture.isNull())
        return 0;
    Fuzz::require(picture.format() == QImage::Format_RGB32, "a picture has 32 bits");
    if (!isRunLength(bytes))
        requireKeptByEditing(path, bytes, picture);
    return 0;
}
