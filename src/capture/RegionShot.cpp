#include "capture/RegionShot.h"

#include "capture/ShowSnapshot.h"
#include "platform/ImageFile.h"
#include "platform/RunTimeError.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QScopeGuard>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int restLimit = 1000; // milliseconds
}

RegionShot::RegionShot(const Services &services, SnapshotFiles &files) : m_services(services), m_files(files)
{
}

bool RegionShot::begin()
{
    if (m_underWay)
        return false;
    m_underWay = true;
    m_services.hook.drain(0); // suspending drops what still waits
    m_services.hook.suspend();
    auto giveUp = qScopeGuard([this] { cancel(); });
    if (!askPath() || !FreezeDesktop())
        return false;
    giveUp.dismiss();
    return true;
}

bool RegionShot::askPath()
{
    Module1 &state = m_services.state;
    state.NextSnapshotPath = m_files.getSavePath();
    if (state.NextSnapshotPath.isEmpty())
        return false;
    if (state.AppOptions.ShowLessMessage != 1)
        m_services.prompter.tell(Question::RegionTips,
                                 {u"After you click the 'OK' button, move mouse to the top-left of the\r\n"
                                  "region you want to make a region snapshot, press left button on the\r\n"
                                  "mouse. The mouse showing a crossas cursor. Hold the button, and\r\n"
                                  "move the mouse until the whole region is covered. Release the button,\r\n"
                                  "then, the screen shot is made and saved on your compute.\r\n"
                                  "\r\n"
                                  "Click 'OK' to continue."_s,
                                  u"Tips: How to make a region snapshot?"_s});
    return true;
}

bool RegionShot::FreezeDesktop()
{
    QGuiApplication::clipboard()->clear();
    // The boxes that have just been closed go first; then our own windows paint what was below them.
    for (int round = 0; round < 2; ++round) {
        m_services.clock.letEventsRun();
        m_services.screen.waitUntilAtRest(restLimit);
    }
    QString refusal;
    m_frozenDesktop = grab(refusal);
    if (refusal.isEmpty())
        return true;
    m_services.prompter.tell(Question::CaptureNotPossible,
                             {refusal, m_services.state.AppTitle, Icon::Information});
    return false;
}

QImage RegionShot::grab(QString &refusal)
{
    QImage picture;
    try {
        picture = m_services.screen.grab(m_services.screen.desktop());
        if (picture.isNull())
            refusal = u"The screen could not be grabbed."_s;
    } catch (const RunTimeError &error) {
        refusal = error.description();
    }
    return picture;
}

void RegionShot::SaveRegionSnapshot(const QRect &region)
{
    Module1 &state = m_services.state;
    const QString path = std::exchange(state.NextSnapshotPath, {});
    const QImage picture = std::exchange(m_frozenDesktop, {}).copy(region);
    m_services.hook.resume(0);
    {
        const auto end = qScopeGuard([this] {
            m_underWay = false;
            m_services.workspace.restoreNormal();
        });
        if (!path.isEmpty())
            save(picture, path);
    }
    state.CurrentImagePath = path;
    showSnapshot(state, m_services.workspace, m_services.programs);
}

void RegionShot::save(const QImage &picture, const QString &path)
{
    ImageFile::save(picture, path);
    m_services.clock.letEventsRun(); // the windows that come to light again are painted before the sound
    m_services.sound.playAndWait(FileSystem::join(m_services.state.ApplicationPath, u"camera.wav"_s));
}

void RegionShot::cancel()
{
    m_frozenDesktop = {};
    m_services.state.NextSnapshotPath.clear();
    m_services.hook.resume(0);
    m_underWay = false;
}
