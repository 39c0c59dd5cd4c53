#pragma once

#include <QImage>

/// Geometric effects on pictures. Functions of a picture and their parameters; no state, no widget.
namespace mdlEffect
{
/// Which effect; the numbers are those of the effect menu.
enum class Kind : int { Resize = 2 };

/// Parameters of the effects; each reads its own.
struct Parameters {
    float widthFactor = 1;
    float heightFactor = 1;
};

/// Returns the transformed picture: Format_RGB32, device pixel ratio 1. A null picture stays null.
///
/// Resize: width and height become size x factor, rounded to nearest with halves to even, at least 1 pixel.
/// Shrinking averages the source pixels that each new pixel covers, weighted by area; enlarging interpolates
/// linearly between neighbours; at the border the edge pixels count alone.
QImage TransformPicture(const QImage &picture, Kind kind, const Parameters &parameters);
} // namespace mdlEffect
