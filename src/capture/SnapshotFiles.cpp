#include "capture/SnapshotFiles.h"

#include "paint/mdlEffect.h"
#include "platform/ApplicationFolder.h"
#include "platform/ImageFile.h"
#include "platform/RunTimeError.h"

#include <QFile>
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
        const std::uint64_t hash =
            decision.reduce ? ReduceAndSave(picture, path) : ImageFile::save(picture, path);
        // A snapshot that is not recorded will have no page: its file must not be left over.
        auto notRecorded = qScopeGuard([&path] { QFile::remove(path); });
        RecordShot(path, hash);
        notRecorded.dismiss();
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

void SnapshotFiles::RecordShot(const QString &path, std::uint64_t hash)
{
    Module1 &state = m_services.state;
    const bool scaled = isReduction(state.AppOptions.BigPicSize) && (m_wholeScreenShot || m_pictureReduced);
    const ShotEntry entry{state.AppOptions.ProjectName,
                          path,
                          QString::number(state.PointerX),
                          QString::number(state.PointerY),
                          u"OK"_s,
                          flagText(scaled),
                          flagText(state.RightClickPending),
                          QString::number(state.RightClickX),
                          QString::number(state.RightClickY)};
    if (m_journal)
        m_journal->add({state.ShotCounter, entry, hash});
    const auto number = static_cast<std::size_t>(state.ShotCounter);
    if (state.ShotTable.size() <= number)
        state.ShotTable.resize(number + 1);
    state.ShotTable[number] = entry;
    state.RightClickPending = false;
    state.PointerX = Module1::noPointer;
}

std::uint64_t SnapshotFiles::ReduceAndSave(const QImage &grabbed, const QString &path)
{
    m_pictureReduced = true;
    const float factor = static_cast<float>(m_services.state.AppOptions.BigPicSize * 0.01);
    return ImageFile::save(mdlEffect::TransformPicture(grabbed, mdlEffect::Kind::Resize, {factor, factor}),
                           path);
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
