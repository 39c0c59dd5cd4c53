#include "pagestore/DatabaseBackup.h"
#include "platform/FileChecks.h"
#include "support/TestPages.h"

#include <QProcess>

#include <atomic>
#include <csignal>
#include <sys/resource.h>
#include <thread>

using namespace Qt::Literals::StringLiterals;

namespace
{
class DatabaseBackupTest : public testing::Test
{
protected:
    TestPages t;
    DatabaseBackup backup{{t.state, t.database, t.prompter}};
    SqliteDatabase other{std::chrono::minutes(1)}; ///< another program at work on the database
    const QString source = t.state.DatabasePath;
    const QString folder = t.folder.path() + u"/backups"_s;
    const QString target = folder + u"/%1 100%2.mdb"_s;
    const QString foreign = t.folder.path() + u"/foreign.mdb"_s; ///< of another database program
    const QByteArray foreignBytes = QByteArray("\0\1\0\0Standard Jet DB", 19).repeated(40000);

    DatabaseBackupTest()
    {
        t.state.FileSystem.createFolder(folder);
        t.write(foreign, foreignBytes);
        sqlite(source, u"with recursive n(i) as (select 1 union all select i + 1 from n where i < 40) "
                       "insert into PageData(PageSummary) select hex(zeroblob(1750)) from n"_s);
    }
    /// Runs statements in the program of that name.
    static QString sqlite(const QString &path, const QString &statements)
    {
        QProcess program;
        program.start(u"sqlite3"_s, {path, statements});
        EXPECT_TRUE(program.waitForFinished());
        return QString::fromUtf8(program.readAll() + program.readAllStandardError()).simplified();
    }
    static QString check(const QString &path)
    {
        return sqlite(path, u"pragma integrity_check; select count(*) from PageData"_s);
    }
    QString failure(const QString &from)
    {
        try {
            t.database.backUp(from, target);
        } catch (const RunTimeError &error) {
            EXPECT_EQ(t.filesOf(folder), QString()) << "nothing is left behind";
            return error.description();
        }
        return {};
    }
    /// What is told when a copy is saved at `path`.
    QString saving(const QString &from, const QString &path, Question told, bool done = false)
    {
        t.prompter.expectFile(Question::ChooseBackupTarget, path);
        t.prompter.expectTell(told);
        EXPECT_EQ(backup.save(from, u"name"_s), done);
        return t.prompter.asked.back().title + u": "_s + t.prompter.asked.back().text;
    }
};

TEST_F(DatabaseBackupTest, copiesAreConsistentWhileAnotherProgramWrites)
{
    {
        const auto unfinished = other.beginBatch(t.state.ConnectionString);
        other.open(t.state.ConnectionString)->execute(u"insert into PageData(Note1) values(\"half\")"_s);
        t.database.backUp(source, target);
        EXPECT_EQ(check(target), u"ok 40"_s);
        EXPECT_EQ(t.filesOf(folder), FileSystem::bareName(target));
    }
    std::atomic<bool> done = false;
    std::thread writer([&] {
        while (!done) { // 40 pages at the end of each transaction, but other ones
            const auto batch = other.beginBatch(t.state.ConnectionString);
            const auto rows = other.open(t.state.ConnectionString);
            rows->execute(u"insert into PageData(PageSummary) values(hex(zeroblob(5000)))"_s);
            rows->execute(u"delete from PageData where ID = (select min(ID) from PageData)"_s);
            batch->commit();
        }
    });
    SqliteDatabase patient(std::chrono::minutes(1));
    for (const QChar round : u"1234"_s) {
        EXPECT_EQ(errorOf([&] { patient.backUp(source, target + round); }), 0);
        EXPECT_EQ(check(target + round), u"ok 40"_s);
    }
    done = true;
    writer.join();
}

TEST_F(DatabaseBackupTest, whatFailsNamesFileAndReasonAndLeavesNothing)
{
    const QString notWritten = u"Cannot write the file \""_s + target + u"\": "_s;
    rlimit before = {};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small = {65536, before.rlim_max};
    std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_EQ(failure(source), notWritten + u"File too large"_s);
    EXPECT_EQ(failure(foreign).section(u": "_s, -1), u"File too large"_s);
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_TRUE(failure(u"/not/there.mdb"_s).contains(u"\"/not/there.mdb\": No such file"_s));
    {
        const OrdinaryUser user(t.folder.path());
        for (const QString &from : {source, foreign})
            EXPECT_EQ(failure(from), notWritten + u"Permission denied"_s);
    }
    const auto locking = other.open(t.state.ConnectionString);
    locking->execute(u"begin exclusive"_s);
    EXPECT_EQ(failure(source),
              u"Cannot read the database file \""_s + source + u"\": another program has locked it"_s);
}

TEST_F(DatabaseBackupTest, copiesCanBeReadWhereNothingCanBeWritten)
{
    t.database.backUp(foreign, target);
    EXPECT_EQ(t.read(target), foreignBytes);
    sqlite(source, u"pragma journal_mode = wal; insert into PageData(Note1) values('in the log')"_s);
    t.database.backUp(source, target + u'2');
    EXPECT_EQ(t.read(target + u'2').at(18), 1) << "the file's own mark of a rollback journal";
    EXPECT_EQ(check(target + u'2'), u"ok 41"_s);
}

TEST_F(DatabaseBackupTest, anExistingFileIsNeverOverwritten)
{
    const QString link = t.folder.path() + u"/link.mdb"_s;
    QFile::link(u"/not/there"_s, link);
    t.write(target, "precious");
    for (const QString &path : {target, link}) {
        EXPECT_EQ(saving(source, path, Question::BackupTargetExists),
                  u"File Exists: "_s + path + u" is an existing file, please enter another file name."_s);
        for (const QString &from : {source, foreign}) // made just now by somebody else
            EXPECT_EQ(errorOf([&] { t.database.backUp(from, path); }), RunTimeError::PathAccess);
    }
    EXPECT_EQ(t.read(target), "precious");
    EXPECT_EQ(t.filesOf(folder), FileSystem::bareName(target));
}

TEST_F(DatabaseBackupTest, everyStepSaysWhatIsMissing)
{
    t.prompter.expectTell(Question::BackupNameMissing);
    EXPECT_FALSE(backup.save(source, u" "_s));
    t.prompter.expectFile(Question::ChooseBackupTarget, std::nullopt);
    EXPECT_FALSE(backup.save(source, u"name"_s));
    EXPECT_EQ(t.prompter.asked[1].proposal + t.prompter.asked[1].directory, u"name"_s + QDir::homePath());
    EXPECT_EQ(saving(u"/gone.mdb"_s, target, Question::BackupSourceMissing),
              u"File Exists: /gone.mdb does not exist, please select another database."_s);
    EXPECT_TRUE(saving(source, u"/proc/x"_s, Question::BackupFailed)
                    .startsWith(u"File Copy Failed: Unable to copy the selected file to \r\n/proc/x\r\n"_s));
    EXPECT_EQ(saving(source, target, Question::BackupDone, true),
              u"File Copy Done: The file you selected copied to \r\n"_s + target +
                  u"\r\nBut, remember, the best way to backup is copy\r\nthe file to a CD or DVD."_s);
    QFile::remove(source);
    t.prompter.expectTell(Question::BackupSourceMissing);
    EXPECT_EQ(backup.firstSource(), source);
}
} // namespace
