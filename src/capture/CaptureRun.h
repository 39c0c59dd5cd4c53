#pragma once

#include "capture/DisplaySwitch.h"
#include "capture/RunRegistration.h"
#include "capture/SnapshotFiles.h"
#include "pagestore/ProjectDirectories.h"
#include "platform/Clock.h"
#include "platform/InputHook.h"
#include "state/Workspace.h"

/// A capture run: from Begin, through a snapshot at every click, to the registered pages after Stop.
///
/// Idle; running (hook active); after Escape running without hook, until Stop. Decides and orders; what is
/// shown is the business of CaptureView and Workspace. References must outlive it; main thread only.
class CaptureRun
{
public:
    struct Services {
        Module1 &state;
        InputHook &hook;
        Clock &clock;
        Prompter &prompter;
        Workspace &workspace;
        CaptureView &view;
        PageDatabase &database;
        ProjectDirectories &directories;
        RunRegistration &registration;
        DisplaySwitch &display;
    };

    CaptureRun(const Services &services, ScreenGrabbing &grabbing, SnapshotFiles &files);

    /// Receives the hook's events while the run is on. The main window passes each on to the handler of its
    /// kind; a failure thrown there is told to the user, the hook suspended meanwhile, and the run goes on.
    using EventSink = std::function<void(const InputEvent &)>;

    /// Starts a run for the project in the project box; one of the same project that was interrupted is
    /// settled first. With one already on, brings its stop bar forward.
    void begin(EventSink sink);

    /// Ends the run: marks the snapshots, registers them as pages, shows the first. Nothing when none is on.
    /// What the user did up to the display's time stamp `upTo` still counts (the click that chose Stop is a
    /// snapshot like any other); 0: all that has happened by now.
    void stop(std::uint32_t upTo);

    /// Offers the runs that were interrupted; to be called when the main window stands. True when there was
    /// one.
    bool offerAbandonedRuns();

    void keyDown(int keyCode);
    void keyUp(int keyCode);
    void mouseUp(const InputEvent &event);

    /// Letters, digits, "-" and "_" make a project name.
    static bool isProjectName(const QString &name);

private:
    bool nameMissing(const QString &name);
    bool prepareDirectory();
    void takeOverExistingPages();
    void removeExistingPages();
    void startWatching(EventSink sink);
    void deliver(const EventSink &sink, const InputEvent &event);
    void tellFailure(const QString &reason);
    void releaseHook();
    bool beginJournal();
    void finish();

    Services m_services;
    ScreenGrabbing &m_grabbing;
    SnapshotFiles &m_files;
    std::unique_ptr<RunJournal> m_journal; ///< from begin() until its pages are registered
    bool m_changing = false; ///< begin() or stop() is under way; their boxes let other commands in
};
