#include "platform/sqlite/SqliteRecordset.h"

#include "platform/RunTimeError.h"
#include "platform/sqlite/DatabaseErrors.h"
#include "platform/sqlite/SqliteFile.h"

#include <QDate>

#include <algorithm>
#include <sqlite3.h>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
[[noreturn]] void failNoRow()
{
    throw RunTimeError(DatabaseErrors::noCurrentRow, u"There is no current record."_s);
}

[[noreturn]] void failNoField(const QString &which)
{
    throw RunTimeError(DatabaseErrors::noSuchField, u"The record has no field %1."_s.arg(which));
}
} // namespace

SqliteRecordset::SqliteRecordset(std::shared_ptr<SqliteFile> file, const QString &statement, Reading reading)
    : m_file(std::move(file)), m_statement(statement)
{
    if (reading == Reading::Now)
        rows();
}

void SqliteRecordset::describeColumns(sqlite3_stmt *statement) const
{
    m_names.clear();
    m_isDate.clear();
    const int columns = sqlite3_column_count(statement);
    for (int column = 0; column < columns; ++column) {
        m_names.append(QString::fromUtf8(sqlite3_column_name(statement, column)));
        const QString type = QString::fromUtf8(sqlite3_column_decltype(statement, column));
        m_isDate.push_back(type.compare(u"date"_s, Qt::CaseInsensitive) == 0);
    }
}

SqliteRecordset::Rows SqliteRecordset::readRows(sqlite3_stmt *statement) const
{
    Rows rows;
    const auto columns = static_cast<int>(m_names.size());
    while (m_file->step(statement)) {
        for (int column = 0; column < columns; ++column)
            rows.cells.push_back(readCell(statement, column, rows.texts));
        ++rows.count;
    }
    return rows;
}

SqliteRecordset::Cell SqliteRecordset::readCell(sqlite3_stmt *statement, int column, std::string &texts)
{
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_NULL:
        return std::monostate();
    case SQLITE_INTEGER:
        return static_cast<qint64>(sqlite3_column_int64(statement, column));
    case SQLITE_FLOAT:
        return sqlite3_column_double(statement, column);
    default:
        break;
    }
    const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(statement, column));
    const int size = sqlite3_column_bytes(statement, column);
    const std::size_t begin = texts.size();
    if (text)
        texts.append(text, static_cast<std::size_t>(size));
    return TextPlace{begin, size};
}

const SqliteRecordset::Rows &SqliteRecordset::rows() const
{
    if (!m_rows) {
        const SqliteStatement prepared = m_file->prepare(m_statement);
        describeColumns(prepared.get());
        m_rows = readRows(prepared.get());
    }
    return *m_rows;
}

bool SqliteRecordset::atEnd() const
{
    return m_row >= rows().count;
}

bool SqliteRecordset::atStart() const
{
    return rows().count == 0;
}

void SqliteRecordset::moveFirst()
{
    if (rows().count == 0)
        failNoRow();
    m_row = 0;
}

void SqliteRecordset::moveNext()
{
    if (atEnd())
        failNoRow();
    ++m_row;
}

int SqliteRecordset::recordCount() const
{
    return rows().count;
}

QVariant SqliteRecordset::field(const QString &name) const
{
    rows();
    const auto found = std::find_if(m_names.begin(), m_names.end(), [&name](const QString &known) {
        return known.compare(name, Qt::CaseInsensitive) == 0;
    });
    if (found == m_names.end())
        failNoField(u'"' + name + u'"');
    return field(static_cast<int>(found - m_names.begin()));
}

QVariant SqliteRecordset::field(int index) const
{
    rows();
    if (index < 0 || index >= m_names.size())
        failNoField(QString::number(index));
    if (atEnd())
        failNoRow();
    const auto column = static_cast<std::size_t>(index);
    const auto columns = static_cast<std::size_t>(m_names.size());
    return value(rows().cells[static_cast<std::size_t>(m_row) * columns + column], m_isDate[column]);
}

QVariant SqliteRecordset::value(const Cell &cell, bool isDate) const
{
    if (const auto *number = std::get_if<qint64>(&cell))
        return QVariant(*number);
    if (const auto *number = std::get_if<double>(&cell))
        return QVariant(*number);
    const auto *place = std::get_if<TextPlace>(&cell);
    if (!place)
        return {};
    const QString text = QString::fromUtf8(rows().texts.data() + place->begin, place->size);
    // A text that is no date, written by another program, is shown rather than lost.
    const QDate date = isDate ? QDate::fromString(text, Qt::ISODate) : QDate();
    return date.isValid() ? QVariant(date) : QVariant(text);
}

void SqliteRecordset::requery()
{
    if (m_rows)
        m_rows = readRows(m_file->prepare(m_statement).get());
    m_row = 0;
}
