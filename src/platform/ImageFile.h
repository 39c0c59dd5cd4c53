#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

#include <cstdint>

/// Picture files. A name that ends in .png, .jpg or .jpeg (letter case ignored) is written in that format,
/// every other name as a Windows bitmap.
namespace ImageFile
{
/// Writes `picture` atomically and returns the hash of the bytes written. Throws RunTimeError naming the file
/// and the reason.
std::uint64_t save(const QImage &picture, const QString &path);

/// XXH3 (64 bits) of a file's bytes; tells whether a file is still the one that was written.
std::uint64_t hash(QByteArrayView bytes);

/// Reads any picture that Qt knows as Format_RGB32, device pixel ratio 1. Throws RunTimeError when the file
/// is missing, not readable or no picture.
QImage load(const QString &path);

/// The two halves of load(): the bytes of a file, and the picture that they are (`path` is for messages).
QByteArray read(const QString &path);
QImage decode(const QByteArray &bytes, const QString &path);

/// A Windows bitmap of 24 bits a pixel: BITMAPFILEHEADER, BITMAPINFOHEADER, rows bottom-up, each padded to
/// four bytes (Microsoft, "Bitmap Storage"). 2835 pixels a metre (72 dpi). Alpha is ignored. A null picture
/// gives a bitmap of 0 x 0 pixels.
QByteArray toBitmap(const QImage &picture);
} // namespace ImageFile
