#pragma once

#include "platform/Sound.h"

#include <QByteArray>

#include <optional>

/// The samples of a WAVE file and what they mean.
struct WaveSamples {
    int channels = 0;
    int rate = 0;          ///< frames (one sample of every channel) a second
    int bitsPerSample = 0; ///< 8, unsigned, or 16, signed, little endian
    QByteArray bytes;      ///< whole frames only

    int bytesPerFrame() const { return channels * (bitsPerSample / 8); }
};

/// Reads the bytes of a WAVE file (Microsoft, "Multimedia Programming Interface and Data
/// Specifications 1.0"). Nothing when they are no PCM sound of 8 or 16 bits, or hold no frame. A data chunk
/// that promises more than there is gives what there is.
std::optional<WaveSamples> readWave(QByteArrayView file);

/// Plays through ALSA's device "default", which is opened for each sound, so that other programs have it in
/// between. Never waits longer than the sound lasts and a second; of a sound longer than five seconds only
/// the first five are played.
class AlsaSound : public Sound
{
public:
    AlsaSound();
    void playAndWait(const QString &path) override;
};
