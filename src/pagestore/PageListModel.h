#pragma once

#include "platform/EditableRecordset.h"

#include <QAbstractTableModel>

#include <memory>

/// The rows of the page list as a grid shows them. Values are read when they are painted.
class PageListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// Columns of the statements of the list.
    enum Column : int {
        ID,
        Project,
        PageNumber,
        PageTitle,
        PageStatus,
        ScreenShotFilePath,
        ProjectName,
        Date,
        columns
    };

    using QAbstractTableModel::QAbstractTableModel;

    /// Null before the first rows.
    EditableRecordset *rows() const { return m_rows.get(); }
    void setRows(std::unique_ptr<EditableRecordset> rows);
    void append(const std::vector<std::int64_t> &ids);

    /// Deletes the row that the cursor stands on from the table; throws RunTimeError.
    void deleteCurrent();
    void exchange(int row, int other);
    void requery();

    QString text(int row, Column column) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    std::unique_ptr<EditableRecordset> m_rows;
};
