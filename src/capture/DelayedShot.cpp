#include "capture/DelayedShot.h"

#include "capture/ShowSnapshot.h"
#include "platform/ImageFile.h"
#include "platform/Rounding.h"
#include "platform/RunTimeError.h"

#include <QScopeGuard>

#include <cmath>
#include <utility>

using namespace Qt::Literals::StringLiterals;

DelayedShot::DelayedShot(const Services &services, ScreenGrabbing &grabbing)
    : m_services(services), m_grabbing(grabbing)
{
}

std::optional<int> DelayedShot::askDelay()
{
    for (;;) {
        const std::optional<QString> typed =
            m_services.prompter.input(Question::ShotDelay,
                                      {u"How many seconds to wait before taking a snapshot?\r\n"
                                       "Enter a positive integer number only. For 3 seconds, click 'OK'."_s,
                                       u"How long to wait?"_s},
                                      u"3"_s);
        if (!typed || typed->isEmpty())
            return std::nullopt;
        bool isNumber = false;
        const double seconds = typed->trimmed().toDouble(&isNumber);
        if (!isNumber || !std::isfinite(seconds))
            continue;
        if (!typed->contains(u'.') && seconds > 0 && seconds <= INT32_MAX)
            return Rounding::toInt(seconds);
        m_services.prompter.tell(
            Question::ShotDelayNotPositive,
            {u"Must enter an integer number greater than 0, such as 1,2,3.."_s, m_services.state.AppTitle});
    }
}

void DelayedShot::arm(bool activeWindow, int delaySeconds, const QString &path)
{
    m_shotDelaySeconds = delaySeconds;
    m_pendingShotPath = path;
    m_countdown = 0;
    m_services.workspace.minimise();
    m_activeWindowShotArmed = activeWindow;
    m_desktopShotArmed = !activeWindow;
}

void DelayedShot::tick()
{
    if (!armed() || m_taking)
        return;
    if (m_countdown == 0) {
        m_countdown = m_shotDelaySeconds;
        return;
    }
    if (--m_countdown == 0)
        take();
}

void DelayedShot::take()
{
    const QString path = std::exchange(m_pendingShotPath, {});
    QString refusal;
    {
        m_taking = true;
        const auto restore = qScopeGuard([this] {
            m_taking = m_activeWindowShotArmed = m_desktopShotArmed = false;
            m_services.workspace.restoreNormal();
        });
        const QImage picture = grab(refusal);
        if (refusal.isEmpty()) {
            ImageFile::save(picture, path);
            m_services.sound.playAndWait(FileSystem::join(m_services.state.ApplicationPath, u"camera.wav"_s));
        }
    }
    if (!refusal.isEmpty()) {
        m_services.prompter.tell(Question::CaptureNotPossible,
                                 {refusal, m_services.state.AppTitle, Icon::Information});
        return;
    }
    m_services.state.CurrentImagePath = path;
    showSnapshot(m_services.state, m_services.workspace, m_services.programs);
}

/// `refusal` is what the session says that gives no picture.
QImage DelayedShot::grab(QString &refusal)
{
    m_grabbing.setLastPointer(m_services.screen.pointerPosition());
    QImage picture;
    try {
        picture = m_activeWindowShotArmed ? m_grabbing.CaptureActiveWindow() : m_grabbing.CaptureScreen();
    } catch (const RunTimeError &error) {
        refusal = error.description();
        return {};
    }
    if (picture.isNull())
        throw RunTimeError(RunTimeError::InvalidPicture, u"The screen could not be grabbed."_s);
    return picture;
}
