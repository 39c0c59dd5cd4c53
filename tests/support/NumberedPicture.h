#pragma once

#include <QColor>
#include <QImage>

/// A small picture that tells its number, 0 to 255.
inline QImage numbered(int number)
{
    QImage image(4, 3, QImage::Format_RGB32);
    image.fill(QColor(number, 0, 0));
    return image;
}

/// -1 for no picture.
inline int numberOf(const QImage &image)
{
    return image.isNull() ? -1 : image.pixelColor(0, 0).red();
}
