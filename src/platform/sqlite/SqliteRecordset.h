#pragma once

#include "platform/Database.h"

#include <QStringList>

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

class SqliteFile;
struct sqlite3_stmt;

/// Rows of a select statement as they were when they were read. All rows lie in one block of memory.
///
/// A move beyond the last row and a look at a row that is not there throw RunTimeError
/// (DatabaseErrors::noCurrentRow).
class SqliteRecordset : public Recordset
{
public:
    enum class Reading {
        Now,
        WhenAsked ///< at the first question about rows or columns, and checked only then
    };

    /// `statement` is in SQLite's own language.
    SqliteRecordset(std::shared_ptr<SqliteFile> file, const QString &statement, Reading reading);

    bool atEnd() const override;
    bool atStart() const override;
    void moveFirst() override;
    void moveNext() override;
    int recordCount() const override;
    QVariant field(const QString &name) const override;
    QVariant field(int index) const override;

    /// Stands on the first row afterwards. Rows that nobody has asked for yet are not read.
    void requery() override;

private:
    struct TextPlace {
        std::size_t begin = 0;
        qsizetype size = 0; ///< UTF-8 bytes
    };
    using Cell = std::variant<std::monostate, qint64, double, TextPlace>;
    struct Rows {
        int count = 0;
        std::vector<Cell> cells; ///< row by row
        std::string texts;       ///< of all cells, UTF-8
    };

    void describeColumns(sqlite3_stmt *statement) const;
    const Rows &rows() const;
    Rows readRows(sqlite3_stmt *statement) const;
    static Cell readCell(sqlite3_stmt *statement, int column, std::string &texts);
    QVariant value(const Cell &cell, bool isDate) const;

    std::shared_ptr<SqliteFile> m_file;
    QString m_statement;
    mutable QStringList m_names;
    mutable std::vector<bool> m_isDate;
    mutable std::optional<Rows> m_rows;
    int m_row = 0;
};
