#pragma once

#include "platform/x11/X11Connection.h"

#include <QRect>

#include <vector>

/// The rectangles of the monitors that show something, in root coordinates: RandR's monitors, or its
/// controllers before version 1.5. Empty where the display has no such information.
std::vector<QRect> monitorRectangles(const X11Connection &connection);
