#include "app/CommandLineWork.h"

#include "app/ConsolePrompter.h"
#include "app/ProjectOutput.h"
#include "documents/DocumentGeneration.h"
#include "pagestore/Statements.h"
#include "platform/RunTimeError.h"

#include <QFileInfo>
#include <QScopeGuard>

#include <algorithm>
#include <csignal>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace
{
std::atomic<bool> interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");

void interrupt(int)
{
    interrupted = true;
}

int failed(const QString &reason)
{
    ConsolePrompter::complain(reason);
    return 1;
}

/// Projects and the numbers of their pages; throws RunTimeError.
std::vector<std::pair<QString, int>> projectsOf(Module1 &state, Database &database)
{
    std::vector<std::pair<QString, int>> projects;
    const std::unique_ptr<Connection> connection = database.open(state.ConnectionString);
    const std::unique_ptr<Recordset> rows = connection->openRecordset(Statements::projectSizes());
    projects.reserve(static_cast<std::size_t>(rows->recordCount()));
    for (; !rows->atEnd(); rows->moveNext())
        projects.emplace_back(rows->field(0).toString(), rows->field(1).toInt());
    return projects;
}

using Format = CommandLine::Format;

/// The documents that the generation writes: `wanted`, or what the options say.
void chooseFormat(AppOptions &options, Format wanted)
{
    constexpr std::int16_t html = 0;
    constexpr std::int16_t word = 1;
    constexpr std::int16_t asked = 2;
    constexpr std::int16_t both = 3;
    switch (wanted) {
    case Format::AsOptionsSay:
        if (options.FinalDocumentFormat == asked)
            options.FinalDocumentFormat = both;
        return;
    case Format::Html:
        options.FinalDocumentFormat = html;
        return;
    case Format::Word:
    case Format::Pdf:
        options.FinalDocumentFormat = word;
        options.AutoConvertWord2PDF = wanted == Format::Pdf ? 1 : 0;
        return;
    case Format::All:
        options.FinalDocumentFormat = both;
        options.AutoConvertWord2PDF = 1;
        return;
    }
}
} // namespace

int CommandLineWork::listProjects(Module1 &state, Platform &platform)
{
    try {
        for (const auto &[name, pages] : projectsOf(state, *platform.database))
            std::printf("%s\t%d\n", name.simplified().toLocal8Bit().constData(), pages);
        return 0;
    } catch (const RunTimeError &error) {
        return failed(error.description());
    }
}

int CommandLineWork::exportDatabase(Module1 &state, Platform &platform, const QString &file)
{
    if (QFileInfo::exists(file) || QFileInfo(file).isSymLink())
        return failed(file + u" exists already, please choose another file name."_s);
    try {
        platform.database->backUp(state.DatabasePath, file);
        return 0;
    } catch (const RunTimeError &error) {
        return failed(u"Unable to copy the database to %1: %2"_s.arg(file, error.description()));
    }
}

int CommandLineWork::generate(Module1 &state, Platform &platform, const CommandLine &line)
{
    interrupted = false;
    std::signal(SIGINT, interrupt);
    std::signal(SIGTERM, interrupt);
    const auto unwatched = qScopeGuard([] {
        std::signal(SIGINT, SIG_DFL);
        std::signal(SIGTERM, SIG_DFL);
    });
    try {
        QStringList names;
        for (const auto &[name, pages] : projectsOf(state, *platform.database))
            names += name.trimmed();
        ConsolePrompter prompter;
        ConsoleWorkspace workspace(line.project, names);
        ConsoleProgress progress(interrupted);
        state.MainWindow = &workspace;
        chooseFormat(state.AppOptions, line.format);
        PageDatabase database(*platform.database, state, prompter);
        ProjectDirectories directories(state, database, prompter);
        if (!names.contains(line.project.trimmed(), Qt::CaseInsensitive))
            return failed(u"There is no project \"%1\"."_s.arg(line.project));
        state.AppOptions.ProjectName = *std::ranges::find_if(names, [&](const QString &name) {
            return name.compare(line.project.trimmed(), Qt::CaseInsensitive) == 0;
        });
        std::optional<ProjectOutput> output;
        if (!line.output.isEmpty())
            output.emplace(state, *platform.database, state.AppOptions.ProjectName, line.output,
                           state.AppOptions.FinalDocumentFormat != 1);
        DocumentGeneration({state, database, directories, prompter, workspace, progress,
                            *platform.wordProcessor, *platform.programs, false})
            .CreateDocuments();
        if (prompter.complained() || interrupted)
            return 1;
        if (output)
            output->deliver();
        return 0;
    } catch (const RunTimeError &error) {
        return failed(error.description());
    }
}
