#include "pagestore/clsPageData1.h"
#include "support/TestPages.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
/// Three pages of "Demo" (IDs 1 to 3), the second one deleted, and one of "Other" (4).
class PageDataTest : public ::testing::Test, protected TestPages
{
protected:
    std::unique_ptr<clsPageData1> source;
    int moves = 0;
    int ends = 0;

    PageDataTest()
    {
        for (const QString &page : {u"\"Demo\", \"OK\", \"one\""_s, u"\"Demo\", \"Deleted\", \"two\""_s,
                                    u"\"Demo\", \"Hold\", \"three\""_s, u"\"Other\", \"OK\", \"four\""_s})
            execute(u"insert into PageData(ProjectName, PageStatus, PageTitle) values("_s + page + u')');
    }
    void open()
    {
        source = std::make_unique<clsPageData1>(pages, state);
        QObject::connect(source.get(), &clsPageData1::MoveComplete, [this] { ++moves; });
        QObject::connect(source.get(), &clsPageData1::endReached, [this] { ++ends; });
    }
    QString title() const { return source->dataMember(u"Primary"_s)->field(u"PageTitle"_s).toString(); }
};
} // namespace

TEST_F(PageDataTest, TheJumpComesBeforeTheProjectsPagesAndEachFlagIsTakenBackOnce)
{
    state.EditorJumpToPage = state.EditorProjectPages = true;
    state.EditorPageId = 3;
    open();
    EXPECT_EQ(title(), u"three"_s);
    EXPECT_EQ(source->OpenRecordCount, 3);
    EXPECT_FALSE(state.EditorJumpToPage);
    EXPECT_TRUE(state.EditorProjectPages);

    open(); // what is left of the flags
    EXPECT_EQ(source->OpenRecordCount, 2);
    EXPECT_EQ(title(), u"one"_s);
    EXPECT_FALSE(state.EditorProjectPages);

    open();
    EXPECT_EQ(state.EditorRecordCount, 4);
    EXPECT_FALSE(source->dataMember(u"Secondary"_s));
}

TEST_F(PageDataTest, APageThatIsNotThereLeavesTheEditorBehindTheLast)
{
    state.EditorJumpToPage = true;
    state.EditorPageId = -1;
    open();
    EXPECT_EQ(source->AbsolutePosition(), EditableRecordset::BehindLast);
    source->MoveNext();
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(title(), u"three"_s);

    state.EditorJumpToPage = true;
    state.AppOptions.ProjectName = u"nothing"_s;
    open();
    EXPECT_EQ(source->OpenRecordCount, 0);
    source->MoveNext();
    source->MovePrevious();
    EXPECT_EQ(ends, 1);
    EXPECT_THROW(source->MoveFirst(), RunTimeError);
}

TEST_F(PageDataTest, MovesStayOnTheRows)
{
    open();
    source->MovePrevious();
    EXPECT_EQ(title(), u"one"_s);
    EXPECT_EQ(ends, 1);
    source->MoveLast();
    source->MoveNext();
    EXPECT_EQ(title(), u"four"_s);
    EXPECT_EQ(ends, 2);
    EXPECT_EQ(moves, 5); // two moves of each that came back
}

TEST_F(PageDataTest, CountsWhatIsAddedSavedAndDeleted)
{
    open();
    source->AddNew();
    EXPECT_EQ(state.EditorRecordCount, 5);
    EXPECT_TRUE(source->EditingRecord());
    source->Cancel();
    EXPECT_EQ(state.EditorRecordCount, 4);
    EXPECT_FALSE(source->EditingRecord());

    source->AddNew();
    source->dataMember(u"Primary"_s)->setField(u"PageTitle"_s, u"five"_s);
    source->Update();
    EXPECT_EQ(state.EditorRecordCount, 5);
    EXPECT_EQ(source->OpenRecordCount, 4);
    source->Delete();
    EXPECT_EQ(title(), u"four"_s);
    EXPECT_EQ(state.EditorRecordCount, 4);

    execute(u"delete from PageData where ProjectName=\"Demo\""_s);
    int changed = 0;
    QObject::connect(source.get(), &clsPageData1::DataMemberChanged, [&changed] { ++changed; });
    source->Requery();
    EXPECT_EQ(state.EditorRecordCount, 1);
    EXPECT_EQ(changed, 1);
    source->Delete();
    EXPECT_EQ(state.EditorRecordCount, 0);
    EXPECT_EQ(source->AbsolutePosition(), EditableRecordset::NoRow);
}
