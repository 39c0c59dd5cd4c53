#pragma once

#include <QRect>

#include <vector>

/// A convex area of pixels: one run in each row.
struct PaintArea {
    struct Run {
        int left;
        int right; ///< included
    };
    int top = 0;
    std::vector<Run> rows;

    static PaintArea rectangle(const QRect &box);
    /// Every pixel whose centre lies in the ellipse that touches the sides of the box.
    static PaintArea ellipse(const QRect &box);
    /// Corner radius: a quarter of the shorter side.
    static PaintArea roundedRectangle(const QRect &box);
};
