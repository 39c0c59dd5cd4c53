#pragma once

#include <QByteArrayView>
#include <QSize>

#include <optional>
#include <vector>

/// What a PNG file (ISO/IEC 15948) holds.
struct PngShape {
    enum ColorType { Grey = 0, Rgb = 2, Palette = 3 };

    QSize pixels;
    int bits = 8; ///< a component
    int colorType = Rgb;
    /// Whether the pixels lie there as documents can take them over: at most 8 bits a component, neither
    /// transparent nor interlaced.
    bool simple = false;
    QByteArrayView palette;           ///< red, green, blue of each colour
    std::vector<QByteArrayView> data; ///< pieces of the zlib stream; parts of the file

    /// Nothing when the bytes do not begin like a PNG file, or are not a whole and sound one.
    static std::optional<PngShape> parse(QByteArrayView file);
    static bool isPng(QByteArrayView beginning);
};

/// What a JPEG file (ITU-T T.81) holds.
struct JpegShape {
    QSize pixels;
    int components = 3;
    /// Whether documents can take the file over: baseline, extended or progressive, 8 bits, grey or three
    /// components.
    bool simple = false;

    /// Nothing when the bytes do not begin like a JPEG file, or not all of it is there.
    static std::optional<JpegShape> parse(QByteArrayView file);
    static bool isJpeg(QByteArrayView beginning);
};
