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

/// What is to be drawn onto one snapshot: values alone, for whatever thread does it.
struct PointerMarks {
    ShotEntry entry; ///< of ShotTable once it is done: positions of scaled snapshots are scaled
    MarkStyle style;
    QImage cursor; ///< null: the arrow

    /// Draws and saves the file over itself. A file whose bytes do not have this hash any more has been
    /// marked before, or changed by somebody: it is left alone, false. Throws RunTimeError when the file is
    /// missing, no picture, or cannot be written.
    bool draw(std::uint64_t hash) const;
};

/// Draws the pointer, and the mark of a right click, onto the snapshots of a run: a picture of the screen
/// does not show the pointer itself.
///
/// Positions are pixels inside the picture; what lies outside is not drawn.
class PointerMarker
{
public:
    PointerMarker(Module1 &state, Screen &screen);

    /// The marks of snapshot `number` of ShotTable.
    PointerMarks marksOf(std::size_t number, const MarkStyle &style) const;

    /// Draws them, and takes scaled positions over into ShotTable. Throws like PointerMarks::draw().
    void DrawPointerMarker(std::size_t number, const MarkStyle &style, std::uint64_t hash);

    /// Colours of the drawn arrow by the options' values; unknown ones are black.
    static QColor borderColour(int option);
    static QColor insideColour(int option);

private:
    Module1 &m_state;
    Screen &m_screen;
};
