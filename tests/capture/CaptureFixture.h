#pragma once

#include "capture/CaptureRun.h"
#include "support/FakeClock.h"
#include "support/FakeDisplayModes.h"
#include "support/FakeInputHook.h"
#include "support/FakeProgress.h"
#include "support/FakeScreen.h"
#include "support/FakeSound.h"
#include "support/TestPages.h"

/// The stop bar as the cores see it.
class FakeCaptureView : public CaptureView
{
public:
    QStringList calls;

    void showStopBar() override { calls += QStringLiteral("show"); }
    void hideStopBar() override { calls += QStringLiteral("hide"); }
    void raiseStopBar() override { calls += QStringLiteral("raise"); }
    void PicIconFlash() override { calls += QStringLiteral("flash"); }
    void deleteTrayIcon() override { calls += QStringLiteral("tray"); }
    std::function<void()> waitingInput = [] {};
    void handleWaitingInput() override { waitingInput(); }
};

/// A capture run over a faked display and user, with real files and a real database. The desktop is 800 x 600
/// pixels, light grey; the foreground window lies low, so that snapshots show it alone. The project "Demo"
/// has a directory and no pages.
struct CaptureFixture : TestPages {
    FakeScreen screen;
    FakeInputHook hook;
    FakeClock clock;
    FakeSound sound;
    FakeProgress progress;
    FakeCaptureView view;
    ScreenGrabbing grabbing{state, screen};
    SnapshotFiles files{{state, screen, clock, sound, prompter, view}, grabbing};
    PointerMarker marker{state, screen};
    RunRegistration registration{{state, prompter, pages, marker, progress}};
    FakeDisplayModes displayModes;
    UserSettings settings{folder.filePath(QStringLiteral("settings.ini"))};
    DisplaySwitch display{{state, displayModes, settings, prompter, folder.path()}};
    CaptureRun run{{state, hook, clock, prompter, workspace, view, pages, directories, registration, display},
                   grabbing,
                   files};

    CaptureFixture()
    {
        screen.picture = QImage(800, 600, QImage::Format_RGB32);
        screen.picture.fill(qRgb(0xe0, 0xe0, 0xe0));
        screen.foreground = QRect(100, 400, 300, 150);
        state.AppOptions.ShowLessMessage = 1;
    }

    void begin()
    {
        run.begin([this](const InputEvent &event) { receive(event); });
    }

    /// As the main window hands events on.
    void receive(const InputEvent &event)
    {
        if (event.kind == InputEvent::Kind::KeyDown)
            run.keyDown(event.keyCode);
        else if (event.kind == InputEvent::Kind::KeyUp)
            run.keyUp(event.keyCode);
        else if (event.kind == InputEvent::Kind::MouseUp)
            run.mouseUp(event);
    }

    void click(QPoint position, int button = 1)
    {
        hook.send({InputEvent::Kind::MouseUp, 0, button, 0, position, ++m_time});
        hook.deliver();
    }
    void key(InputEvent::Kind kind, int keyCode)
    {
        hook.send({kind, keyCode, 0, 0, {}, ++m_time});
        hook.deliver();
    }

    /// Names of the journals in the application folder.
    QStringList journals() const
    {
        return QDir(state.ApplicationPath).entryList({QStringLiteral("*.journal")});
    }

    /// The page numbers of all projects, joined with blanks.
    QString pageNumbers()
    {
        QStringList numbers;
        const auto rows =
            pages.openRecordset(QStringLiteral("select PageNumber from PageData order by PageNumber"));
        for (; !rows->atEnd(); rows->moveNext())
            numbers += rows->field(0).toString();
        return numbers.join(QLatin1Char(' '));
    }

    /// The snapshots' entry, fields 1 (bare name) to 8, joined with blanks.
    QString entry(std::size_t number) const
    {
        QStringList fields;
        for (std::size_t field = ShotPath; field < shotFieldCount; ++field)
            fields += FileSystem::bareName(state.ShotTable.at(number)[field]);
        return fields.join(u' ');
    }

private:
    std::uint32_t m_time = 1000;
};
