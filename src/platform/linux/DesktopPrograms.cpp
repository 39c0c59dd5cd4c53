#include "platform/linux/DesktopPrograms.h"

#include "platform/RunTimeError.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <vector>

namespace
{
QString existingPath(const QString &path)
{
    const QFileInfo file(path);
    if (!file.exists())
        throw RunTimeError(RunTimeError::FileNotFound, QStringLiteral("There is no file \"%1\"").arg(path));
    return file.absoluteFilePath();
}

RunTimeError cannotStart(const QString &program)
{
    return {RunTimeError::CannotCreateObject,
            QStringLiteral("The program \"%1\" cannot be started. Is it installed?").arg(program)};
}

/// An empty path is no argument.
void start(const QString &program, QStringList arguments, const QString &path)
{
    const QString executable = QStandardPaths::findExecutable(program);
    if (executable.isEmpty())
        throw cannotStart(program);
    QProcess process;
    process.setProgram(executable);
    if (!path.isEmpty())
        arguments += path;
    process.setArguments(arguments);
    process.setWorkingDirectory(path.isEmpty() ? QDir::homePath() : QFileInfo(path).path());
    // Its chatter is not for the terminal that Shotly was started from.
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    if (!process.startDetached())
        throw cannotStart(program);
}

QString installedPaintProgram()
{
    static const QStringList known = {QStringLiteral("kolourpaint"), QStringLiteral("pinta"),
                                      QStringLiteral("gimp"), QStringLiteral("mtpaint"),
                                      QStringLiteral("drawing")};
    for (const QString &program : known) {
        if (!QStandardPaths::findExecutable(program).isEmpty())
            return program;
    }
    throw RunTimeError(RunTimeError::CannotCreateObject,
                       QStringLiteral("No paint program is installed. Known are: %1.")
                           .arg(known.join(QStringLiteral(", "))));
}
} // namespace

void DesktopPrograms::openWithDesktop(const QString &path)
{
    const bool ofNetwork =
        path.startsWith(QLatin1StringView("http://")) || path.startsWith(QLatin1StringView("https://"));
    const QString program = QStringLiteral("xdg-open");
    if (ofNetwork)
        start(program, {path}, {});
    else
        start(program, {}, existingPath(path));
}

void DesktopPrograms::paint(const QString &program, const QString &picturePath)
{
    const QString path = picturePath.isEmpty() ? QString() : existingPath(picturePath);
    const QString given = program.trimmed();
    if (given.isEmpty()) {
        start(installedPaintProgram(), {}, path);
        return;
    }
    // A path with blanks is a program as a whole before it is a program with arguments.
    if (!QStandardPaths::findExecutable(given).isEmpty()) {
        start(given, {}, path);
        return;
    }
    QStringList words = QProcess::splitCommand(given);
    if (words.isEmpty())
        throw cannotStart(given);
    const QString executable = words.takeFirst();
    start(executable, words, path);
}

void DesktopPrograms::showSystemInformation()
{
    struct Tool {
        QString program;
        QStringList arguments;
    };
    static const std::vector<Tool> known = {
        {QStringLiteral("kinfocenter"), {}},
        {QStringLiteral("gnome-control-center"), {QStringLiteral("info-overview")}},
        {QStringLiteral("cinnamon-settings"), {QStringLiteral("info")}},
        {QStringLiteral("mate-system-monitor"), {}},
        {QStringLiteral("hardinfo"), {}},
        {QStringLiteral("gnome-system-monitor"), {}},
        {QStringLiteral("xfce4-taskmanager"), {}},
    };
    QStringList names;
    for (const Tool &tool : known) {
        if (!QStandardPaths::findExecutable(tool.program).isEmpty())
            return start(tool.program, tool.arguments, {});
        names += tool.program;
    }
    throw RunTimeError(RunTimeError::CannotCreateObject,
                       QStringLiteral("No program that describes the computer is installed. Known are: %1.")
                           .arg(names.join(QStringLiteral(", "))));
}
