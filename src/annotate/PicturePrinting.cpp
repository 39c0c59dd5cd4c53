#include "annotate/PicturePrinting.h"

#include "platform/RunTimeError.h"

#include <QImage>
#include <QPagedPaintDevice>
#include <QPainter>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr double hiMetricPerMillimetre = 100;
constexpr double hiMetricPerInch = 2540;
} // namespace

QSizeF sizeToFitPage(QSize picture, QSizeF printable)
{
    const double pictureRatio = static_cast<double>(picture.width()) / picture.height();
    const double printerRatio = printable.width() / printable.height();
    if (pictureRatio >= printerRatio)
        return {printable.width(), printable.width() / pictureRatio};
    return {printable.height() * pictureRatio, printable.height()};
}

void PrintPictureToFitPage(QPagedPaintDevice &printer, const QImage &picture)
{
    if (picture.isNull())
        throw RunTimeError(RunTimeError::PrinterError, u"There is no picture to print."_s);
    printer.setPageOrientation(picture.height() >= picture.width() ? QPageLayout::Portrait
                                                                   : QPageLayout::Landscape);
    const QSizeF area =
        printer.pageLayout().paintRect(QPageLayout::Millimeter).size() * hiMetricPerMillimetre;
    const QSizeF printed = sizeToFitPage(picture.size(), area);

    QPainter painter;
    if (area.isEmpty() || !painter.begin(&printer))
        throw RunTimeError(RunTimeError::PrinterError, u"The picture cannot be printed."_s);
    painter.setRenderHint(QPainter::LosslessImageRendering);
    const QRectF place(0, 0, printed.width() * printer.logicalDpiX() / hiMetricPerInch,
                       printed.height() * printer.logicalDpiY() / hiMetricPerInch);
    painter.drawImage(place, picture);
    if (!painter.end())
        throw RunTimeError(RunTimeError::PrinterError, u"The picture could not be printed."_s);
}
