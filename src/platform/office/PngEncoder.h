#pragma once

#include <QByteArray>
#include <QImage>

/// Writes pictures as PNG files (ISO/IEC 15948), without loss: 8 bits a component, not interlaced, no
/// transparency; with a palette where the picture has at most 256 colours, else with red, green and blue. The
/// zlib stream lies in a single IDAT chunk.
///
/// `picture` is of Format_RGB32, not null; it is given away so that its memory is free while its bytes are
/// compressed. Throws std::bad_alloc.
QByteArray encodePng(QImage picture);
