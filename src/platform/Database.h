#pragma once

#include "platform/RowSearch.h"

#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>
#include <stop_token>
#include <vector>

/// The page database's platform: connections and recordsets in the style of ActiveX Data Objects.
///
/// Statements are written in the dialect of the program's own statement table: text between double quotes
/// (a quote inside is written twice), dates between "#" signs, names in square brackets, "select top n".
/// Every failure throws RunTimeError whose description is the database's own.
///
/// A connection is opened, used and dropped within one operation. It may be used in another thread than the
/// one that opened it, by one at a time, and so may its recordsets. A DatabaseBatch lets many operations
/// share one connection and one transaction.

class Recordset
{
public:
    virtual ~Recordset() = default;

    /// No row, or moved past the last one.
    virtual bool atEnd() const = 0;
    /// No row, or moved before the first one.
    virtual bool atStart() const = 0;
    virtual void moveFirst() = 0;
    virtual void moveNext() = 0;
    virtual int recordCount() const = 0;

    /// The value of a column of the current row, by name (letter case ignored) or position. Null columns
    /// give a null QVariant; a date column gives a QDate, numbers a qlonglong or double, text a QString.
    /// Throws when there is no current row or no such column.
    virtual QVariant field(const QString &name) const = 0;
    virtual QVariant field(int index) const = 0;

    /// Runs the statement again.
    virtual void requery() = 0;
};

class EditableRecordset;

class Connection
{
public:
    virtual ~Connection() = default;

    /// A static recordset on a select statement.
    virtual std::unique_ptr<Recordset> openRecordset(const QString &statement) = 0;

    /// A recordset on a whole table. No row is read before it is asked for.
    virtual std::unique_ptr<Recordset> openTable(const QString &table) = 0;

    /// A recordset whose rows can be changed, on a select statement whose rows are those of `table` and hold
    /// its column ID.
    virtual std::unique_ptr<EditableRecordset> openEditable(const QString &statement,
                                                            const QString &table) = 0;

    /// The same on rows that a search has found, in their order.
    virtual std::unique_ptr<EditableRecordset> openEditable(const QString &statement, const QString &table,
                                                            std::vector<std::int64_t> ids) = 0;

    /// Runs a statement that changes rows.
    virtual void execute(const QString &statement) = 0;

    /// Runs such statements in one transaction. False when `stop` was requested before the end; everything
    /// is taken back then, and also when one fails. Not for a connection of a batch.
    virtual bool executeTogether(const QStringList &statements, const std::stop_token &stop) = 0;
};

/// While one lives, every connection opened for the same file is the same one, inside one transaction.
/// commit() keeps what was done; without it the destructor takes everything back.
class DatabaseBatch
{
public:
    virtual ~DatabaseBatch() = default;
    /// Throws RunTimeError when the database refuses; everything is taken back then.
    virtual void commit() = 0;
};

class Database
{
public:
    virtual ~Database() = default;

    /// `connectionString` is "PROVIDER=...;Data Source=<path>". The file must exist: it is never created.
    virtual std::unique_ptr<Connection> open(const QString &connectionString) = 0;

    /// Runs a select statement, which holds the column ID, without blocking the caller. Failures come to the
    /// handler.
    virtual std::unique_ptr<RowSearch> search(const QString &connectionString, const QString &statement,
                                              RowSearch::Handlers handlers) = 0;

    /// Batches do not nest: a second one on the same file throws.
    virtual std::unique_ptr<DatabaseBatch> beginBatch(const QString &connectionString) = 0;

    /// Copies a database file as it is at one moment, whatever is written to it meanwhile; a file of another
    /// kind byte by byte. The copy is complete and on the disk when this returns. On a failure there is none;
    /// a target that exists is one, and stays as it is.
    virtual void backUp(const QString &source, const QString &target) = 0;
};
