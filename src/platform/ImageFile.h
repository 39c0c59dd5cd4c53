#pragma once

#include <QImage>
#include <QString>

#include <cstdint>
#include <functional>

/// Picture files. A name that ends in .png, .jpg or .jpeg (letter case ignored) is written in that format,
/// every other name as a Windows bitmap: 24 bits a pixel, rows bottom-up, see BitmapHeader.
namespace ImageFile
{
/// Writes `picture` atomically and returns the hash of the file's bytes (ByteHash), which tells later whether
/// the file is still the one that was written. Alpha is left out of a bitmap; a null picture gives one of 0 x
/// 0 pixels. Throws RunTimeError naming the file and the reason.
std::uint64_t save(const QImage &picture, const QString &path);

/// Bytes of the largest picture that is read, at four a pixel: four screens of 3840 x 2160 side by side are
/// more than Qt's own limit, and files that say more than this are broken or meant to do harm.
inline constexpr qint64 largestPicture = qint64{1024} << 20;
bool isTooLarge(QSize pixels);

/// Reads any picture that Qt knows as Format_RGB32, device pixel ratio 1. Throws RunTimeError when the file
/// is missing, not readable, no picture, or too large, which is found out before its pixels are read.
QImage load(const QString &path);

/// Rows of a picture, both included; they may lie outside it.
struct RowRange {
    int first;
    int last;
};

/// Lets `paint` change some rows of the picture in a file and saves it over the file, atomically. `paint`
/// gets a part of the picture, Format_RGB32 in its full width, and the number of the part's first row; the
/// part has at least those rows of `rows` that the picture has, and nothing outside `rows` should be changed.
/// Without such rows it may not be called at all.
///
/// A file whose bytes do not have this hash is left alone: false. Throws RunTimeError when the file is
/// missing, no picture, or cannot be written.
bool edit(const QString &path, std::uint64_t hash, RowRange rows,
          const std::function<void(QImage &part, int firstRow)> &paint);
} // namespace ImageFile
