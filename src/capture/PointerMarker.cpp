#include "capture/PointerMarker.h"

#include "platform/ImageFile.h"
#include "platform/Rounding.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr QRgb red = qRgb(0xff, 0, 0);

/// More rows than a mark reaches above or below its position; a cursor of the system may reach further.
constexpr int reach = 32;

/// Where a snapshot is marked.
struct Marks {
    QPoint pointer;
    std::optional<QPoint> rightClick;
};

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

ImageFile::RowRange rowsOf(const Marks &marks, const QImage &cursor)
{
    const auto [first, last] = std::minmax({marks.pointer.y(), marks.rightClick.value_or(marks.pointer).y()});
    return {first - reach, last + std::max(reach, cursor.height())};
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

void PointerMarker::DrawPointerMarker(std::size_t number, const MarkStyle &style, std::uint64_t hash)
{
    ShotEntry shot = m_state.ShotTable[number];
    if (shot[ShotReduced] == "True"_L1) {
        for (const ShotField field : {ShotPointerX, ShotPointerY, ShotRightClickX, ShotRightClickY})
            shot[field] = QString::number(Rounding::toInt(shot[field].toInt() * 0.01 * style.bigPicSize));
    }
    Marks marks{{shot[ShotPointerX].toInt(), shot[ShotPointerY].toInt()}, {}};
    if (shot[ShotRightClick] == "True"_L1)
        marks.rightClick = QPoint(shot[ShotRightClickX].toInt(), shot[ShotRightClickY].toInt());
    const QImage cursor = style.systemMouseShape ? m_screen.cursorShape().image : QImage();

    const auto paint = [&](QImage &part, int firstRow) {
        QPainter painter(&part);
        const QPoint origin(0, firstRow);
        drawPointer(painter, marks.pointer - origin, style, cursor);
        if (marks.rightClick) {
            drawRightClick(painter, *marks.rightClick - origin, style);
            drawPointer(painter, *marks.rightClick - origin, style, cursor);
        }
    };
    if (ImageFile::edit(shot[ShotPath], hash, rowsOf(marks, cursor), paint))
        m_state.ShotTable[number] = shot;
}
