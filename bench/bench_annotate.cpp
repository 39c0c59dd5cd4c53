// What somebody waits for in the snapshot viewer, in its real window on a display: from an arrow key to the
// painted next picture of a long folder, from a movement of the mouse to the painted rubber band, from Undo
// to the painted older picture. Beside it the same file is read and drawn once into memory of the viewport's
// size.

#include "Comparison.h"

#include "annotate/frmVpic.h"
#include "platform/ImageFile.h"
#include "support/FakeSpelling.h"
#include "support/TestPages.h"

#include <QAction>
#include <QApplication>
#include <QListView>
#include <QPainter>
#include <QTest>

#include <benchmark/benchmark.h>

#include <random>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int fileCount = 1000;
constexpr int differentFiles = 16; // the others are further names of these
constexpr QSize fullHd(1920, 1080);
constexpr QSize ultraHd(3840, 2160);

/// Something like a screen: flat areas, a gradient, and a few lines of text.
QImage screenful(QSize size, unsigned number)
{
    std::mt19937 random(number);
    const auto upTo = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    QImage picture(size, QImage::Format_RGB32);
    QPainter painter(&picture);
    QLinearGradient gradient(0, 0, size.width(), size.height());
    gradient.setColorAt(0, QColor::fromHsv(upTo(360), 120, 200));
    gradient.setColorAt(1, QColor::fromHsv(upTo(360), 120, 90));
    painter.fillRect(picture.rect(), gradient);
    for (int i = 0; i < 60; ++i) {
        const QRect area(upTo(size.width()), upTo(size.height()), 50 + upTo(600), 20 + upTo(300));
        painter.fillRect(area, QColor::fromHsv(upTo(360), upTo(100), 255 - upTo(60)));
        painter.drawText(area, Qt::TextWordWrap, u"Open the file menu and choose Save. "_s.repeated(8));
    }
    return picture;
}

/// A folder with so many pictures, in files with this suffix.
QString folderOf(TestPages &test, const QString &suffix, QSize size, int count)
{
    const QString folder = test.state.AppOptions.BaseDirectory + u"/files"_s;
    test.state.FileSystem.createFolder(folder);
    const auto path = [&](int number) { return u"%1/sh%2.%3"_s.arg(folder).arg(number).arg(suffix); };
    for (int number = 1; number <= count; ++number) {
        if (number <= differentFiles)
            ImageFile::save(screenful(size, static_cast<unsigned>(number)), path(number));
        else if (::link(QFile::encodeName(path((number - 1) % differentFiles + 1)).constData(),
                        QFile::encodeName(path(number)).constData()) != 0)
            std::abort();
    }
    return folder;
}

/// A viewer that nearly fills the screen, and tells when its canvas has been painted.
class PaintedViewer : public QObject
{
public:
    PaintedViewer(const QString &suffix, QSize size, int count)
        : m_folder(m_test.state.ProjectDirectory = folderOf(m_test, suffix, size, count)),
          m_viewer({m_test.state, m_test.pages, m_test.prompter, m_test.workspace, m_spelling}),
          m_canvas(m_viewer.findChild<QWidget *>(u"Picture1"_s)),
          m_list(m_viewer.findChild<QListView *>(u"File1"_s))
    {
        m_canvas->installEventFilter(this);
        m_viewer.resize(1880, 1000);
        m_viewer.show();
        if (!QTest::qWaitForWindowActive(&m_viewer))
            std::abort();
        paintedAfter([this] { m_viewer.selectFile(0); });
        m_list->setFocus();
        QTest::qWait(400);
    }

    Milliseconds step(Qt::Key key)
    {
        m_before = m_viewer.windowTitle();
        const Milliseconds taken = paintedAfter([this, key] { QTest::keyClick(m_list, key); });
        m_before.clear();
        return taken;
    }
    Milliseconds mouse(QEvent::Type type, QPointF at)
    {
        QMouseEvent event(type, at, m_canvas->mapToGlobal(at),
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
        if (type != QEvent::MouseButtonPress)
            return paintedAfter([&] { QCoreApplication::sendEvent(m_canvas, &event); });
        QCoreApplication::sendEvent(m_canvas, &event);
        return {};
    }
    Milliseconds command(const QString &name)
    {
        auto *action = m_viewer.findChild<QAction *>(name);
        return paintedAfter([action] { action->trigger(); });
    }
    void chooseTool(const QString &name) { m_viewer.findChild<QAction *>(name)->trigger(); }
    QSize viewport() const { return m_canvas->parentWidget()->size(); }
    QString shown() const { return m_viewer.windowTitle().section(u' ', 2); }

    /// Reads a file and draws what of it the viewport shows, or draws only.
    Milliseconds readAndDraw(const QString &path)
    {
        return timeOf([&] { drawInto(ImageFile::load(path)); });
    }
    Milliseconds draw(const QImage &picture)
    {
        return timeOf([&] { drawInto(picture); });
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && m_before != m_viewer.windowTitle())
            QMetaObject::invokeMethod(
                this, [this] { m_painted = true; }, Qt::QueuedConnection);
        return QObject::eventFilter(watched, event);
    }

private:
    Milliseconds paintedAfter(const std::function<void()> &action)
    {
        // What was painted before does not count.
        QCoreApplication::processEvents();
        m_painted = false;
        return timeOf([&] {
            action();
            while (!m_painted)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        });
    }
    void drawInto(const QImage &picture)
    {
        if (m_store.size() != viewport())
            m_store = QImage(viewport(), QImage::Format_RGB32);
        QPainter(&m_store).drawImage(0, 0, picture);
        benchmark::DoNotOptimize(m_store.constBits());
    }

    TestPages m_test;
    FakeSpelling m_spelling;
    QString m_folder;
    frmVpic m_viewer;
    QWidget *m_canvas;
    QListView *m_list;
    QImage m_store;
    QString m_before; ///< the title that the awaited picture does not have
    bool m_painted = false;
};

/// As compare() does it, and how long the slow ones take.
void compareAll(benchmark::State &state, const std::function<Milliseconds()> &ours, const Beside &beside)
{
    std::vector<double> taken;
    compare(
        state,
        [&] {
            taken.push_back(ours().count());
            return Milliseconds(taken.back());
        },
        beside);
    std::sort(taken.begin(), taken.end());
    state.counters["p95_ms"] = taken[taken.size() * 95 / 100];
    state.counters["p99_ms"] = taken[taken.size() * 99 / 100];
    state.counters["most_ms"] = taken.back();
}

void stepping(benchmark::State &state, const QString &suffix)
{
    PaintedViewer viewer(suffix, fullHd, fileCount);
    compareAll(state, [&] { return viewer.step(Qt::Key_Down); },
               {"the same file read and drawn", [&] { return viewer.readAndDraw(viewer.shown()); }});
}

/// A box over nearly all that is seen, its corner moving to and fro.
void rubberBand(benchmark::State &state, QSize size)
{
    PaintedViewer viewer(u"bmp"_s, size, 1);
    const QImage picture = ImageFile::load(viewer.shown());
    viewer.chooseTool(u"drawbox"_s);
    viewer.mouse(QEvent::MouseButtonPress, {10, 10});
    const QSizeF seen = viewer.viewport();
    bool far = false;
    compareAll(state,
               [&] {
                   far = !far;
                   const double inset = far ? 10 : 100;
                   return viewer.mouse(QEvent::MouseMove, {seen.width() - inset, seen.height() - inset});
               },
               {"the picture drawn", [&] { return viewer.draw(picture); }});
}

void undo(benchmark::State &state, QSize size)
{
    PaintedViewer viewer(u"bmp"_s, size, 1);
    const QImage picture = ImageFile::load(viewer.shown());
    viewer.chooseTool(u"drawbox"_s);
    viewer.mouse(QEvent::MouseButtonPress, {10, 10});
    viewer.mouse(QEvent::MouseButtonRelease, {500, 500});
    compareAll(state,
               [&] {
                   const Milliseconds taken = viewer.command(u"Undo"_s);
                   viewer.command(u"Redo"_s);
                   return taken;
               },
               {"the picture drawn", [&] { return viewer.draw(picture); }});
}
} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    const auto add = [](const char *name, int iterations, auto... how) {
        benchmark::RegisterBenchmark(name, how...)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond)
            ->Iterations(iterations);
    };
    // The first step is not counted.
    add("stepBitmaps", fileCount - 2, stepping, u"bmp"_s);
    add("stepJpeg", fileCount - 2, stepping, u"jpg"_s);
    add("rubberBand1080p", 300, rubberBand, fullHd);
    add("rubberBand4K", 300, rubberBand, ultraHd);
    add("undo1080p", 100, undo, fullHd);
    add("undo4K", 100, undo, ultraHd);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
