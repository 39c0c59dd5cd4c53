#include "capture/DisplaySwitch.h"

#include <QLockFile>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int smallWidth = 800;
constexpr int smallHeight = 600;

const QString &section()
{
    static const QString name = u"Display"_s;
    return name;
}
const QString &widthKey()
{
    static const QString name = u"resolutionX"_s;
    return name;
}
const QString &heightKey()
{
    static const QString name = u"resolutionY"_s;
    return name;
}
const QString &restartKey()
{
    static const QString name = u"restartAwaited"_s;
    return name;
}

PromptText offerText()
{
    return {u"If you change your display to 800x600, the program will\r\n"
            "make a smaller snap shot. Your demo page will be easier\r\n"
            "to fit into a website, printer, and smaller screen. Also,\r\n"
            "you will not have to reduce size of the snap shot, so you\r\n"
            "will get better picture. \r\n"
            "\r\n"
            "If click Yes, the display resolution will change.\r\n"
            "\r\n"
            "You will see your screen turn black for a few seconds.\r\n"
            "Wait for the screen to work again."_s,
            u"Change Display Resolution?"_s, Icon::Question};
}

PromptText restartText()
{
    return {u"This is NOT an error message, every thing is fine.\r\n"
            "To make sure you get NICE screen shots, please restart Shotly now.\r\n"
            "Please keep the current 800x600 display, do not change it back to your\r\n"
            "original display yet.\r\n"
            "\r\n"
            "By the way, if you did not change your Display Theme to Windows Classic,\r\n"
            "you can do it now: Start->Control Panel, Click 'Appearance and Themes'\r\n"
            "Click 'Change the computer's theme', select 'Windows Classic' from\r\n"
            "dropdown list, click OK.\r\n"
            "\r\n"
            "Please RE-RUN Shotly, now."_s,
            u"Restart Shotly"_s};
}
} // namespace

DisplaySwitch::DisplaySwitch(const Services &services)
    : m_services(services),
      m_lock(std::make_unique<QLockFile>(FileSystem::join(services.lockFolder, u".shotly-display.lock"_s)))
{
    m_lock->setStaleLockTime(0); // only the death of its holder makes it stale
}

DisplaySwitch::~DisplaySwitch() = default;

bool DisplaySwitch::takeLock()
{
    return m_lock->isLocked() || m_lock->tryLock(0);
}

QSize DisplaySwitch::storedSize() const
{
    const auto number = [this](const QString &key) {
        return m_services.settings.value(section(), key, u"0"_s).toInt();
    };
    return {number(widthKey()), number(heightKey())};
}

bool DisplaySwitch::owed() const
{
    return storedSize().width() > smallWidth;
}

/// A display that nobody would make large again is better left as it is. Said once.
bool DisplaySwitch::remember(QSize size)
{
    UserSettings &settings = m_services.settings;
    if (settings.setValue(section(), widthKey(), QString::number(size.width())) &&
        settings.setValue(section(), heightKey(), QString::number(size.height())))
        return true;
    if (!std::exchange(m_toldOfSettings, true))
        m_services.prompter.tell(
            Question::DisplayNotRemembered,
            {u"The display is not switched to 800x600, because it could not be switched back:\r\n"
             "its size cannot be written down in \"%1\"."_s.arg(settings.path()),
             m_services.state.AppTitle, Icon::Exclamation});
    return false;
}

void DisplaySwitch::settle()
{
    if (!owed() || !takeLock())
        return;
    if (m_services.settings.value(section(), restartKey()) == u"1"_s) {
        m_services.settings.setValue(section(), restartKey(), u"0"_s);
        return; // at the end of this one
    }
    restoreSilently();
}

bool DisplaySwitch::OfferDisplaySwitch()
{
    Module1 &state = m_services.state;
    if (state.AppOptions.OptionFlags[ChangeResolution] != 1)
        return false;
    const QSize size = m_services.modes.desktopSize();
    if (size.width() <= smallWidth || !m_services.modes.offers({smallWidth, smallHeight}))
        return false;
    if (!remember(size)) {
        settled();
        return false;
    }
    if (m_services.prompter.ask(Question::ChangeDisplay, Buttons::YesNo, offerText()) != Answer::Yes)
        return false;
    takeLock();
    if (!SetDisplayMode(smallWidth, smallHeight)) {
        settled();
        return false;
    }
    state.DisplaySwitched = true;
    state.OriginalScreenWidth = size.width();
    if (!state.IsWinXPOrLater)
        return false;
    m_services.settings.setValue(section(), restartKey(), u"1"_s);
    m_services.prompter.tell(Question::RestartForDisplay, restartText());
    m_lock->unlock();
    return true;
}

bool DisplaySwitch::SetDisplayMode(int width, int height)
{
    switch (m_services.modes.change({width, height})) {
    case DisplayModes::Change::Done:
        return true;
    case DisplayModes::Change::NeedsRestart:
        return m_services.prompter.ask(Question::RestartComputer, Buttons::YesNo,
                                       {u"You must restart your computer to apply these changes.\r\n"
                                        "\r\n"
                                        "Restart now?"_s,
                                        u"Screen Resolution Changed"_s, Icon::Information}) == Answer::Yes;
    case DisplayModes::Change::Refused:
        m_services.prompter.tell(
            Question::DisplayRefused,
            {u"The display refuses the size of %1x%2. It stays as it is."_s.arg(width).arg(height),
             m_services.state.AppTitle, Icon::Exclamation});
        break;
    }
    return false;
}

void DisplaySwitch::RestoreDisplay()
{
    if (!owed())
        return;
    const QSize size = storedSize();
    m_services.state.DisplaySwitched = false;
    if (m_services.state.AppOptions.ShowLessMessage == 0)
        m_services.prompter.tell(Question::DisplayChangesBack,
                                 {u"Now change display back"_s, u"Chanage Diplay Back"_s});
    SetDisplayMode(size.width(), size.height());
    settled();
}

void DisplaySwitch::restoreSilently()
{
    if (!owed())
        return;
    const QSize size = storedSize();
    m_services.state.DisplaySwitched = false;
    m_services.modes.change(size);
    settled();
}

void DisplaySwitch::settled()
{
    m_services.settings.setValue(section(), widthKey(), u"0"_s);
    m_services.settings.setValue(section(), restartKey(), u"0"_s);
    m_lock->unlock();
}
