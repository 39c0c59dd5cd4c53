// What a guide of 10,000 pages costs, beside writing the same bytes into as many new files, and how long the
// window does not answer meanwhile. Everything is real but the user and the main window: the database, the
// files, the progress box.

#include "Comparison.h"
#include "Heartbeat.h"

#include "app/WidgetProgress.h"
#include "documents/DocumentGeneration.h"
#include "pagestore/Statements.h"
#include "platform/PrintJob.h"
#include "platform/RunTimeError.h"
#include "platform/sqlite/SqliteDatabase.h"
#include "support/FakePrograms.h"
#include "support/FakeWordProcessor.h"
#include "support/FakeWorkspace.h"

#include <QApplication>
#include <QDir>
#include <QProgressBar>
#include <QProgressDialog>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int pageCount = 10000;

/// Nobody is there to answer: a question or a message ends the benchmark.
class NoUser : public Prompter
{
public:
    void tell(Question /*which*/, const PromptText &prompt) override { give(prompt.text); }
    Answer ask(Question /*which*/, Buttons /*buttons*/, const PromptText &prompt) override
    {
        give(prompt.text);
    }
    std::optional<QString> input(Question /*which*/, const PromptText &prompt,
                                 const QString & /*proposal*/) override
    {
        give(prompt.text);
    }
    std::optional<QString> openFile(Question /*which*/, const FilePrompt &prompt) override
    {
        give(prompt.title);
    }
    std::optional<QString> saveFile(Question /*which*/, const FilePrompt &prompt) override
    {
        give(prompt.title);
    }
    std::optional<QString> pickFolder(Question /*which*/, const QString &title,
                                      const QString & /*start*/) override
    {
        give(title);
    }
    std::optional<QColor> chooseColour(Question /*which*/, QColor /*present*/) override
    {
        give(QStringLiteral("colour"));
    }
    std::optional<QFont> chooseFont(Question /*which*/, const QFont & /*present*/) override
    {
        give(QStringLiteral("font"));
    }
    std::unique_ptr<PrintJob> choosePrinter(Question /*which*/) override { give(QStringLiteral("print")); }

private:
    [[noreturn]] static void give(const QString &text)
    {
        std::fprintf(stderr, "unexpected: %s\n", qPrintable(text));
        std::abort();
    }
};

/// A project of 10,000 pages with long texts.
class Project
{
public:
    Project()
    {
        const QString home = m_folder.path();
        m_state.AppTitle = u"Shotly"_s;
        m_state.ConnectionString = u"Data Source="_s + home + u"/Shotly.mdb"_s;
        m_state.AppOptions.BaseDirectory = home;
        m_state.AppOptions.ProjectName = m_workspace.text = u"Demo"_s;
        m_state.AppOptions.FileNamePrefix = u"sh"_s;
        m_state.AppOptions.ShowLessMessage = 1;
        m_state.MainWindow = &m_workspace;
        m_workspace.names = QStringList{u"Demo"_s};
        m_state.FileSystem.createFolder(directory());
        QFile::copy(QStringLiteral(SHOTLY_DELIVERED_DIR "/Shotly.mdb"), home + u"/Shotly.mdb"_s);
        insertPages();
        for (int page = 1; page <= pageCount; ++page)
            m_state.FileSystem.writeFile(pathOf(page, u"bmp"_s), "BM");
    }

    QString directory() const { return m_folder.path() + u"/Demo"_s; }

    void forgetGuides()
    {
        for (const QString &folder : {directory(), ProjectDirectories::oldDocumentFolder(directory())}) {
            for (const QString &name : QDir(folder).entryList({u"*.htm"_s}, QDir::Files))
                QFile::remove(folder + u'/' + name);
        }
        m_database.open(m_state.ConnectionString)->execute(u"update PageData set HTMLFilePath=null"_s);
    }

    void generate() { m_documents.CreateDocuments(); }

    /// The bytes of all files of the guide, and nothing left in memory to write.
    std::vector<QByteArray> guide() const
    {
        std::vector<QByteArray> files;
        for (const QString &name : QDir(directory()).entryList({u"*.htm"_s}, QDir::Files)) {
            QFile file(directory() + u'/' + name);
            if (!file.open(QIODevice::ReadOnly))
                std::abort();
            files.push_back(file.readAll());
        }
        return files;
    }

    void settle() const
    {
        const int folder = ::open(qPrintable(m_folder.path()), O_RDONLY | O_CLOEXEC);
        ::syncfs(folder);
        ::close(folder);
    }

private:
    QString pathOf(int page, const QString &extension) const
    {
        return directory() + u"/sh%1.%2"_s.arg(page, 5, 10, QChar(u'0')).arg(extension);
    }

    void insertPages()
    {
        const QString sentence = u"Click the button “Save as…” and wait until the box <Names> has gone. "_s;
        const std::unique_ptr<DatabaseBatch> batch = m_database.beginBatch(m_state.ConnectionString);
        const std::unique_ptr<Connection> connection = m_database.open(m_state.ConnectionString);
        for (int page = 1; page <= pageCount; ++page)
            connection->execute(u"insert into PageData(ProjectName,ProjectDirectory,PageNumber,PageStatus,"
                                "ScreenShotFilePath,PageTitle,SubTitle,PageSummary,Note1,Note2) "
                                "values(\"Demo\",\"%1\",%2,\"OK\",\"%3\",\"Step %2\",\"%4\",\"%5\",\"%6\","
                                "\"%6\")"_s.arg(directory(), QString::number(page), pathOf(page, u"bmp"_s),
                                                sentence, sentence.repeated(30), sentence.repeated(15)));
        batch->commit();
    }

    QTemporaryDir m_folder;
    Module1 m_state;
    SqliteDatabase m_database;
    NoUser m_user;
    FakeWorkspace m_workspace;
    WidgetProgress m_progress;
    PageDatabase m_pages{m_database, m_state, m_user};
    ProjectDirectories m_directories{m_state, m_pages, m_user};
    FakeWordProcessor m_word;
    FakePrograms m_programs;
    DocumentGeneration m_documents{DocumentServices{m_state, m_pages, m_directories, m_user, m_workspace,
                                                    m_progress, m_word, m_programs}};
};

void writeFiles(const QString &folder, const std::vector<QByteArray> &files)
{
    int number = 0;
    for (const QByteArray &bytes : files) {
        const QByteArray path =
            QFile::encodeName(folder + u"/file%1.htm"_s.arg(++number, 5, 10, QChar(u'0')));
        const int file = ::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
        if (::write(file, bytes.constData(), static_cast<std::size_t>(bytes.size())) != bytes.size())
            std::abort();
        ::close(file);
    }
}

/// Presses Cancel when nearly every page has been written.
void cancelLate()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        auto *box = qobject_cast<QProgressDialog *>(widget);
        if (box && box->isVisible() && box->maximum() == pageCount && box->value() > pageCount * 9 / 10)
            box->cancel();
    }
}

enum class Before { Nothing, TwoGuides };
enum class End { Finished, Cancelled };

void generation(benchmark::State &state, Before before, End end)
{
    Project project;
    std::vector<double> oursTaken;
    std::vector<double> leastTaken;
    std::vector<double> gaps;
    if (before == Before::TwoGuides) {
        project.generate();
        project.generate();
    }
    for ([[maybe_unused]] auto round : state) {
        if (before == Before::Nothing)
            project.forgetGuides();
        QTimer canceller;
        QObject::connect(&canceller, &QTimer::timeout, cancelLate);
        if (end == End::Cancelled)
            canceller.start(1);
        project.settle();
        Heartbeat heartbeat;
        const Milliseconds taken = timeOf([&] { project.generate(); });
        gaps.push_back(heartbeat.longestGap());
        oursTaken.push_back(taken.count());
        state.SetIterationTime(taken.count() / 1000);

        const QTemporaryDir bare;
        const std::vector<QByteArray> files = project.guide();
        project.settle();
        leastTaken.push_back(timeOf([&] { writeFiles(bare.path(), files); }).count());
    }
    state.counters["median_ms"] = median(oursTaken);
    state.counters["least_ms"] = median(leastTaken);
    state.counters["ratio"] = median(oursTaken) / median(leastTaken);
    state.counters["longest_gap_ms"] = *std::max_element(gaps.begin(), gaps.end());
}
} // namespace

BENCHMARK_CAPTURE(generation, firstGuide, Before::Nothing, End::Finished)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(7);
BENCHMARK_CAPTURE(generation, nextGuide, Before::TwoGuides, End::Finished)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(7);
BENCHMARK_CAPTURE(generation, cancelledGuide, Before::TwoGuides, End::Cancelled)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(7);

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
