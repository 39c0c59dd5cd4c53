#include "pagestore/PageDatabase.h"

#include "pagestore/Statements.h"
#include "platform/Rounding.h"
#include "platform/RunTimeError.h"
#include "platform/ShortDate.h"

#include <QDate>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
// What the list boxes of the statement dialect's platform raise while they are being destroyed.
constexpr int listIsGoing = -2147024769;

template <typename Step>
void ignoringFailure(Step &&step)
{
    try {
        step();
    } catch (const RunTimeError &) {
    }
}

QString textOf(const QVariant &value)
{
    if (value.isNull())
        throw RunTimeError(RunTimeError::InvalidUseOfNull, u"Invalid use of Null"_s);
    return value.typeId() == QMetaType::QDate ? ShortDate::toText(value.toDate()) : value.toString();
}
} // namespace

PageDatabase::PageDatabase(Database &database, Module1 &state, Prompter &prompter)
    : m_database(database), m_state(state), m_prompter(prompter)
{
}

void PageDatabase::RunSql(const QString &table, const QString &statement)
{
    std::unique_ptr<Connection> connection;
    ignoringFailure([&] { connection = m_database.open(m_state.ConnectionString); });
    if (!connection)
        return;
    std::unique_ptr<Recordset> rows;
    ignoringFailure([&] { rows = connection->openTable(table); });
    ignoringFailure([&] { connection->execute(statement); });
    if (rows)
        ignoringFailure([&] { rows->requery(); });
}

QString PageDatabase::LookupField(const QString &field, const QString &query, bool showMessage)
{
    try {
        const std::unique_ptr<Recordset> rows = openRecordset(query);
        if (!rows->atEnd()) {
            rows->moveFirst();
            return textOf(rows->field(field));
        }
    } catch (const RunTimeError &error) {
        m_prompter.tell(Question::DatabaseUnreachable,
                        {u"Database may be opened exclusively by an Administrator in Microsoft Access. "
                         "Ask an Administrator to close Microsoft Access before trying again. ADO msg: "_s +
                             error.description() + u'(' + QString::number(error.number()) + u')',
                         m_state.AppTitle});
        return {};
    }
    if (showMessage)
        m_prompter.tell(Question::NoPageFound,
                        {u"No page found from the database for this project.\r\n"
                         "Reason: You just deleted the last image file of this project.\r\n"
                         "Or, you deleted this project through Admin->Delete Project,\r\n"
                         "and this function always only removes the project from the \r\n"
                         "database, but never removes its file directory. That is why \r\n"
                         "you can see the files in the directory, but not the record for it \r\n"
                         "in the database."_s,
                         m_state.AppTitle, Icon::Information});
    return {};
}

std::int32_t PageDatabase::highestPageNumber(const QString &project, bool showMessage)
{
    const QString query = Statements::highestPageNumber(project);
    const std::unique_ptr<Recordset> rows = openRecordset(query);
    if (!rows->atEnd())
        return rows->field(0).toInt();
    if (showMessage)
        LookupField(u"PageNumber"_s, query, true);
    return 0;
}

std::int32_t PageDatabase::QueryLong(const QString &query)
{
    try {
        const std::unique_ptr<Recordset> rows = openRecordset(query);
        bool isNumber = false;
        const double number = rows->field(0).toDouble(&isNumber);
        const std::int32_t rounded = Rounding::toInt(number);
        // A number beyond 32 bits is a failure like any other.
        return isNumber && std::abs(number - rounded) < 1 ? rounded : 0;
    } catch (const RunTimeError &) {
        return 0;
    }
}

void PageDatabase::FillListFromQuery(const QString &query, QStringList &list)
{
    list.clear();
    try {
        const std::unique_ptr<Recordset> rows = openRecordset(query);
        for (; !rows->atEnd(); rows->moveNext()) {
            const QVariant value = rows->field(0);
            list.append(value.isNull() ? QString() : textOf(value));
        }
    } catch (const RunTimeError &error) {
        if (error.number() != listIsGoing)
            m_prompter.tell(Question::DatabaseListFailed,
                            {u"Database is opened by Microsoft Access or another application. Error:"_s +
                                 QString::number(error.number()),
                             m_state.AppTitle});
    }
}

std::unique_ptr<Recordset> PageDatabase::openRecordset(const QString &query)
{
    return connect()->openRecordset(query);
}

std::unique_ptr<DatabaseBatch> PageDatabase::beginBatch()
{
    return m_database.beginBatch(m_state.ConnectionString);
}

void PageDatabase::execute(const QString &statement)
{
    m_database.open(m_state.ConnectionString)->execute(statement);
}

std::unique_ptr<EditableRecordset> PageDatabase::openPages(const QString &query)
{
    return m_database.open(m_state.ConnectionString)
        ->openEditable(query, QString::fromUtf16(Statements::pageTable));
}

std::unique_ptr<EditableRecordset> PageDatabase::openPages(const QString &query,
                                                           std::vector<std::int64_t> ids)
{
    return m_database.open(m_state.ConnectionString)
        ->openEditable(query, QString::fromUtf16(Statements::pageTable), std::move(ids));
}

std::unique_ptr<RowSearch> PageDatabase::search(const QString &query, RowSearch::Handlers handlers)
{
    return m_database.search(m_state.ConnectionString, query, std::move(handlers));
}

std::unique_ptr<Connection> PageDatabase::connect()
{
    return m_database.open(m_state.ConnectionString);
}

bool ListContains(const QStringList &list, const QString &name)
{
    const QString wanted = name.trimmed();
    return wanted.isEmpty() || std::any_of(list.begin(), list.end(), [&wanted](const QString &entry) {
               return entry.trimmed() == wanted;
           });
}
