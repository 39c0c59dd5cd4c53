#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

/// Picture files. A name that ends in .png, .jpg or .jpeg (letter case ignored) is written in that format,
/// every other name as a Windows bitmap.
namespace ImageFile
{
/// Writes `picture` atomically. Throws RunTimeError naming the file and the reason.
void save(const QImage &picture, const QString &path);

/// Reads any picture that Qt knows as Format_RGB32, device pixel ratio 1. Throws RunTimeError when the file
/// is missing, not readable or no picture.
QImage load(const QString &path);

/// A Windows bitmap of 24 bits a pixel: BITMAPFILEHEADER, BITMAPINFOHEADER, rows bottom-up, each padded to
/// four bytes (Microsoft, "Bitmap Storage"). 2835 pixels a metre (72 dpi). Alpha is ignored. A null picture
/// gives a bitmap of 0 x 0 pixels.
QByteArray toBitmap(const QImage &picture);
} // namespace ImageFile
