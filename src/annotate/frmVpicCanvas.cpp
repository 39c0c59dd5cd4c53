#include "annotate/frmVpicCanvas.h"

#include "platform/qt/MousePosition.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPaintEvent>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

PictureCanvas::PictureCanvas(const ViewerPicture &picture, const AnnotationTools &tools, QWidget *parent)
    : QWidget(parent), m_picture(picture), m_tools(tools)
{
    setObjectName("Picture1"_L1);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::ClickFocus);
    setCursor(Qt::CrossCursor);
    pictureChanged();
}

void PictureCanvas::pictureChanged()
{
    const QSizeF natural = QSizeF(m_picture.image().size()) / devicePixelRatioF();
    resize(static_cast<int>(std::ceil(natural.width())) + 2 * border,
           static_cast<int>(std::ceil(natural.height())) + 2 * border);
    m_paintedBand = bandRect();
    update();
}

void PictureCanvas::bandChanged()
{
    update(m_paintedBand);
    update(m_paintedBand = bandRect());
}

QRect PictureCanvas::bandRect() const
{
    if (!m_tools.band())
        return {};
    const auto &band = *m_tools.band();
    const QRect pixels = Drawing::extent(band.shape, band.from, band.to);
    const qreal scale = devicePixelRatioF();
    return QRectF(QPointF(pixels.topLeft()) / scale, QSizeF(pixels.size()) / scale)
        .translated(border, border)
        .toAlignedRect();
}

void PictureCanvas::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    const QSize content = rect().size() - 2 * QSize(border, border);
    if (QSizeF(content) * devicePixelRatioF() != QSizeF(m_picture.image().size()))
        painter.fillRect(event->rect(), palette().window()); // a rest of a unit that the picture leaves
    painter.setPen(palette().color(QPalette::Dark));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    // From here on in pixels of the picture, on whole pixels of the screen.
    const qreal scale = devicePixelRatioF();
    const QPointF corner = painter.deviceTransform().map(QPointF(border, border));
    const QPointF shift = QPointF(corner.toPoint()) - corner;
    painter.setClipRect(rect().adjusted(border, border, -border, -border));
    painter.translate(QPointF(border, border) + shift / scale);
    painter.scale(1 / scale, 1 / scale);
    const QRectF wanted = QRectF(event->rect()).translated(-border, -border);
    const QRect part = QRectF(wanted.topLeft() * scale, wanted.size() * scale)
                           .toAlignedRect()
                           .adjusted(-1, -1, 1, 1)
                           .intersected(m_picture.image().rect());
    painter.drawImage(part.topLeft(), m_picture.image(), part);
    if (const auto &band = m_tools.band())
        Drawing::draw(painter, band->shape, band->from, band->to, Qt::black, Drawing::Mode::Invert);
}

QPoint PictureCanvas::twipsOf(const QMouseEvent &event) const
{
    const QPointF pixels = (exactPosition(event) - QPointF(border, border)) * devicePixelRatioF();
    return QPoint(static_cast<int>(std::floor(pixels.x())), static_cast<int>(std::floor(pixels.y()))) *
           Drawing::twipsPerPixel;
}

namespace
{
AnnotationTools::Button buttonOf(const QMouseEvent &event)
{
    return event.button() == Qt::LeftButton ? AnnotationTools::Button::Left : AnnotationTools::Button::Other;
}
} // namespace

void PictureCanvas::mousePressEvent(QMouseEvent *event)
{
    Q_EMIT pressed(buttonOf(*event), twipsOf(*event));
}

void PictureCanvas::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons() & Qt::LeftButton)
        Q_EMIT dragged(twipsOf(*event));
}

void PictureCanvas::mouseReleaseEvent(QMouseEvent *event)
{
    Q_EMIT released(buttonOf(*event), twipsOf(*event));
}

void PictureCanvas::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        Q_EMIT cancelled();
    else
        QWidget::keyPressEvent(event);
}
