#pragma once

#include "platform/RowSearch.h"

#include <QObject>

#include <atomic>
#include <chrono>
#include <thread>

/// A search with a connection of its own.
class SqliteRowSearch : public RowSearch
{
public:
    /// `statement` is one of the program and selects the column ID among others.
    SqliteRowSearch(const QString &path, std::chrono::milliseconds patience, const QString &statement,
                    Handlers handlers);
    ~SqliteRowSearch() override;
    SqliteRowSearch(const SqliteRowSearch &) = delete;
    SqliteRowSearch &operator=(const SqliteRowSearch &) = delete;

private:
    void work(const QString &path, std::chrono::milliseconds patience, const QString &statement);
    void readRows(const QString &path, std::chrono::milliseconds patience, const QString &statement);
    void handOut(std::vector<std::int64_t> &ids);
    template <typename Action>
    void onOwner(Action action);

    Handlers m_handlers;
    QObject m_owner; ///< on the thread that began the search; what waits for it goes with it
    std::atomic<bool> m_stopped = false;
    std::thread m_thread;
};
