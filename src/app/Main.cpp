#include "app/Appearance.h"
#include "app/frmMain.h"
#include "app/SignalWatch.h"
#include "app/StartUp.h"
#include "capture/DisplaySwitch.h"
#include "pagestore/frmBaseDir.h"
#include "platform/ApplicationFolder.h"
#include "platform/qt/WidgetBrowsers.h"
#include "platform/qt/WidgetPrompter.h"
#include "platform/qt/WidgetSpelling.h"
#include "platform/RealPlatform.h"

#include <QApplication>

using namespace Qt::Literals::StringLiterals;

int main(int argc, char **argv)
{
    WidgetBrowsers::prepare();
    QApplication application(argc, argv);
    WidgetBrowsers::prepared();
    QApplication::setApplicationName(u"shotly"_s);
    QApplication::setApplicationVersion(QStringLiteral(SHOTLY_VERSION));
    // Message boxes come and go while the main window is in the tray: only the main window ends the program.
    QApplication::setQuitOnLastWindowClosed(false);
    Appearance::apply(application);

    WidgetPrompter prompter;
    Module1 state;
    try {
        StartUp::fillState(state, ApplicationFolder::locate(QApplication::applicationDirPath()), osVersion());
    } catch (const RunTimeError &error) {
        prompter.tell(Question::ApplicationFolderFailed, {error.description(), u"Shotly"_s, Icon::Critical});
        return 1;
    }
    Platform platform = makeRealPlatform([&state] { return state.AppOptions.WordProcessor; });
    UserSettings settings;
    DisplaySwitch display({state, *platform.displayModes, settings, prompter, state.ApplicationPath});
    display.settle();
    const SignalWatch signals([&display] { display.restoreSilently(); });
    if (state.IsWinXPOrLater && display.OfferDisplaySwitch())
        return 0;
    StartUp::ensureBaseDirectory(state, prompter, [&] { frmBaseDir(state, prompter).exec(); });
    StartUp::initialState(state);
    state.CommandLinePath = QApplication::arguments().value(1);

    FailureBox failures(prompter);
    platform.browsers =
        std::make_unique<WidgetBrowsers>(WidgetBrowsers::installedModule(QApplication::applicationDirPath()));
    platform.spelling = std::make_unique<WidgetSpelling>(failures);
    frmMain mainWindow(state, platform, prompter, settings, display);
    mainWindow.show();
    return QApplication::exec();
}
