#include "platform/sqlite/SqliteEditableRecordset.h"

#include "platform/RunTimeError.h"
#include "platform/ShortDate.h"
#include "platform/sqlite/DatabaseErrors.h"
#include "platform/sqlite/SqliteFile.h"

#include <QScopeGuard>

#include <algorithm>
#include <limits>
#include <sqlite3.h>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int cachedBytes = 8'000'000; // of rows, about a screen of large ones

QString quotedName(QString name)
{
    return u'"' + name.replace(u'"', u"\"\""_s) + u'"';
}

[[noreturn]] void failNoRow()
{
    throw RunTimeError(DatabaseErrors::noCurrentRow, u"There is no current record."_s);
}

[[noreturn]] void failValue(const QString &column, const QString &text, const QString &reason)
{
    throw RunTimeError(DatabaseErrors::valueRefused,
                       u"\"%1\" cannot be stored as %2: %3."_s.arg(text, column, reason));
}

QVariant cell(sqlite3_stmt *statement, int column, bool isDate)
{
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_NULL:
        return {};
    case SQLITE_INTEGER:
        return QVariant(static_cast<qint64>(sqlite3_column_int64(statement, column)));
    case SQLITE_FLOAT:
        return QVariant(sqlite3_column_double(statement, column));
    default:
        break;
    }
    const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(statement, column));
    const QString value = QString::fromUtf8(text, sqlite3_column_bytes(statement, column));
    // Another program's text that is no date is shown rather than lost.
    const QDate date = isDate ? QDate::fromString(value, Qt::ISODate) : QDate();
    return date.isValid() ? QVariant(date) : QVariant(value);
}
} // namespace

SqliteEditableRecordset::SqliteEditableRecordset(std::shared_ptr<SqliteFile> file, const QString &statement,
                                                 bool ordered, const QString &table)
    : SqliteEditableRecordset(std::move(file), statement, ordered, table, {})
{
    m_keys = readKeys();
}

SqliteEditableRecordset::SqliteEditableRecordset(std::shared_ptr<SqliteFile> file, const QString &statement,
                                                 bool ordered, const QString &table,
                                                 std::vector<std::int64_t> ids)
    : m_file(std::move(file)), m_statement(statement), m_ordered(ordered), m_table(quotedName(table)),
      m_keys(std::move(ids)), m_rows(cachedBytes)
{
    describeColumns();
}

void SqliteEditableRecordset::describeColumns()
{
    const SqliteStatement statement = m_file->prepare(m_statement);
    for (int column = 0; column < sqlite3_column_count(statement.get()); ++column) {
        m_names.append(QString::fromUtf8(sqlite3_column_name(statement.get(), column)));
        const QString type = QString::fromUtf8(sqlite3_column_decltype(statement.get(), column));
        m_types.push_back(type.compare(u"date"_s, Qt::CaseInsensitive) == 0      ? Type::Date
                          : type.compare(u"integer"_s, Qt::CaseInsensitive) == 0 ? Type::Integer
                                                                                 : Type::Text);
    }
    m_keyColumn = columnOf(u"ID"_s);
}

std::vector<std::int64_t> SqliteEditableRecordset::readKeys() const
{
    // An index alone answers many of these; sorting the numbers afterwards is cheaper than reading the rows
    // in their order.
    const SqliteStatement statement = m_file->prepare(u"select ID from (%1)"_s.arg(m_statement));
    std::vector<std::int64_t> keys;
    while (m_file->step(statement.get()))
        keys.push_back(sqlite3_column_int64(statement.get(), 0));
    if (!m_ordered)
        std::sort(keys.begin(), keys.end());
    return keys;
}

int SqliteEditableRecordset::columnOf(const QString &name) const
{
    for (int column = 0; column < m_names.size(); ++column) {
        if (m_names[column].compare(name, Qt::CaseInsensitive) == 0)
            return column;
    }
    throw RunTimeError(DatabaseErrors::noSuchField, u"The record has no field \"%1\"."_s.arg(name));
}

std::int64_t SqliteEditableRecordset::currentKey() const
{
    if (m_onDeleted || m_index < 0 || m_index >= count())
        failNoRow();
    return m_keys[static_cast<std::size_t>(m_index)];
}

const SqliteEditableRecordset::Row &SqliteEditableRecordset::row(std::int64_t key) const
{
    if (const Row *known = m_rows.object(key))
        return *known;
    auto *read = new Row(readRow(key));
    qsizetype size = 1;
    for (const QVariant &value : *read)
        size += static_cast<qsizetype>(sizeof value) + value.toString().size() * 2;
    // Too large a row would not be kept at all.
    m_rows.insert(key, read, std::min(size, m_rows.maxCost()));
    return *read;
}

SqliteEditableRecordset::Row SqliteEditableRecordset::readRow(std::int64_t key) const
{
    if (!m_rowByKey) {
        QStringList columns;
        for (const QString &name : m_names)
            columns += quotedName(name);
        m_rowByKey =
            m_file->prepareWith(u"select %1 from %2 where ID = ?"_s.arg(columns.join(u','), m_table), 1);
    }
    const auto reset = qScopeGuard([this] { sqlite3_reset(m_rowByKey.get()); }); // or it would keep its lock
    sqlite3_bind_int64(m_rowByKey.get(), 1, key);
    Row values(static_cast<std::size_t>(m_names.size()));
    if (m_file->step(m_rowByKey.get())) {
        for (std::size_t column = 0; column < values.size(); ++column)
            values[column] = cell(m_rowByKey.get(), static_cast<int>(column), m_types[column] == Type::Date);
    }
    return values;
}

QVariant SqliteEditableRecordset::field(const QString &name) const
{
    return field(columnOf(name));
}

QVariant SqliteEditableRecordset::field(int index) const
{
    if (index < 0 || index >= m_names.size())
        throw RunTimeError(DatabaseErrors::noSuchField, u"The record has no field %1."_s.arg(index));
    const auto pending = m_pending.constFind(index);
    if (pending != m_pending.cend())
        return *pending;
    if (adding())
        return {};
    const std::int64_t key = currentKey();
    return index == m_keyColumn ? QVariant(static_cast<qint64>(key))
                                : row(key)[static_cast<std::size_t>(index)];
}

QVariant SqliteEditableRecordset::valueAt(int position, int column) const
{
    if (position < 1 || position > count())
        failNoRow();
    return row(m_keys[static_cast<std::size_t>(position - 1)]).at(static_cast<std::size_t>(column));
}

int SqliteEditableRecordset::position() const
{
    if (adding())
        return recordCount();
    if (m_onDeleted || m_keys.empty())
        return NoRow;
    if (m_index < 0)
        return BeforeFirst;
    return m_index < count() ? m_index + 1 : BehindLast;
}

int SqliteEditableRecordset::positionOf(std::int64_t id) const
{
    const auto found = std::find(m_keys.begin(), m_keys.end(), id);
    return found == m_keys.end() ? 0 : static_cast<int>(found - m_keys.begin()) + 1;
}

void SqliteEditableRecordset::moveToIndex(int index)
{
    update();
    m_onDeleted = false;
    m_index = std::clamp(index, -1, count());
    m_moved();
}

void SqliteEditableRecordset::moveFirst()
{
    moveTo(1);
}

void SqliteEditableRecordset::moveLast()
{
    if (recordCount() == 0)
        failNoRow();
    update(); // a new row becomes the last one
    moveToIndex(count() - 1);
}

void SqliteEditableRecordset::moveNext()
{
    if (atEnd())
        failNoRow();
    update();
    moveToIndex(m_onDeleted ? m_index : m_index + 1);
}

void SqliteEditableRecordset::movePrevious()
{
    if (atStart())
        failNoRow();
    update();
    moveToIndex(m_index - 1);
}

void SqliteEditableRecordset::moveTo(int position)
{
    if (position < 1 || position > recordCount())
        failNoRow();
    moveToIndex(position - 1);
}

void SqliteEditableRecordset::exchangeRows(int position, int other)
{
    if (std::min(position, other) < 1 || std::max(position, other) > count())
        failNoRow();
    std::int64_t &key = m_keys[static_cast<std::size_t>(position - 1)];
    std::int64_t &otherKey = m_keys[static_cast<std::size_t>(other - 1)];
    m_rows.remove(key);
    m_rows.remove(otherKey);
    std::swap(key, otherKey);
}

void SqliteEditableRecordset::setField(const QString &name, const QVariant &value)
{
    const int column = columnOf(name);
    if (!adding()) {
        if (!m_before.contains(column))
            m_before.insert(column, row(currentKey())[static_cast<std::size_t>(column)]);
        m_mode = EditMode::InProgress;
    }
    m_pending.insert(column, value);
}

void SqliteEditableRecordset::addNew()
{
    update();
    m_indexBeforeAdd = m_index;
    m_index = count();
    m_onDeleted = false;
    m_mode = EditMode::Add;
    m_moved();
}

void SqliteEditableRecordset::cancelUpdate()
{
    const bool added = adding();
    forgetPending();
    if (!added)
        return;
    m_index = std::min(m_indexBeforeAdd, count());
    m_moved();
}

void SqliteEditableRecordset::deleteCurrent()
{
    if (adding()) {
        cancelUpdate();
        return;
    }
    const std::int64_t key = currentKey();
    const SqliteStatement statement =
        m_file->prepare(u"delete from %1 where ID = %2"_s.arg(m_table).arg(key));
    m_file->step(statement.get());
    forgetPending();
    m_rows.remove(key);
    m_keys.erase(m_keys.begin() + m_index);
    m_onDeleted = true;
}

void SqliteEditableRecordset::forgetPending()
{
    m_mode = EditMode::None;
    m_pending.clear();
    m_before.clear();
}

void SqliteEditableRecordset::update()
{
    if (m_mode == EditMode::Add)
        insertRow();
    else if (m_mode == EditMode::InProgress)
        changeRow();
    forgetPending();
}

QVariant SqliteEditableRecordset::converted(int column, const QVariant &value) const
{
    const Type type = m_types[static_cast<std::size_t>(column)];
    const QString text = value.toString();
    if (value.isNull() || (type != Type::Text && text.trimmed().isEmpty()))
        return type == Type::Text && value.isValid() ? QVariant(u""_s) : QVariant();
    switch (type) {
    case Type::Integer: {
        bool isNumber = false;
        const qint64 number = text.trimmed().toLongLong(&isNumber);
        if (!isNumber)
            failValue(m_names[column], text, u"it is no whole number"_s);
        if (number < std::numeric_limits<qint32>::min() || number > std::numeric_limits<qint32>::max())
            failValue(m_names[column], text, u"the number is too large"_s);
        return number;
    }
    case Type::Date: {
        const std::optional<QDate> date =
            value.typeId() == QMetaType::QDate ? value.toDate() : ShortDate::fromText(text);
        if (!date)
            failValue(m_names[column], text, u"it is no date of the form mm/dd/yyyy"_s);
        return date->toString(Qt::ISODate);
    }
    case Type::Text:
        break;
    }
    return text;
}

void SqliteEditableRecordset::insertRow()
{
    QStringList columns;
    QStringList marks;
    std::vector<QVariant> values;
    for (auto field = m_pending.cbegin(); field != m_pending.cend(); ++field) {
        columns += quotedName(m_names[field.key()]);
        marks += u"?"_s;
        values.push_back(converted(field.key(), field.value()));
    }
    const QString statement =
        columns.isEmpty()
            ? u"insert into %1 default values"_s.arg(m_table)
            : u"insert into %1 (%2) values (%3)"_s.arg(m_table, columns.join(u','), marks.join(u','));
    m_file->runWith(statement, values);
    m_index = count();
    m_keys.push_back(m_file->lastInsertedKey());
}

void SqliteEditableRecordset::changeRow()
{
    const std::int64_t key = currentKey();
    QStringList changes;
    QStringList conditions;
    std::vector<QVariant> values;
    std::vector<QVariant> oldValues;
    for (auto field = m_pending.cbegin(); field != m_pending.cend(); ++field) {
        const QVariant value = converted(field.key(), field.value());
        const QVariant read = m_before.value(field.key());
        const QVariant old =
            read.typeId() == QMetaType::QDate ? QVariant(read.toDate().toString(Qt::ISODate)) : read;
        if (value == old && value.isNull() == old.isNull())
            continue;
        const QString column = quotedName(m_names[field.key()]);
        changes += column + u" = ?"_s;
        conditions += u" and %1 is ? collate binary"_s.arg(column);
        values.push_back(value);
        oldValues.push_back(old);
    }
    if (changes.isEmpty())
        return;
    values.insert(values.end(), oldValues.begin(), oldValues.end());
    const QString statement = u"update %1 set %2 where ID = %3"_s.arg(m_table, changes.join(u',')).arg(key) +
                              conditions.join(QString());
    if (m_file->runWith(statement, values) == 0)
        throw RunTimeError(
            DatabaseErrors::rowChanged,
            u"The record cannot be saved: somebody else has changed or deleted it since it was "
            "read."_s);
    m_rows.remove(key);
}

void SqliteEditableRecordset::requery()
{
    if (m_mode != EditMode::None)
        throw RunTimeError(DatabaseErrors::notNow, u"Save or cancel the change of the record first."_s);
    m_keys = readKeys();
    m_rows.clear();
    m_onDeleted = false;
    m_index = 0;
    m_moved();
}
