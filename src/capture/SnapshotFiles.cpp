#include "capture/SnapshotFiles.h"

#include "pagestore/Statements.h"
#include "paint/mdlEffect.h"
#include "platform/ApplicationFolder.h"
#include "platform/AtomicFile.h"
#include "platform/ImageFile.h"
#include "platform/RunTimeError.h"

#include <QScopeGuard>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int redrawWait = 100; // gives the program that was clicked on time to redraw, in milliseconds

QString flagText(bool flag)
{
    return flag ? u"True"_s : u"False"_s;
}
} // namespace

SnapshotFiles::SnapshotFiles(const Services &services, ScreenGrabbing &grabbing)
    : m_services(services), m_grabbing(grabbing)
{
}

QString SnapshotFiles::nextSnapshotFile() const
{
    const Module1 &state = m_services.state;
    const int number = state.PageNumberBase + state.ShotCounter;
    return FileSystem::join(state.ProjectDirectory,
                            state.AppOptions.FileNamePrefix + u"%1.bmp"_s.arg(number, 4, 10, QChar(u'0')));
}

void SnapshotFiles::mkPic()
{
    Module1 &state = m_services.state;
    const GrabDecision decision =
        decideGrab({m_grabbing.desktop(), m_services.screen.foregroundWindow(), state.IsWinXPOrLater,
                    state.AppOptions.BigPicSize, m_grabbing.WideWindow, state.DisplaySwitched});
    m_wholeScreenShot = decision.wholeScreenShot;
    {
        const auto clearFlags = qScopeGuard([&] {
            m_grabbing.WideWindow = false;
            m_wholeScreenShot = false;
            m_pictureReduced = false;
            state.RightClickPending = false;
        });
        const QString path = nextSnapshotFile();
        m_services.clock.sleep(redrawWait);
        const QImage picture = grabFor(decision.grab);
        if (picture.isNull())
            throw RunTimeError(RunTimeError::InvalidPicture, u"The screen could not be grabbed."_s);
        if (decision.reduce)
            ReduceAndSave(picture, path);
        else
            ImageFile::save(picture, path);
        RecordShot(path);
    }
    ++state.ShotCounter;
    if (state.AppOptions.OptionFlags[HideStopButtonDuringCapture] == 0)
        m_services.view.PicIconFlash();
    m_services.sound.playAndWait(FileSystem::join(state.ApplicationPath, u"camera.wav"_s));
}

QImage SnapshotFiles::grabFor(Grab grab)
{
    switch (grab) {
    case Grab::ActiveWindow:
        return m_grabbing.CaptureActiveWindow();
    case Grab::ScreenAdjust:
        return m_grabbing.CaptureScreenAdjust();
    case Grab::Screen:
        break;
    }
    return m_grabbing.CaptureScreen();
}

void SnapshotFiles::RecordShot(const QString &path)
{
    Module1 &state = m_services.state;
    const auto number = static_cast<std::size_t>(state.ShotCounter);
    if (state.ShotTable.size() <= number)
        state.ShotTable.resize(number + 1);
    const bool scaled = state.AppOptions.BigPicSize < 100 && (m_wholeScreenShot || m_pictureReduced);
    state.ShotTable[number] = {state.AppOptions.ProjectName,
                               path,
                               QString::number(state.PointerX),
                               QString::number(state.PointerY),
                               u"OK"_s,
                               flagText(scaled),
                               flagText(state.RightClickPending),
                               QString::number(state.RightClickX),
                               QString::number(state.RightClickY)};
    state.RightClickPending = false;
    state.PointerX = Module1::noPointer;
}

void SnapshotFiles::ReduceAndSave(const QImage &grabbed, const QString &path)
{
    m_pictureReduced = true;
    const float factor = static_cast<float>(m_services.state.AppOptions.BigPicSize * 0.01);
    ImageFile::save(mdlEffect::TransformPicture(grabbed, mdlEffect::Kind::Resize, {factor, factor}), path);
}

QString SnapshotFiles::getSavePath()
{
    const QString folder = ApplicationFolder::defaultBaseDirectory();
    m_services.state.FileSystem.createFolder(folder);
    FilePrompt prompt;
    prompt.title = u"Save As"_s;
    prompt.directory = folder;
    prompt.fileName = u"snapshot1.bmp"_s;
    prompt.filter = u"Image Files (*.bmp)|*.bmp"_s;
    prompt.askOverwrite = true;
    return m_services.prompter.saveFile(Question::SaveSnapshotAs, prompt).value_or(QString());
}

SnapshotFiles::Registered SnapshotFiles::registerPages(Progress &progress)
{
    const std::vector<ShotEntry> &shots = m_services.state.ShotTable;
    if (shots.size() < 2)
        return {};
    ProgressScope scope(progress, u"Registering the pages"_s, static_cast<int>(shots.size()) - 1);
    Registered registered;
    try {
        const std::unique_ptr<DatabaseBatch> batch = m_services.database.beginBatch();
        insertPages(scope);
        batch->commit();
    } catch (const RunTimeError &) {
        // What is missing is counted below, and told by the caller.
    }
    for (const ShotEntry &shot : shots) {
        if (shot[ShotPath].isEmpty())
            continue;
        const bool present = m_services.database.QueryLong(
                                 Statements::capturedPageCount(shot[ShotProjectName], shot[ShotPath])) > 0;
        ++(present ? registered.pages : registered.missing);
    }
    return registered;
}

void SnapshotFiles::insertPages(ProgressScope &progress)
{
    Module1 &state = m_services.state;
    int inserted = 0;
    for (std::size_t i = 1; i < state.ShotTable.size(); ++i) {
        ShotEntry &shot = state.ShotTable[i];
        if (shot[ShotPath].isEmpty())
            continue;
        AtomicFile::syncFile(shot[ShotPath]); // a page never outlives its picture
        if (shot[ShotStatus].isEmpty())
            shot[ShotStatus] = u"OK"_s;
        m_services.database.RunSql(
            QString::fromUtf16(Statements::pageTable),
            Statements::insertCapturedPage(
                {shot[ShotProjectName], shot[ShotPath], shot[ShotStatus],
                 state.PageNumberBase + static_cast<std::int32_t>(i), m_services.clock.now().date(),
                 FileSystem::join(state.AppOptions.BaseDirectory, shot[ShotProjectName])}));
        progress.step(++inserted);
    }
}
