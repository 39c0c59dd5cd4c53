#pragma once

#include "capture/ScreenGrabbing.h"
#include "platform/ExternalPrograms.h"
#include "platform/Prompter.h"
#include "platform/Sound.h"
#include "state/Module1.h"
#include "state/Workspace.h"

/// A single snapshot of the active window or of the whole desktop, some seconds after the command.
class DelayedShot
{
public:
    struct Services {
        Module1 &state;
        Screen &screen;
        Sound &sound;
        Prompter &prompter;
        Workspace &workspace;
        ExternalPrograms &programs;
    };

    DelayedShot(const Services &services, ScreenGrabbing &grabbing);

    /// Asks for the delay; nothing when the user gives up. Asks again until it is a positive whole number.
    std::optional<int> askDelay();

    /// Minimises the main window and arms the snapshot; `path` is where it goes.
    void arm(bool activeWindow, int delaySeconds, const QString &path);

    /// One second has passed. The snapshot is taken on the (delay + 1)-th tick after arming. Throws
    /// RunTimeError when the file cannot be written; the snapshot is given up and the window restored then.
    /// So it is, with a message, when the session refuses it or the user cancels it. A session may ask the
    /// user first: further ticks meanwhile do nothing.
    void tick();

    /// From arm() until the snapshot has been taken or given up.
    bool armed() const { return m_activeWindowShotArmed || m_desktopShotArmed; }
    /// Seconds until the snapshot, 0 while no countdown runs.
    int countdown() const { return m_countdown; }

private:
    void take();
    QImage grab(QString &refusal);

    Services m_services;
    ScreenGrabbing &m_grabbing;
    int m_shotDelaySeconds = 0;
    int m_countdown = 0;
    QString m_pendingShotPath;
    bool m_activeWindowShotArmed = false;
    bool m_desktopShotArmed = false;
    bool m_taking = false;
};
