// Saving and resetting in the options dialog, and what is asked and put right before.

#include "platform/RunTimeError.h"
#include "settings/frmOption.h"
#include "settings/OptionsStore.h"
#include "state/Module1.h"

using namespace Qt::Literals::StringLiterals;

void frmOption::checkStopButton()
{
    AppOptions &options = m_services.state.AppOptions;
    OptionControl &hide = control(u"chkNoStopToolbar"_s);
    if (hide.index() == 0 && options.UseSystemMouseShape) {
        hide.choose(1);
        tell(Question::StopButtonWillHide,
             u"To record the system mouse properly, the Stop button will be hiding.\r\n"
             "To stop recording, you can bring up Shotly, then click button 2."_s);
    } else if (hide.index() == 1 && !options.UseSystemMouseShape &&
               m_services.prompter.ask(Question::EnableStopButton, Buttons::YesNo,
                                       {u"Since you defined the mouse shape yourself, you can take\r\n"
                                        "advantage of the Stop button. It is easy to stop capture of the\r\n"
                                        "screens by clicking the small stop button normally at\r\n"
                                        "the top-left corner of the screen.\r\n\r\n"
                                        "Click Yes to enable the Stop button.\r\n"
                                        "If you click No, you can stop it by bring up Shotly."_s,
                                        u"Enable nice small Stop button?"_s, Icon::Question}) ==
                   Answer::Yes) {
        hide.choose(0);
    }
    store(hide);
}

/// Turns to the first list in which nothing is chosen, and says so.
bool frmOption::listsAreChosen()
{
    if (OptionControl &paint = control(u"cmbPaintSoftware"_s); paint.index() < 0) {
        turnTo(paint);
        tell(Question::OptionBlank, u"Must select one paint tool with item 6 on tab 'Basic'"_s);
        return false;
    }
    for (const auto &[name, each] : m_controls) {
        if (each->isList() && !each->row().key.isEmpty() && each->index() < 0) {
            turnTo(*each);
            tellBlank();
            return false;
        }
    }
    return true;
}

void frmOption::checkSnapshotLocation()
{
    OptionControl &location = control(u"cmbSpicFpath"_s);
    const QString what = u"Single snapshot file location"_s;
    const QString otherwise = u"by default, it will be set to "_s + desktop;
    const QString text = location.text().trimmed();
    location.show(text);
    if (text.isEmpty()) {
        tell(Question::SnapshotLocationRefused, what + u" is not allowed to be blank.\r\n"_s + otherwise);
        location.show(desktop);
        return;
    }
    if (text == desktop || m_services.state.FileSystem.folderExists(text))
        return;
    try {
        // A path that is not full would mean another folder at every start.
        if (text.startsWith(u'/'))
            m_services.state.FileSystem.createFolder(text);
    } catch (const RunTimeError &) {
        // What counts is whether it is there.
    }
    if (text.startsWith(u'/') && m_services.state.FileSystem.folderExists(text))
        return;
    tell(Question::SnapshotLocationRefused, what + u' ' + text + u" cannot be created.\r\n"_s + otherwise);
    location.show(desktop);
}

/// A file that cannot be written costs nothing but its next start: the options hold in memory.
template <typename Write>
bool frmOption::written(Write write)
{
    try {
        write(m_services.state.OptionsFilePath, m_services.state.AppOptions);
        return true;
    } catch (const RunTimeError &error) {
        m_services.prompter.tell(
            Question::OptionsNotSaved,
            {u"The options hold until Shotly is closed, but they could not be saved.\r\n\r\n"_s +
                 error.description(),
             m_services.state.AppTitle, Icon::Exclamation});
        return false;
    }
}

void frmOption::cmdSave_Click()
{
    checkStopButton();
    if (!listsAreChosen())
        return;
    checkSnapshotLocation();
    txtFileNamePrefix_Validate();
    if (control(u"lblBaseDir"_s).text().trimmed().isEmpty())
        lblBaseDir_Change();
    for (const auto &[name, each] : m_controls)
        store(*each);
    if (!written(OptionsStore::SaveOptions))
        return;
    tell(Question::HotKeysAfterRestart, u"Change on hot key will be effect after restart the application."_s);
    closeTab();
}

void frmOption::cmdReset_Click()
{
    const Answer answer = m_services.prompter.ask(
        Question::ResetOptions, Buttons::YesNo,
        {u"This will reset all options to the original setup from the software producer.\r\n"
         "It may not fit your needs. Such as it will only create HTML format\r\n"
         "documents. But you can change it at any time.\r\n"
         "Continue?"_s,
         u"Reset to Original?"_s, Icon::Question});
    if (answer != Answer::Yes)
        return;
    if (!written(OptionsStore::ResetOptions)) {
        loadControls();
        return;
    }
    tell(Question::HotKeysAfterRestart,
         u"Change on hot key will come into effect after restart the application."_s);
    closeTab();
}
