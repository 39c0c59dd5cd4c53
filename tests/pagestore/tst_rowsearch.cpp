#include "pagestore/Statements.h"
#include "platform/EditableRecordset.h"
#include "support/TestPages.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>

#include <sqlite3.h>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int patience = 20'000; // milliseconds

class RowSearchTest : public ::testing::Test, protected TestPages
{
protected:
    std::vector<std::int64_t> ids;
    int portions = 0;
    bool finished = false;
    QString failure;

    std::unique_ptr<RowSearch> begin(const QString &statement)
    {
        ids.clear();
        portions = 0;
        finished = false;
        return database.search(state.ConnectionString, statement,
                               {[this](const std::vector<std::int64_t> &found) {
                                    EXPECT_EQ(QThread::currentThread(), qApp->thread());
                                    ids.insert(ids.end(), found.begin(), found.end());
                                    ++portions;
                                },
                                [this] { finished = true; },
                                [this](const RunTimeError &error) { failure = error.description(); }});
    }
    bool runsUntil(const std::function<bool()> &done)
    {
        const QDeadlineTimer limit(patience);
        while (!done() && !limit.hasExpired())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
        return done();
    }
    void addPages(int count)
    {
        const auto batch = pages.beginBatch();
        for (int i = 0; i < count; ++i)
            pages.RunSql(u"PageData"_s, u"insert into PageData(ProjectName, PageNumber, PageTitle) "
                                        "values(\"Demo\", %1, \"Öffne %2\")"_s.arg(count - i)
                                            .arg(i % 2 == 0 ? u"ÄPFEL"_s : u"Birnen"_s));
        batch->commit();
    }
};
} // namespace

TEST_F(RowSearchTest, HandsOutEveryRowInOrderTheFirstOnesEarly)
{
    addPages(1000);
    const auto search = begin(Statements::foundPages(false, u"demo"_s, u"äpfel"_s));
    EXPECT_TRUE(ids.empty()) << "only through the event loop";
    ASSERT_TRUE(runsUntil([this] { return finished; }));
    ASSERT_EQ(ids.size(), 500U);
    EXPECT_EQ(ids.front(), 999); // page number 2
    EXPECT_EQ(ids.back(), 1);
    EXPECT_GT(portions, 1);
    // The rows of a recordset on what was found.
    const auto rows =
        database.open(state.ConnectionString)
            ->openEditable(Statements::foundPages(false, u"demo"_s, u"äpfel"_s), u"PageData"_s, {ids[0]});
    rows->appendRows({ids[1]});
    EXPECT_EQ(rows->recordCount(), 2);
    EXPECT_EQ(rows->valueAt(2, 2).toInt(), 4);
    rows->requery();
    EXPECT_EQ(rows->recordCount(), 500);
}

TEST_F(RowSearchTest, AnAbandonedSearchEndsAtOnceAndSaysNothing)
{
    addPages(1);
    auto search =
        begin(u"select ID from PageData where ID in (with recursive n(i) as (select 1 union all select i+1 "
              "from n) select i from n where i < 0)"_s); // never comes to an end by itself
    EXPECT_FALSE(finished);
    search.reset();
    QCoreApplication::processEvents();
    EXPECT_FALSE(finished);
    EXPECT_TRUE(failure.isEmpty());
}

TEST_F(RowSearchTest, FailuresCarryTheDatabasesOwnWords)
{
    const auto broken = begin(u"select ID from PageData where PageTitle like \"open"_s);
    ASSERT_TRUE(runsUntil([this] { return !failure.isEmpty(); }));
    EXPECT_TRUE(failure.contains(u"Syntax error"_s)) << failure.toStdString();

    failure.clear();
    sqlite3 *other = nullptr;
    sqlite3_open(state.DatabasePath.toUtf8().constData(), &other);
    sqlite3_exec(other, "begin exclusive", nullptr, nullptr, nullptr);
    const auto locked = begin(u"select ID from PageData"_s);
    EXPECT_TRUE(runsUntil([this] { return failure.contains(u"locked"_s); }));
    sqlite3_close(other);
    EXPECT_FALSE(finished);
}
