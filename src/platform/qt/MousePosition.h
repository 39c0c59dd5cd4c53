#pragma once

#include <QMouseEvent>

/// Where in a widget the mouse is, in its units, with the fraction that a scaled desktop gives: Qt rounds
/// what it tells a widget to whole units, what the window was told has the rest.
inline QPointF exactPosition(const QMouseEvent &event)
{
    const QPointF inWindow = event.scenePosition();
    return event.position().toPoint() + (inWindow - inWindow.toPoint());
}
