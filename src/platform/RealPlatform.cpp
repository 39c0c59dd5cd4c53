#include "platform/RealPlatform.h"

#include "platform/linux/AlsaSound.h"
#include "platform/linux/DesktopPrograms.h"
#include "platform/linux/PortalScreen.h"
#include "platform/linux/ScreenshotPortal.h"
#include "platform/linux/SystemClock.h"
#include "platform/office/OfficeWordProcessor.h"
#include "platform/RunTimeError.h"
#include "platform/sqlite/SqliteDatabase.h"
#include "platform/x11/X11DisplayModes.h"
#include "platform/x11/X11HotKeys.h"
#include "platform/x11/X11InputHook.h"
#include "platform/x11/X11Monitors.h"
#include "platform/x11/X11Screen.h"

#include <QStandardPaths>

#include <utility>

namespace
{
class AbsentScreen : public Screen
{
public:
    QRect desktop() const override { return {}; }
    QRect monitorAt(QPoint) const override { return {}; }
    QPoint pointerPosition() const override { return {}; }
    QRect foregroundWindow() const override { return {}; }
    QImage grab(const QRect &) override { return {}; }
    CursorShape cursorShape() const override { return {}; }
    void waitUntilMinimised(std::uint32_t, int) override {}
    void waitUntilAtRest(int) override {}
};

/// What a user can do who wants to record a demonstration.
QString adviceInWaylandSession()
{
    QString text =
        QStringLiteral("This is a Wayland session. It does not let programs watch the mouse and the "
                       "keyboard, so clicks cannot take snapshots here.\r\n\r\n");
    if (ScreenshotPortal::isPresent())
        text += QStringLiteral(
            "Single snapshots can be taken here: choose \"Whole Desktop Snapshot\" in the menu "
            "\"Single-Snapshot\" (\"Active Window Snapshot\" shows the whole desktop here, too).\r\n\r\n");
    text += QStringLiteral(
        "To record a demonstration, log out and log in again to a session that uses X11 (login screens often "
        "call it \"on Xorg\"), and start Shotly there.");
    return text;
}

class WaylandInputHook : public InputHook
{
public:
    void start(Handler) override
    {
        throw RunTimeError(RunTimeError::CannotCreateObject, adviceInWaylandSession());
    }
    void stop() override {}
    bool running() const override { return false; }
    void drain(std::uint32_t) override {}
    void suspend() override {}
    void resume(std::uint32_t) override {}
};

class AbsentDisplayModes : public DisplayModes
{
public:
    QSize desktopSize() const override { return {}; }
    bool offers(QSize) const override { return false; }
    Change change(QSize) override { return Change::Refused; }
};

class AbsentHotKeys : public HotKeys
{
public:
    void setHandler(Handler) override {}
    bool registerKey(int, Modifier, int) override { return false; }
    void unregisterKey(int) override {}
};

/// The real part, or its stand-in where there is no X display.
template <typename Interface, typename Real, typename Absent>
std::unique_ptr<Interface> realOrAbsent()
{
    try {
        return std::make_unique<Real>();
    } catch (const RunTimeError &) {
        return std::make_unique<Absent>();
    }
}

class AbsentSpelling : public Spelling
{
public:
    bool installed() const override { return false; }
    QString correct(const QString &text) override { return text; }
    bool cancelled() const override { return false; }
};

bool isWaylandSession()
{
    try {
        return isServerOfWaylandSession(X11Connection());
    } catch (const RunTimeError &) {
        return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    }
}
} // namespace

Platform makeRealPlatform(const std::function<QString()> &wordProcessor)
{
    Platform platform;
    platform.clock = std::make_unique<SystemClock>();
    platform.screen = realOrAbsent<Screen, X11Screen, AbsentScreen>();
    platform.displayModes = realOrAbsent<DisplayModes, X11DisplayModes, AbsentDisplayModes>();
    if (isWaylandSession()) {
        platform.screen = std::make_unique<PortalScreen>(std::move(platform.screen));
        platform.inputHook = std::make_unique<WaylandInputHook>();
    } else {
        platform.inputHook = std::make_unique<X11InputHook>();
    }
    platform.hotKeys = realOrAbsent<HotKeys, X11HotKeys, AbsentHotKeys>();
    platform.sound = std::make_unique<AlsaSound>();
    platform.database = std::make_unique<SqliteDatabase>();
    platform.programs = std::make_unique<DesktopPrograms>();
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    platform.wordProcessor = std::make_unique<OfficeWordProcessor>(
        wordProcessor, OfficeProgram(data + QStringLiteral("/shotly/office")), *platform.programs);
    platform.spelling = std::make_unique<AbsentSpelling>();
    return platform;
}

bool displayAnswers()
{
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY"))
        return true;
    try {
        const X11Connection connection;
        return true;
    } catch (const RunTimeError &) {
        return false;
    }
}
