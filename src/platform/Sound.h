#pragma once

#include <QString>

/// The sound device.
class Sound
{
public:
    virtual ~Sound() = default;

    /// Plays a WAVE file (PCM, 8 or 16 bit) and returns when it has been heard. Without a device, with a
    /// busy one, or with a file that is missing or no such sound, it returns at once and says nothing.
    virtual void playAndWait(const QString &path) = 0;
};
