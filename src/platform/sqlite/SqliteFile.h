#pragma once

#include <QString>
#include <QVariant>

#include <chrono>
#include <cstdint>
#include <memory>
#include <span>

struct sqlite3;
struct sqlite3_stmt;

struct SqliteCloser {
    void operator()(sqlite3 *database) const noexcept;
};
struct SqliteFinalizer {
    void operator()(sqlite3_stmt *statement) const noexcept;
};
using SqliteStatement = std::unique_ptr<sqlite3_stmt, SqliteFinalizer>;

/// One open connection to a database file, in SQLite's own statement language. Every failure throws
/// RunTimeError with a description that names the file.
///
/// The file is used the way that leaves one plain file which can be copied: rollback journal, every
/// transaction synced.
class SqliteFile
{
public:
    /// The file must exist. A lock of somebody else is waited for as long as `patience`.
    SqliteFile(const QString &path, std::chrono::milliseconds patience);

    /// Exactly one statement, without parameters.
    SqliteStatement prepare(const QString &statement);

    /// One statement with up to so many parameters, to be bound by the caller.
    SqliteStatement prepareWith(const QString &statement, int parameters);

    /// Goes to the next row; false when there is none.
    bool step(sqlite3_stmt *statement);

    /// Runs a statement to its end.
    void run(const QString &statement);

    /// Runs a statement with a value for each "?" (Null, whole numbers, and texts). Returns how many rows it
    /// has changed.
    int runWith(const QString &statement, std::span<const QVariant> values);

    /// The ID of the row inserted last.
    std::int64_t lastInsertedKey() const;

    /// A transaction of many statements, with the right to write from the start on.
    void beginTransaction();
    /// Takes everything back when it throws.
    void commitTransaction();
    void rollBackTransaction() noexcept;

private:
    void refuseAfterRollBack() const;
    [[noreturn]] void fail();
    QString firstFinding();

    QString m_path;
    std::unique_ptr<sqlite3, SqliteCloser> m_database;
    bool m_inTransaction = false;
};
