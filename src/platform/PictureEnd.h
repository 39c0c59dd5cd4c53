#pragma once

#include <QByteArrayView>

/// Readers of pictures are content with the half of a file and make up the rest.
namespace PictureEnd
{
/// True when a file that begins like a JPEG, a GIF or an uncompressed bitmap ends before its (first) picture
/// does. Formats: ITU-T T.81 annex B, the GIF89a description, BITMAPINFOHEADER. Anything else is false.
bool isMissing(QByteArrayView bytes);
} // namespace PictureEnd
