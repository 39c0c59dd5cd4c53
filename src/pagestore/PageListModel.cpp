#include "pagestore/PageListModel.h"

#include "platform/RunTimeError.h"
#include "platform/ShortDate.h"

#include <QScopeGuard>

#include <utility>

using namespace Qt::Literals::StringLiterals;

void PageListModel::setRows(std::unique_ptr<EditableRecordset> rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

void PageListModel::append(const std::vector<std::int64_t> &ids)
{
    const int count = rowCount();
    beginInsertRows({}, count, count + static_cast<int>(ids.size()) - 1);
    m_rows->appendRows(ids);
    endInsertRows();
}

void PageListModel::deleteCurrent()
{
    const int row = m_rows->position() - 1;
    m_rows->deleteCurrent(); // first: it may fail
    beginRemoveRows({}, row, row);
    endRemoveRows();
}

void PageListModel::exchange(int row, int other)
{
    m_rows->exchangeRows(row + 1, other + 1);
    Q_EMIT dataChanged(index(row, 0), index(row, columns - 1));
    Q_EMIT dataChanged(index(other, 0), index(other, columns - 1));
}

void PageListModel::requery()
{
    beginResetModel();
    const auto end = qScopeGuard([this] { endResetModel(); }); // also when it fails
    m_rows->requery();
}

QString PageListModel::text(int row, Column column) const
{
    try {
        const QVariant value = m_rows->valueAt(row + 1, column);
        return value.typeId() == QMetaType::QDate ? ShortDate::toText(value.toDate()) : value.toString();
    } catch (const RunTimeError &) {
        return {}; // the database cannot be read now; nothing is thrown while a grid is painted
    }
}

int PageListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() || !m_rows ? 0 : m_rows->recordCount();
}

int PageListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(columns);
}

QVariant PageListModel::data(const QModelIndex &index, int role) const
{
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
        return text(index.row(), static_cast<Column>(index.column()));
    if (role == Qt::TextAlignmentRole && index.column() == PageNumber)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

QVariant PageListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    static const QStringList captions{
        u""_s,    u""_s, u"Page"_s, u"Page Title"_s, u"Status"_s, u"Snap Shot File"_s, u"Project Name"_s,
        u"Date"_s};
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return captions.value(section);
    return orientation == Qt::Vertical ? QVariant()
                                       : QAbstractTableModel::headerData(section, orientation, role);
}
