#pragma once

#include "platform/UserSettings.h"

#include <QRect>
#include <QSize>

/// Place and size of the main window, kept per user in twips (15 to a pixel), and the size of its child
/// windows that follows from it.
namespace WindowPlace
{
/// Smallest main window, pixels: what the smallest child windows need.
QSize smallestMainWindow();

/// Size of child windows in twips for a main window of this size in pixels.
QSize childSize(QSize mainWindow);

/// The place kept, in pixels; where a value is missing 1000 twips from the left and top and the present
/// child size. Brought back onto `available` (the usable desktop, pixels) when it reaches out of it.
QRect load(const UserSettings &settings, QSize childTwips, const QRect &available);

void save(UserSettings &settings, const QRect &place);
} // namespace WindowPlace
