#pragma once

#include "app/Appearance.h"
#include "app/frmMain.h"
#include "capture/DisplaySwitch.h"
#include "support/FakeBrowsers.h"
#include "support/FakePrograms.h"
#include "support/FakeWordProcessor.h"
#include "support/ScriptedPrompter.h"
#include "support/TestState.h"

#include <QApplication>
#include <QColorSpace>
#include <QComboBox>
#include <QProcess>
#include <QTest>

#include <functional>

constexpr int desktopPatience = 10'000; // milliseconds

/// The pixels of a picture, read by Qt.
inline QImage pictureIn(const QString &file)
{
    QImage picture = QImage(file).convertToFormat(QImage::Format_RGB32);
    picture.setColorSpace({}); // what the file says of its colours does not count
    return picture;
}

/// The rectangle around all pixels outside `except` in which pictures of one size differ.
inline QRect difference(const QImage &a, const QImage &b, const QRect &except = {})
{
    QRect found;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            if (!except.contains(x, y) && a.pixel(x, y) != b.pixel(x, y))
                found |= QRect(x, y, 1, 1);
    return found;
}

/// The main window on a real display: real clicks and keys, real window manager, real database.
class DesktopTest : public ::testing::Test, protected TestState
{
protected:
    ScriptedPrompter user;
    UserSettings settings{folder.filePath(QStringLiteral("settings.ini"))};
    Platform platform = makeRealPlatform([] { return QString(); });
    DisplaySwitch display{{state, *platform.displayModes, settings, user, folder.path()}};
    FakePrograms *programs = nullptr;
    FakeBrowsers *browsers = nullptr;
    std::unique_ptr<frmMain> window;

    /// `prepare` changes the state that the window is made with.
    explicit DesktopTest(const std::function<void(Module1 &)> &prepare = [](Module1 &) {})
    {
        auto opener = std::make_unique<FakePrograms>();
        programs = opener.get();
        platform.programs = std::move(opener);
        auto pages = std::make_unique<FakeBrowsers>();
        browsers = pages.get();
        platform.browsers = std::move(pages);
        state.HelpFilePath = QStringLiteral(SHOTLY_DELIVERED_DIR "/help");
        platform.wordProcessor =
            std::make_unique<FakeWordProcessor>(); // the real one knows the real programs
        state.AppOptions.ShowLessMessage = 1;
        state.AppOptions.HotKeyNames.fill(QStringLiteral("none"));
        state.AppOptions.HotKeyNames[4] = QStringLiteral("Ctrl-F6");
        prepare(state);
        // The first thing to do is to type a name, or to look at the picture that was asked for.
        const QString first =
            state.CommandLinePath.isEmpty() ? QStringLiteral("cmbProj") : QStringLiteral("File1");
        Appearance::apply(*qApp);
        window = std::make_unique<frmMain>(state, platform, user, settings, display);
        window->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
        // Where it stays, in the window manager's frame.
        EXPECT_TRUE(QTest::qWaitFor([this] { return window->frameGeometry() != window->geometry(); },
                                    desktopPatience));
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                const auto *control = window->findChild<QWidget *>(first);
                return control && control->hasFocus();
            },
            desktopPatience));
    }
    ~DesktopTest() override
    {
        if (platform.inputHook->running())
            platform.inputHook->stop();
    }

    /// Another program and what it prints, while the program's event loop runs.
    static QString run(const QString &program, const QStringList &words)
    {
        QProcess process;
        process.start(program, words);
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, desktopPatience));
        EXPECT_EQ(process.exitCode(), 0) << (program + u' ' + words.join(u' ')).toStdString();
        return QString::fromUtf8(process.readAllStandardOutput());
    }
    /// Real input.
    static void xdotool(const QStringList &words) { run(QStringLiteral("xdotool"), words); }
    /// The screen as another program reads it.
    QImage root()
    {
        const QString file = folder.filePath(QStringLiteral("root.png"));
        QApplication::processEvents();
        run(QStringLiteral("import"),
            {QStringLiteral("-silent"), QStringLiteral("-window"), QStringLiteral("root"), file});
        return pictureIn(file);
    }
    static void xrandr(const QString &words) { run(QStringLiteral("xrandr"), words.split(u' ')); }
    static void addMonitor(const QString &name, const QRect &area, const QString &output)
    {
        xrandr(QStringLiteral("--setmonitor %1 %2/200x%3/200+%4+%5 %6")
                   .arg(name)
                   .arg(area.width())
                   .arg(area.height())
                   .arg(area.x())
                   .arg(area.y())
                   .arg(output));
    }
    /// Two monitors instead of the one that is there by itself, the right one the primary.
    static void setMonitors(const QRect &left, const QRect &right)
    {
        addMonitor(QStringLiteral("*right"), right, QStringLiteral("screen"));
        addMonitor(QStringLiteral("left"), left, QStringLiteral("none"));
    }
    static void removeMonitor(const QString &name) { xrandr(QStringLiteral("--delmonitor ") + name); }
    static void click(QPoint position, int button = 1)
    {
        xdotool({QStringLiteral("mousemove"), QString::number(position.x()), QString::number(position.y()),
                 QStringLiteral("sleep"), QStringLiteral("0.05"), QStringLiteral("mousedown"),
                 QString::number(button), QStringLiteral("sleep"), QStringLiteral("0.05"),
                 QStringLiteral("mouseup"), QString::number(button)});
    }
    /// In pixels of the screen, as everything that goes to the X server.
    static QPoint middleOf(const QWidget *widget)
    {
        return (widget->mapToGlobal(widget->rect().toRectF().center()) * widget->devicePixelRatioF())
            .toPoint();
    }
    QWidget *control(const QString &name)
    {
        auto *found = window->findChild<QWidget *>(name);
        EXPECT_TRUE(found) << name.toStdString();
        return found;
    }

    void begin(const QString &project)
    {
        click(middleOf(control(QStringLiteral("cmbProj"))));
        xdotool({QStringLiteral("key"), QStringLiteral("ctrl+a")});
        xdotool({QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("20"), project});
        EXPECT_EQ(window->projectText(), project);
        click(middleOf(control(QStringLiteral("StartCap"))));
        ASSERT_TRUE(QTest::qWaitFor([this] { return state.CaptureRunning; }, desktopPatience));
        EXPECT_TRUE(window->isMinimized());
    }
    bool shots(int count)
    {
        return QTest::qWaitFor([&] { return state.ShotCounter == count + 1; }, desktopPatience);
    }
};
