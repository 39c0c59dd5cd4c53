#pragma once

#include "platform/Screen.h"
#include "state/Module1.h"
#include "state/Progress.h"

#include <QColor>
#include <QImage>

/// Draws the pointer, and the mark of a right click, onto the snapshots of a run: a picture of the screen
/// does not show the pointer itself.
///
/// Positions are pixels inside the picture; what lies outside is not drawn.
class PointerMarker
{
public:
    PointerMarker(Module1 &state, Screen &screen);

    /// Marks every snapshot of ShotTable, in ascending order; one that cannot be read or written does not
    /// keep the others from being marked. Returns how many failed.
    int MarkAllShots(Progress &progress);

    /// Marks snapshot `number` and saves it over its file. Scaled snapshots get their positions in ShotTable
    /// scaled too. Throws RunTimeError.
    void DrawPointerMarker(std::size_t number, QColor inside, QColor border);

    /// Colours of the drawn arrow by the options' values; unknown ones are black.
    static QColor borderColour(int option);
    static QColor insideColour(int option);

private:
    void drawPointer(QImage &picture, QPoint tip, QColor inside, QColor border) const;

    Module1 &m_state;
    Screen &m_screen;
};
