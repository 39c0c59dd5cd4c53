#include "FileChecks.h"
#include "platform/linux/AlsaSound.h"

#include <QTemporaryDir>

namespace
{
QByteArray number(quint32 value, int bytes)
{
    QByteArray text;
    for (int i = 0; i < bytes; ++i)
        text.append(static_cast<char>(value >> (8 * i)));
    return text;
}

QByteArray chunk(const QByteArray &name, const QByteArray &content)
{
    return name + number(static_cast<quint32>(content.size()), 4) + content +
           QByteArray(content.size() % 2, '\0');
}

QByteArray format(quint32 tag, quint32 channels, quint32 rate, quint32 bits)
{
    const quint32 frame = channels * bits / 8;
    return chunk("fmt ", number(tag, 2) + number(channels, 2) + number(rate, 4) + number(rate * frame, 4) +
                             number(frame, 2) + number(bits, 2));
}

QByteArray wave(const QByteArray &chunks)
{
    return "RIFF" + number(static_cast<quint32>(chunks.size() + 4), 4) + "WAVE" + chunks;
}

const QString shutter = QStringLiteral(SHOTLY_SOURCE_DIR "/data/camera.wav");

/// ALSA with a device of the test's own as "default".
class SoundTest : public ::testing::Test
{
protected:
    QTemporaryDir m_folder;
    QString m_heard = m_folder.filePath(QStringLiteral("heard.raw"));
    QString m_wave = m_folder.filePath(QStringLiteral("sound.wav"));

    void device(const QByteArray &definition) const
    {
        const QString configuration = m_folder.filePath(QStringLiteral("alsa.conf"));
        putFile(configuration, "</usr/share/alsa/alsa.conf>\npcm.!default " + definition + "\n");
        qputenv("ALSA_CONFIG_PATH", configuration.toUtf8());
    }
    QByteArray heardOf(const QByteArray &file) const
    {
        device("{ type plug slave.pcm { type file file \"" + m_heard.toUtf8() +
               "\" format \"raw\" slave.pcm null } }");
        QFile::remove(m_heard);
        putFile(m_wave, file);
        AlsaSound().playAndWait(m_wave);
        return contents(m_heard);
    }
    void TearDown() override { qunsetenv("ALSA_CONFIG_PATH"); }
};
} // namespace

TEST_F(SoundTest, everySampleIsPlayed)
{
    QByteArray samples;
    for (int i = 0; i < 60'000; ++i)
        samples.append(static_cast<char>(i * 7));
    EXPECT_EQ(heardOf(wave(format(1, 1, 22050, 16) + chunk("data", samples))), samples);
    EXPECT_EQ(heardOf(wave(format(1, 2, 11025, 8) + chunk("data", samples.left(10)))), samples.left(10));
    // Six seconds: only five are played.
    EXPECT_EQ(heardOf(wave(format(1, 1, 10'000, 8) + chunk("data", samples))), samples.left(50'000));
}

TEST_F(SoundTest, withoutDeviceOrSoundNothingHappens)
{
    ::testing::internal::CaptureStderr();
    device("{ type hw card Missing }");
    AlsaSound().playAndWait(shutter);
    AlsaSound().playAndWait(m_wave);
    EXPECT_EQ(heardOf("no sound at all"), "(missing)");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST(WaveFileTest, chunksAreReadAndChecked)
{
    const QByteArray plain = format(1, 1, 8000, 8);
    const QByteArray data = chunk("data", "abc");
    const struct {
        const char *what;
        QByteArray file;
        const char *samples; // null: no sound
    } rows[] = {{"odd chunks before", wave(chunk("LIST", "x") + plain + chunk("fact", "y") + data), "abc"},
                {"half a frame left out", wave(format(1, 2, 8000, 8) + data), "ab"},
                {"length unknown", wave(plain + "data" + number(0xffffffff, 4) + "abcd"), "abcd"},
                {"no format", wave(data), nullptr},
                {"compressed", wave(format(2, 1, 8000, 8) + data), nullptr},
                {"24 bits", wave(format(1, 1, 8000, 24) + data), nullptr},
                {"no channel", wave(format(1, 0, 8000, 8) + data), nullptr},
                {"no rate", wave(format(1, 1, 0, 8) + data), nullptr},
                {"no data", wave(plain), nullptr},
                {"less than a frame", wave(format(1, 8, 8000, 8) + data), nullptr},
                {"other file", "RIFX" + wave(plain + data).mid(4), nullptr}};
    for (const auto &row : rows) {
        const auto sound = readWave(row.file);
        ASSERT_EQ(sound.has_value(), row.samples != nullptr) << row.what;
        EXPECT_EQ(sound.value_or(WaveSamples()).bytes, QByteArray(row.samples)) << row.what;
    }
}

TEST(WaveFileTest, shutterSoundIsShort)
{
    const QByteArray file = contents(shutter);
    const auto sound = readWave(file);
    ASSERT_TRUE(sound);
    EXPECT_EQ(sound->bytesPerFrame(), 2);
    EXPECT_EQ(sound->rate, 22050);
    EXPECT_LE(sound->bytes.size(), 22050 * 2 / 10);
}
