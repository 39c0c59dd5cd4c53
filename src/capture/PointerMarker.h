#pragma once

#include "platform/Screen.h"
#include "state/Module1.h"

#include <QColor>
#include <QImage>

/// How a run's snapshots are marked.
struct MarkStyle {
    int bigPicSize = 100; ///< percent that scaled snapshots were reduced to
    QColor inside;
    QColor border;
    bool systemMouseShape = false; ///< the system's cursor instead of the arrow
};

/// Draws the pointer, and the mark of a right click, onto the snapshots of a run: a picture of the screen
/// does not show the pointer itself.
///
/// Positions are pixels inside the picture; what lies outside is not drawn.
class PointerMarker
{
public:
    PointerMarker(Module1 &state, Screen &screen);

    /// Marks snapshot `number` of ShotTable and saves it over its file. Scaled snapshots get their positions
    /// in ShotTable scaled too. A file whose bytes do not have this hash any more has been marked before, or
    /// changed by somebody: it is left alone. Throws RunTimeError when the file is missing, no picture, or
    /// cannot be written.
    void DrawPointerMarker(std::size_t number, const MarkStyle &style, std::uint64_t hash);

    /// Colours of the drawn arrow by the options' values; unknown ones are black.
    static QColor borderColour(int option);
    static QColor insideColour(int option);

private:
    Module1 &m_state;
    Screen &m_screen;
};
