#include "paint/frmPaintCanvas.h"

#include "platform/qt/MousePosition.h"
#include "platform/qt/PlainTextBox.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPaintEvent>
#include <QTextDocument>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr double longestSide = 60'000; // of the zoomed picture, in units
constexpr double smallestZoom = 0.05;
constexpr double largestZoom = 40;
constexpr int handleSize = 7;
constexpr int areaMargin = 12;
constexpr int textBoxWidth = 160; // at least

PaintTools::Modifiers modifiersOf(const QMouseEvent &event)
{
    return {event.modifiers().testFlag(Qt::ShiftModifier), event.modifiers().testFlag(Qt::ControlModifier)};
}

PaintTools::Button buttonOf(const QMouseEvent &event)
{
    return event.button() == Qt::RightButton ? PaintTools::Button::Right : PaintTools::Button::Left;
}

bool isButtonOfTools(const QMouseEvent &event)
{
    return event.button() == Qt::LeftButton || event.button() == Qt::RightButton;
}
} // namespace

PaintCanvas::PaintCanvas(const PaintPicture &picture, const PaintTools &tools, QWidget *parent)
    : QWidget(parent), m_picture(picture), m_tools(tools), txtText(new PlainTextBox(parent))
{
    setObjectName("picPaint"_L1);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    txtText->setObjectName("txtText"_L1);
    txtText->setToolTip(u"ENTER finishes the text, Shift+ENTER begins a new line"_s);
    txtText->setLineWrapMode(QPlainTextEdit::NoWrap);
    txtText->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    txtText->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    txtText->document()->setDocumentMargin(0); // letters stand where they will be drawn
    connect(txtText, &QPlainTextEdit::textChanged, this, &PaintCanvas::fitTextBox);
    txtText->installEventFilter(this);
    txtText->viewport()->installEventFilter(this);
    txtText->hide();
}

double PaintCanvas::scale() const
{
    return m_zoom / devicePixelRatioF();
}

void PaintCanvas::setZoom(double zoom)
{
    m_zoom = zoom;
    pictureChanged();
}

void PaintCanvas::pictureChanged()
{
    const QSize pixels = m_picture.image().size();
    const double most = std::min(largestZoom, longestSide / std::max(pixels.width(), pixels.height()));
    m_zoom = std::clamp(m_zoom, smallestZoom, std::max(most, smallestZoom));
    const QSizeF zoomed = QSizeF(m_picture.image().size()) * scale();
    const QSize wanted(std::max(1, static_cast<int>(std::ceil(zoomed.width()))),
                       std::max(1, static_cast<int>(std::ceil(zoomed.height()))));
    if (wanted != size()) {
        resize(wanted);
        Q_EMIT sizeChanged();
    }
    placeTextBox();
    update();
}

void PaintCanvas::placeTextBox()
{
    const auto &place = m_tools.textPlace();
    if (place != m_shownTextPlace) {
        m_shownTextPlace = place;
        if (!place)
            setFocus();   // before it would go astray with the box
        txtText->clear(); // the text at the place before is drawn
        txtText->setVisible(place.has_value());
        if (place) {
            txtText->raise();
            txtText->setFocus();
        }
    }
    fitTextBox();
}

void PaintCanvas::setTextFont(const QFont &font)
{
    m_textFont = font;
    fitTextBox();
}

/// Letters of the ground's colour are typed on what can be read.
void PaintCanvas::setTextColours(QColor letters, QColor ground)
{
    constexpr int middle = 128;
    QPalette look = txtText->palette();
    look.setColor(QPalette::Text, letters);
    if (letters == ground)
        ground = qGray(letters.rgb()) < middle ? Qt::white : Qt::black;
    look.setColor(QPalette::Base, ground);
    txtText->setPalette(look);
    txtText->viewport()->setPalette(look); // inherits nothing while the program has a style sheet
}

/// Tells the parent what the picture and the text box take.
void PaintCanvas::fitTextBox()
{
    const bool moved = m_shownTextPlace && moveTextBox(*m_shownTextPlace);
    if (const QSize before = std::exchange(m_extent, extent()); before != m_extent)
        Q_EMIT sizeChanged();
    if (moved)
        Q_EMIT textBoxMoved();
}

/// As large as its text, with room for the first words. True: it was elsewhere, or of another size.
bool PaintCanvas::moveTextBox(QPoint place)
{
    constexpr int smallestLetters = 6; // units
    QFont font = m_textFont;
    const double height = PaintShapes::textHeight(m_textFont) * scale();
    font.setPixelSize(std::max(static_cast<int>(std::lround(height)), smallestLetters));
    if (txtText->font() != font)
        txtText->setFont(font);
    const QFontMetrics metrics(font);
    const int frame = txtText->frameWidth();
    const QString text = txtText->toPlainText();
    const int width = metrics.size(Qt::TextExpandTabs, text).width();
    const QSize needed(std::max(width + 2 * metrics.averageCharWidth(), textBoxWidth),
                       metrics.lineSpacing() * static_cast<int>(text.count(u'\n') + 1));
    const QPoint corner = (QPointF(place) * scale()).toPoint();
    const QRect box(corner - QPoint(frame, frame), needed + 2 * QSize(frame, frame));
    const bool moved = txtText->geometry() != box;
    txtText->setGeometry(box);
    return moved;
}

QSize PaintCanvas::extent() const
{
    return m_shownTextPlace ? rect().united(txtText->geometry()).size() : size();
}

void PaintCanvas::showInstead(const QImage &picture)
{
    m_instead = picture;
    update();
}

QPoint PaintCanvas::pixelAt(QPointF position) const
{
    return {static_cast<int>(std::floor(position.x() / scale())),
            static_cast<int>(std::floor(position.y() / scale()))};
}

void PaintCanvas::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    const QRectF exposed = event->rect();
    painter.fillRect(exposed, palette().mid());
    painter.setRenderHint(QPainter::SmoothPixmapTransform, m_zoom < 1);
    painter.scale(scale(), scale());
    const QRect pixels =
        QRectF(exposed.topLeft() / scale(), exposed.size() / scale()).toAlignedRect().adjusted(-1, -1, 1, 1);
    const auto draw = [&](const QImage &picture, QPoint at) {
        const QRect part = pixels.translated(-at).intersected(picture.rect());
        painter.drawImage(part.topLeft() + at, picture, part);
    };
    if (!m_instead.isNull())
        return draw(m_instead, {});
    draw(m_picture.image(), {});
    painter.setClipRect(m_picture.image().rect());
    if (m_picture.selection().floats())
        draw(m_picture.selection().picture, m_picture.selection().place.topLeft());
    m_tools.drawOverlay(painter);
}

void PaintCanvas::mousePressEvent(QMouseEvent *event)
{
    if (isButtonOfTools(*event))
        Q_EMIT pressed(buttonOf(*event), pixelAt(exactPosition(*event)), modifiersOf(*event),
                       event->globalPosition().toPoint());
}

void PaintCanvas::mouseMoveEvent(QMouseEvent *event)
{
    Q_EMIT moved(pixelAt(exactPosition(*event)), modifiersOf(*event), event->globalPosition().toPoint());
}

void PaintCanvas::mouseReleaseEvent(QMouseEvent *event)
{
    if (isButtonOfTools(*event))
        Q_EMIT released(buttonOf(*event), pixelAt(exactPosition(*event)), modifiersOf(*event));
}

void PaintCanvas::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (isButtonOfTools(*event))
        Q_EMIT doubleClicked(buttonOf(*event), pixelAt(exactPosition(*event)), modifiersOf(*event),
                             event->globalPosition().toPoint());
}

/// Small steps of a touch pad add up.
void PaintCanvas::wheelEvent(QWheelEvent *event)
{
    if (!(event->modifiers() & Qt::ControlModifier))
        return QWidget::wheelEvent(event);
    m_wheel += event->angleDelta().y();
    const int steps = m_wheel / QWheelEvent::DefaultDeltasPerStep;
    m_wheel -= steps * QWheelEvent::DefaultDeltasPerStep;
    if (steps != 0)
        Q_EMIT zoomWanted(steps, pixelAt(event->position()));
    event->accept();
}

void PaintCanvas::leaveEvent(QEvent *event)
{
    QWidget::leaveEvent(event);
    Q_EMIT left();
}

bool PaintCanvas::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == txtText && event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        const bool isEnter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
        if (isEnter && !(key->modifiers() & Qt::ShiftModifier)) {
            Q_EMIT textFinished();
            return true;
        }
        if (key->key() == Qt::Key_Escape) {
            Q_EMIT textDropped();
            return true;
        }
    }
    if (watched == txtText->viewport() && event->type() == QEvent::MouseButtonDblClick) {
        Q_EMIT textFinished();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

PaintArea::PaintArea(QWidget *parent) : QWidget(parent)
{
    setObjectName("picZoom"_L1);
    static constexpr Qt::CursorShape shapes[] = {Qt::SizeHorCursor, Qt::SizeVerCursor, Qt::SizeFDiagCursor};
    for (std::size_t i = 0; i < picPaintResize.size(); ++i) {
        auto *handle = new QWidget(this);
        handle->setObjectName(u"picPaintResize_%1"_s.arg(i));
        handle->setFixedSize(handleSize, handleSize);
        handle->setAutoFillBackground(true);
        handle->setBackgroundRole(QPalette::Highlight);
        handle->setCursor(shapes[i]);
        handle->installEventFilter(this);
        picPaintResize[i] = handle;
    }
}

void PaintArea::setCanvas(PaintCanvas *canvas)
{
    m_canvas = canvas;
    connect(canvas, &PaintCanvas::sizeChanged, this, &PaintArea::AdjustPaintResizeBox);
    AdjustPaintResizeBox();
}

void PaintArea::AdjustPaintResizeBox()
{
    const QRect canvas(QPoint(0, 0), m_canvas->size());
    m_canvas->move(0, 0);
    setFixedSize(m_canvas->extent() + QSize(areaMargin, areaMargin));
    picPaintResize[0]->move(canvas.right() + 1, canvas.center().y() - handleSize / 2);
    picPaintResize[1]->move(canvas.center().x() - handleSize / 2, canvas.bottom() + 1);
    picPaintResize[2]->move(canvas.right() + 1, canvas.bottom() + 1);
}

QSize PaintArea::draggedSize(const QWidget *handle, QPoint global) const
{
    const QPoint way = global - m_grabbed;
    const double pixels = devicePixelRatioF() / m_canvas->zoom();
    QSize size = m_before;
    if (handle != picPaintResize[1])
        size.rwidth() += static_cast<int>(std::lround(way.x() * pixels));
    if (handle != picPaintResize[0])
        size.rheight() += static_cast<int>(std::lround(way.y() * pixels));
    return size.expandedTo(QSize(1, 1));
}

bool PaintArea::eventFilter(QObject *watched, QEvent *event)
{
    const auto *handle = qobject_cast<QWidget *>(watched);
    const auto place = [event] { return static_cast<QMouseEvent *>(event)->globalPosition().toPoint(); };
    const auto isLeft = [event] { return static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton; };
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (isLeft()) {
            m_drags = true;
            m_grabbed = place();
            m_before = m_canvas->pictureSize();
        }
        return true;
    case QEvent::MouseMove:
        if (m_drags)
            Q_EMIT resizing(draggedSize(handle, place()));
        return true;
    case QEvent::MouseButtonRelease:
        if (isLeft() && std::exchange(m_drags, false))
            Q_EMIT resizeWanted(draggedSize(handle, place()));
        return true;
    default:
        return QWidget::eventFilter(watched, event);
    }
}
