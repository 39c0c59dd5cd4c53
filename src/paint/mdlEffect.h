#pragma once

#include <QImage>

/// Geometric effects on pictures. Functions of a picture and their parameters; no state, no widget.
namespace mdlEffect
{
/// Which effect; the numbers are those of the effect menu.
enum class Kind : int { FlipHorizontal = 0, FlipVertical = 1, Resize = 2, Rotate = 3, Invert = 4 };

/// Parameters of the effects; each reads its own.
struct Parameters {
    float widthFactor = 1; ///< Resize
    float heightFactor = 1;
    float angle = 0;               ///< Rotate, in degrees, clockwise ...
    bool counterClockwise = false; ///< ... or not
    QRgb background = 0xffffffffU; ///< Rotate: where nothing of the picture comes to lie
};

/// Returns the transformed picture: Format_RGB32, device pixel ratio 1. A null picture stays null.
///
/// FlipHorizontal exchanges left and right, FlipVertical top and bottom. Invert: 255 minus each component.
/// Rotate: see RotatePicture.
///
/// Resize: width and height become size x factor, rounded to nearest with halves to even, at least 1 pixel.
/// Shrinking averages the source pixels that each new pixel covers, weighted by area; enlarging interpolates
/// linearly between neighbours; at the border the edge pixels count alone.
QImage TransformPicture(const QImage &picture, Kind kind, const Parameters &parameters = {});

/// Of a picture after Resize.
QSize resizedSize(QSize size, const Parameters &parameters);

/// The picture turned by an angle in degrees about its centre, (width / 2, height / 2); a whole turn more or
/// less does not matter. Format_RGB32, device pixel ratio 1.
///
/// Quarter turns move every pixel; 90 and 270 degrees exchange width and height. Any other angle keeps the
/// size: each new pixel is the one onto which its centre falls when it is turned back, or the background if
/// that is outside the picture.
QImage RotatePicture(const QImage &picture, float angle, bool counterClockwise, QRgb background);
} // namespace mdlEffect
