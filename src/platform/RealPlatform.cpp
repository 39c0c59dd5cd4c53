#include "platform/RealPlatform.h"

#include "platform/linux/AlsaSound.h"
#include "platform/linux/DesktopPrograms.h"
#include "platform/linux/SystemClock.h"
#include "platform/RunTimeError.h"
#include "platform/sqlite/SqliteDatabase.h"
#include "platform/x11/X11HotKeys.h"
#include "platform/x11/X11InputHook.h"
#include "platform/x11/X11Screen.h"

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
};

class AbsentInputHook : public InputHook
{
public:
    void start(Handler) override
    {
        throw RunTimeError(RunTimeError::CannotCreateObject,
                           QStringLiteral("Mouse and keyboard of other programs cannot be watched in this "
                                          "session. Please log in to a session that uses X11 (often called "
                                          "\"on Xorg\") and start Shotly there."));
    }
    void stop() override {}
    bool running() const override { return false; }
    void drain(std::uint32_t) override {}
    void suspend() override {}
    void resume(std::uint32_t) override {}
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
} // namespace

Platform makeRealPlatform()
{
    Platform platform;
    platform.clock = std::make_unique<SystemClock>();
    platform.screen = realOrAbsent<Screen, X11Screen, AbsentScreen>();
    platform.inputHook = realOrAbsent<InputHook, X11InputHook, AbsentInputHook>();
    platform.hotKeys = realOrAbsent<HotKeys, X11HotKeys, AbsentHotKeys>();
    platform.sound = std::make_unique<AlsaSound>();
    platform.database = std::make_unique<SqliteDatabase>();
    platform.programs = std::make_unique<DesktopPrograms>();
    return platform;
}
