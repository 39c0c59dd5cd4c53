#pragma once

#include <QByteArrayView>
#include <QSize>

#include <optional>

/// Shape of an uncompressed Windows bitmap of 24 bits a pixel, blue first: BITMAPFILEHEADER,
/// BITMAPINFOHEADER, then the rows, each padded to four bytes (Microsoft, "Bitmap Storage").
struct BitmapHeader {
    static constexpr qsizetype length = 54; ///< of both headers

    QSize size;
    bool topDown = false; ///< whether the highest row comes first
    qint64 rowsBegin = length;
    QSize pixelsPerMetre{2835, 2835}; ///< 72 dpi

    qint64 rowBytes() const { return qint64{3} * size.width(); }
    qint64 stride() const { return (rowBytes() + 3) / 4 * 4; }
    qint64 rowsEnd() const { return rowsBegin + stride() * size.height(); }

    /// The row that is in place `index` of the file, and the other way round.
    int rowAt(int index) const { return topDown ? index : size.height() - 1 - index; }

    /// `bytes` is the beginning of a file of `fileSize` bytes. Nothing when that is a bitmap of another kind,
    /// or none, or the file is shorter than its header tells.
    static std::optional<BitmapHeader> parse(QByteArrayView bytes, qint64 fileSize);

    /// Writes both headers of a bitmap that ends with its last row: `length` bytes.
    void put(char *target) const;
};
