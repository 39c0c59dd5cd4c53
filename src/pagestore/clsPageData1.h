#pragma once

#include "pagestore/PageDatabase.h"

#include <QObject>

#include <memory>

/// The record source of the page editor: the pages that its opener has asked for in Module1, and the moves
/// and changes that the editor's buttons call. Keeps Module1::EditorRecordCount up to date.
///
/// The constructor opens the rows and takes the opener's flags back. Every failure throws RunTimeError; the
/// rows stand as they stood then. `state` must outlive it.
class clsPageData1 : public QObject
{
    Q_OBJECT

public:
    clsPageData1(PageDatabase &database, Module1 &state);

    /// Rows right after opening.
    std::int32_t OpenRecordCount = 0;

    /// A change is pending.
    bool EditingRecord() const;

    /// From 1; EditableRecordset::Place where there is no row.
    std::int32_t AbsolutePosition() const;

    void AddNew();
    void Delete();
    void Requery();
    void Update();
    void Cancel();
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();

    /// The rows by the name of their data member, "Primary"; null for any other name.
    EditableRecordset *dataMember(const QString &name) const;

Q_SIGNALS:
    /// After every completed move.
    void MoveComplete();
    /// The rows are others: what is bound to them reads them again.
    void DataMemberChanged(const QString &name);
    /// A move would have left the rows.
    void endReached();

private:
    QString statement();
    void standOnPage(std::int32_t id);
    void countRows();

    Module1 &m_state;
    std::unique_ptr<EditableRecordset> adoPrimaryRS;
};
