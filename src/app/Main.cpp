#include "app/Appearance.h"
#include "app/CommandLineWork.h"
#include "app/ConsolePrompter.h"
#include "app/frmMain.h"
#include "app/RunningInstance.h"
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
#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace
{
using Action = CommandLine::Action;

constexpr int misunderstood = 2;  // exit code
constexpr int untilAnswered = -1; // the user may be asked something first
constexpr int showLimit = 10'000; // milliseconds

QStringList argumentsOf(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments += QFile::decodeName(argv[i]);
    return arguments;
}

void fillState(Module1 &state)
{
    StartUp::fillState(state, ApplicationFolder::locate(QCoreApplication::applicationDirPath()), osVersion());
}

/// The exit code for what the running program has answered.
int answered(const QString &answer)
{
    if (answer.isEmpty())
        return 0;
    ConsolePrompter::complain(answer);
    return 1;
}

int explained(const CommandLine &line)
{
    switch (line.action) {
    case Action::ShowHelp:
        std::printf("%s", CommandLine::help().toUtf8().constData());
        return 0;
    case Action::ShowVersion:
        std::printf("Shotly %s\n", SHOTLY_VERSION);
        return 0;
    default:
        ConsolePrompter::complain(line.error + u". \"shotly --help\" tells what there is."_s);
        return misunderstood;
    }
}

/// Commands that need neither a window nor a display.
int performWithoutWindow(const CommandLine &line, int argc, char **argv)
{
    // What Qt finds worth a warning, such as a variable that cron does not set, is nothing to the user.
    QLoggingCategory::setFilterRules(u"*.warning=false"_s);
    if (line.action == Action::Generate)
        qputenv("QT_QPA_PLATFORM", "offscreen"); // documents want fonts
    const std::unique_ptr<QCoreApplication> application(
        line.action == Action::Generate ? new QGuiApplication(argc, argv) : new QCoreApplication(argc, argv));
    QCoreApplication::setApplicationName(u"shotly"_s);
    Module1 state;
    try {
        fillState(state);
    } catch (const RunTimeError &error) {
        return answered(error.description());
    }
    Platform platform = makeRealPlatform([&state] { return state.AppOptions.WordProcessor; });
    if (line.action == Action::StopRun)
        return answered(
            RunningInstance::send(*platform.clock, state.ApplicationPath, {u"stop"_s}, untilAnswered)
                .value_or(u"Shotly is not running."_s));
    switch (line.action) {
    case Action::Generate:
        return CommandLineWork::generate(state, platform, line);
    case Action::ExportDatabase:
        return CommandLineWork::exportDatabase(state, platform, line.file);
    default:
        return CommandLineWork::listProjects(state, platform);
    }
}

/// What the program that runs already is told, or the main window does itself.
RunningInstance::Request requestOf(const CommandLine &line)
{
    if (line.action == Action::BeginRun)
        return {u"begin"_s, line.project};
    return {u"show"_s, line.picture.isEmpty() ? QString() : QDir::current().absoluteFilePath(line.picture)};
}

int showWindow(const CommandLine &line, int argc, char **argv)
{
    if (!displayAnswers())
        return answered(u"There is no display for the window (DISPLAY is \"%1\")."_s.arg(
            qEnvironmentVariable("DISPLAY")));
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
        fillState(state);
    } catch (const RunTimeError &error) {
        prompter.tell(Question::ApplicationFolderFailed, {error.description(), u"Shotly"_s, Icon::Critical});
        return 1;
    }
    Platform platform = makeRealPlatform([&state] { return state.AppOptions.WordProcessor; });
    const RunningInstance::Request request = requestOf(line);
    const int limit = line.action == Action::BeginRun ? untilAnswered : showLimit;
    if (const auto answer = RunningInstance::send(*platform.clock, state.ApplicationPath, request, limit))
        return answered(*answer);
    UserSettings settings;
    DisplaySwitch display({state, *platform.displayModes, settings, prompter, state.ApplicationPath});
    display.settle();
    const SignalWatch signals([&display] { display.restoreSilently(); });
    if (state.IsWinXPOrLater && display.OfferDisplaySwitch())
        return 0;
    StartUp::ensureBaseDirectory(state, prompter, [&] { frmBaseDir(state, prompter).exec(); });
    StartUp::initialState(state);
    state.CommandLinePath = line.picture;

    // The display's question may have started the program again, and taken its time: only now is it settled
    // who is the first.
    RunningInstance instance(state.ApplicationPath);
    if (!instance.isFirst()) {
        if (const auto answer = RunningInstance::send(*platform.clock, state.ApplicationPath, request, limit))
            return answered(*answer);
    }
    FailureBox failures(prompter);
    platform.browsers =
        std::make_unique<WidgetBrowsers>(WidgetBrowsers::installedModule(QApplication::applicationDirPath()));
    platform.spelling = std::make_unique<WidgetSpelling>(failures);
    frmMain mainWindow(state, platform, prompter, settings, display);
    instance.listen(
        [&mainWindow](const RunningInstance::Request &wanted) { return mainWindow.control(wanted); });
    mainWindow.show();
    if (line.action == Action::BeginRun)
        QTimer::singleShot(0, &mainWindow, [&] { answered(mainWindow.control(request)); });
    return QApplication::exec();
}
} // namespace

int main(int argc, char **argv)
{
    const CommandLine line = CommandLine::parse(argumentsOf(argc, argv));
    switch (line.action) {
    case Action::ShowHelp:
    case Action::ShowVersion:
    case Action::Refused:
        return explained(line);
    case Action::OpenWindow:
    case Action::BeginRun:
        return showWindow(line, argc, argv);
    default:
        return performWithoutWindow(line, argc, argv);
    }
}
