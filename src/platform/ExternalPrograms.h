#pragma once

#include <QString>

/// Other programs that Shotly starts. They outlive Shotly; nothing waits for them. Failures throw
/// RunTimeError.
class ExternalPrograms
{
public:
    virtual ~ExternalPrograms() = default;

    /// Opens a file or a folder with the program that the desktop has for it; an address of the network
    /// ("https://...") with its browser.
    virtual void openWithDesktop(const QString &path) = 0;

    /// Opens a picture in the external paint program: `program` when it is not empty, else the first one
    /// installed of a short list. An empty path starts the program without a picture.
    virtual void paint(const QString &program, const QString &picturePath) = 0;

    /// Starts the desktop's program that describes the machine.
    virtual void showSystemInformation() = 0;
};
