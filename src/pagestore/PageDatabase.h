#pragma once

#include "platform/EditableRecordset.h"
#include "platform/Prompter.h"
#include "state/Module1.h"

#include <QString>
#include <QStringList>

/// The operations that every part of the program uses on the page database. Each opens a connection of its
/// own and lets it go before it returns; within a DatabaseBatch they share one.
///
/// The statements themselves are in Statements.h. References must outlive this object; main thread only.
class PageDatabase
{
public:
    PageDatabase(Database &database, Module1 &state, Prompter &prompter);

    /// Runs a statement that changes rows of `table`. Every failure is silent: whoever must know asks
    /// afterwards.
    void RunSql(const QString &table, const QString &statement);

    /// The text of column `field` in the first row; empty when there is no row (told to the user if
    /// `showMessage`) or when reading failed, a Null included (told always). Dates as mm/dd/yyyy.
    QString LookupField(const QString &field, const QString &query, bool showMessage);

    /// The number of the project's last page. 0 when it has none, which is told if `showMessage`. Throws
    /// RunTimeError when reading failed: who took that for 0 would write over the first pages' files.
    std::int32_t highestPageNumber(const QString &project, bool showMessage);

    /// The first column of the first row as a number; 0 on any failure.
    std::int32_t QueryLong(const QString &query);

    /// Clears `list` and adds the first column of every row, in the order returned; Null adds an empty text.
    void FillListFromQuery(const QString &query, QStringList &list);

    /// A recordset of a connection of its own; throws RunTimeError.
    std::unique_ptr<Recordset> openRecordset(const QString &query);

    std::unique_ptr<DatabaseBatch> beginBatch();

    /// As RunSql(), but failures are thrown.
    void execute(const QString &statement);

    /// The rows of a select statement on the page table, to be changed; throws RunTimeError. With `ids` those
    /// that a search has found.
    std::unique_ptr<EditableRecordset> openPages(const QString &query);
    std::unique_ptr<EditableRecordset> openPages(const QString &query, std::vector<std::int64_t> ids);

    std::unique_ptr<RowSearch> search(const QString &query, RowSearch::Handlers handlers);

    /// A connection of its own, for work beside the event loop; throws RunTimeError.
    std::unique_ptr<Connection> connect();

private:
    Database &m_database;
    Module1 &m_state;
    Prompter &m_prompter;
};

/// True when the trimmed `name` equals the trimmed text of an entry; an empty name counts as contained.
/// Letter case counts.
bool ListContains(const QStringList &list, const QString &name);
