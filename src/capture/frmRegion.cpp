#include "capture/frmRegion.h"

#include <QCloseEvent>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>

#include <cmath>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int labelFontSize = 14; // these three in logical pixels
constexpr int labelMargin = 5;
constexpr int labelDistance = 14;

/// Qt leaves a screen's top left corner where it is physically and scales from there.
bool holdsCorner(const QScreen &screen)
{
    return QRect(screen.geometry().topLeft(), screen.size() * screen.devicePixelRatio()).contains(0, 0);
}

/// A frame of the given thickness that lies inside `outer`.
QRegion frameOf(const QRect &outer, int thickness)
{
    return QRegion(outer) - outer.adjusted(thickness, thickness, -thickness, -thickness);
}
} // namespace

frmRegion::frmRegion(const QImage &desktop)
    : QWidget(nullptr,
              Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint | Qt::WindowStaysOnTopHint),
      m_desktop(desktop), shRect(desktop.rect())
{
    setObjectName("frmRegion"_L1);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoSystemBackground);
    setWindowModality(Qt::ApplicationModal); // a box that is open already does not keep the mouse from it
    setCursor(Qt::CrossCursor);
}

void frmRegion::showOverDesktop()
{
    if (QGuiApplication::platformName() == "xcb"_L1) {
        coverDesktop();
        show();
    } else {
        showFullScreen();
    }
    raise();
    activateWindow(); // no window manager gives the keyboard to such a window
}

/// The window begins on the screen that holds the desktop's corner: from there Qt converts positions without
/// a rest. Once it is large it belongs to another screen, perhaps, and Qt's own idea of its position is
/// rounded.
void frmRegion::coverDesktop()
{
    QScreen *first = QGuiApplication::primaryScreen();
    for (QScreen *candidate : QGuiApplication::screens())
        if (holdsCorner(*candidate))
            first = candidate;
    const qreal ratio = first->devicePixelRatio();
    const QPoint origin = first->geometry().topLeft();
    const QPointF place = origin - QPointF(origin) / ratio;
    const QPoint logical(static_cast<int>(std::floor(place.x())), static_cast<int>(std::floor(place.y())));
    m_corner = (logical - origin) * ratio + origin;
    setScreen(first);
    setGeometry(QRect(logical, QSize(1, 1)));
    winId();
    resize(static_cast<int>(std::ceil((m_desktop.width() - m_corner.x()) / ratio)),
           static_cast<int>(std::ceil((m_desktop.height() - m_corner.y()) / ratio)));
}

QPoint frmRegion::desktopPosition(const QMouseEvent &event) const
{
    // A widget's own position has been rounded to logical pixels.
    return (event.scenePosition() * devicePixelRatioF()).toPoint() + m_corner;
}

bool frmRegion::event(QEvent *event)
{
    if (event->type() == QEvent::WindowBlocked)
        unload({});
    return QWidget::event(event);
}

// ---- drawing a region
// -------------------------------------------------------------------------------------

void frmRegion::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const QRegion before = bandPixels();
    shRect.press(desktopPosition(*event));
    updatePixels(before | bandPixels());
}

void frmRegion::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons() == Qt::RightButton || !shRect.dragging())
        return;
    const QRegion before = bandPixels();
    shRect.move(desktopPosition(*event));
    updatePixels(before | bandPixels());
}

void frmRegion::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::RightButton)
        return;
    shRect.release();
    unload(shRect.isRegion() ? std::optional(shRect.rectangle()) : std::nullopt);
}

void frmRegion::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        unload({});
}

void frmRegion::closeEvent(QCloseEvent *event)
{
    event->ignore();
    unload({});
}

/// Nothing that comes next may lie under this window: it goes first.
void frmRegion::unload(std::optional<QRect> region)
{
    if (std::exchange(m_unloading, true))
        return;
    m_region = region;
    hide();
    QMetaObject::invokeMethod(this, &frmRegion::unloaded, Qt::QueuedConnection);
}

// ---- painting, in physical pixels of the desktop
// -----------------------------------------------------------

void frmRegion::paintEvent(QPaintEvent *event)
{
    const qreal ratio = devicePixelRatioF();
    QPainter painter(this);
    painter.scale(1 / ratio, 1 / ratio);
    painter.translate(-m_corner);
    for (const QRect &part : event->region()) {
        const QRectF pixels(QPointF(part.topLeft()) * ratio + m_corner, QSizeF(part.size()) * ratio);
        const QRect area = pixels.toAlignedRect();
        if (!m_desktop.rect().contains(area))
            painter.fillRect(area, Qt::black);
        painter.drawImage(area & m_desktop.rect(), m_desktop, area & m_desktop.rect());
    }
    if (!shRect.dragging())
        return;
    const int line = static_cast<int>(ratio);
    const QRect outer = shRect.rectangle();
    for (const QRect &part : frameOf(outer, line))
        painter.fillRect(part, Qt::black);
    for (const QRect &part : frameOf(outer.adjusted(line, line, -line, -line), line))
        painter.fillRect(part, Qt::white);
    paintLabel(painter);
}

namespace
{
QFont labelFont(const QFont &base, qreal ratio)
{
    QFont font = base;
    font.setPixelSize(static_cast<int>(std::lround(labelFontSize * ratio)));
    return font;
}
} // namespace

QRect frmRegion::labelPlace() const
{
    const qreal ratio = devicePixelRatioF();
    const auto margin = static_cast<int>(std::lround(labelMargin * ratio));
    const QSize text = QFontMetrics(labelFont(font(), ratio)).size(Qt::TextSingleLine, shRect.sizeText());
    return shRect.labelPlace(text.grownBy({2 * margin, margin, 2 * margin, margin}),
                             static_cast<int>(std::lround(labelDistance * ratio)));
}

void frmRegion::paintLabel(QPainter &painter) const
{
    const QRect place = labelPlace();
    const qreal ratio = devicePixelRatioF();
    painter.fillRect(place, Qt::white);
    painter.fillRect(place.adjusted(1, 1, -1, -1), QColor(0x20, 0x20, 0x20));
    painter.setFont(labelFont(font(), ratio));
    painter.setPen(Qt::white);
    painter.drawText(place, Qt::AlignCenter, shRect.sizeText());
}

/// What the band and its label cover at present.
QRegion frmRegion::bandPixels() const
{
    if (!shRect.dragging())
        return {};
    return frameOf(shRect.rectangle(), 2 * static_cast<int>(devicePixelRatioF())) | labelPlace();
}

void frmRegion::updatePixels(const QRegion &pixels)
{
    const qreal ratio = devicePixelRatioF();
    QRegion logical;
    for (const QRect &part : pixels) {
        const QRect moved = part.translated(-m_corner);
        const QRectF area(QPointF(moved.topLeft()) / ratio, QSizeF(moved.size()) / ratio);
        logical |= area.toAlignedRect().adjusted(-1, -1, 1, 1);
    }
    update(logical);
}
