#include "platform/sqlite/SqliteDatabase.h"

#include "platform/RunTimeError.h"
#include "platform/sqlite/SqliteEditableRecordset.h"
#include "platform/sqlite/SqliteFile.h"
#include "platform/sqlite/SqliteRecordset.h"
#include "platform/sqlite/SqliteRowSearch.h"
#include "platform/sqlite/StatementTranslator.h"

#include <QFileInfo>
#include <QScopeGuard>

#include <algorithm>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
// Whoever types on interrupts a search, but not its waiting for a lock.
constexpr std::chrono::milliseconds searchPatience{200};

/// A path may hold semicolons: it is the last part of the string.
QString filePathOf(const QString &connectionString)
{
    const QString key = u"Data Source="_s;
    const qsizetype start = connectionString.indexOf(key, 0, Qt::CaseInsensitive);
    if (start < 0)
        throw RunTimeError(RunTimeError::DatabaseError,
                           u"The connection string names no database file: "_s + connectionString);
    return connectionString.mid(start + key.size());
}

/// One name for one file, however it is written.
QString fileKey(const QString &path)
{
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return canonical.isEmpty() ? path : canonical;
}

class SqliteConnection : public Connection
{
public:
    explicit SqliteConnection(std::shared_ptr<SqliteFile> file) : m_file(std::move(file)) {}

    std::unique_ptr<Recordset> openRecordset(const QString &statement) override
    {
        return std::make_unique<SqliteRecordset>(m_file, StatementTranslator::translate(statement),
                                                 SqliteRecordset::Reading::Now);
    }

    std::unique_ptr<Recordset> openTable(const QString &table) override
    {
        QString name = table;
        name.replace(u'"', u"\"\""_s);
        return std::make_unique<SqliteRecordset>(m_file, u"select * from \"%1\""_s.arg(name),
                                                 SqliteRecordset::Reading::WhenAsked);
    }

    std::unique_ptr<EditableRecordset> openEditable(const QString &statement, const QString &table) override
    {
        return std::make_unique<SqliteEditableRecordset>(m_file, StatementTranslator::translate(statement),
                                                         StatementTranslator::isOrdered(statement), table);
    }

    std::unique_ptr<EditableRecordset> openEditable(const QString &statement, const QString &table,
                                                    std::vector<std::int64_t> ids) override
    {
        return std::make_unique<SqliteEditableRecordset>(m_file, StatementTranslator::translate(statement),
                                                         StatementTranslator::isOrdered(statement), table,
                                                         std::move(ids));
    }

    void execute(const QString &statement) override
    {
        m_file->run(StatementTranslator::translate(statement));
    }

    bool executeTogether(const QStringList &statements, const std::stop_token &stop) override
    {
        if (statements.isEmpty())
            return !stop.stop_requested();
        m_file->beginTransaction();
        const auto takenBack = qScopeGuard([this] { m_file->rollBackTransaction(); });
        for (const QString &statement : statements) {
            if (stop.stop_requested())
                return false;
            execute(statement);
        }
        m_file->commitTransaction();
        return true;
    }

private:
    std::shared_ptr<SqliteFile> m_file;
};

class SqliteBatch : public DatabaseBatch
{
public:
    SqliteBatch(std::shared_ptr<SqliteDatabase::Batches> batches, const QString &key,
                std::shared_ptr<SqliteFile> file)
        : m_batches(std::move(batches)), m_key(key), m_file(std::move(file))
    {
        m_file->beginTransaction();
        m_batches->emplace(m_key, m_file);
    }

    ~SqliteBatch() override
    {
        if (m_batches->erase(m_key) > 0)
            m_file->rollBackTransaction();
    }

    SqliteBatch(const SqliteBatch &) = delete;
    SqliteBatch &operator=(const SqliteBatch &) = delete;

    void commit() override
    {
        if (m_batches->erase(m_key) > 0)
            m_file->commitTransaction();
    }

private:
    std::shared_ptr<SqliteDatabase::Batches> m_batches;
    QString m_key;
    std::shared_ptr<SqliteFile> m_file;
};
} // namespace

SqliteDatabase::SqliteDatabase(std::chrono::milliseconds patience)
    : m_patience(patience), m_batches(std::make_shared<Batches>())
{
}

std::unique_ptr<Connection> SqliteDatabase::open(const QString &connectionString)
{
    const QString path = filePathOf(connectionString);
    const auto batch = m_batches->find(fileKey(path));
    return std::make_unique<SqliteConnection>(
        batch != m_batches->end() ? batch->second : std::make_shared<SqliteFile>(path, m_patience));
}

std::unique_ptr<RowSearch> SqliteDatabase::search(const QString &connectionString, const QString &statement,
                                                  RowSearch::Handlers handlers)
{
    return std::make_unique<SqliteRowSearch>(
        filePathOf(connectionString), std::min(m_patience, searchPatience), statement, std::move(handlers));
}

std::unique_ptr<DatabaseBatch> SqliteDatabase::beginBatch(const QString &connectionString)
{
    const QString path = filePathOf(connectionString);
    const QString key = fileKey(path);
    if (m_batches->contains(key))
        throw RunTimeError(RunTimeError::DatabaseError,
                           u"A batch is already running on the database file \"%1\"."_s.arg(path));
    return std::make_unique<SqliteBatch>(m_batches, key, std::make_shared<SqliteFile>(path, m_patience));
}
