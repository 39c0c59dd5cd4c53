#pragma once

#include "platform/EditableRecordset.h"
#include "platform/sqlite/SqliteFile.h"

#include <QCache>
#include <QHash>
#include <QStringList>

#include <memory>
#include <vector>

/// Keeps the IDs of its rows and reads the values of single rows by them.
///
/// Without an order of its own a statement's rows come in the order of ID. An update compares the old values
/// of the fields that it writes, so that a change made by somebody else is not written over.
class SqliteEditableRecordset : public EditableRecordset
{
public:
    /// `statement` is in SQLite's own language and selects from `table`, the column ID among others;
    /// `ordered` when it asks for an order.
    SqliteEditableRecordset(std::shared_ptr<SqliteFile> file, const QString &statement, bool ordered,
                            const QString &table);

    /// On these rows instead of those that the statement finds; requery() runs it.
    SqliteEditableRecordset(std::shared_ptr<SqliteFile> file, const QString &statement, bool ordered,
                            const QString &table, std::vector<std::int64_t> ids);

    bool atEnd() const override { return !adding() && !onDeleted() && m_index >= count(); }
    bool atStart() const override { return !adding() && !onDeleted() && (m_index < 0 || m_keys.empty()); }
    void moveFirst() override;
    void moveNext() override;
    int recordCount() const override { return count() + (adding() ? 1 : 0); }
    QVariant field(const QString &name) const override;
    QVariant field(int index) const override;
    void requery() override;

    bool hasField(const QString &name) const override { return m_names.contains(name, Qt::CaseInsensitive); }
    EditMode editMode() const override { return m_mode; }
    int position() const override;
    void moveLast() override;
    void movePrevious() override;
    void moveTo(int position) override;
    int positionOf(std::int64_t id) const override;
    QVariant valueAt(int position, int column) const override;
    void setField(const QString &name, const QVariant &value) override;
    void addNew() override;
    void deleteCurrent() override;
    void update() override;
    void cancelUpdate() override;
    void appendRows(const std::vector<std::int64_t> &ids) override
    {
        m_keys.insert(m_keys.end(), ids.begin(), ids.end());
    }
    void exchangeRows(int position, int other) override;
    void setMoveHandler(std::function<void()> handler) override { m_moved = std::move(handler); }

private:
    enum class Type { Text, Integer, Date };
    using Row = std::vector<QVariant>;

    int count() const { return static_cast<int>(m_keys.size()); }
    bool adding() const { return m_mode == EditMode::Add; }
    bool onDeleted() const { return m_onDeleted; }
    std::int64_t currentKey() const;
    int columnOf(const QString &name) const;
    void describeColumns();
    std::vector<std::int64_t> readKeys() const;
    const Row &row(std::int64_t key) const;
    Row readRow(std::int64_t key) const;
    QVariant converted(int column, const QVariant &value) const;
    void forgetPending();
    void insertRow();
    void changeRow();
    void moveToIndex(int index);

    std::shared_ptr<SqliteFile> m_file;
    QString m_statement;
    bool m_ordered;
    QString m_table; ///< quoted
    QStringList m_names;
    std::vector<Type> m_types;
    int m_keyColumn = -1;
    std::vector<std::int64_t> m_keys;
    int m_index = 0;          ///< into m_keys; -1 before the first, count() behind the last
    bool m_onDeleted = false; ///< on the place before m_index, whose row has gone
    EditMode m_mode = EditMode::None;
    int m_indexBeforeAdd = 0;
    QHash<int, QVariant> m_pending;     ///< by column
    QHash<int, QVariant> m_before;      ///< what the pending columns of an existing row held
    mutable SqliteStatement m_rowByKey; ///< prepared when the first row is read
    mutable QCache<std::int64_t, Row> m_rows;
    std::function<void()> m_moved = [] {};
};
