#pragma once

#include <QString>

#include <chrono>

/// The service of a desktop that takes pictures of the screen for programs that cannot do so themselves: the
/// interface org.freedesktop.portal.Screenshot of org.freedesktop.portal.Desktop on the session bus. Some
/// desktops ask the user for permission the first time.
///
/// Every call makes a connection of its own and ends it. Nothing is ever started in order to have a bus.
namespace ScreenshotPortal
{
/// Whether the bus has the service, running or ready to be started. Starts nothing.
bool isPresent();

/// Has the whole screen taken, without a dialog where the desktop allows that, and returns the path of the
/// picture, which the desktop may have put anywhere. Runs the event loop until the desktop has answered, at
/// most `limit`, and gives the request up then.
///
/// Throws RunTimeError with a sentence for the user when there is no picture: no portal, cancelled, refused,
/// ended meanwhile, too late.
QString takePicture(std::chrono::milliseconds limit);
} // namespace ScreenshotPortal
