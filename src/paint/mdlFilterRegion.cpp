#include "paint/mdlFilter.h"

#include <algorithm>

// Regions of pictures.

namespace mdlFilter
{
Region resolved(const Region &region, QSize picture)
{
    if (region.x1 == -1 && region.y1 == -1 && region.x2 == -1 && region.y2 == -1)
        return {0, 0, picture.width(), picture.height()};
    return region;
}

bool isSmall(const Region &region)
{
    return (std::int64_t{region.x2} - region.x1) * (std::int64_t{region.y2} - region.y1) < 256;
}

void ApplyFilterInPlace(int number, QImage &picture, const Region &region, const Parameters &parameters)
{
    const int up = number == Crease ? creaseAmplitude : number == Wave ? waveAmplitude : 2;
    const QRect window =
        QRect(QPoint(region.x1 - 2, region.y1 - up), QPoint(region.x2 + 2, region.y2 + up)) & picture.rect();
    if (window.isEmpty())
        return;
    Parameters ofPart = parameters;
    ofPart.firstColumn += window.left();
    const Region within{region.x1 - window.left(), region.y1 - window.top(), region.x2 - window.left(),
                        region.y2 - window.top()};
    const QImage part = ApplyFilter(number, picture.copy(window), within, ofPart);
    for (int y = 0; y < window.height(); ++y)
        std::copy_n(reinterpret_cast<const QRgb *>(part.constScanLine(y)), window.width(),
                    reinterpret_cast<QRgb *>(picture.scanLine(window.top() + y)) + window.left());
}
} // namespace mdlFilter
