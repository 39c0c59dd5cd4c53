// A capture run under a steady hand, and the stop of a long one, in the real program: how long a click waits
// for its snapshot, whether the memory stays flat, and whether the window answers while Stop works.
//
// Usage: bench_run [CLICKS [SNAPSHOTS]]   clicks of the run (default 300), snapshots of the stop (default
// 1000)

#include "Comparison.h"
#include "Heartbeat.h"

#include "app/Appearance.h"
#include "app/frmMain.h"
#include "capture/DisplaySwitch.h"
#include "capture/RunJournal.h"
#include "contract/XTestUser.h"
#include "platform/ImageFile.h"
#include "support/FakePrograms.h"
#include "support/FakeWordProcessor.h"
#include "support/ScriptedPrompter.h"
#include "support/TestState.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QProgressDialog>
#include <QTest>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <thread>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace
{
using Steady = std::chrono::steady_clock;

constexpr auto clickInterval = std::chrono::microseconds(333'333);
constexpr auto heldDown = std::chrono::milliseconds(60);
constexpr int patience = 60'000; // milliseconds

/// The real screen; remembers when it was grabbed.
class TimedScreen : public Screen
{
public:
    explicit TimedScreen(std::unique_ptr<Screen> real) : m_real(std::move(real)) {}

    std::vector<Steady::time_point> grabs;

    QRect desktop() const override { return m_real->desktop(); }
    QRect monitorAt(QPoint point) const override { return m_real->monitorAt(point); }
    QPoint pointerPosition() const override { return m_real->pointerPosition(); }
    QRect foregroundWindow() const override { return m_real->foregroundWindow(); }
    QImage grab(const QRect &area) override
    {
        QImage picture = m_real->grab(area);
        grabs.push_back(Steady::now());
        return picture;
    }
    CursorShape cursorShape() const override { return m_real->cursorShape(); }
    void waitUntilMinimised(std::uint32_t window, int limit) override
    {
        m_real->waitUntilMinimised(window, limit);
    }
    void waitUntilAtRest(int limit) override { m_real->waitUntilAtRest(limit); }

private:
    std::unique_ptr<Screen> m_real;
};

/// The real sound; where there is no device, it takes as long as one that has one.
class LastingSound : public Sound
{
public:
    explicit LastingSound(std::unique_ptr<Sound> real) : m_real(std::move(real)) {}

    void playAndWait(const QString &path) override
    {
        const auto end = Steady::now() + std::chrono::milliseconds(100); // no shutter sound is longer
        m_real->playAndWait(path);
        std::this_thread::sleep_until(end);
    }

private:
    std::unique_ptr<Sound> m_real;
};

double residentMegabytes()
{
    std::ifstream status("/proc/self/statm");
    long size = 0;
    long resident = 0;
    long shared = 0;
    status >> size >> resident >> shared;
    return static_cast<double>((resident - shared) * ::sysconf(_SC_PAGESIZE)) / (1 << 20);
}

double share(std::vector<double> values, double part)
{
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1))];
}

/// The program over a folder of its own, with its sound on.
struct Program : TestState {
    ScriptedPrompter user;
    UserSettings settings{folder.filePath(u"settings.ini"_s)};
    Platform platform = makeRealPlatform([] { return QString(); });
    DisplaySwitch display{{state, *platform.displayModes, settings, user, folder.path()}};
    TimedScreen *screen = nullptr;
    std::unique_ptr<frmMain> window;

    Program()
    {
        auto timed = std::make_unique<TimedScreen>(std::move(platform.screen));
        screen = timed.get();
        platform.screen = std::move(timed);
        platform.sound = std::make_unique<LastingSound>(std::move(platform.sound));
        platform.programs = std::make_unique<FakePrograms>();
        platform.wordProcessor =
            std::make_unique<FakeWordProcessor>(); // the real one knows the real programs
        QFile::copy(QStringLiteral(SHOTLY_DELIVERED_DIR "/camera.wav"),
                    state.ApplicationPath + u"/camera.wav"_s);
        state.AppOptions.ShowLessMessage = 1;
        state.AppOptions.HotKeyNames.fill(u"none"_s);
    }
    void show()
    {
        window = std::make_unique<frmMain>(state, platform, user, settings, display);
        window->show();
        if (!QTest::qWaitForWindowActive(window.get()))
            std::abort();
        QTest::qWait(500);
    }
};

/// From releasing the button, before the display has heard of it, to the picture in memory.
void steadyHand(int clicks)
{
    Program program;
    program.show();
    program.window->setProjectText(u"bench"_s);
    program.window->mnuBeginCap_Click();
    QTest::qWait(1000);
    program.screen->grabs.clear();

    std::vector<Steady::time_point> releases;
    std::thread hand([&releases, clicks] {
        XTestUser user;
        auto next = Steady::now();
        for (int i = 0; i < clicks; ++i) {
            next += clickInterval;
            std::this_thread::sleep_until(next - heldDown);
            user.moveTo({100 + i * 37 % 600, 200 + i * 23 % 300});
            user.pressButton(1);
            std::this_thread::sleep_until(next);
            releases.push_back(Steady::now());
            user.releaseButton(1);
        }
    });
    std::vector<double> memory;
    for (int taken = 0; taken < clicks;) {
        if (!QTest::qWaitFor([&] { return program.state.ShotCounter > taken + 1; }, patience))
            break;
        taken = program.state.ShotCounter - 1;
        memory.push_back(residentMegabytes());
    }
    hand.join();
    program.window->mnuStopCap_Click();

    std::vector<double> waits;
    for (std::size_t i = 0; i < std::min(releases.size(), program.screen->grabs.size()); ++i)
        waits.push_back(Milliseconds(program.screen->grabs[i] - releases[i]).count());
    const QSize size = program.screen->desktop().size();
    std::printf("steady hand, %d x %d, 3 clicks a second, sound on: %d clicks sent, %zu snapshots\n",
                size.width(), size.height(), clicks, program.state.ShotTable.size() - 1);
    std::printf("  release to picture in memory: median %.1f ms, 99 %% %.1f ms, longest %.1f ms"
                " (100 ms of each are the wanted wait)\n",
                share(waits, 0.5), share(waits, 0.99), share(waits, 1));
    std::printf("  memory: %.1f MB after 10 snapshots, %.1f MB after the last\n",
                memory.at(std::min<std::size_t>(9, memory.size() - 1)), memory.back());
}

/// The snapshots of a run whose program has died, marked and made pages of at the next start.
void longStop(int snapshots)
{
    Program program;
    Module1 &state = program.state;
    const QString directory = state.AppOptions.BaseDirectory + u"/bench"_s;
    state.FileSystem.createFolder(directory);
    QImage picture(program.screen->desktop().size(), QImage::Format_RGB32);
    picture.fill(Qt::lightGray);
    const QString first = directory + u"/first.bmp"_s;
    const std::uint64_t hash = ImageFile::save(picture, first);
    {
        const auto journal =
            RunJournal::begin(state.ApplicationPath, QDateTime::currentDateTime(),
                              {u"bench"_s, directory, directory, 0, 100, 0, 0, false, QDate::currentDate()});
        for (int i = 1; i <= snapshots; ++i) {
            const QString path = directory + u"/sh%1.bmp"_s.arg(i, 4, 10, QChar(u'0'));
            // All are links to one file until they are marked: half the room on the disk.
            std::filesystem::create_hard_link(first.toStdString(), path.toStdString());
            const QString x = QString::number(i % 600);
            journal->add(
                {i, {u"bench"_s, path, x, x, u"OK"_s, u"False"_s, u"False"_s, u"0"_s, u"0"_s}, hash});
        }
    }
    program.user.expectAsk(Question::RegisterAbandonedRun, Answer::Yes);
    double gap = 0;
    QElapsedTimer whole;
    std::unique_ptr<Heartbeat> heartbeat;
    program.user.whileOpen([&] {
        heartbeat = std::make_unique<Heartbeat>();
        whole.start();
    });
    program.show(); // the first thing it does is to ask
    if (!QTest::qWaitFor([&] { return !program.user.asked.empty(); }, patience))
        std::abort();
    gap = heartbeat->longestGap();
    const auto count = program.platform.database->open(state.ConnectionString)
                           ->openRecordset(u"select count(*) from PageData"_s)
                           ->field(0)
                           .toInt();
    std::printf(
        "stop of %d snapshots of %d x %d: %d pages in %.1f s, longest gap of the event loop %.1f ms\n",
        snapshots, picture.width(), picture.height(), count, static_cast<double>(whole.elapsed()) / 1000,
        gap);
}
} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    Appearance::apply(application);
    const auto argument = [&](int which, int otherwise) {
        return argc > which ? std::max(1, std::atoi(argv[which])) : otherwise;
    };
    steadyHand(argument(1, 300));
    longStop(argument(2, 1000));
    return 0;
}
