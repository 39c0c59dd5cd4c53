#pragma once

#include "platform/x11/X11Connection.h"

#include <QRect>

#include <vector>

/// The rectangles of the monitors that show something, in root coordinates: RandR's monitors, or its
/// controllers before version 1.5. Empty where the display has no such information.
std::vector<QRect> monitorRectangles(const X11Connection &connection);

/// Is this the X server of a Wayland session, which sees only what goes to X programs? Told by the extension
/// that newer ones carry, and by the names of its outputs.
bool isServerOfWaylandSession(const X11Connection &connection);
