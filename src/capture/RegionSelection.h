#pragma once

#include <QPoint>
#include <QRect>
#include <QString>

/// The rectangle that the user drags over the frozen desktop. All coordinates are physical pixels of the
/// desktop, 32 bits.
class RegionSelection
{
public:
    /// Selections are clipped to `desktop`.
    explicit RegionSelection(const QRect &desktop) : m_desktop(desktop) {}

    /// A drag begins; nothing is selected yet.
    void press(QPoint position);
    /// Without a drag nothing happens.
    void move(QPoint position);
    void release() { m_dragging = false; }

    bool dragging() const { return m_dragging; }

    /// Between the point where the drag began and the last one, whose row and column are left out: as wide
    /// and as high as the pointer went. Empty before the first move.
    QRect rectangle() const { return m_rectangle; }

    /// At least 2 x 2 pixels; less is no selection, but a click.
    bool isRegion() const { return m_rectangle.width() >= 2 && m_rectangle.height() >= 2; }

    /// "640 x 480".
    QString sizeText() const;

    /// Where a label of this size goes beside the pointer: below and to the right of it, `distance` pixels
    /// away, or on the other side where the desktop ends.
    QRect labelPlace(QSize label, int distance) const;

private:
    QRect m_desktop;
    QPoint m_start;
    QPoint m_current;
    QRect m_rectangle;
    bool m_dragging = false;
};
