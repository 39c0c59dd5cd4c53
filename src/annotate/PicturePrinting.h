#pragma once

#include <QSize>
#include <QSizeF>

class QImage;
class QPagedPaintDevice;

/// The largest size of the shape of `picture` (pixels) that fits into `printable`, in the latter's unit.
/// Neither may be empty.
QSizeF sizeToFitPage(QSize picture, QSizeF printable);

/// Prints the picture, as large as the page allows, into the upper left corner of the printable area of one
/// page: upright if it is at least as high as it is wide, else across. Its pixels are handed over as they
/// are. Nothing may be painting on the printer yet.
///
/// Throws RunTimeError (PrinterError) when there is no picture or the printer does not begin.
void PrintPictureToFitPage(QPagedPaintDevice &printer, const QImage &picture);
