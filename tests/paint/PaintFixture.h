#pragma once

#include "paint/PaintPicture.h"
#include "support/ScriptedPrompter.h"
#include "support/TestState.h"

#include <initializer_list>
#include <string>

/// Small pictures written as rows of characters, and a paint editor's picture without a window.
struct PaintFixture : TestState {
    using Rows = std::vector<std::string>;

    ScriptedPrompter prompter;
    PaintSettings settings;
    PaintPicture picture{{state, prompter, settings}};

    PaintFixture() { settings.fill = Qt::red; }

    static QColor colourOf(char sign)
    {
        return sign == '#' ? Qt::black : sign == 'r' ? Qt::red : sign == 'b' ? Qt::blue : Qt::white;
    }
    static char signOf(QRgb colour)
    {
        for (const char sign : {'.', '#', 'r', 'b'}) {
            if (colourOf(sign).rgb() == (colour | 0xff000000))
                return sign;
        }
        return '?';
    }
    static QImage image(const Rows &rows)
    {
        QImage result(static_cast<int>(rows[0].size()), static_cast<int>(rows.size()), QImage::Format_RGB32);
        for (int y = 0; y < result.height(); ++y) {
            for (int x = 0; x < result.width(); ++x)
                result.setPixelColor(
                    x, y, colourOf(rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)]));
        }
        return result;
    }
    static Rows rowsOf(const QImage &image)
    {
        Rows rows;
        for (int y = 0; y < image.height(); ++y) {
            rows.emplace_back();
            for (int x = 0; x < image.width(); ++x)
                rows.back() += signOf(image.pixel(x, y));
        }
        return rows;
    }

    /// Becomes the picture, as one entry of the history.
    void begin(const Rows &rows)
    {
        picture.finishPending();
        picture.canvas() = image(rows);
        picture.SetImageBuffer();
    }
    Rows shown() const { return rowsOf(picture.flattened()); }
};
