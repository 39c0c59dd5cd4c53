// What a click costs: from the release of the button to the picture in memory and to the file, without the
// waits that the program makes on purpose. Every round also measures the least that the machine could do for
// the same, and the ratio of the two medians is printed.

#include "contract/XTestUser.h"
#include "platform/ImageFile.h"
#include "platform/x11/X11InputHook.h"
#include "platform/x11/X11RootPixels.h"
#include "platform/x11/X11Screen.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

namespace
{
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr QRect fullHd(0, 0, 1920, 1080);

Milliseconds timeOf(const std::function<void()> &work)
{
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::steady_clock::now() - begin;
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Runs both in turns, so that whatever else the machine does falls on both alike.
void compare(benchmark::State &state, const std::function<Milliseconds()> &ours,
             const std::function<Milliseconds()> &least)
{
    std::vector<double> oursTaken;
    std::vector<double> leastTaken;
    ours();
    least();
    for ([[maybe_unused]] auto round : state) {
        const Milliseconds taken = ours();
        oursTaken.push_back(taken.count());
        leastTaken.push_back(least().count());
        state.SetIterationTime(taken.count() / 1000);
    }
    state.counters["median_ms"] = median(oursTaken);
    state.counters["least_ms"] = median(leastTaken);
    state.counters["ratio"] = median(oursTaken) / median(leastTaken);
}

/// A program that watches, and a user who clicks.
class Clicks
{
public:
    explicit Clicks(std::function<void()> onRelease)
    {
        m_user.moveTo({300, 300});
        m_hook.start([this, onRelease = std::move(onRelease)](const InputEvent &event) {
            m_pressed = m_pressed || event.kind == InputEvent::Kind::MouseDown;
            if (event.kind != InputEvent::Kind::MouseUp)
                return;
            onRelease();
            m_released = true;
        });
    }

    /// From the release to the end of what it sets off.
    Milliseconds click()
    {
        m_pressed = m_released = false;
        m_user.pressButton(1);
        runUntil(m_pressed);
        return timeOf([this] {
            m_user.releaseButton(1);
            runUntil(m_released);
        });
    }

    const X11Connection &connection() const { return m_user.connection(); }

private:
    static void runUntil(const bool &done)
    {
        while (!done)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    XTestUser m_user;
    X11InputHook m_hook;
    bool m_pressed = false;
    bool m_released = false;
};

/// One write of the bytes into a new file.
void writeOnce(const QByteArray &bytes, const QString &path)
{
    const int file = ::open(qPrintable(path), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (::write(file, bytes.constData(), static_cast<std::size_t>(bytes.size())) != bytes.size())
        std::abort();
    ::close(file);
}

void clickToHandler(benchmark::State &state)
{
    Clicks clicks([] {});
    const auto roundTrip = [&clicks] {
        clicks.connection().reply(xcb_get_input_focus_reply, xcb_get_input_focus(clicks.connection().get()));
    };
    compare(
        state, [&] { return clicks.click(); }, [&] { return timeOf(roundTrip); });
}

void clickToPicture(benchmark::State &state)
{
    X11Screen screen;
    QImage picture;
    Clicks clicks([&] { picture = screen.grab(fullHd); });
    X11RootPixels shared(clicks.connection());
    compare(
        state, [&] { return clicks.click(); },
        [&] { return timeOf([&] { shared.read(fullHd, screen.desktop().size()); }); });
}

void clickToFile(benchmark::State &state)
{
    const QTemporaryDir folder;
    const QString ours = folder.filePath(QStringLiteral("ours.bmp"));
    const QString bare = folder.filePath(QStringLiteral("bare.bmp"));
    X11Screen screen;
    Clicks clicks([&] { ImageFile::save(screen.grab(fullHd), ours); });
    X11RootPixels shared(clicks.connection());
    const QByteArray bytes = ImageFile::toBitmap(screen.grab(fullHd));
    compare(
        state,
        [&] {
            QFile::remove(ours);
            return clicks.click();
        },
        [&] {
            QFile::remove(bare);
            return timeOf([&] {
                shared.read(fullHd, screen.desktop().size());
                writeOnce(bytes, bare);
            });
        });
}

void saveBitmap(benchmark::State &state)
{
    const QTemporaryDir folder;
    const QString ours = folder.filePath(QStringLiteral("ours.bmp"));
    const QString bare = folder.filePath(QStringLiteral("bare.bmp"));
    const QImage picture = X11Screen().grab(fullHd);
    const QByteArray bytes = ImageFile::toBitmap(picture);
    compare(
        state,
        [&] {
            QFile::remove(ours);
            return timeOf([&] { ImageFile::save(picture, ours); });
        },
        [&] {
            QFile::remove(bare);
            return timeOf([&] { writeOnce(bytes, bare); });
        });
}
} // namespace

BENCHMARK(clickToHandler)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(200);
BENCHMARK(clickToPicture)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(200);
BENCHMARK(clickToFile)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(200);
BENCHMARK(saveBitmap)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(200);

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (X11Screen().desktop().intersected(fullHd) != fullHd) {
        std::fputs("bench_capture needs a display of at least 1920 x 1080 pixels.\n", stderr);
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
