#pragma once

#include "capture/SnapshotFiles.h"
#include "platform/Clock.h"
#include "platform/ExternalPrograms.h"
#include "platform/InputHook.h"
#include "platform/Prompter.h"
#include "platform/Screen.h"
#include "platform/Sound.h"
#include "state/Module1.h"
#include "state/Workspace.h"

#include <QImage>
#include <QRect>

/// A snapshot of a part of the screen that the user draws on a picture of it: begin() freezes the desktop,
/// somebody shows that picture and lets a region be drawn, SaveRegionSnapshot() or cancel() ends it.
///
/// A capture run may be on. What the user does before the command counts for it, what he does from the
/// command until he has drawn the region does not.
class RegionShot
{
public:
    struct Services {
        Module1 &state;
        Screen &screen;
        Sound &sound;
        Clock &clock;
        InputHook &hook;
        Prompter &prompter;
        Workspace &workspace;
        ExternalPrograms &programs;
    };

    RegionShot(const Services &services, SnapshotFiles &files);

    /// Asks where the snapshot goes (Module1::NextSnapshotPath), tells how to draw a region unless the user
    /// wants fewer messages, and freezes the desktop. False when the user gives up, when the session refuses
    /// (the user has been told), or while another region snapshot is on its way. The clipboard is cleared.
    bool begin();

    /// The desktop as it was when begin() ended, physical pixels; null when no region is being drawn.
    const QImage &frozenDesktop() const { return m_frozenDesktop; }

    /// Saves `region` of the frozen desktop, plays the camera's sound and shows the snapshot in the restored
    /// main window. Without a path nothing is saved and played. Throws RunTimeError when the file cannot be
    /// written; the main window is back then, and the snapshot given up.
    void SaveRegionSnapshot(const QRect &region);

    /// Nothing is captured.
    void cancel();

private:
    bool askPath();
    bool FreezeDesktop();
    QImage grab(QString &refusal);
    void save(const QImage &picture, const QString &path);

    Services m_services;
    SnapshotFiles &m_files;
    QImage m_frozenDesktop;
    bool m_underWay = false;
};
