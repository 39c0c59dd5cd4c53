#include "platform/sqlite/SqliteFile.h"

#include "platform/RunTimeError.h"
#include "platform/sqlite/DatabaseErrors.h"
#include "platform/sqlite/LikeFunction.h"
#include "platform/sqlite/SqliteReason.h"

#include <cctype>
#include <sqlite3.h>
#include <string_view>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
bool onlyBlanks(std::string_view text)
{
    return text.find_first_not_of(" \t\r\n;") == std::string_view::npos;
}

int statementErrorNumber(int code, const QString &message)
{
    if (code == SQLITE_CONSTRAINT)
        return DatabaseErrors::constraintFailed;
    if (message.startsWith(u"no such column"_s))
        return DatabaseErrors::noSuchColumn;
    if (message.startsWith(u"no such table"_s))
        return DatabaseErrors::noSuchTable;
    return DatabaseErrors::syntaxError;
}
} // namespace

void SqliteCloser::operator()(sqlite3 *database) const noexcept
{
    sqlite3_close_v2(database);
}

void SqliteFinalizer::operator()(sqlite3_stmt *statement) const noexcept
{
    sqlite3_finalize(statement);
}

SqliteFile::SqliteFile(const QString &path, std::chrono::milliseconds patience) : m_path(path)
{
    sqlite3 *opened = nullptr;
    const int result = sqlite3_open_v2(path.toUtf8().constData(), &opened, SQLITE_OPEN_READWRITE, nullptr);
    m_database.reset(opened);
    if (result != SQLITE_OK)
        fail();
    sqlite3_busy_timeout(opened, static_cast<int>(patience.count()));
    // Without this a mistyped column name between double quotes would silently be a text.
    sqlite3_db_config(opened, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    if (LikeFunction::install(opened) != SQLITE_OK)
        fail();
    // The first statement is also the one that finds a file which is no database, damaged or locked.
    run(u"pragma journal_mode = delete"_s);
    run(u"pragma synchronous = full"_s);
}

SqliteStatement SqliteFile::prepare(const QString &statement)
{
    return prepareWith(statement, 0);
}

SqliteStatement SqliteFile::prepareWith(const QString &statement, int parameters)
{
    const QByteArray text = statement.toUtf8();
    sqlite3_stmt *prepared = nullptr;
    const char *rest = nullptr;
    const int result = sqlite3_prepare_v2(m_database.get(), text.constData(), static_cast<int>(text.size()),
                                          &prepared, &rest);
    SqliteStatement owner(prepared);
    if (result != SQLITE_OK)
        fail();
    if (!prepared || !onlyBlanks(rest))
        throw RunTimeError(DatabaseErrors::syntaxError, u"Not one statement: "_s + statement);
    if (sqlite3_bind_parameter_count(prepared) > parameters)
        throw RunTimeError(DatabaseErrors::noSuchColumn, u"A parameter has no value: "_s + statement);
    return owner;
}

bool SqliteFile::step(sqlite3_stmt *statement)
{
    if (sqlite3_stmt_readonly(statement) == 0)
        refuseAfterRollBack();
    switch (sqlite3_step(statement)) {
    case SQLITE_ROW:
        return true;
    case SQLITE_DONE:
        return false;
    default:
        fail();
    }
}

void SqliteFile::refuseAfterRollBack() const
{
    // Some failures, a full disk for one, take the whole transaction back. What follows must not be kept
    // then, statement by statement, as if there had never been one.
    if (m_inTransaction && sqlite3_get_autocommit(m_database.get()) != 0)
        throw RunTimeError(RunTimeError::DatabaseError,
                           u"Cannot use the database file \"%1\": an earlier failure has taken back "
                           "everything that was written"_s.arg(m_path));
}

void SqliteFile::run(const QString &statement)
{
    const SqliteStatement prepared = prepare(statement);
    while (step(prepared.get())) {
    }
}

int SqliteFile::runWith(const QString &statement, std::span<const QVariant> values)
{
    const SqliteStatement prepared = prepareWith(statement, static_cast<int>(values.size()));
    int index = 0;
    for (const QVariant &value : values) {
        ++index;
        int result = SQLITE_OK;
        if (value.isNull()) {
            result = sqlite3_bind_null(prepared.get(), index);
        } else if (value.typeId() == QMetaType::LongLong) {
            result = sqlite3_bind_int64(prepared.get(), index, value.toLongLong());
        } else {
            const QByteArray text = value.toString().toUtf8();
            result = sqlite3_bind_text(prepared.get(), index, text.constData(), static_cast<int>(text.size()),
                                       SQLITE_TRANSIENT);
        }
        if (result != SQLITE_OK)
            fail();
    }
    while (step(prepared.get())) {
    }
    return sqlite3_changes(m_database.get());
}

std::int64_t SqliteFile::lastInsertedKey() const
{
    return sqlite3_last_insert_rowid(m_database.get());
}

void SqliteFile::beginTransaction()
{
    run(u"begin immediate"_s);
    m_inTransaction = true;
}

void SqliteFile::commitTransaction()
{
    try {
        refuseAfterRollBack();
        run(u"commit"_s);
        m_inTransaction = false;
    } catch (...) {
        rollBackTransaction();
        throw;
    }
}

void SqliteFile::rollBackTransaction() noexcept
{
    m_inTransaction = false;
    if (sqlite3_get_autocommit(m_database.get()) == 0)
        sqlite3_exec(m_database.get(), "rollback", nullptr, nullptr, nullptr);
}

void SqliteFile::fail()
{
    // Without memory there is not even a connection to ask.
    const int code = m_database ? sqlite3_errcode(m_database.get()) & 0xff : SQLITE_NOMEM;
    if (code == SQLITE_ERROR || code == SQLITE_CONSTRAINT) {
        const QString message = QString::fromUtf8(sqlite3_errmsg(m_database.get()));
        throw RunTimeError(statementErrorNumber(code, message),
                           u"%1 (database file \"%2\")"_s.arg(message, m_path));
    }
    QString reason = SqliteReason::of(code, m_database.get());
    if (code == SQLITE_CORRUPT)
        reason += u" (%1)"_s.arg(firstFinding());
    throw RunTimeError(RunTimeError::DatabaseError,
                       u"Cannot use the database file \"%1\": %2"_s.arg(m_path, reason));
}

QString SqliteFile::firstFinding()
{
    // Not through prepare() and step(): what fails here must not come back here.
    const QString known = QString::fromUtf8(sqlite3_errmsg(m_database.get()));
    sqlite3_stmt *check = nullptr;
    sqlite3_prepare_v2(m_database.get(), "pragma integrity_check(1)", -1, &check, nullptr);
    const SqliteStatement owner(check);
    if (!check || sqlite3_step(check) != SQLITE_ROW)
        return known;
    const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(check, 0));
    const QString finding = QString::fromUtf8(text).simplified();
    return finding == u"ok" ? known : finding;
}
