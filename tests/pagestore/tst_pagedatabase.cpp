#include "pagestore/Statements.h"
#include "support/TestPages.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
class PageDatabaseTest : public testing::Test
{
protected:
    TestPages t;

    QString count() { return t.value(u"select count(*) from PageData"_s); }
    void loseDatabase() { QFile::remove(t.state.DatabasePath); }
    void expectLastMessage(const QString &text) { EXPECT_EQ(t.prompter.asked.back().text, text); }
};

TEST(Statements, haveTheirTexts)
{
    using namespace Statements;
    const QString p = u"P"_s;
    const std::pair<QString, QString> rows[] = {
        {projectNames(), u"select distinct ProjectName from PageData"_s},
        {projectDirectory(p), u"select top 1 ProjectDirectory from PageData where ProjectName=\"P\""_s},
        {firstImage(p),
         u"select top 1 ScreenShotFilePath from PageData where ProjectName=\"P\" and PageStatus =\"OK\""_s},
        {highestPageNumber(p),
         u"select PageNumber from PageData where ProjectName=\"P\" order by PageNumber desc"_s},
        {pageCount(p), u"select count(*) from PageData where ProjectName =\"P\""_s},
        {pageExists(12), u"select count(*) from PageData where [ID]=12"_s},
        {insertCapturedPage({p, u"/b/P/sh0001.bmp"_s, u"OK"_s, 3, QDate(2026, 3, 1), u"/b/P"_s}),
         u"Insert into PageData(ProjectName,ScreenShotFilePath,PageStatus, PageNumber, [Date], "
         u"ProjectDirectory)"
         " values(\"P\",\"/b/P/sh0001.bmp\",\"OK\",3, #03/01/2026#,\"/b/P\")"_s},
        {insertCopiedImage(p, u"/b/P/a.bmp"_s, 4, QDate(2026, 3, 1)),
         u"Insert into PageData(ProjectName,ScreenShotFilePath,PageStatus, PageNumber, [Date], Layout, "
         u"OrderInPage )"
         " values(\"P\",\"/b/P/a.bmp\",\"OK\",4, #03-01-2026#, 0, 0 )"_s},
        {restartProject(p), u"delete from PageData where ProjectName=\"P\""_s},
        {deleteProject(p), u"delete from PageData where ProjectName = \"P\""_s},
        {deleteAllProjects(), u"delete from PageData where 1 = 1 "_s},
        {markImageDeleted(u"/a.bmp"_s),
         u"update PageData set [PageStatus] =\"Deleted\" where [ScreenShotFilePath]=\"/a.bmp\""_s},
        {setHtmlPath(5, u"/a\"b.htm"_s), u"update PageData set HTMLFilePath=\"/a\"\"b.htm\" where [ID]=5"_s},
        {htmlDocumentPages(p),
         u"select PageTitle,SubTitle,ScreenShotFilePath,PageSummary,Note1,Note2, Layout, PageNumber, [ID], "
         u"HTMLFilePath"
         " from PageData where ProjectName=\"P\" and PageStatus =\"OK\" order by PageNumber "_s},
        {wordDocumentPages(p),
         u"select PageTitle,SubTitle,ScreenShotFilePath,PageSummary,Note1,Note2, Layout, PageNumber, [ID], "
         u"WordFilePath"
         " from PageData where ProjectName=\"P\" and PageStatus =\"OK\" order by PageNumber "_s},
    };
    for (const auto &[text, expected] : rows)
        EXPECT_EQ(text, expected);
}

TEST_F(PageDatabaseTest, rowsAreInsertedChangedAndDeleted)
{
    const QString table = QString::fromUtf16(Statements::pageTable);
    t.pages.RunSql(table, Statements::insertCapturedPage(
                              {u"Demo"_s, u"/d/sh0001.bmp"_s, u"OK"_s, 1, QDate(2026, 12, 31), u"/d"_s}));
    t.pages.RunSql(table, Statements::insertCopiedImage(u"Demo"_s, u"/d/B.bmp"_s, 2, QDate(2026, 2, 28)));
    t.pages.RunSql(table, Statements::insertCopiedImage(u"Other"_s, u"/d/c.bmp"_s, 9, QDate(2026, 2, 28)));
    EXPECT_EQ(t.value(u"select [Date] from PageData where Layout is null"_s), u"2026-12-31"_s);
    EXPECT_EQ(t.value(u"select [Date] from PageData where [ID]=2"_s), u"2026-02-28"_s);
    t.pages.RunSql(table, Statements::markImageDeleted(u"/d/b.bmp"_s));
    t.pages.RunSql(table, Statements::markImageDeleted(u"/d/sh0001.bmp"_s));
    EXPECT_EQ(t.value(u"select [ID] from PageData where PageStatus=\"deleted\""_s), u"1"_s)
        << "paths: letter case counts";
    t.pages.RunSql(u"no such table"_s, Statements::setHtmlPath(2, u"/d/b.htm"_s));
    EXPECT_EQ(t.value(u"select HTMLFilePath from PageData where [ID]=2"_s), u"/d/b.htm"_s)
        << "the step before has failed";
    EXPECT_EQ(t.pages.LookupField(u"PageNumber"_s, Statements::highestPageNumber(u"Demo"_s), true), u"2"_s);
    EXPECT_EQ(t.pages.QueryLong(Statements::pageExists(3)), 1);
    t.pages.RunSql(table, Statements::deleteProject(u"DEMO"_s));
    EXPECT_EQ(count(), u"1"_s);
    t.pages.RunSql(table, u"delete from PageData where"_s);
    EXPECT_EQ(count(), u"1"_s) << "a failure changes nothing and says nothing";
    loseDatabase();
    t.pages.RunSql(table, Statements::deleteAllProjects());
    EXPECT_FALSE(QFile::exists(t.state.DatabasePath));
}

TEST_F(PageDatabaseTest, lookingAFieldUpTellsWhyItIsEmpty)
{
    const QString query = u"select top 1 [Date], Note1, PageTitle from PageData"_s;
    EXPECT_EQ(t.pages.LookupField(u"Note1"_s, query, false), QString());
    t.prompter.expectTell(Question::NoPageFound);
    EXPECT_EQ(t.pages.LookupField(u"Note1"_s, query, true), QString());
    EXPECT_EQ(t.prompter.asked.back().icon, Icon::Information);
    t.execute(u"insert into PageData([Date], PageTitle) values(#01/02/2026#, \" First \")"_s);
    t.execute(u"insert into PageData([Date], PageTitle) values(#01/03/2026#, \"Second\")"_s);
    EXPECT_EQ(t.pages.LookupField(u"PageTitle"_s, query, true), u" First "_s);
    EXPECT_EQ(t.pages.LookupField(u"Date"_s, query, true), u"01/02/2026"_s);

    const QString reason = u"Database may be opened exclusively by an Administrator in Microsoft Access. "
                           "Ask an Administrator to close Microsoft Access before trying again. ADO msg: "_s;
    t.prompter.expectTell(Question::DatabaseUnreachable);
    EXPECT_EQ(t.pages.LookupField(u"Note1"_s, query, false), QString());
    expectLastMessage(reason + u"Invalid use of Null(94)"_s);
    loseDatabase();
    t.prompter.expectTell(Question::DatabaseUnreachable);
    EXPECT_EQ(t.pages.LookupField(u"Note1"_s, query, true), QString());
    expectLastMessage(reason + u"Cannot use the database file \""_s + t.state.DatabasePath +
                      u"\": No such file or directory(-2147467259)"_s);
}

TEST_F(PageDatabaseTest, aNumberIsNothingOnAnyFailure)
{
    EXPECT_EQ(t.pages.QueryLong(u"select 2147483647"_s), 2147483647);
    EXPECT_EQ(t.pages.QueryLong(u"select 2.5"_s), 2);
    EXPECT_EQ(t.pages.QueryLong(u"select \"17\""_s), 17);
    EXPECT_EQ(t.pages.QueryLong(u"select 2147483648"_s), 0);
    EXPECT_EQ(t.pages.QueryLong(u"select \"many\""_s), 0);
    EXPECT_EQ(t.pages.QueryLong(u"select null"_s), 0);
    EXPECT_EQ(t.pages.QueryLong(u"select PageNumber from PageData"_s), 0);
    loseDatabase();
    EXPECT_EQ(t.pages.QueryLong(u"select 1"_s), 0);
}

TEST_F(PageDatabaseTest, listsAreFilledInTheOrderOfTheQuery)
{
    QStringList list{u"old"_s};
    t.execute(u"insert into PageData(ProjectName) values(\"b\")"_s);
    t.execute(u"insert into PageData(ProjectName) values(\"A\")"_s);
    t.execute(u"insert into PageData(PageStatus) values(\"Deleted\")"_s);
    t.pages.FillListFromQuery(u"select ProjectName from PageData order by [ID]"_s, list);
    EXPECT_EQ(list, (QStringList{u"b"_s, u"A"_s, u""_s}));
    loseDatabase();
    t.prompter.expectTell(Question::DatabaseListFailed);
    t.pages.FillListFromQuery(Statements::projectNames(), list);
    expectLastMessage(u"Database is opened by Microsoft Access or another application. Error:-2147467259"_s);
    EXPECT_TRUE(list.isEmpty());
}

TEST(ListContains, comparesTrimmedTexts)
{
    const QStringList list{u" Demo "_s, u"two"_s};
    EXPECT_TRUE(ListContains(list, u"Demo  "_s));
    EXPECT_TRUE(ListContains(list, u" "_s)) << "an empty name counts as contained";
    EXPECT_FALSE(ListContains(list, u"demo"_s));
    EXPECT_FALSE(ListContains(list, u"Dem"_s));
}
} // namespace
