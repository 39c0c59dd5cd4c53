#include "pagestore/clsPageData1.h"

#include "pagestore/Statements.h"

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
QString primary()
{
    return u"Primary"_s;
}
} // namespace

clsPageData1::clsPageData1(PageDatabase &database, Module1 &state) : m_state(state)
{
    const bool jump = m_state.EditorJumpToPage;
    adoPrimaryRS = database.openPages(statement());
    if (jump)
        standOnPage(m_state.EditorPageId);
    countRows();
    OpenRecordCount = m_state.EditorRecordCount;
    adoPrimaryRS->setMoveHandler([this] { Q_EMIT MoveComplete(); });
}

/// The jump is asked for before the project's pages; only the flag that decides is taken back.
QString clsPageData1::statement()
{
    const QString &project = m_state.AppOptions.ProjectName;
    if (std::exchange(m_state.EditorJumpToPage, false))
        return Statements::editedProjectPages(project);
    if (std::exchange(m_state.EditorProjectPages, false))
        return Statements::editedPagesNotDeleted(project);
    return Statements::editedPages();
}

/// Behind the last row when there is no such page.
void clsPageData1::standOnPage(std::int32_t id)
{
    if (adoPrimaryRS->recordCount() == 0)
        return;
    const int position = adoPrimaryRS->positionOf(id);
    if (position > 0) {
        adoPrimaryRS->moveTo(position);
        return;
    }
    adoPrimaryRS->moveLast();
    adoPrimaryRS->moveNext();
}

void clsPageData1::countRows()
{
    m_state.EditorRecordCount = adoPrimaryRS->recordCount();
}

EditableRecordset *clsPageData1::dataMember(const QString &name) const
{
    return name == primary() ? adoPrimaryRS.get() : nullptr;
}

bool clsPageData1::EditingRecord() const
{
    return adoPrimaryRS->editMode() != EditableRecordset::EditMode::None;
}

std::int32_t clsPageData1::AbsolutePosition() const
{
    return adoPrimaryRS->position();
}

void clsPageData1::AddNew()
{
    adoPrimaryRS->addNew();
    countRows();
}

void clsPageData1::Delete()
{
    adoPrimaryRS->deleteCurrent();
    countRows();
    MoveNext();
}

void clsPageData1::Requery()
{
    adoPrimaryRS->requery();
    countRows();
    Q_EMIT DataMemberChanged(primary());
}

void clsPageData1::Update()
{
    adoPrimaryRS->update();
    if (adoPrimaryRS->editMode() == EditableRecordset::EditMode::Add)
        MoveLast();
    countRows();
}

void clsPageData1::Cancel()
{
    adoPrimaryRS->cancelUpdate();
    if (adoPrimaryRS->editMode() == EditableRecordset::EditMode::Add)
        MoveFirst();
    countRows();
}

void clsPageData1::MoveFirst()
{
    adoPrimaryRS->moveFirst();
}

void clsPageData1::MoveLast()
{
    adoPrimaryRS->moveLast();
}

void clsPageData1::MoveNext()
{
    if (!adoPrimaryRS->atEnd())
        adoPrimaryRS->moveNext();
    if (adoPrimaryRS->atEnd() && adoPrimaryRS->recordCount() > 0) {
        Q_EMIT endReached();
        adoPrimaryRS->moveLast();
    }
}

void clsPageData1::MovePrevious()
{
    if (!adoPrimaryRS->atStart())
        adoPrimaryRS->movePrevious();
    if (adoPrimaryRS->atStart() && adoPrimaryRS->recordCount() > 0) {
        Q_EMIT endReached();
        adoPrimaryRS->moveFirst();
    }
}
