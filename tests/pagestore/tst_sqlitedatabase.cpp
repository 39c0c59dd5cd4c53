#include "platform/RunTimeError.h"
#include "support/TestPages.h"

#include <QDate>

#include <sqlite3.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace
{
struct Failure {
    int number = 0; ///< 0: none
    QString description;
};

template <typename Action>
Failure failureOf(Action &&action)
{
    try {
        action();
        return {};
    } catch (const RunTimeError &error) {
        return {error.number(), error.description()};
    }
}

/// Gives up root's right to write everything.
class OrdinaryUser
{
public:
    OrdinaryUser() : m_changed(geteuid() == 0 && seteuid(65534) == 0) {}
    ~OrdinaryUser() { EXPECT_TRUE(!m_changed || seteuid(0) == 0); }

private:
    bool m_changed;
};

class SqliteDatabaseTest : public testing::Test
{
protected:
    TestPages t;

    std::unique_ptr<Recordset> select(const QString &statement)
    {
        return t.database.open(t.state.ConnectionString)->openRecordset(statement);
    }
    /// A connection of another program.
    using SqliteHandle = std::unique_ptr<sqlite3, decltype(&sqlite3_close)>;
    SqliteHandle openElsewhere() const
    {
        sqlite3 *opened = nullptr;
        sqlite3_open(t.state.DatabasePath.toUtf8().constData(), &opened);
        return {opened, sqlite3_close};
    }
    int count() { return t.value(u"select count(*) from PageData"_s).toInt(); }

    /// A database of about 40 pages of 4,096 bytes.
    void fill()
    {
        for (int number = 0; number < 40; ++number)
            t.execute(u"insert into PageData(ProjectName, PageSummary) values(\"Demo\",\"%1\")"_s.arg(
                QString(3500, u'x')));
    }
    template <typename Action>
    void expectFailure(const QString &reason, Action &&action)
    {
        const Failure failure = failureOf(action);
        EXPECT_EQ(failure.number, -2147467259);
        EXPECT_TRUE(failure.description.contains(u'"' + t.state.DatabasePath + u"\": "_s + reason))
            << qPrintable(failure.description);
    }
    void expectNotToOpen(const QString &reason)
    {
        expectFailure(reason, [this] { t.database.open(t.state.ConnectionString); });
    }
};

TEST_F(SqliteDatabaseTest, fieldsHaveTheTypesOfTheirColumns)
{
    t.execute(u"insert into PageData(ProjectName, PageNumber, [Date], Note1) "
              "values(\"Demo\", 7, #03/21/2026#, \"12\")"_s);
    t.execute(u"insert into PageData(PageNumber, [Date], Note1) values(8, \"soon\", 1.5)"_s);
    const auto rows = select(u"select * , 0.5 from PageData"_s);
    EXPECT_EQ(rows->recordCount(), 2);
    EXPECT_FALSE(rows->atStart() || rows->atEnd());
    EXPECT_EQ(rows->field(u"id"_s), QVariant(1LL));
    EXPECT_EQ(rows->field(u"PAGENUMBER"_s), QVariant(7LL));
    EXPECT_EQ(rows->field(u"Date"_s), QVariant(QDate(2026, 3, 21)));
    EXPECT_EQ(rows->field(u"Note1"_s), QVariant(u"12"_s));
    EXPECT_EQ(rows->field(22), QVariant(0.5));
    EXPECT_TRUE(rows->field(u"Layout"_s).isNull());
    rows->moveNext();
    EXPECT_EQ(rows->field(u"Date"_s), QVariant(u"soon"_s)) << "no date, but not lost either";
    EXPECT_EQ(rows->field(u"Note1"_s), QVariant(u"1.5"_s));
    EXPECT_EQ(failureOf([&] { rows->field(u"Nonsense"_s); }).number, 3265);
    EXPECT_EQ(failureOf([&] { rows->field(23); }).number, 3265);
    rows->moveNext();
    EXPECT_TRUE(rows->atEnd());
    EXPECT_EQ(failureOf([&] { rows->field(0); }).number, 3021);
    EXPECT_EQ(failureOf([&] { rows->moveNext(); }).number, 3021);
    rows->moveFirst();
    EXPECT_EQ(rows->field(0), QVariant(1LL));
    t.execute(u"delete from PageData where [ID]=1"_s);
    EXPECT_EQ(rows->recordCount(), 2) << "rows stay as they were read";
    rows->requery();
    EXPECT_EQ(rows->recordCount(), 1);
    EXPECT_EQ(rows->field(0), QVariant(2LL));
    t.execute(u"delete from PageData"_s);
    rows->requery();
    EXPECT_TRUE(rows->atStart() && rows->atEnd());
    EXPECT_EQ(failureOf([&] { rows->moveFirst(); }).number, 3021);
}

TEST_F(SqliteDatabaseTest, textOfEveryKindRoundTrips)
{
    for (const QString &text :
         {u"a\r\nb\nc"_s, u"say \"it\" it's ''"_s, u"[Date] #01/01/2026#"_s, u"100% _ ?1 :x @y; drop"_s,
          u"Ж 漢字 😀 é"_s, u" "_s, u"x"_s + QChar(0) + u"y"_s}) {
        t.execute(u"delete from PageData"_s);
        const QString spliced = QString(text).replace(u'"', u"\"\""_s);
        t.execute(u"insert into PageData(Note1) values(\""_s + spliced + u"\")"_s);
        EXPECT_EQ(t.value(u"select Note1 from PageData"_s), text);
    }
}

TEST_F(SqliteDatabaseTest, comparesAsTheDialectDoes)
{
    t.execute(u"insert into PageData(ProjectName, PageTitle, ScreenShotFilePath) "
              "values(\"Demo\", \"Größe ÉTÉ Дом 5%\", \"/A/b.bmp\")"_s);
    const auto matches = [this](const QString &condition) {
        return t.value(u"select count(*) from PageData where "_s + condition).toInt() == 1;
    };
    for (const QString &pattern : {u"%été дОМ%"_s, u"GRÖ_e%"_s, u"%5%"_s, u"%%"_s, u"%О%5_"_s})
        EXPECT_TRUE(matches(u"PageTitle like \"%1\""_s.arg(pattern))) << qPrintable(pattern);
    for (const QString &pattern : {u"größe"_s, u"_größe%"_s, u"%5__"_s, u"%ete%"_s, u""_s})
        EXPECT_FALSE(matches(u"PageTitle like \"%1\""_s.arg(pattern))) << qPrintable(pattern);
    EXPECT_TRUE(matches(u"(Note1 like \"%\") is null"_s));
    // A text of ASCII characters alone is searched many at a time.
    t.execute(u"update PageData set PageTitle = \"Open the FIRST [window] of a long list and press OK 5\""_s);
    for (const QString &pattern : {u"%open%"_s, u"%First [%"_s, u"%first%ok%"_s, u"%ress ok 5%"_s})
        EXPECT_TRUE(matches(u"PageTitle like \"%1\""_s.arg(pattern))) << qPrintable(pattern);
    EXPECT_FALSE(matches(u"PageTitle like \"%first {%\""_s));
    // Beyond the last character, as only another program's database can hold it.
    EXPECT_TRUE(matches(u"cast(x'61f4bfbfbf62' as text) like \"a\ufffdb\""_s));
    EXPECT_TRUE(matches(u"ProjectName=\"DEMO\""_s));
    EXPECT_FALSE(matches(u"ScreenShotFilePath=\"/a/b.bmp\""_s));
}

TEST_F(SqliteDatabaseTest, wrongStatementsHaveTheDialectsNumbers)
{
    const auto number = [this](const QString &statement) {
        return failureOf([&] { t.database.open(t.state.ConnectionString)->execute(statement); }).number;
    };
    EXPECT_EQ(number(u"selekt 1"_s), -2147217900);
    EXPECT_EQ(number(QString()), -2147217900);
    EXPECT_EQ(number(u"delete from PageData; delete from PageData"_s), -2147217900);
    EXPECT_EQ(number(u"select Nonsense from PageData"_s), -2147217904);
    EXPECT_EQ(number(u"select [Nonsense] from PageData"_s), -2147217904);
    EXPECT_EQ(number(u"delete from PageData where ID = ?"_s), -2147217904);
    EXPECT_EQ(number(u"delete from Pages"_s), -2147217865);
    t.execute(u"insert into PageData(ID) values(1)"_s);
    EXPECT_EQ(number(u"insert into PageData(ID) values(1)"_s), -2147217873);
}

TEST_F(SqliteDatabaseTest, aFileThatIsMissingForeignOrCutOffSaysSo)
{
    fill();
    TestPages::write(t.state.DatabasePath, TestPages::read(t.state.DatabasePath).first(40000));
    expectNotToOpen(u"it is damaged"_s);
    TestPages::write(t.state.DatabasePath, QByteArray("this is a text file\n").repeated(100));
    expectNotToOpen(u"it is not a database"_s);
    QFile::remove(t.state.DatabasePath);
    expectNotToOpen(u"No such file"_s);
    EXPECT_FALSE(QFile::exists(t.state.DatabasePath));
    TestPages::write(t.state.DatabasePath, QByteArray());
    const Failure otherDatabase = failureOf([this] { select(u"select * from PageData"_s); });
    EXPECT_TRUE(otherDatabase.description.contains(t.state.DatabasePath));
}

TEST_F(SqliteDatabaseTest, damageIsDescribedByTheIntegrityCheck)
{
    fill();
    const QByteArray bytes = TestPages::read(t.state.DatabasePath);
    TestPages::write(t.state.DatabasePath,
                     bytes.first(60000) + QByteArray(40000, 'U') + bytes.sliced(100000));
    const auto table = t.database.open(t.state.ConnectionString)->openTable(u"PageData"_s);
    EXPECT_EQ(failureOf([&] { table->requery(); }).number, 0) << "no row is read before it is asked for";
    expectFailure(u"it is damaged (*** in database main ***"_s, [&] { table->recordCount(); });
}

TEST_F(SqliteDatabaseTest, aLockOfAnotherProgramIsReported)
{
    const SqliteHandle other = openElsewhere();
    ASSERT_EQ(sqlite3_exec(other.get(), "begin exclusive", nullptr, nullptr, nullptr), SQLITE_OK);
    expectNotToOpen(u"another program has locked it"_s);
    sqlite3_exec(other.get(), "rollback", nullptr, nullptr, nullptr);
    EXPECT_EQ(count(), 0);
}

TEST_F(SqliteDatabaseTest, theFileIsOneThatCanBeCopied)
{
    t.execute(u"pragma journal_mode = wal"_s); // as another program may have left it
    EXPECT_EQ(count(), 0);
    EXPECT_EQ(TestPages::read(t.state.DatabasePath).at(18), 1) << "the file's own mark of a rollback journal";
}

TEST_F(SqliteDatabaseTest, aWriteProtectedFileCanBeReadOnly)
{
    t.execute(u"insert into PageData(PageNumber) values(5)"_s);
    QFile::setPermissions(t.folder.path(), QFile::Permissions(0x7755));
    QFile::setPermissions(t.state.DatabasePath, QFile::Permissions(0x4444));
    const OrdinaryUser user;
    EXPECT_EQ(t.value(u"select PageNumber from PageData"_s), u"5"_s);
    expectFailure(u"it is write-protected"_s,
                  [this] { t.database.open(t.state.ConnectionString)->execute(u"delete from PageData"_s); });
}

TEST_F(SqliteDatabaseTest, aBatchIsOneConnectionAndOneTransaction)
{
    SqliteDatabase elsewhere(std::chrono::milliseconds(1));
    const auto seenElsewhere = [&] {
        const auto rows =
            elsewhere.open(t.state.ConnectionString)->openRecordset(u"select * from PageData"_s);
        return rows->recordCount();
    };
    const QString sameFile = u"Data Source="_s + t.folder.path() + u"/./Shotly.mdb"_s;
    std::unique_ptr<Connection> outlives;
    {
        const auto batch = t.database.beginBatch(t.state.ConnectionString);
        t.execute(u"insert into PageData(PageNumber) values(1)"_s);
        outlives = t.database.open(sameFile);
        outlives->execute(u"insert into PageData(PageNumber) values(2)"_s);
        EXPECT_EQ(count(), 2);
        EXPECT_EQ(seenElsewhere(), 0);
        const Failure nested = failureOf([&] { t.database.beginBatch(sameFile); });
        EXPECT_TRUE(nested.description.contains(u"already running"_s));
    }
    EXPECT_EQ(count(), 0) << "taken back without commit";
    auto batch = t.database.beginBatch(t.state.ConnectionString);
    t.execute(u"insert into PageData(PageNumber) values(3)"_s);
    batch->commit();
    EXPECT_EQ(seenElsewhere(), 1);
    outlives->execute(u"insert into PageData(PageNumber) values(4)"_s);
    batch.reset();
    EXPECT_EQ(seenElsewhere(), 2) << "what came after the commit is no part of the batch";
}

TEST_F(SqliteDatabaseTest, aBatchThatCannotBeCommittedIsTakenBack)
{
    const SqliteHandle reader = openElsewhere();
    const auto batch = t.database.beginBatch(t.state.ConnectionString);
    t.execute(u"insert into PageData(PageNumber) values(1)"_s);
    ASSERT_EQ(sqlite3_exec(reader.get(), "begin; select * from PageData", nullptr, nullptr, nullptr),
              SQLITE_OK);
    expectFailure(u"another program has locked it"_s, [&] { batch->commit(); });
    EXPECT_EQ(count(), 0);
}

TEST_F(SqliteDatabaseTest, aBatchThatTheDatabaseTookBackKeepsNothing)
{
    const auto batch = t.database.beginBatch(t.state.ConnectionString);
    t.execute(u"insert into PageData(PageNumber) values(1)"_s);
    const auto connection = t.database.open(t.state.ConnectionString);
    connection->execute(u"pragma max_page_count = 5"_s); // as on a disk that is full
    const QString insert = u"insert into PageData(PageSummary) values(\"%1\")"_s.arg(QString(50000, u'x'));
    expectFailure(u"the disk is full"_s, [&] { connection->execute(insert); });
    const QString takenBack = u"an earlier failure has taken back everything that was written"_s;
    expectFailure(takenBack, [&] { connection->execute(u"insert into PageData(PageNumber) values(2)"_s); });
    expectFailure(takenBack, [&] { batch->commit(); });
    EXPECT_EQ(count(), 0);
}
} // namespace
