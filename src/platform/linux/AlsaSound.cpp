#include "platform/linux/AlsaSound.h"

#include <QFile>
#include <QtEndian>

#include <alsa/asoundlib.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <poll.h>

namespace
{
constexpr int longestSeconds = 5;
constexpr std::chrono::milliseconds patience{1000}; // beyond the length of the sound
constexpr unsigned latencyMicroseconds = 200'000;
constexpr int restMilliseconds = 20;
constexpr qint64 largestFile = qint64{32} << 20U; // more than five seconds of anything that is played

using Time = std::chrono::steady_clock;

struct PcmDeleter {
    void operator()(snd_pcm_t *pcm) const noexcept { snd_pcm_close(pcm); }
};
using Pcm = std::unique_ptr<snd_pcm_t, PcmDeleter>;

void ignoreMessage(const char *, int, const char *, int, const char *, ...) {}

template <typename Number>
Number littleEndian(QByteArrayView bytes, qsizetype at)
{
    return qFromLittleEndian<Number>(bytes.data() + at);
}

/// False when the bytes describe no sound that can be played.
bool readFormat(QByteArrayView chunk, WaveSamples &samples)
{
    constexpr quint16 plain = 1;
    constexpr quint16 extensible = 0xfffe; // the true tag follows further behind
    if (chunk.size() < 16)
        return false;
    auto tag = littleEndian<quint16>(chunk, 0);
    if (tag == extensible && chunk.size() >= 26)
        tag = littleEndian<quint16>(chunk, 24);
    const auto rate = littleEndian<quint32>(chunk, 4);
    samples.channels = littleEndian<quint16>(chunk, 2);
    samples.bitsPerSample = littleEndian<quint16>(chunk, 14);
    if (tag != plain || samples.channels < 1 || samples.channels > 8 || rate < 1000 || rate > 192'000)
        return false;
    samples.rate = static_cast<int>(rate);
    return samples.bitsPerSample == 8 || samples.bitsPerSample == 16;
}

Pcm openDevice(const WaveSamples &samples)
{
    // Without this flag a device that another program holds would keep us waiting until that lets it go.
    snd_pcm_t *opened = nullptr;
    if (snd_pcm_open(&opened, "default", SND_PCM_STREAM_PLAYBACK, SND_PCM_NONBLOCK) < 0)
        return nullptr;
    Pcm pcm(opened);
    const snd_pcm_format_t format = samples.bitsPerSample == 8 ? SND_PCM_FORMAT_U8 : SND_PCM_FORMAT_S16_LE;
    const int softResample = 1;
    if (snd_pcm_set_params(pcm.get(), format, SND_PCM_ACCESS_RW_INTERLEAVED,
                           static_cast<unsigned>(samples.channels), static_cast<unsigned>(samples.rate),
                           softResample, latencyMicroseconds) < 0)
        return nullptr;
    return pcm;
}

/// False when the device gave up before it had everything.
bool feed(snd_pcm_t *pcm, const WaveSamples &samples, qsizetype frames, Time::time_point deadline)
{
    const char *next = samples.bytes.constData();
    while (frames > 0) {
        const snd_pcm_sframes_t taken = snd_pcm_writei(pcm, next, static_cast<snd_pcm_uframes_t>(frames));
        if (taken > 0) {
            next += taken * samples.bytesPerFrame();
            frames -= taken;
            continue;
        }
        if (Time::now() >= deadline)
            return false;
        if (taken == 0 || taken == -EAGAIN) {
            // Its result does not matter: a device that fails says so at the next write.
            snd_pcm_wait(pcm, restMilliseconds);
        } else if (snd_pcm_recover(pcm, static_cast<int>(taken), 1) < 0) {
            return false;
        }
    }
    return true;
}

/// Draining is not used for this: some devices wait in it without a limit.
void waitUntilHeard(snd_pcm_t *pcm, int rate, Time::time_point deadline)
{
    // A sound shorter than the buffer does not start by itself.
    if (snd_pcm_state(pcm) == SND_PCM_STATE_PREPARED)
        snd_pcm_start(pcm);
    snd_pcm_sframes_t queued = 0;
    while (snd_pcm_delay(pcm, &queued) == 0 && queued > 0 && Time::now() < deadline)
        ::poll(nullptr, 0,
               static_cast<int>(std::clamp<snd_pcm_sframes_t>(queued * 1000 / rate, 1, restMilliseconds)));
    snd_pcm_drop(pcm);
}
} // namespace

std::optional<WaveSamples> readWave(QByteArrayView file)
{
    constexpr qsizetype riffHeader = 12;
    constexpr qsizetype chunkHeader = 8;
    if (file.size() < riffHeader || !file.startsWith("RIFF") || file.sliced(8, 4) != QByteArrayView("WAVE"))
        return {};
    WaveSamples samples;
    bool formatKnown = false;
    for (qsizetype at = riffHeader; file.size() - at >= chunkHeader;) {
        const QByteArrayView name = file.sliced(at, 4);
        const qsizetype promised = littleEndian<quint32>(file, at + 4);
        at += chunkHeader;
        const QByteArrayView chunk = file.sliced(at, std::min(promised, file.size() - at));
        if (name == QByteArrayView("fmt ")) {
            formatKnown = readFormat(chunk, samples);
        } else if (name == QByteArrayView("data")) {
            if (!formatKnown)
                return {};
            samples.bytes = chunk.toByteArray();
            samples.bytes.chop(chunk.size() % samples.bytesPerFrame());
            break;
        }
        at += chunk.size() + (promised & 1);
    }
    if (samples.bytes.isEmpty())
        return {};
    return samples;
}

AlsaSound::AlsaSound()
{
    // It would tell the terminal at length that there is no device.
    snd_lib_error_set_handler(ignoreMessage);
}

void AlsaSound::playAndWait(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    const std::optional<WaveSamples> samples = readWave(file.read(largestFile));
    if (!samples)
        return;
    const Pcm pcm = openDevice(*samples);
    if (!pcm)
        return;
    const qsizetype frames = std::min<qsizetype>(samples->bytes.size() / samples->bytesPerFrame(),
                                                 qsizetype{longestSeconds} * samples->rate);
    const auto deadline = Time::now() + std::chrono::milliseconds(frames * 1000 / samples->rate) + patience;
    if (feed(pcm.get(), *samples, frames, deadline))
        waitUntilHeard(pcm.get(), samples->rate, deadline);
}
