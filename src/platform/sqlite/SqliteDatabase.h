#pragma once

#include "platform/Database.h"

#include <chrono>
#include <map>
#include <memory>

class SqliteFile;

/// The page database's platform over SQLite. Connections, recordsets and batches may outlive it. One thread
/// opens and begins.
class SqliteDatabase : public Database
{
public:
    /// A lock that another program holds is waited for as long as `patience`.
    explicit SqliteDatabase(std::chrono::milliseconds patience = std::chrono::seconds(2));

    std::unique_ptr<Connection> open(const QString &connectionString) override;
    std::unique_ptr<DatabaseBatch> beginBatch(const QString &connectionString) override;

    std::unique_ptr<RowSearch> search(const QString &connectionString, const QString &statement,
                                      RowSearch::Handlers handlers) override;

    void backUp(const QString &source, const QString &target) override;

    /// The files that a batch is running on, by their path without links.
    using Batches = std::map<QString, std::shared_ptr<SqliteFile>>;

private:
    std::chrono::milliseconds m_patience;
    std::shared_ptr<Batches> m_batches;
};
