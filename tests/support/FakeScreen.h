#pragma once

#include "platform/Screen.h"

#include <algorithm>
#include <vector>

/// A display that shows a picture. Tests set what is to be seen and look at what was asked for.
class FakeScreen : public Screen
{
public:
    QImage picture{800, 600, QImage::Format_RGB32}; ///< the whole desktop
    std::vector<QRect> monitors;                    ///< none: no monitors information
    QRect foreground;
    QPoint pointer;
    CursorShape shape;
    bool refusesGrabs = false;

    std::vector<QRect> grabs; ///< the areas asked for, oldest first
    struct Wait {
        std::uint32_t window;
        int limitMilliseconds;
    };
    std::vector<Wait> waits;

    FakeScreen() { picture.fill(Qt::darkCyan); }

    QRect desktop() const override { return picture.rect(); }
    QRect monitorAt(QPoint point) const override
    {
        if (monitors.empty())
            return desktop();
        const auto distance = [point](const QRect &monitor) {
            const QPoint nearest(std::clamp(point.x(), monitor.left(), monitor.right()),
                                 std::clamp(point.y(), monitor.top(), monitor.bottom()));
            return QPoint::dotProduct(nearest - point, nearest - point);
        };
        return *std::ranges::min_element(monitors, {}, distance);
    }
    QPoint pointerPosition() const override { return pointer; }
    QRect foregroundWindow() const override { return foreground; }
    QImage grab(const QRect &area) override
    {
        grabs.push_back(area);
        const QRect visible = area & desktop();
        if (refusesGrabs || visible.isEmpty())
            return {};
        // By way of a format without alpha, which leaves out whatever the bytes hold.
        return picture.copy(visible)
            .convertToFormat(QImage::Format_RGB888)
            .convertToFormat(QImage::Format_RGB32);
    }
    CursorShape cursorShape() const override { return shape; }
    void waitUntilMinimised(std::uint32_t window, int limitMilliseconds) override
    {
        waits.push_back({window, limitMilliseconds});
    }
    void waitUntilAtRest(int limitMilliseconds) override { waits.push_back({0, limitMilliseconds}); }
};
