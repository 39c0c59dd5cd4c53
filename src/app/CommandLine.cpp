#include "app/CommandLine.h"

#include <QCommandLineParser>
#include <QDir>

#include <array>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
using Action = CommandLine::Action;
using Format = CommandLine::Format;

/// Options of Qt, each with a value, which it takes out of the list itself when the application is made.
bool isOfWindowSystem(const QString &argument)
{
    static const QStringList names = {u"platform"_s,        u"platformtheme"_s,     u"style"_s,
                                      u"stylesheet"_s,      u"display"_s,           u"geometry"_s,
                                      u"qwindowgeometry"_s, u"qwindowtitle"_s,      u"qwindowicon"_s,
                                      u"session"_s,         u"platformpluginpath"_s};
    const auto dashes = argument.startsWith("--"_L1) ? 2 : 1;
    return argument.startsWith(u'-') && names.contains(argument.sliced(dashes));
}

QStringList own(const QStringList &arguments)
{
    QStringList list(u"shotly"_s);
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == "--"_L1)
            return list + arguments.sliced(i);
        if (isOfWindowSystem(arguments[i]))
            ++i;
        else
            list += arguments[i];
    }
    return list;
}

constexpr std::array<std::pair<const char16_t *, Format>, 4> formats{
    {{u"html", Format::Html}, {u"doc", Format::Word}, {u"pdf", Format::Pdf}, {u"all", Format::All}}};

CommandLine refused(const QString &error)
{
    CommandLine line;
    line.action = Action::Refused;
    line.error = error;
    return line;
}

struct Choice {
    const char *option;
    Action action;
    QString CommandLine::*value; ///< what follows it, if anything does
};

constexpr std::array<Choice, 7> choices{{{"help", Action::ShowHelp, nullptr},
                                         {"version", Action::ShowVersion, nullptr},
                                         {"begin", Action::BeginRun, &CommandLine::project},
                                         {"stop", Action::StopRun, nullptr},
                                         {"generate", Action::Generate, &CommandLine::project},
                                         {"list", Action::ListProjects, nullptr},
                                         {"export-db", Action::ExportDatabase, &CommandLine::file}}};

QString absolute(const QString &path)
{
    return QDir::cleanPath(QDir::current().absoluteFilePath(path));
}

void addOptions(QCommandLineParser &parser)
{
    for (const Choice &choice : choices) {
        QStringList names(QString::fromLatin1(choice.option));
        if (choice.action == Action::ShowHelp)
            names += u"h"_s;
        parser.addOption({names, {}, choice.value ? u"VALUE"_s : QString()});
    }
    parser.addOption({u"format"_s, {}, u"FORMAT"_s});
    parser.addOption({u"output"_s, {}, u"DIR"_s});
}

/// What belongs to --generate alone.
QString readGeneration(const QCommandLineParser &parser, CommandLine &line)
{
    for (const QString &option : {u"format"_s, u"output"_s}) {
        if (parser.isSet(option) && line.action != Action::Generate)
            return u"--%1 goes with --generate only"_s.arg(option);
    }
    if (parser.isSet(u"format"_s)) {
        const QString wanted = parser.value(u"format"_s);
        for (const auto &[name, format] : formats) {
            if (wanted == QStringView(name))
                line.format = format;
        }
        if (line.format == Format::AsOptionsSay)
            return u"the format \"%1\" is none of html, doc, pdf, all"_s.arg(wanted);
    }
    if (parser.isSet(u"output"_s)) {
        if (parser.value(u"output"_s).isEmpty())
            return u"--output needs the name of a folder"_s;
        line.output = absolute(parser.value(u"output"_s));
    }
    return {};
}

QString checkValues(CommandLine &line)
{
    const bool named = line.action == Action::BeginRun || line.action == Action::Generate;
    if (named && line.project.trimmed().isEmpty())
        return u"the name of the project is empty"_s;
    if (line.action == Action::ExportDatabase) {
        if (line.file.isEmpty())
            return u"--export-db needs the name of a file"_s;
        line.file = absolute(line.file);
    }
    return {};
}
} // namespace

CommandLine CommandLine::parse(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    addOptions(parser);
    if (!parser.parse(own(arguments))) {
        QString error = parser.errorText();
        while (error.endsWith(u'.'))
            error.chop(1);
        return refused(error);
    }

    CommandLine line;
    QString chosen;
    for (const Choice &choice : choices) {
        const QString option = QString::fromLatin1(choice.option);
        if (!parser.isSet(option))
            continue;
        if (!chosen.isEmpty())
            return refused(u"--%1 and --%2 do not go together"_s.arg(chosen, option));
        chosen = option;
        line.action = choice.action;
        if (choice.value)
            line.*choice.value = parser.value(option);
    }
    const QStringList rest = parser.positionalArguments();
    if (rest.size() > (line.action == Action::OpenWindow ? 1 : 0))
        return refused(u"there is nothing to be done with \"%1\""_s.arg(rest.constLast()));
    line.picture = rest.value(0);
    QString error = readGeneration(parser, line);
    if (error.isEmpty())
        error = checkValues(line);
    return error.isEmpty() ? line : refused(error);
}

QString CommandLine::help()
{
    return uR"(Usage: shotly [PICTURE]
       shotly --begin PROJECT | --stop
       shotly --generate PROJECT [--format html|doc|pdf|all] [--output DIR]
       shotly --list | --export-db FILE | --help | --version

Turns a demonstration on the screen into a step-by-step document.

Without an option the window is opened, with PICTURE in the viewer. Where Shotly
runs already, its window comes to the front.

  --begin PROJECT    begin to capture screens; starts Shotly if it is not running
  --stop             stop the capture and make the pages
  --generate PROJECT write the documents of a project
  --format FORMAT    html, doc (a Word document), pdf (the Word document and its
                     PDF) or all of them; what the options say otherwise
  --output DIR       write them, and the pictures of HTML pages, into this folder
                     and leave the project as it is
  --list             print the projects and the number of their pages
  --export-db FILE   copy the database to a file that does not exist yet
  -h, --help         print this text
  --version          print the version

What needs no window needs no display. The exit code is 0, 1 after a failure, and
2 when the command is not understood.
)"_s;
}
