#include "platform/sqlite/SqliteRowSearch.h"

#include "platform/sqlite/SqliteFile.h"
#include "platform/sqlite/StatementTranslator.h"

#include <sqlite3.h>
#include <utility>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr std::size_t firstRows = 100; // more than a screen shows
constexpr auto interval = 20ms;        // between two portions
constexpr int instructions = 1000;     // of SQLite's machine between two looks whether to stop
} // namespace

SqliteRowSearch::SqliteRowSearch(const QString &path, std::chrono::milliseconds patience,
                                 const QString &statement, Handlers handlers)
    : m_handlers(std::move(handlers)),
      m_thread([this, path, patience, statement] { work(path, patience, statement); })
{
}

SqliteRowSearch::~SqliteRowSearch()
{
    m_stopped = true;
    m_thread.join();
}

template <typename Action>
void SqliteRowSearch::onOwner(Action action)
{
    QMetaObject::invokeMethod(&m_owner, std::move(action), Qt::QueuedConnection);
}

void SqliteRowSearch::work(const QString &path, std::chrono::milliseconds patience, const QString &statement)
{
    try {
        readRows(path, patience, statement);
        onOwner([finished = m_handlers.finished] { finished(); });
    } catch (const RunTimeError &error) {
        if (!m_stopped)
            onOwner([failed = m_handlers.failed, error] { failed(error); });
    }
}

void SqliteRowSearch::readRows(const QString &path, std::chrono::milliseconds patience,
                               const QString &statement)
{
    SqliteFile file(path, patience);
    const SqliteStatement rows =
        file.prepare(u"select ID from (%1)"_s.arg(StatementTranslator::translate(statement)));
    // Asked all the time: an interruption from outside would miss a statement that is just about to begin.
    const auto isStopped = [](void *stopped) {
        return static_cast<std::atomic<bool> *>(stopped)->load() ? 1 : 0;
    };
    sqlite3_progress_handler(sqlite3_db_handle(rows.get()), instructions, isStopped, &m_stopped);
    std::vector<std::int64_t> ids;
    bool first = true;
    auto next = std::chrono::steady_clock::now() + interval;
    while (!m_stopped && file.step(rows.get())) {
        ids.push_back(sqlite3_column_int64(rows.get(), 0));
        const bool screenful = first && ids.size() >= firstRows;
        if (!screenful && std::chrono::steady_clock::now() < next)
            continue;
        handOut(ids);
        first = false;
        next = std::chrono::steady_clock::now() + interval;
    }
    handOut(ids);
}

void SqliteRowSearch::handOut(std::vector<std::int64_t> &ids)
{
    if (!ids.empty())
        onOwner([found = m_handlers.found, portion = std::exchange(ids, {})] { found(portion); });
}
