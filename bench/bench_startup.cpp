// How long the program takes from its start to the painted main window, with 100,000 pages in its database,
// beside a bare window of the toolkit. Both are processes of their own; what is on the screen says when they
// are there.

#include "Comparison.h"

#include "platform/linux/SystemClock.h"
#include "platform/sqlite/SqliteDatabase.h"
#include "platform/x11/X11Screen.h"

#include <QApplication>
#include <QDir>
#include <QMainWindow>
#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace
{
using Steady = std::chrono::steady_clock;

constexpr int pageCount = 100000;
constexpr int projectCount = 300;
constexpr QSize windowSize(1100, 740);
constexpr QRgb projectBoxColour = 0xFFFFD6E7; // nothing else on the screen has it
constexpr QRgb bareWindowColour = 0xFF336699;
constexpr std::chrono::seconds patience(20);

const QString bareWindow = u"--bare-window"_s;

[[noreturn]] void fail(const char *what)
{
    std::fprintf(stderr, "bench_startup: %s\n", what);
    std::abort();
}

/// A user's home with an application folder in it.
class Home
{
public:
    Home()
    {
        QDir(m_folder.path()).mkpath(u"Shotly"_s);
        QProcess::execute(u"cp"_s,
                          {u"-r"_s, QStringLiteral(SHOTLY_DELIVERED_DIR), m_folder.filePath(u"home"_s)});
        SqliteDatabase database;
        const QString place = u"Data Source="_s + m_folder.filePath(u"home/Shotly.mdb"_s);
        const std::unique_ptr<DatabaseBatch> batch = database.beginBatch(place);
        const std::unique_ptr<Connection> connection = database.open(place);
        const QString text = u"Click the button and wait until the box has gone. "_s.repeated(10);
        for (int page = 0; page < pageCount; ++page)
            connection->execute(
                u"insert into PageData(ProjectName,PageNumber,PageStatus,PageTitle,PageSummary) "
                "values(\"Project%1\",%2,\"OK\",\"Step %2\",\"%3\")"_s.arg(page % projectCount)
                    .arg(page / projectCount)
                    .arg(text));
        batch->commit();
    }

    QProcessEnvironment environment() const
    {
        QProcessEnvironment changed = QProcessEnvironment::systemEnvironment();
        changed.insert(u"HOME"_s, m_folder.path());
        changed.insert(u"SHOTLY_HOME"_s, m_folder.filePath(u"home"_s));
        for (const QString &name : {u"XDG_CONFIG_HOME"_s, u"XDG_DATA_HOME"_s, u"XDG_CACHE_HOME"_s})
            changed.remove(name);
        return changed;
    }

private:
    QTemporaryDir m_folder;
};

class Display
{
public:
    Display() : m_middle(m_screen.desktop().center()), m_empty(middle()) {}

    QRgb middle() { return m_screen.grab(QRect(m_middle, QSize(1, 1))).pixel(0, 0); }
    bool empty() { return middle() == m_empty; }

    bool shows(QRgb colour)
    {
        const QImage all = m_screen.grab(m_screen.desktop()).convertToFormat(QImage::Format_RGB32);
        const auto *pixels = reinterpret_cast<const QRgb *>(all.constBits());
        return std::count(pixels, pixels + all.width() * all.height(), colour) > 100;
    }

private:
    X11Screen m_screen;
    QPoint m_middle;
    QRgb m_empty; ///< what the middle shows without a window
};

template <typename Condition>
void waitUntil(const Condition &condition)
{
    SystemClock clock;
    const auto begin = Steady::now();
    while (!condition()) {
        if (Steady::now() - begin > patience)
            fail("the window does not come or go");
        clock.sleep(1);
    }
}

/// From the start of the process to its window on the screen, painted: the project box is filled before.
double startOf(Display &display, const Home &home, const QString &program, const QStringList &arguments,
               QRgb colour)
{
    QProcess process;
    process.setProcessEnvironment(home.environment());
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    const auto begin = Steady::now();
    process.start(program, arguments);
    waitUntil([&display] { return !display.empty(); });
    waitUntil([&] { return display.shows(colour); });
    const Milliseconds taken = Steady::now() - begin;
    process.terminate();
    process.waitForFinished();
    waitUntil([&display] { return display.empty(); });
    return taken.count();
}

void startUp(benchmark::State &state)
{
    const Home home;
    Display display;
    const auto ours = [&] {
        return startOf(display, home, QStringLiteral(SHOTLY_PROGRAM), {}, projectBoxColour);
    };
    const auto least = [&] {
        return startOf(display, home, QCoreApplication::applicationFilePath(), {bareWindow},
                       bareWindowColour);
    };
    std::vector<double> oursTaken;
    std::vector<double> leastTaken;
    ours();
    least();
    for ([[maybe_unused]] auto round : state) {
        oursTaken.push_back(ours());
        leastTaken.push_back(least());
        state.SetIterationTime(oursTaken.back() / 1000);
    }
    state.counters["median_ms"] = median(oursTaken);
    state.counters["least_ms"] = median(leastTaken);
    state.counters["ratio"] = median(oursTaken) / median(leastTaken);
}

int showBareWindow(int argc, char **argv)
{
    QApplication application(argc, argv);
    QMainWindow window;
    window.resize(windowSize);
    window.setPalette(QPalette(QColor(bareWindowColour)));
    window.show();
    return QApplication::exec();
}
} // namespace

BENCHMARK(startUp)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(21);

int main(int argc, char **argv)
{
    if (argc > 1 && bareWindow == QLatin1StringView(argv[1]))
        return showBareWindow(argc, argv);
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
