#include "paint/mdlEffect.h"

#include "platform/Rounding.h"

#include <algorithm>

namespace mdlEffect
{
namespace
{
int scaledLength(int length, float factor)
{
    return std::max(1, Rounding::toInt(static_cast<float>(length) * factor));
}

QImage resize(const QImage &picture, const Parameters &parameters)
{
    const QSize size(scaledLength(picture.width(), parameters.widthFactor),
                     scaledLength(picture.height(), parameters.heightFactor));
    // Qt's smooth scaling is an area average downwards and bilinear upwards; it needs 32 bits a pixel.
    return picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}
} // namespace

QImage TransformPicture(const QImage &picture, Kind kind, const Parameters &parameters)
{
    if (picture.isNull())
        return {};
    QImage result = picture.convertToFormat(QImage::Format_RGB32);
    result.setDevicePixelRatio(1);
    switch (kind) {
    case Kind::Resize:
        result = resize(result, parameters);
        break;
    }
    return result;
}
} // namespace mdlEffect
