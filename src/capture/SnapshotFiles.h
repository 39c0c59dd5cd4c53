#pragma once

#include "capture/GrabDecision.h"
#include "capture/RunJournal.h"
#include "capture/ScreenGrabbing.h"
#include "platform/Clock.h"
#include "platform/Prompter.h"
#include "platform/Sound.h"
#include "state/Module1.h"

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
    /// Handles what the user has done already, such as a click on Stop.
    virtual void handleWaitingInput() = 0;
};

/// Snapshot files: their names, and how they are taken.
class SnapshotFiles
{
public:
    struct Services {
        Module1 &state;
        Screen &screen;
        Clock &clock;
        Sound &sound;
        Prompter &prompter;
        CaptureView &view;
    };

    SnapshotFiles(const Services &services, ScreenGrabbing &grabbing);

    /// Takes one snapshot of the run: waits 100 ms, grabs, saves, records, flashes, plays the sound. Throws
    /// RunTimeError when the file or the journal cannot be written; nothing is recorded and the number stays
    /// free then.
    void mkPic();

    /// The journal that mkPic() writes each snapshot to; null while no run is on. It must outlive its use.
    void setJournal(RunJournal *journal) { m_journal = journal; }

    /// Path of the snapshot that comes next: project directory, prefix and a number of at least four digits.
    QString nextSnapshotFile() const;

    /// Asks where a single snapshot goes; empty when the user cancels.
    QString getSavePath();

private:
    QImage grabFor(Grab grab);
    void RecordShot(const QString &path, std::uint64_t hash);
    std::uint64_t ReduceAndSave(const QImage &grabbed, const QString &path);

    Services m_services;
    ScreenGrabbing &m_grabbing;
    bool m_wholeScreenShot = false;
    bool m_pictureReduced = false;
    RunJournal *m_journal = nullptr;
};
