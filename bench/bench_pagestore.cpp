// What the page store costs beside the same statements with the same functions through SQLite's own
// interface: opening the list and the editor, one keystroke of a search, one move, registering a run. The
// number of rows is the benchmark's argument. At the end one keystroke in the real window, from the key to
// the painted rows.

#include "Comparison.h"

#include "pagestore/clsPageData1.h"
#include "pagestore/frmPageList.h"
#include "pagestore/Statements.h"
#include "platform/sqlite/LikeFunction.h"
#include "platform/sqlite/StatementTranslator.h"
#include "support/TestPages.h"

#include <QApplication>
#include <QComboBox>
#include <QTableView>
#include <QTest>

#include <benchmark/benchmark.h>

#include <map>
#include <random>
#include <sqlite3.h>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int screenful = 40; // rows
constexpr int listColumns = 8;
constexpr const char *sqliteAlone = "SQLite alone";

/// A shelf of so many pages of one project, with texts as people write them; the word "zebra" is in every
/// thousandth page.
struct Shelf : TestPages {
    explicit Shelf(int rows)
    {
        std::mt19937 random(1);
        const QStringList words =
            u"open the window click button menu file save dialog select option enter name project "
            "page title mouse pointer screen capture record setting password user network "
            "connection printer folder document database backup restore server client browser"_s.split(u' ');
        const auto text = [&](int count) {
            QStringList some;
            for (int i = 0; i < count; ++i)
                some += words[static_cast<qsizetype>(random() % static_cast<unsigned>(words.size()))];
            return some.join(u' ');
        };
        const auto batch = pages.beginBatch();
        for (int i = 1; i <= rows; ++i)
            pages.execute(
                u"insert into PageData(ProjectName, PageNumber, PageStatus, ScreenShotFilePath, [Date], "
                u"PageTitle, "
                "SubTitle, KeyWord, PageSummary) values(\"Demo\", %1, \"OK\", \"/d/sh%1.bmp\", #11/23/2026#, "
                "\"%2\", "
                "\"%3\", \"%4\", \"%5\")"_s.arg(i)
                    .arg(text(5), text(6), text(2), text(60) + (i % 1000 == 500 ? u" zebra"_s : QString())));
        batch->commit();
    }
};

Shelf &shelf(int rows)
{
    static std::map<int, std::unique_ptr<Shelf>> shelves;
    auto &known = shelves[rows];
    if (!known)
        known = std::make_unique<Shelf>(rows);
    return *known;
}

/// SQLite without anything of ours but the functions.
class Bare
{
public:
    explicit Bare(const Shelf &shelf)
    {
        sqlite3_open_v2(shelf.state.DatabasePath.toUtf8().constData(), &m_database, SQLITE_OPEN_READWRITE,
                        nullptr);
        LikeFunction::install(m_database);
    }
    ~Bare() { sqlite3_close(m_database); }
    Bare(const Bare &) = delete;
    Bare &operator=(const Bare &) = delete;

    void run(const QString &statement)
    {
        if (sqlite3_exec(m_database, statement.toUtf8().constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
            std::abort();
    }
    /// All columns of the first rows; the others are gone through.
    void read(const QString &statement, int rows, bool toTheEnd)
    {
        sqlite3_stmt *prepared = nullptr;
        if (sqlite3_prepare_v2(m_database, statement.toUtf8().constData(), -1, &prepared, nullptr) !=
            SQLITE_OK)
            std::abort();
        for (int row = 0; sqlite3_step(prepared) == SQLITE_ROW; ++row) {
            if (row < rows) {
                for (int column = 0; column < sqlite3_column_count(prepared); ++column)
                    benchmark::DoNotOptimize(QString::fromUtf8(
                        reinterpret_cast<const char *>(sqlite3_column_text(prepared, column))));
            } else if (!toTheEnd) {
                break;
            }
        }
        sqlite3_finalize(prepared);
    }

private:
    sqlite3 *m_database = nullptr;
};

/// Searches until a screenful of rows has been read, or there are no more.
void searchOurs(Shelf &test, const QString &statement, bool toTheEnd)
{
    std::unique_ptr<EditableRecordset> rows;
    int read = 0;
    bool done = false;
    const auto search =
        test.pages.search(statement, {[&](const std::vector<std::int64_t> &ids) {
                                          if (rows)
                                              rows->appendRows(ids);
                                          else
                                              rows = test.pages.openPages(statement, ids);
                                          while (read < std::min(screenful, rows->recordCount())) {
                                              ++read;
                                              for (int column = 0; column < listColumns; ++column)
                                                  benchmark::DoNotOptimize(rows->valueAt(read, column));
                                          }
                                          done = done || (!toTheEnd && read >= screenful);
                                      },
                                      [&] { done = true; }, [](const RunTimeError &) { std::abort(); }});
    while (!done)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void compareSearch(benchmark::State &state, const QString &statement, bool toTheEnd)
{
    Shelf &test = shelf(static_cast<int>(state.range(0)));
    const QString bareStatement = StatementTranslator::translate(statement);
    compare(
        state, [&] { return timeOf([&] { searchOurs(test, statement, toTheEnd); }); },
        {sqliteAlone, [&] { return timeOf([&] { Bare(test).read(bareStatement, screenful, toTheEnd); }); }});
}

void listOpening(benchmark::State &state)
{
    compareSearch(state, Statements::listedPages(u"Demo"_s), true);
}

void keystrokeFewHits(benchmark::State &state)
{
    compareSearch(state, Statements::foundPages(false, {}, u"zebra"_s), false);
}

void keystrokeManyHits(benchmark::State &state)
{
    compareSearch(state, Statements::foundPages(false, {}, u"e"_s), false);
}

void readFields(const clsPageData1 &source)
{
    const EditableRecordset &rows = *source.dataMember(u"Primary"_s);
    for (int index = 0; index < 21; ++index)
        benchmark::DoNotOptimize(rows.field(index));
}

void editorOpening(benchmark::State &state)
{
    Shelf &test = shelf(static_cast<int>(state.range(0)));
    const QString bareStatement =
        StatementTranslator::translate(Statements::editedPagesNotDeleted(u"Demo"_s));
    compare(state,
            [&] {
                return timeOf([&] {
                    test.state.EditorProjectPages = true;
                    readFields(clsPageData1(test.pages, test.state));
                });
            },
            {sqliteAlone, [&] { return timeOf([&] { Bare(test).read(bareStatement, 1, true); }); }});
}

void editorMove(benchmark::State &state)
{
    Shelf &test = shelf(static_cast<int>(state.range(0)));
    test.state.EditorProjectPages = true;
    clsPageData1 source(test.pages, test.state);
    Bare bare(test);
    int id = 1;
    compare(state,
            [&] {
                return timeOf([&] {
                    source.MoveNext();
                    readFields(source);
                });
            },
            {sqliteAlone, [&] {
                 return timeOf(
                     [&] { bare.read(u"select * from PageData where ID=%1"_s.arg(++id), 1, false); });
             }});
}

void registerRun(benchmark::State &state)
{
    constexpr int pages = 1000;
    Shelf &test = shelf(static_cast<int>(state.range(0)));
    QStringList statements;
    for (int i = 1; i <= pages; ++i)
        statements.push_back(
            Statements::insertCapturedPage({u"New"_s, u"/home/user/Shotly/New/sh%1.bmp"_s.arg(i), u"OK"_s, i,
                                            QDate(2026, 11, 23), u"/home/user/Shotly/New"_s}));
    std::vector<QString> bareStatements;
    for (const QString &statement : statements)
        bareStatements.push_back(StatementTranslator::translate(statement));
    const auto clean = [&] { test.execute(u"delete from PageData where ProjectName=\"New\""_s); };
    compare(state,
            [&] {
                clean();
                return timeOf([&] { test.pages.connect()->executeTogether(statements, {}); });
            },
            {sqliteAlone, [&] {
                 clean();
                 return timeOf([&] {
                     Bare bare(test);
                     bare.run(u"begin immediate"_s);
                     for (const QString &statement : bareStatements)
                         bare.run(statement);
                     bare.run(u"commit"_s);
                 });
             }});
    clean();
}

/// One key typed into the search box of the real window, until rows that match have been painted.
class PaintedList : public QObject
{
public:
    explicit PaintedList(Shelf &test) : m_list({test.state, test.pages, test.prompter, test.workspace})
    {
        m_list.resize(1100, 700);
        m_list.show();
        m_grid = m_list.findChild<QTableView *>();
        m_words = m_list.findChild<QComboBox *>(u"txtSearch_0"_s);
        m_list.findChild<QComboBox *>(u"cmbProj"_s)->setEditText({});
        connect(m_grid->model(), &QAbstractItemModel::modelReset, this, [this] { m_replaced = true; });
        m_grid->viewport()->installEventFilter(this);
        settle();
    }
    Milliseconds type(const QString &before, Qt::Key key)
    {
        m_words->setEditText(before);
        settle();
        m_replaced = m_painted = false;
        return timeOf([&] {
            QTest::keyClick(m_words, key);
            while (!m_painted)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        });
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && m_replaced)
            QMetaObject::invokeMethod(
                this, [this] { m_painted = true; }, Qt::QueuedConnection);
        return QObject::eventFilter(watched, event);
    }

private:
    void settle() { QTest::qWait(400); }

    frmPageList m_list;
    QTableView *m_grid = nullptr;
    QComboBox *m_words = nullptr;
    bool m_replaced = false;
    bool m_painted = false;
};

void keystrokePainted(benchmark::State &state, const QString &before, Qt::Key key)
{
    PaintedList list(shelf(static_cast<int>(state.range(0))));
    std::vector<double> taken;
    for ([[maybe_unused]] auto round : state) {
        taken.push_back(list.type(before, key).count());
        state.SetIterationTime(taken.back() / 1000);
    }
    std::sort(taken.begin(), taken.end());
    state.counters["median_ms"] = taken[taken.size() / 2];
    state.counters["p95_ms"] = taken[taken.size() * 95 / 100];
}
} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    const auto add = [](const char *name, void (*function)(benchmark::State &), int iterations) {
        auto *rows = benchmark::RegisterBenchmark(name, function);
        for (const int count : {100, 1000, 10'000, 100'000})
            rows->Arg(count);
        rows->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(iterations);
    };
    add("listOpening", listOpening, 31);
    add("keystrokeFewHits", keystrokeFewHits, 31);
    add("keystrokeManyHits", keystrokeManyHits, 31);
    add("editorOpening", editorOpening, 31);
    add("editorMove", editorMove, 99);
    add("registerRun", registerRun, 15);
    const auto addPainted = [](const char *name, const QString &before, Qt::Key key) {
        benchmark::RegisterBenchmark(name, keystrokePainted, before, key)
            ->Arg(100'000)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond)
            ->Iterations(40);
    };
    addPainted("keystrokePaintedFew", u"zebr"_s, Qt::Key_A);
    addPainted("keystrokePaintedMany", u""_s, Qt::Key_E);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
