#pragma once

#include "platform/Database.h"

#include <cstdint>
#include <functional>
#include <vector>

/// A recordset on rows of one table that can be changed, in the style of a static client-side cursor with
/// optimistic locking.
///
/// Which rows there are is fixed when it is opened; the values of a row are read when they are first asked
/// for, so that long texts of thousands of pages cost nothing. A row that somebody else has deleted since has
/// only Null values.
///
/// The cursor stands before the first row, on one, or behind the last one. It may stand on a row that has
/// just been deleted: that has no values, and moves go on to its neighbours. Moving away from a row with a
/// pending change writes the change first; when that fails the cursor stays.
class EditableRecordset : public Recordset
{
public:
    enum class EditMode {
        None,
        InProgress, ///< fields of the current row were set and not written yet
        Add         ///< the current row is a new one that is not in the table yet
    };

    /// Answers of position() where there is no row.
    enum Place : int { NoRow = -1, BeforeFirst = -2, BehindLast = -3 };

    virtual EditMode editMode() const = 0;

    virtual bool hasField(const QString &name) const = 0;

    /// From 1; a new row comes behind all others.
    virtual int position() const = 0;

    virtual void moveLast() = 0;
    virtual void movePrevious() = 0;

    /// `position` from 1 to recordCount(); throws RunTimeError for any other.
    virtual void moveTo(int position) = 0;

    /// The position of the row with this ID, 0 when there is none.
    virtual int positionOf(std::int64_t id) const = 0;

    /// The stored value of a column of any row, without a move. Positions count from 1, columns from 0.
    virtual QVariant valueAt(int position, int column) const = 0;

    /// Sets a field of the current row; nothing is checked or written before update(). Texts stand for what a
    /// column holds: an empty one is Null for numbers and dates.
    virtual void setField(const QString &name, const QVariant &value) = 0;

    /// Goes to a new, empty row.
    virtual void addNew() = 0;

    /// Deletes the current row from the table at once; drops a new one.
    virtual void deleteCurrent() = 0;

    /// Writes the pending change or the new row. Throws RunTimeError when a value does not suit its column,
    /// the database refuses, or somebody else has changed the same fields or deleted the row since; the
    /// change stays pending then.
    virtual void update() = 0;

    /// Drops what is pending. After a new row the cursor stands where it stood before.
    virtual void cancelUpdate() = 0;

    /// Rows that a search has found since; they come behind the others.
    virtual void appendRows(const std::vector<std::int64_t> &ids) = 0;

    /// Two rows change places; their values are read anew.
    virtual void exchangeRows(int position, int other) = 0;

    /// Runs after every completed move, among them those to a new row and by requery().
    virtual void setMoveHandler(std::function<void()> handler) = 0;
};
