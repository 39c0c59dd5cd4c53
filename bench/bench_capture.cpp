// What a click costs, from the release of the button to the picture in memory and to the file, and what the
// end of a run costs, without the waits that the program makes on purpose. Pictures are of the whole screen:
// its size is the display's. Every round also measures the least that the machine could do for the same, or
// another program, and the ratio of the two medians is printed.

#include "Comparison.h"

#include "capture/PointerMarker.h"
#include "contract/XTestUser.h"
#include "platform/ImageFile.h"
#include "platform/x11/X11InputHook.h"
#include "platform/x11/X11RootPixels.h"
#include "platform/x11/X11Screen.h"

#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

using namespace Qt::Literals::StringLiterals;

namespace
{
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

[[noreturn]] void giveUp(const char *what)
{
    std::perror(what);
    std::exit(1);
}

/// One write of the bytes into a new file.
void writeOnce(QByteArrayView bytes, const QString &path)
{
    const int file = ::open(qPrintable(path), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (::write(file, bytes.data(), static_cast<std::size_t>(bytes.size())) != bytes.size())
        giveUp("write");
    ::close(file);
}

/// All bytes of a file in one read.
QByteArrayView readOnce(const QString &path, std::vector<char> &room)
{
    const int file = ::open(qPrintable(path), O_RDONLY | O_CLOEXEC);
    const ssize_t count = ::read(file, room.data(), room.size());
    if (count <= 0)
        giveUp("read");
    ::close(file);
    return {room.data(), count};
}

std::size_t roomFor(const QString &path)
{
    return static_cast<std::size_t>(QFileInfo(path).size());
}

QByteArray contents(const QString &path)
{
    std::vector<char> room(roomFor(path));
    return readOnce(path, room).toByteArray();
}

void clickToHandler(benchmark::State &state)
{
    Clicks clicks([] {});
    const auto roundTrip = [&clicks] {
        clicks.connection().reply(xcb_get_input_focus_reply, xcb_get_input_focus(clicks.connection().get()));
    };
    compare(state, [&] { return clicks.click(); },
            {"one round trip to the X server", [&] { return timeOf(roundTrip); }});
}

void clickToPicture(benchmark::State &state)
{
    X11Screen screen;
    const QRect area = screen.desktop();
    QImage picture;
    Clicks clicks([&] { picture = screen.grab(area); });
    X11RootPixels shared(clicks.connection());
    compare(state, [&] { return clicks.click(); },
            {"grab into shared memory", [&] { return timeOf([&] { shared.read(area, area.size()); }); }});
}

/// Clicks whose picture goes into a new file.
struct ClicksToFile {
    QTemporaryDir folder;
    QString path = folder.filePath(u"ours.bmp"_s);
    X11Screen screen;
    QRect area = screen.desktop();
    Clicks clicks{[this] { ImageFile::save(screen.grab(area), path); }};

    Milliseconds click()
    {
        QFile::remove(path);
        return clicks.click();
    }
};

void clickToFile(benchmark::State &state)
{
    ClicksToFile ours;
    ours.click();
    const QByteArray bytes = contents(ours.path);
    const QString bare = ours.folder.filePath(u"bare.bmp"_s);
    X11RootPixels shared(ours.clicks.connection());
    const auto least = [&] {
        QFile::remove(bare);
        return timeOf([&] {
            shared.read(ours.area, ours.area.size());
            writeOnce(bytes, bare);
        });
    };
    compare(state, [&] { return ours.click(); }, {"grab into shared memory, one write", least});
}

/// The same picture taken by a program that is started for it.
void clickToFileBesideProgram(benchmark::State &state, const std::vector<const char *> &command,
                              const char *suffix)
{
    ClicksToFile ours;
    const QByteArray path = QFile::encodeName(ours.folder.filePath(u"program."_s + QLatin1String(suffix)));
    std::vector<char *> arguments;
    arguments.reserve(command.size() + 2);
    for (const char *argument : command)
        arguments.push_back(const_cast<char *>(argument));
    arguments.push_back(const_cast<char *>(path.constData()));
    arguments.push_back(nullptr);
    const auto takePicture = [&] {
        ::unlink(path.constData());
        const Milliseconds taken = timeOf([&] {
            pid_t process = 0;
            int status = 0;
            errno = ::posix_spawnp(&process, arguments[0], nullptr, nullptr, arguments.data(), environ);
            if (errno != 0 || ::waitpid(process, &status, 0) != process || status != 0)
                giveUp(arguments[0]);
        });
        if (QImage(QFile::decodeName(path)).size() != ours.area.size())
            giveUp("another picture");
        return taken;
    };
    compare(state, [&] { return ours.click(); },
            {std::string(command[0]) + ", " + suffix, takePicture, "program_ms"});
}

void saveBitmap(benchmark::State &state)
{
    const QTemporaryDir folder;
    const QString ours = folder.filePath(u"ours.bmp"_s);
    const QString bare = folder.filePath(u"bare.bmp"_s);
    X11Screen screen;
    const QImage picture = screen.grab(screen.desktop());
    ImageFile::save(picture, ours);
    const QByteArray bytes = contents(ours);
    const auto least = [&] {
        QFile::remove(bare);
        return timeOf([&] { writeOnce(bytes, bare); });
    };
    compare(state,
            [&] {
                QFile::remove(ours);
                return timeOf([&] { ImageFile::save(picture, ours); });
            },
            {"one write", least});
}

void loadBitmap(benchmark::State &state)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"picture.bmp"_s);
    X11Screen screen;
    ImageFile::save(screen.grab(screen.desktop()), path);
    std::vector<char> room(roomFor(path));
    compare(state, [&] { return timeOf([&] { ImageFile::load(path); }); },
            {"one read", [&] { return timeOf([&] { readOnce(path, room); }); }});
}

/// A run's snapshots as they lie in the cache of the system when the run ends. Every other one has a right
/// click.
class Run
{
public:
    static constexpr int length = 100;

    Run()
    {
        const QRect area = m_screen.desktop();
        const QImage picture = m_screen.grab(area);
        m_state.ShotTable.resize(length + 1);
        for (int i = 1; i <= length; ++i) {
            // Clicks go over the whole picture.
            const QPoint click(area.width() * i / length, area.height() * (i * 37 % length) / length);
            const QString path = m_folder.filePath(u"sh%1.bmp"_s.arg(i));
            m_state.ShotTable[static_cast<std::size_t>(i)] = {u"Demo"_s,
                                                              path,
                                                              QString::number(click.x()),
                                                              QString::number(click.y()),
                                                              u"OK"_s,
                                                              u"False"_s,
                                                              i % 2 == 0 ? u"True"_s : u"False"_s,
                                                              QString::number(click.x()),
                                                              QString::number(click.y() / 2)};
            m_hash = ImageFile::save(picture, path);
        }
    }

    Milliseconds mark()
    {
        const MarkStyle style{100, PointerMarker::insideColour(1), PointerMarker::borderColour(1), false};
        return timeOf([&] {
            for (int i = 1; i <= length; ++i)
                m_marker.DrawPointerMarker(static_cast<std::size_t>(i), style, m_hash);
        });
    }

    Milliseconds copy()
    {
        std::vector<char> room(roomFor(m_state.ShotTable[1][ShotPath]));
        return timeOf([&] {
            for (int i = 1; i <= length; ++i)
                writeOnce(readOnce(m_state.ShotTable[static_cast<std::size_t>(i)][ShotPath], room),
                          m_folder.filePath(u"copy%1.bmp"_s.arg(i)));
        });
    }

private:
    QTemporaryDir m_folder;
    X11Screen m_screen;
    Module1 m_state;
    PointerMarker m_marker{m_state, m_screen};
    std::uint64_t m_hash = 0;
};

void markHundred(benchmark::State &state)
{
    compare(state, [] { return Run().mark(); },
            {"reading and writing the same", [] { return Run().copy(); }});
}

benchmark::internal::Benchmark *add(const std::string &name,
                                    const std::function<void(benchmark::State &)> &work)
{
    const QSize size = X11Screen().desktop().size();
    const std::string full = name + " " + std::to_string(size.width()) + "x" + std::to_string(size.height());
    return benchmark::RegisterBenchmark(full.c_str(), work)->UseManualTime()->Unit(benchmark::kMillisecond);
}
} // namespace

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    add("clickToHandler", clickToHandler)->Iterations(200);
    add("clickToPicture", clickToPicture)->Iterations(200);
    add("clickToFile", clickToFile)->Iterations(200);
    add("saveBitmap", saveBitmap)->Iterations(200);
    add("loadBitmap", loadBitmap)->Iterations(200);
    add("markHundred", markHundred)->Iterations(5);
    const auto beside = [](const std::vector<const char *> &command, const char *suffix) {
        return [=](benchmark::State &state) { clickToFileBesideProgram(state, command, suffix); };
    };
    add("clickToFileBesideScrot", beside({"scrot", "-o"}, "png"))->Iterations(15);
    add("clickToFileBesideScrot", beside({"scrot", "-o"}, "bmp"))->Iterations(15);
    add("clickToFileBesideMaim", beside({"maim", "-u"}, "png"))->Iterations(15);
    add("clickToFileBesideMaim", beside({"maim", "-u", "-f", "bmp"}, "bmp"))->Iterations(15);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
