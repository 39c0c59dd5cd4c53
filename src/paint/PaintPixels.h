#pragma once

#include "paint/PaintSettings.h"

#include <QImage>

#include <algorithm>
#include <cstdint>

/// Writes single pixels and runs of pixels into a picture (Format_RGB32), leaving out what lies outside.
class PaintPixels
{
public:
    explicit PaintPixels(QImage &picture)
        : m_width(picture.width()), m_height(picture.height()),
          m_stride(static_cast<std::size_t>(picture.bytesPerLine()) / sizeof(std::uint32_t)),
          m_pixels(reinterpret_cast<std::uint32_t *>(picture.bits()))
    {
    }

    /// Both ends included.
    void run(int y, int left, int right, std::uint32_t colour)
    {
        left = std::max(left, 0);
        right = std::min(right, m_width - 1);
        if (y >= 0 && y < m_height && left <= right)
            std::fill(row(y) + left, row(y) + right + 1, colour);
    }

    /// The pixels of a run that belong to the pattern.
    void run(int y, int left, int right, std::uint32_t colour, FillStyle style)
    {
        if (style == FillStyle::Solid) {
            run(y, left, right, colour);
            return;
        }
        left = std::max(left, 0);
        right = std::min(right, m_width - 1);
        if (y < 0 || y >= m_height)
            return;
        for (int x = left; x <= right; ++x) {
            if (isSet(style, x, y))
                row(y)[x] = colour;
        }
    }

    std::uint32_t *row(int y) { return m_pixels + m_stride * static_cast<std::size_t>(y); }

private:
    static bool isSet(FillStyle style, int x, int y)
    {
        constexpr int mask = 7; // the pattern repeats every eight pixels
        const bool horizontal = (y & mask) == 0;
        const bool vertical = (x & mask) == 0;
        const bool downward = ((x - y) & mask) == 0;
        const bool upward = ((x + y) & mask) == mask;
        switch (style) {
        case FillStyle::Solid:
            return true;
        case FillStyle::Transparent:
            return false;
        case FillStyle::Horizontal:
            return horizontal;
        case FillStyle::Vertical:
            return vertical;
        case FillStyle::DownwardDiagonal:
            return downward;
        case FillStyle::UpwardDiagonal:
            return upward;
        case FillStyle::Cross:
            return horizontal || vertical;
        case FillStyle::DiagonalCross:
            return downward || upward;
        }
        return false;
    }

    int m_width;
    int m_height;
    std::size_t m_stride; ///< pixels from one row to the next
    std::uint32_t *m_pixels;
};
