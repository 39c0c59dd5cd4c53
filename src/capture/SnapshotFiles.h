#pragma once

#include "capture/GrabDecision.h"
#include "capture/ScreenGrabbing.h"
#include "pagestore/PageDatabase.h"
#include "platform/Clock.h"
#include "platform/Prompter.h"
#include "platform/Sound.h"
#include "state/Module1.h"
#include "state/Progress.h"

/// What the capture run tells the screen. The main window and the stop bar implement it.
class CaptureView
{
public:
    virtual ~CaptureView() = default;

    virtual void showStopBar() = 0;
    virtual void hideStopBar() = 0;
    /// Brings the stop bar (or, without one, the main window) to the front.
    virtual void raiseStopBar() = 0;
    /// The camera of the stop bar flashes; returns when it is over.
    virtual void PicIconFlash() = 0;
    virtual void deleteTrayIcon() = 0;
};

/// Snapshot files: their names, how they are taken, and how a run's snapshots become pages.
class SnapshotFiles
{
public:
    struct Services {
        Module1 &state;
        Screen &screen;
        Clock &clock;
        Sound &sound;
        Prompter &prompter;
        PageDatabase &database;
        CaptureView &view;
    };

    SnapshotFiles(const Services &services, ScreenGrabbing &grabbing);

    /// Takes one snapshot of the run: waits 100 ms, grabs, saves, records, flashes, plays the sound. Throws
    /// RunTimeError when the file cannot be written; nothing is recorded and the number stays free then.
    void mkPic();

    /// Path of the snapshot that comes next: project directory, prefix and a number of at least four digits.
    QString nextSnapshotFile() const;

    /// Asks where a single snapshot goes; empty when the user cancels.
    QString getSavePath();

    /// What came of registering a run.
    struct Registered {
        int pages = 0;
        int missing = 0; ///< snapshots that did not become a page
    };

    /// Inserts one page per recorded snapshot, in one transaction, and asks afterwards which are there.
    Registered registerPages(Progress &progress);

private:
    QImage grabFor(Grab grab);
    void RecordShot(const QString &path);
    void ReduceAndSave(const QImage &grabbed, const QString &path);
    void insertPages(ProgressScope &progress);

    Services m_services;
    ScreenGrabbing &m_grabbing;
    bool m_wholeScreenShot = false;
    bool m_pictureReduced = false;
};
