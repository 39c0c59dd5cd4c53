#include "capture/PointerMarker.h"

#include "platform/ImageFile.h"
#include "platform/Rounding.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr QRgb red = qRgb(0xff, 0, 0);

/// More rows than a mark reaches above or below its position; a cursor of the system may reach further.
constexpr int reach = 32;

// The arrow, relative to its tip.
constexpr QPoint fillStrokes[][2] = {{{1, 2}, {1, 16}}, {{2, 3}, {2, 15}},  {{3, 4}, {3, 14}},
                                     {{1, 4}, {9, 20}}, {{2, 4}, {10, 19}}, {{4, 5}, {10, 11}},
                                     {{3, 6}, {9, 10}}, {{2, 7}, {8, 9}}};
constexpr QPoint outline[] = {{0, 0}, {0, 17}, {4, 12}, {9, 21}, {11, 19}, {7, 11}, {11, 11}, {0, 0}};

void drawArrow(QPainter &painter, QPoint tip, const MarkStyle &style)
{
    painter.setPen(QPen(style.inside, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    for (const auto &stroke : fillStrokes)
        painter.drawLine(tip + stroke[0], tip + stroke[1]);
    painter.setPen(QPen(style.border, 1));
    for (std::size_t i = 1; i < std::size(outline); ++i)
        painter.drawLine(tip + outline[i - 1], tip + outline[i]);
}

/// The largest of the small sizes at which the label fits into its frame.
QFont labelFont(const QString &label, QSize room)
{
    QFont font;
    for (int pixels = 12; pixels > 6; --pixels) {
        font.setPixelSize(pixels);
        const QFontMetrics metrics(font);
        if (metrics.horizontalAdvance(label) <= room.width() && metrics.height() <= room.height())
            break;
    }
    return font;
}

void drawRightClick(QPainter &painter, QPoint click, const MarkStyle &style)
{
    painter.setPen(QPen(style.border, 1));
    painter.setBrush(style.inside);
    painter.drawEllipse(click, 2, 2);
    painter.setBrush(Qt::NoBrush);

    const QPoint anchor = click + QPoint(5, -5);
    const QPoint frame[] = {anchor + QPoint(3, -1), anchor + QPoint(56, -1), anchor + QPoint(56, 14),
                            anchor + QPoint(3, 14), anchor + QPoint(3, -2)};
    // Legible whatever lies below.
    painter.fillRect(QRect(frame[0] + QPoint(1, 1), frame[2] - QPoint(1, 1)), Qt::white);
    painter.setPen(QPen(QColor(red), 1));
    for (std::size_t i = 1; i < std::size(frame); ++i)
        painter.drawLine(frame[i - 1], frame[i]);

    const QString label = u"Right Click"_s;
    const QPoint corner = click + QPoint(7, -5);
    painter.setFont(labelFont(label, {frame[2].x() - corner.x() - 3, 15}));
    painter.drawText(QRect(corner + QPoint(3, 0), QSize(50, 14)),
                     Qt::AlignLeft | Qt::AlignTop | Qt::TextDontClip, label);
}

void drawPointer(QPainter &painter, QPoint tip, const MarkStyle &style, const QImage &cursor)
{
    if (cursor.isNull())
        drawArrow(painter, tip, style);
    else
        painter.drawImage(tip, cursor);
}

QPoint pointOf(const ShotEntry &entry, ShotField x, ShotField y)
{
    return {entry[x].toInt(), entry[y].toInt()};
}
} // namespace

PointerMarker::PointerMarker(Module1 &state, Screen &screen) : m_state(state), m_screen(screen) {}

QColor PointerMarker::borderColour(int option)
{
    return option == 1 ? QColor(0, 0, 0xff) : QColor(0, 0, 0);
}

QColor PointerMarker::insideColour(int option)
{
    switch (option) {
    case 0:
        return QColor(0, 0xff, 0);
    case 1:
        return QColor(0xff, 0xff, 0);
    case 2:
        return QColor(0xff, 0xff, 0xff);
    case 3:
        return QColor(0xff, 0, 0);
    default:
        return QColor(0, 0, 0);
    }
}

PointerMarks PointerMarker::marksOf(std::size_t number, const MarkStyle &style) const
{
    PointerMarks marks{m_state.ShotTable[number], style,
                       style.systemMouseShape ? m_screen.cursorShape().image : QImage()};
    if (marks.entry[ShotReduced] == "True"_L1) {
        for (const ShotField field : {ShotPointerX, ShotPointerY, ShotRightClickX, ShotRightClickY}) {
            QString &position = marks.entry[field];
            position = QString::number(Rounding::toInt(position.toInt() * 0.01 * style.bigPicSize));
        }
    }
    return marks;
}

bool PointerMarks::draw(std::uint64_t hash) const
{
    const QPoint pointer = pointOf(entry, ShotPointerX, ShotPointerY);
    const bool rightClicked = entry[ShotRightClick] == "True"_L1;
    const QPoint rightClick = rightClicked ? pointOf(entry, ShotRightClickX, ShotRightClickY) : pointer;
    const auto [first, last] = std::minmax({pointer.y(), rightClick.y()});
    const auto paint = [&](QImage &part, int firstRow) {
        QPainter painter(&part);
        const QPoint origin(0, firstRow);
        drawPointer(painter, pointer - origin, style, cursor);
        if (rightClicked) {
            drawRightClick(painter, rightClick - origin, style);
            drawPointer(painter, rightClick - origin, style, cursor);
        }
    };
    return ImageFile::edit(entry[ShotPath], hash, {first - reach, last + std::max(reach, cursor.height())},
                           paint);
}

void PointerMarker::DrawPointerMarker(std::size_t number, const MarkStyle &style, std::uint64_t hash)
{
    const PointerMarks marks = marksOf(number, style);
    if (marks.draw(hash))
        m_state.ShotTable[number] = marks.entry;
}
