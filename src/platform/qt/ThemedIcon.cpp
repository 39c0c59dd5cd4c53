#include "platform/qt/ThemedIcon.h"

#include <QApplication>
#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPixmapCache>
#include <QStyle>
#include <QStyleOption>
#include <QSvgRenderer>

#include <algorithm>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr qsizetype colourLength = 7; // "#rrggbb"
constexpr int middle = 128;
constexpr int paperDepth = 130;      // percent
constexpr int disabledOpacity = 115; // of 255
constexpr QRgb paper = 0xffffff;
constexpr QRgb swatchEdge = 0x64748b;

struct Replacement {
    QRgb onLight;
    QRgb onDark;
};

/// Lines and small marks turn light, what they are drawn upon turns dark. Colours that are not here can be
/// seen on both grounds.
constexpr Replacement replacements[] = {
    {0x334155, 0xe2e8f0}, // ink
    {0x2563eb, 0x60a5fa}, // accent
    {0xdc2626, 0xf87171}, // red
    {0x991b1b, 0xfca5a5}, // edge of a red square
    {0xdb2777, 0xf472b6}, // pink
    {0x3b82f6, 0x4b8ef8}, // blue of filled shapes
    {0x64748b, 0x8493a8}, // grey of the camera
    {0xdbeafe, 0x1e3a8a}, // light blue, for insides
    {0xe2e8f0, 0x1e293b}, // light grey, for insides
};

QColor ground()
{
    return QGuiApplication::palette().color(QPalette::Active, QPalette::Window);
}

bool isDark(const QColor &colour)
{
    return qGray(colour.rgb()) < middle;
}

/// The drawing with each of its colours replaced.
QByteArray themed(QByteArray svg)
{
    for (qsizetype at = svg.indexOf('#'); at >= 0; at = svg.indexOf('#', at + 1)) {
        bool isColour = false;
        const QRgb drawn = svg.mid(at + 1, colourLength - 1).toUInt(&isColour, 16);
        if (isColour)
            svg.replace(at, colourLength, themedColour(drawn).name().toLatin1());
    }
    return svg;
}

/// What a style greys for a dark ground is nearly as light as the icon itself.
void fade(QPixmap &picture)
{
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(picture.rect(), QColor(0, 0, 0, disabledOpacity));
}

/// Paints an icon anew for each size, mode and palette.
class ThemedIconEngine : public QIconEngine
{
public:
    using Draw = std::function<void(QPainter &, const QRectF &)>;
    ThemedIconEngine(QString name, Draw draw) : m_name(std::move(name)), m_draw(std::move(draw)) {}

    QIconEngine *clone() const override { return new ThemedIconEngine(*this); }
    QString key() const override { return u"ThemedIcon"_s; }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const qreal ratio = painter->device()->devicePixelRatio();
        painter->drawPixmap(rect, pixmap((QSizeF(rect.size()) * ratio).toSize(), mode, state));
    }

    /// `size` in pixels of the device.
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State /*state*/) override
    {
        if (size.isEmpty())
            return {};
        const QString entry = u"shotly-icon %1 %2x%3 %4 %5"_s.arg(m_name)
                                  .arg(size.width())
                                  .arg(size.height())
                                  .arg(mode)
                                  .arg(QGuiApplication::palette().cacheKey());
        QPixmap picture;
        if (QPixmapCache::find(entry, &picture))
            return picture;
        picture = QPixmap(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        m_draw(painter, QRectF(QPointF(), size));
        painter.end();
        if (mode != QIcon::Normal) {
            QStyleOption look;
            look.palette = QGuiApplication::palette();
            picture = QApplication::style()->generatedIconPixmap(mode, picture, &look);
            if (mode == QIcon::Disabled && isDark(ground()))
                fade(picture);
        }
        QPixmapCache::insert(entry, picture);
        return picture;
    }

private:
    QString m_name;
    Draw m_draw;
};
} // namespace

QIcon themedIcon(const QString &name)
{
    QFile file(u":/icons/"_s + name);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const auto draw = [svg = file.readAll()](QPainter &painter, const QRectF &place) {
        QSvgRenderer renderer(themed(svg));
        renderer.setAspectRatioMode(Qt::KeepAspectRatio);
        renderer.render(&painter, place);
    };
    return QIcon(new ThemedIconEngine(name, draw));
}

QIcon themedIcon(const QString &name, QSize size, const std::function<void(QPainter &)> &draw)
{
    const auto scaled = [size, draw](QPainter &painter, const QRectF &place) {
        painter.scale(place.width() / size.width(), place.height() / size.height());
        draw(painter);
    };
    return QIcon(new ThemedIconEngine(name, scaled));
}

QIcon colourSwatch(const QColor &colour, int size)
{
    return themedIcon(u"swatch "_s + colour.name(), {size, size}, [colour, size](QPainter &painter) {
        painter.setPen(themedColour(swatchEdge));
        painter.setBrush(colour);
        painter.drawRect(0, 0, size - 1, size - 1);
    });
}

QColor themedColour(QRgb drawn)
{
    const QRgb colour = drawn & RGB_MASK;
    const QColor behind = ground();
    if (!isDark(behind))
        return {colour};
    if (colour == paper)
        return behind.darker(paperDepth);
    const auto *found = std::ranges::find(replacements, colour, &Replacement::onLight);
    return {found != std::end(replacements) ? found->onDark : colour};
}

QColor faultColour(const QColor &ground)
{
    return isDark(ground) ? QColor(0xff, 0x7b, 0x72) : QColor(0xc0, 0x00, 0x00);
}

IconPicture::IconPicture(const QIcon &icon, QSize size, QWidget *parent) : QWidget(parent), m_icon(icon)
{
    setFixedSize(size);
}

void IconPicture::setIcon(const QIcon &icon)
{
    m_icon = icon;
    update();
}

void IconPicture::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    m_icon.paint(&painter, rect());
}
