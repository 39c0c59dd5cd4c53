#include "platform/EditableRecordset.h"
#include "platform/ShortDate.h"
#include "support/TestPages.h"

#include <QDate>

using namespace Qt::Literals::StringLiterals;

namespace
{
using EditMode = EditableRecordset::EditMode;

/// Pages 3, 1 and 2 of the project "Demo" with IDs 1 to 3, titled "c", "a" and "b".
class EditableRecordsetTest : public ::testing::Test, protected TestPages
{
protected:
    std::unique_ptr<EditableRecordset> rows;
    int moves = 0;

    EditableRecordsetTest()
    {
        for (const QString &page : {u"3, \"c\""_s, u"1, \"a\""_s, u"2, \"b\""_s})
            execute(u"insert into PageData(ProjectName, [Date], PageNumber, PageTitle) "
                    "values(\"Demo\", #03/21/2026#, "_s +
                    page + u')');
        open(u"select ID, PageTitle, PageNumber, [Date], Layout, PageSummary from PageData"_s);
    }
    void open(const QString &statement)
    {
        rows = database.open(state.ConnectionString)->openEditable(statement, u"PageData"_s);
        rows->setMoveHandler([this] { ++moves; });
    }
    QString title() const { return rows->field(u"PageTitle"_s).toString(); }
    QString titles()
    {
        QString all;
        for (int position = 1; position <= rows->recordCount(); ++position)
            all += rows->valueAt(position, 1).toString();
        return all;
    }
    QString stored(const QString &column, int id)
    {
        return value(u"select [%1] from PageData where ID=%2"_s.arg(column).arg(id));
    }
    template <typename Action>
    static int failureOf(Action &&action)
    {
        try {
            action();
            return 0;
        } catch (const RunTimeError &error) {
            EXPECT_FALSE(error.description().isEmpty());
            return error.number();
        }
    }
};
} // namespace

TEST_F(EditableRecordsetTest, RowsComeInTheOrderOfIDUnlessTheStatementAsksForAnother)
{
    EXPECT_EQ(titles(), u"cab"_s);
    open(u"select ID, PageTitle from PageData where ProjectName=\"demo\" Order by ProjectName, PageNumber"_s);
    EXPECT_EQ(titles(), u"abc"_s);
    EXPECT_EQ(rows->positionOf(1), 3);
    EXPECT_EQ(rows->positionOf(99), 0);
    EXPECT_EQ(failureOf([this] { open(u"select PageTitle from PageData"_s); }), 3265) << "no ID";
}

TEST_F(EditableRecordsetTest, MovesKnowBothEnds)
{
    EXPECT_EQ(rows->position(), 1);
    rows->movePrevious();
    EXPECT_TRUE(rows->atStart());
    EXPECT_EQ(rows->position(), EditableRecordset::BeforeFirst);
    EXPECT_EQ(failureOf([this] { rows->movePrevious(); }), 3021);
    EXPECT_EQ(failureOf([this] { title(); }), 3021);
    rows->moveNext();
    EXPECT_EQ(title(), u"c"_s);
    rows->moveLast();
    EXPECT_EQ(title(), u"b"_s);
    rows->moveNext();
    EXPECT_TRUE(rows->atEnd());
    EXPECT_EQ(rows->position(), EditableRecordset::BehindLast);
    EXPECT_EQ(failureOf([this] { rows->moveNext(); }), 3021);
    rows->moveTo(2);
    EXPECT_EQ(title(), u"a"_s);
    EXPECT_EQ(failureOf([this] { rows->moveTo(4); }), 3021);
    EXPECT_EQ(moves, 5);
    execute(u"delete from PageData"_s);
    rows->requery();
    EXPECT_TRUE(rows->atStart() && rows->atEnd());
    EXPECT_EQ(rows->position(), EditableRecordset::NoRow);
    EXPECT_EQ(failureOf([this] { rows->moveFirst(); }), 3021);
}

TEST_F(EditableRecordsetTest, AChangeIsPendingUntilItIsWrittenOrDropped)
{
    rows->setField(u"pagetitle"_s, u"say \"it's\" 100% \U0001F4F7"_s);
    rows->setField(u"Layout"_s, u"2"_s);
    rows->setField(u"Date"_s, u"1/2/2003"_s);
    EXPECT_EQ(rows->editMode(), EditMode::InProgress);
    EXPECT_EQ(title(), u"say \"it's\" 100% \U0001F4F7"_s);
    EXPECT_EQ(stored(u"PageTitle"_s, 1), u"c"_s);
    rows->update();
    EXPECT_EQ(rows->editMode(), EditMode::None);
    EXPECT_EQ(stored(u"PageTitle"_s, 1), u"say \"it's\" 100% \U0001F4F7"_s);
    EXPECT_EQ(stored(u"Date"_s, 1), u"2003-01-02"_s);
    EXPECT_EQ(rows->field(u"Date"_s), QVariant(QDate(2003, 1, 2)));

    rows->setField(u"Layout"_s, u""_s);
    rows->setField(u"PageTitle"_s, u""_s);
    rows->moveNext(); // writes
    EXPECT_EQ(value(u"select typeof(Layout) || typeof(PageTitle) from PageData where ID=1"_s), u"nulltext"_s);

    rows->setField(u"PageTitle"_s, u"lost"_s);
    rows->cancelUpdate();
    EXPECT_EQ(title(), u"a"_s);
    EXPECT_EQ(rows->position(), 2);
}

TEST_F(EditableRecordsetTest, AValueThatDoesNotSuitItsColumnKeepsTheCursorAndTheChange)
{
    const auto refused = [this](const QString &column, const QString &text) {
        rows->setField(column, text);
        EXPECT_EQ(failureOf([this] { rows->moveNext(); }), -2147217887) << text.toStdString();
        EXPECT_EQ(rows->position(), 1);
        EXPECT_EQ(rows->field(column).toString(), text);
        rows->cancelUpdate();
    };
    refused(u"PageNumber"_s, u"twelve"_s);
    refused(u"PageNumber"_s, u"2147483648"_s);
    refused(u"Date"_s, u"13/45/2003"_s);
    EXPECT_EQ(stored(u"PageNumber"_s, 1), u"3"_s);
}

TEST_F(EditableRecordsetTest, WhatSomebodyElseHasChangedIsNotWrittenOver)
{
    EXPECT_EQ(title(), u"c"_s); // read now
    execute(u"update PageData set PageTitle=\"theirs\", Layout=1 where ID=1"_s);
    rows->setField(u"PageTitle"_s, u"ours"_s);
    EXPECT_EQ(failureOf([this] { rows->update(); }), -2147217864);
    EXPECT_EQ(stored(u"PageTitle"_s, 1), u"theirs"_s);
    rows->cancelUpdate();
    rows->setField(u"PageNumber"_s, 30); // another field of the same row does no harm
    rows->update();
    EXPECT_EQ(stored(u"PageNumber"_s, 1), u"30"_s);

    rows->moveTo(2);
    rows->setField(u"PageTitle"_s, u"ours"_s);
    execute(u"delete from PageData where ID=2"_s);
    EXPECT_EQ(failureOf([this] { rows->update(); }), -2147217864);
    EXPECT_EQ(title(), u"ours"_s); // still there to be copied
    EXPECT_EQ(failureOf([this] { rows->requery(); }), 3219);
    rows->cancelUpdate();
    rows->requery();
    EXPECT_EQ(rows->recordCount(), 2);
    EXPECT_EQ(title(), u"theirs"_s);
}

TEST_F(EditableRecordsetTest, ANewRowComesLastAndGoesWithoutATrace)
{
    rows->moveTo(2);
    rows->addNew();
    EXPECT_EQ(rows->editMode(), EditMode::Add);
    EXPECT_EQ(rows->recordCount(), 4);
    EXPECT_EQ(rows->position(), 4);
    EXPECT_TRUE(rows->field(u"PageTitle"_s).isNull());
    rows->cancelUpdate();
    EXPECT_EQ(title(), u"a"_s);
    EXPECT_EQ(rows->recordCount(), 3);

    rows->addNew();
    rows->setField(u"PageTitle"_s, u"new"_s);
    rows->setField(u"PageNumber"_s, u"99999999999"_s);
    EXPECT_EQ(failureOf([this] { rows->update(); }), -2147217887);
    EXPECT_EQ(rows->editMode(), EditMode::Add);
    rows->setField(u"PageNumber"_s, u"4"_s);
    rows->update();
    EXPECT_EQ(rows->position(), 4);
    EXPECT_EQ(rows->field(u"ID"_s).toInt(), 4);
    EXPECT_EQ(stored(u"PageTitle"_s, 4), u"new"_s);
}

TEST_F(EditableRecordsetTest, BehindADeletedRowTheNeighboursFollow)
{
    rows->moveTo(2);
    rows->deleteCurrent();
    EXPECT_EQ(value(u"select count(*) from PageData"_s), u"2"_s);
    EXPECT_EQ(rows->recordCount(), 2);
    EXPECT_FALSE(rows->atEnd());
    EXPECT_EQ(failureOf([this] { title(); }), 3021);
    EXPECT_EQ(failureOf([this] { rows->deleteCurrent(); }), 3021);
    rows->movePrevious();
    EXPECT_EQ(title(), u"c"_s);
    rows->deleteCurrent();
    rows->moveNext();
    EXPECT_EQ(title(), u"b"_s);
    rows->deleteCurrent();
    rows->moveNext();
    EXPECT_TRUE(rows->atEnd());
}

TEST(ShortDate, KnowsTheCalendarAndNothingElse)
{
    EXPECT_EQ(ShortDate::toText(QDate(2026, 3, 1)), u"03/01/2026"_s);
    EXPECT_EQ(ShortDate::fromText(u" 2/29/2024 "_s), QDate(2024, 2, 29));
    EXPECT_EQ(ShortDate::fromText(u"1/1/29"_s), QDate(2029, 1, 1));
    EXPECT_EQ(ShortDate::fromText(u"1/1/30"_s), QDate(1930, 1, 1));
    for (const QString &text : {u"13/45/2003"_s, u"2/29/2023"_s, u"12/31/203"_s, u"2003-12-31"_s, u"1/1"_s,
                                u""_s, u"12:30"_s, u"1/1/2003;"_s})
        EXPECT_EQ(ShortDate::fromText(text), std::nullopt) << text.toStdString();
}
