#include "capture/CaptureRun.h"

#include "pagestore/Statements.h"
#include "platform/RunTimeError.h"
#include "platform/VirtualKeys.h"
#include "settings/OptionsStore.h"

#include <QScopeGuard>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int escapeWait = 50; // milliseconds
constexpr int rightButton = 2;

bool isOfPointer(const InputEvent &event)
{
    return event.kind == InputEvent::Kind::MouseDown || event.kind == InputEvent::Kind::MouseUp ||
           event.kind == InputEvent::Kind::MouseMove;
}
} // namespace

CaptureRun::CaptureRun(const Services &services, ScreenGrabbing &grabbing, SnapshotFiles &files)
    : m_services(services), m_grabbing(grabbing), m_files(files)
{
}

bool CaptureRun::isProjectName(const QString &name)
{
    return !name.isEmpty() && std::all_of(name.begin(), name.end(), [](QChar c) {
        return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9') ||
               c == u'-' || c == u'_';
    });
}

void CaptureRun::begin(EventSink sink)
{
    Module1 &state = m_services.state;
    if (state.CaptureRunning) {
        m_services.view.raiseStopBar();
        return;
    }
    if (m_changing)
        return;
    m_changing = true;
    const auto done = qScopeGuard([this] { m_changing = false; });

    state.ShotCounter = 1;
    state.PointerX = Module1::noPointer;
    state.PointerY = 0;
    const QString typed = m_services.workspace.projectText().trimmed();
    if (nameMissing(typed))
        return;
    // First: a project of which no page is registered yet has no directory that could be located.
    m_services.registration.offerAbandoned(typed);
    m_services.directories.LocateProjectDirectory();
    const QString name = state.AppOptions.ProjectName;
    if (state.ProjectDirectory.trimmed().isEmpty())
        state.ProjectDirectory = FileSystem::join(state.AppOptions.BaseDirectory, name);
    if (!ListContains(m_services.workspace.projectNames(), name))
        m_services.workspace.addProjectName(name);
    m_services.workspace.setProjectText(name);
    state.ShotCounter = 1;
    if (!prepareDirectory())
        return;
    OptionsStore::writeProjectName(state.OptionsFilePath, name);
    if (state.AppOptions.ShowLessMessage == 0)
        m_services.prompter.tell(
            Question::SnapshotsWillBeSavedAt,
            {u"All screen-shots will be saved at "_s + state.ProjectDirectory, state.AppTitle});
    if (m_services.display.OfferDisplaySwitch()) {
        m_services.workspace.endAtOnce();
        return;
    }
    startWatching(std::move(sink));
}

bool CaptureRun::nameMissing(const QString &name)
{
    if (name.isEmpty()) {
        m_services.prompter.tell(Question::ProjectNameMissing,
                                 {u"Please enter a new project name into the pink\r\n"
                                  "'Multi-Snapshot Project' drop down list\r\n"
                                  "\r\nor\r\n\r\n"
                                  "select an existing project from the pink\r\n"
                                  "'Multi-Snapshot Project' list."_s,
                                  u"Enter or Select a Project Name"_s});
        return true;
    }
    if (isProjectName(name) || ListContains(m_services.workspace.projectNames(), name))
        return false;
    m_services.prompter.tell(
        Question::ProjectNameCharacter,
        {u"Only alphabet, number, - and _ allowed in this box."_s, m_services.state.AppTitle});
    return true;
}

bool CaptureRun::prepareDirectory()
{
    Module1 &state = m_services.state;
    if (!state.FileSystem.folderExists(state.ProjectDirectory)) {
        takeOverExistingPages();
        state.FileSystem.createFolder(state.ProjectDirectory);
        return true;
    }
    const Answer answer = m_services.prompter.ask(
        Question::KeepExistingPages, Buttons::YesNoCancel,
        {u"The project File Directory already exists. Keep existing pages?\r\n"
         "The project diretory is:\r\n"
         "\r\n%1\r\n\r\n"
         "Click Yes to keep all existing pages and append new pages to the end.\r\n"
         "Click No to remove all existing pages.\r\n"
         "Click Cancel to give another name to the project."_s.arg(state.ProjectDirectory),
         u"Keep existing pages?"_s});
    switch (answer) {
    case Answer::Yes:
        state.PageNumberBase = m_services.database.highestPageNumber(state.AppOptions.ProjectName, true);
        return true;
    case Answer::No:
        removeExistingPages();
        return true;
    default:
        return false;
    }
}

/// A known project whose folder has gone goes on behind its last page.
void CaptureRun::takeOverExistingPages()
{
    Module1 &state = m_services.state;
    state.PageNumberBase = m_services.database.highestPageNumber(state.AppOptions.ProjectName, false);
}

void CaptureRun::removeExistingPages()
{
    Module1 &state = m_services.state;
    m_services.directories.MoveOldDocuments(u"All"_s);
    // Not silently: pages that stayed would have the numbers of the new ones.
    m_services.database.execute(Statements::restartProject(state.AppOptions.ProjectName));
    m_services.directories.MoveOldDocuments(u"bmp"_s);
    m_services.workspace.closeWebSearchTab();
    m_services.workspace.refreshPageViews();
    state.PageNumberBase = 0;
}

void CaptureRun::startWatching(EventSink sink)
{
    Module1 &state = m_services.state;
    const bool stopBar = state.AppOptions.OptionFlags[HideStopButtonDuringCapture] == 0;
    state.ShotTable.clear();
    state.RightClickPending = false;
    if (!beginJournal())
        return;
    if (stopBar)
        m_services.view.showStopBar();
    m_services.workspace.minimise();
    state.CaptureRunning = true;
    state.TrayAllowed = false;
    m_services.view.deleteTrayIcon();
    m_grabbing.followPointer();
    try {
        m_services.hook.start(
            [this, passOn = std::move(sink)](const InputEvent &event) { deliver(passOn, event); });
    } catch (const RunTimeError &error) {
        state.CaptureRunning = false;
        state.TrayAllowed = true;
        m_files.setJournal(nullptr);
        m_journal->remove();
        m_journal.reset();
        if (stopBar)
            m_services.view.hideStopBar();
        m_services.workspace.restoreNormal();
        m_services.prompter.tell(Question::CaptureNotPossible,
                                 {error.description(), state.AppTitle, Icon::Exclamation});
    }
}

/// Without a journal a run would not survive the program: it does not begin.
bool CaptureRun::beginJournal()
{
    const Module1 &state = m_services.state;
    const AppOptions &options = state.AppOptions;
    const QDateTime now = m_services.clock.now();
    try {
        m_journal = RunJournal::begin(
            state.ApplicationPath, now,
            {options.ProjectName, state.ProjectDirectory,
             FileSystem::join(options.BaseDirectory, options.ProjectName), state.PageNumberBase,
             options.BigPicSize, options.OptionFlags[MouseBorderColor], options.OptionFlags[MouseInsideColor],
             options.UseSystemMouseShape, now.date()});
    } catch (const RunTimeError &error) {
        m_services.prompter.tell(Question::CaptureNotPossible,
                                 {error.description(), state.AppTitle, Icon::Exclamation});
        return false;
    }
    m_files.setJournal(m_journal.get());
    return true;
}

void CaptureRun::deliver(const EventSink &sink, const InputEvent &event)
{
    if (isOfPointer(event))
        m_grabbing.setLastPointer(event.position);
    try {
        sink(event);
    } catch (const RunTimeError &error) {
        tellFailure(error.description());
    } catch (const std::exception &error) {
        tellFailure(QString::fromUtf8(error.what()));
    }
}

void CaptureRun::tellFailure(const QString &reason)
{
    m_services.hook.suspend();
    // The box would keep from the stop bar the click that the snapshot was to show.
    m_services.view.handleWaitingInput();
    const bool goesOn = m_services.state.CaptureRunning && !m_changing;
    const QString what = goesOn ? u"This snapshot could not be taken. The capture goes on."_s
                                : u"A snapshot could not be taken."_s;
    m_services.prompter.tell(Question::CommandFailed,
                             {what + u"\r\n\r\n"_s + reason, m_services.state.AppTitle, Icon::Critical});
    m_services.hook.resume(0); // also when the run was stopped meanwhile
}

void CaptureRun::keyDown(int keyCode)
{
    if (keyCode != VirtualKey::Escape)
        return;
    m_services.prompter.tell(
        Question::CaptureWillStop,
        {u"Please wait, the multi Screen Capture will stop now."_s, m_services.state.AppTitle});
    m_services.clock.sleep(escapeWait);
    releaseHook(); // unless Stop was chosen while the box was open
}

void CaptureRun::keyUp(int keyCode)
{
    const AppOptions &options = m_services.state.AppOptions;
    if ((keyCode == VirtualKey::Tab && options.SnapShotByPressTab == 1) ||
        (keyCode == VirtualKey::Return && options.SnapShotByPressReturn == 1))
        m_files.mkPic();
}

void CaptureRun::mouseUp(const InputEvent &event)
{
    Module1 &state = m_services.state;
    state.PointerX = event.position.x();
    state.PointerY = event.position.y();
    if (event.button == rightButton) {
        state.RightClickPending = true;
        state.RightClickX = event.position.x();
        state.RightClickY = event.position.y();
        return;
    }
    m_files.mkPic();
}

void CaptureRun::releaseHook()
{
    if (!m_services.hook.running())
        return;
    try {
        m_services.hook.stop();
    } catch (const RunTimeError &) {
        // The display has gone: nothing more comes from the hook anyway.
    }
}

void CaptureRun::stop(std::uint32_t upTo)
{
    Module1 &state = m_services.state;
    if (!state.CaptureRunning || m_changing)
        return;
    m_changing = true;
    const auto done = qScopeGuard([this] { m_changing = false; });
    if (m_services.hook.running())
        m_services.hook.drain(upTo);
    state.CaptureRunning = false;
    releaseHook();
    state.TrayAllowed = true;
    m_services.view.hideStopBar(); // also when the option has been changed meanwhile
    if (!state.IsWinXPOrLater && state.DisplaySwitched)
        m_services.display.RestoreDisplay();
    finish();
}

void CaptureRun::finish()
{
    m_files.setJournal(nullptr);
    if (m_journal->shots().empty()) {
        m_journal->remove();
        m_services.workspace.showStatus(u"No snapshot was taken."_s);
    } else if (m_services.registration.perform(*m_journal)) {
        const std::size_t count = m_journal->shots().size();
        m_services.workspace.showStatus(u"%1 of the project %2."_s.arg(
            count == 1 ? u"1 snapshot is a page"_s : u"%L1 snapshots are pages"_s.arg(count),
            m_journal->facts().project));
    } else {
        m_services.workspace.showStatus(
            u"Not all snapshots of the project %1 are pages yet."_s.arg(m_journal->facts().project));
    }
    // What an earlier stop could not register is offered again; this run's own journal is still locked.
    m_services.registration.offerAbandoned();
    m_journal.reset();
    m_services.workspace.refreshPageViews();
    m_services.directories.show1stPic();
}

bool CaptureRun::offerAbandonedRuns()
{
    if (m_changing || m_services.state.CaptureRunning)
        return false;
    m_changing = true;
    const auto done = qScopeGuard([this] { m_changing = false; });
    return m_services.registration.offerAbandoned();
}
