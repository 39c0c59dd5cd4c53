#pragma once

#include "paint/mdlFilter.h"

#include <QColor>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

/// The filters as one would write them down: pixel by pixel, column by column.
class SlowFilters
{
public:
    static QImage apply(int number, const QImage &picture, mdlFilter::Region r,
                        const mdlFilter::Parameters &parameters)
    {
        using namespace mdlFilter;
        if (r.x1 == -1 && r.y1 == -1 && r.x2 == -1 && r.y2 == -1)
            r = {0, 0, picture.width(), picture.height()};
        SlowFilters slow(picture, parameters);
        slow.m_small = (r.x2 - r.x1) * (r.y2 - r.y1) < 256;
        const int first = number == Blur || number == Sharpen || number == Snow ? 1
                          : number == Diffuse                                   ? 2
                                                                                : 0;
        const int last = number == Blur || number == Emboss ? 1 : number == Diffuse ? 3 : 0;
        if (number == Blur || number == Diffuse || number == Emboss || number == Sharpen || number == Snow)
            slow.fillSnapshot();
        for (int x = r.x1 + first; x <= r.x2 - last; ++x)
            for (int y = r.y1 + first; y <= r.y2 - last; ++y)
                slow.pixel(number, x, y);
        return slow.m_picture;
    }

private:
    using Colour = std::array<int, 3>;

    SlowFilters(const QImage &picture, const mdlFilter::Parameters &parameters)
        : m_before(picture), m_picture(picture.copy()), m_parameters(parameters)
    {
    }

    static int rounded(double value) { return static_cast<int>(std::nearbyint(value)); }

    Colour colour(int x, int y) const
    {
        if (!m_before.valid(x, y))
            return {-1, 0, 0};
        const QColor found = m_before.pixelColor(x, y);
        return {found.red(), found.green(), found.blue()};
    }
    void fillSnapshot()
    {
        for (int x = 0; x < m_before.width(); ++x)
            for (int y = 0; y < m_before.height(); ++y)
                for (const int component : colour(x, y))
                    m_snapshot.push_back(component);
    }
    /// A component out of the snapshot.
    int P(std::size_t component, int x, int y) const
    {
        if (!m_before.valid(x, y))
            return component == 0 ? -1 : 0;
        return m_snapshot[3 * (static_cast<std::size_t>(x) * static_cast<std::size_t>(m_before.height()) +
                               static_cast<std::size_t>(y)) +
                          component];
    }
    void put(int x, int y, Colour c)
    {
        for (int &component : c)
            component = std::clamp(component, 0, 255);
        if (m_picture.valid(x, y))
            m_picture.setPixel(x, y, qRgb(c[0], c[1], c[2]));
    }
    template <typename Formula>
    void putEach(int x, int y, Formula formula)
    {
        put(x, y,
            {rounded(std::abs(formula(0U))), rounded(std::abs(formula(1U))), rounded(std::abs(formula(2U)))});
    }

    void grayBlackAndWhite(int x, int y)
    {
        auto [r, g, b] = colour(x, y);
        r = rounded(std::abs((2 * g - b + r) * r) / 256.0);
        g = rounded(std::abs((2 * b - g + r) * r) / 256.0);
        b = rounded(std::abs((2 * b - g + r) * g) / 256.0);
        const int gray = rounded((std::min(r, 255) + std::min(g, 255) + std::min(b, 255)) / 3.0);
        put(x, y, {gray, gray, gray});
    }
    void diffuse(int x, int y)
    {
        if (!m_before.valid(x, y))
            return;
        const std::uint64_t four = m_parameters.random->next();
        const auto d = [four](int which) { return mdlFilter::Random::offset(four, which); };
        put(x, y, {P(0, x, y + d(0)), P(1, x + d(1), y), P(2, x + d(2), y + d(3))});
    }
    double nine(std::size_t i, int x, int y) const
    {
        int sum = 0;
        for (int dx = -1; dx <= 1; ++dx)
            for (int dy = -1; dy <= 1; ++dy)
                sum += P(i, x + dx, y + dy);
        return sum;
    }

    void pixel(int number, int x, int y)
    {
        const double factor = number == mdlFilter::Sharpen ? 0.5 : 24;
        const double amount = m_small ? 2 : 32;
        switch (number) {
        case mdlFilter::BlackAndWhite: {
            const Colour c = colour(x, y);
            return put(x, y,
                       c[0] < 192 && c[1] < 192 && c[2] < 192 ? Colour{0, 0, 0} : Colour{255, 255, 255});
        }
        case mdlFilter::Blur:
            return putEach(x, y, [&](std::size_t i) { return nine(i, x, y) / 10; });
        case mdlFilter::Brightness:
            return putEach(x, y, [&, c = colour(x, y)](std::size_t i) { return c[i] + amount; });
        case mdlFilter::Darkness:
            return putEach(x, y, [&, c = colour(x, y)](std::size_t i) { return c[i] - amount; });
        case mdlFilter::Diffuse:
            return diffuse(x, y);
        case mdlFilter::Emboss:
            return putEach(x, y, [&](std::size_t i) { return -128.0 + P(i, x, y) - P(i, x + 1, y + 1); });
        case mdlFilter::GrayBlackAndWhite:
            return grayBlackAndWhite(x, y);
        case mdlFilter::Grayscale: {
            const Colour c = colour(x, y);
            return putEach(x, y, [c](std::size_t) { return 0.32 * c[0] + 0.32 * c[1] + 0.32 * c[2]; });
        }
        case mdlFilter::ReplaceColors: {
            const QRgb to = m_parameters.replaceTo;
            if (m_before.valid(x, y) &&
                m_before.pixelColor(x, y).rgb() == (m_parameters.replaceFrom | 0xff000000U))
                put(x, y, {qRed(to), qGreen(to), qBlue(to)});
            return;
        }
        case mdlFilter::Sharpen:
        case mdlFilter::Snow:
            return putEach(
                x, y, [&](std::size_t i) { return P(i, x, y) + factor * (P(i, x, y) - P(i, x - 1, y - 1)); });
        case mdlFilter::Wave:
        case mdlFilter::Crease:
            if (m_before.valid(x, y))
                put(x, rounded(y + (number == mdlFilter::Wave ? 4 : 512) * std::sin(x)), colour(x, y));
            return;
        default:
            return;
        }
    }

    const QImage &m_before;
    QImage m_picture;
    const mdlFilter::Parameters &m_parameters;
    std::vector<int> m_snapshot;
    bool m_small = false;
};
