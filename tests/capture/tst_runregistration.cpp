#include "CaptureFixture.h"

#include "platform/ImageFile.h"
#include "platform/JournalFile.h"
#include "platform/RunTimeError.h"

#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr QRgb black = qRgb(0, 0, 0);

/// Journals that lie in the application folder as a program that has died leaves them.
class RegistrationTest : public ::testing::Test, protected CaptureFixture
{
protected:
    RunFacts facts() const
    {
        return {u"Demo"_s, state.ProjectDirectory, state.AppOptions.BaseDirectory + u"/Demo"_s, 7, 90, 0, 1,
                false,     QDate(2026, 3, 20)};
    }
    RunShot shot(int number, QPoint pointer, bool reduced = false)
    {
        const QString path = inProject(u"sh%1.bmp"_s.arg(7 + number, 4, 10, QChar(u'0')));
        const std::uint64_t hash = ImageFile::save(screen.picture, path);
        return {number,
                {u"Demo"_s, path, QString::number(pointer.x()), QString::number(pointer.y()), u"OK"_s,
                 reduced ? u"True"_s : u"False"_s, u"False"_s, u"0"_s, u"0"_s},
                hash};
    }
    void leave(const std::vector<RunShot> &shots)
    {
        clock.time = clock.time.addSecs(1);
        const auto journal = RunJournal::begin(state.ApplicationPath, clock.time, facts());
        for (const RunShot &each : shots)
            journal->add(each);
    }
    QRgb pixel(int number, QPoint position)
    {
        return ImageFile::load(inProject(u"sh%1.bmp"_s.arg(7 + number, 4, 10, QChar(u'0')))).pixel(position);
    }
};
} // namespace

TEST_F(RegistrationTest, AJournalComesBackAsItWasWrittenUpToTheRecordThatWasCutOff)
{
    const std::vector<RunShot> shots{shot(1, {10, 20}, true), shot(2, {-300, 7})};
    leave(shots);
    const QString path = state.ApplicationPath + u'/' + journals().first();
    // A record with a spoilt number, and one in the middle of which the program died.
    write(path, read(path) + R"([1999999999,"12","Demo","x.bmp","1","2","OK","False","False","0","0"])" +
                    "\n[3,\"12\",\"De");
    const auto left = RunJournal::abandoned(state.ApplicationPath);
    ASSERT_EQ(left.size(), 1U);
    EXPECT_TRUE(left[0]->facts() == facts());
    EXPECT_TRUE(left[0]->shots() == shots);
    // Now it is in use: nobody else gets it.
    EXPECT_TRUE(RunJournal::abandoned(state.ApplicationPath).empty());
}

TEST_F(RegistrationTest, ARecordThatCannotBeWrittenLeavesTheJournalAsItWas)
{
    // In a process of its own: the limit of a file's size stays for good.
    const pid_t child = fork();
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const QString path = folder.path() + u"/limited"_s;
        auto journal = JournalFile::create(path);
        journal->append("first");
        const rlimit limit{9, 9};
        setrlimit(RLIMIT_FSIZE, &limit);
        bool thrown = false;
        try {
            journal->append("second record");
        } catch (const RunTimeError &error) {
            thrown = error.number() == RunTimeError::DiskFull;
        }
        _exit(thrown && read(path) == "first\n" ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST_F(RegistrationTest, YesMakesThePagesWithTheFactsOfTheRun)
{
    leave({shot(1, {100, 50}, true), shot(2, {200, 60})});
    state.AppOptions.BigPicSize = 70; // changed since
    prompter.expectAsk(Question::RegisterAbandonedRun, Answer::Yes);
    registration.offerAbandoned();
    EXPECT_EQ(prompter.asked[0].title, u"Unfinished capture: 2 snapshots"_s);
    EXPECT_EQ(pageNumbers(), u"8 9"_s);
    EXPECT_EQ(pixel(1, {90, 45}), black); // scaled by the run's own 90 percent
    EXPECT_EQ(pixel(2, {200, 60}), black);
    EXPECT_EQ(value(u"select [Date] from PageData"_s), u"2026-03-20"_s);
    EXPECT_EQ(value(u"select ProjectDirectory from PageData"_s), state.AppOptions.BaseDirectory + u"/Demo"_s);
    EXPECT_TRUE(journals().isEmpty());
    registration.offerAbandoned(); // asks no more
}

TEST_F(RegistrationTest, NoSetsTheFilesAsideAndAsksNoMore)
{
    leave({shot(1, {1, 1}), shot(2, {2, 2})});
    state.FileSystem.createFolder(inProject(u"oldDocument"_s));
    write(inProject(u"oldDocument/sh0008.bmp"_s), "from before");
    prompter.expectAsk(Question::RegisterAbandonedRun, Answer::No);
    registration.offerAbandoned();
    EXPECT_EQ(filesOf(state.ProjectDirectory), QString());
    EXPECT_EQ(filesOf(inProject(u"oldDocument"_s)), u"sh0008-1.bmp sh0008.bmp sh0009.bmp"_s);
    EXPECT_EQ(read(inProject(u"oldDocument/sh0008.bmp"_s)), "from before");
    EXPECT_EQ(pageNumbers(), QString());
    EXPECT_TRUE(journals().isEmpty());
}

TEST_F(RegistrationTest, WhateverInterruptedItOnlyTheRestIsDone)
{
    // The program died after it had marked the first snapshot.
    const std::vector<RunShot> shots{shot(1, {100, 50}), shot(2, {200, 60})};
    state.ShotTable = {{}, shots[0].entry};
    marker.DrawPointerMarker(1, {100, Qt::green, Qt::black, false}, shots[0].hash);
    const QByteArray marked = read(shots[0].entry[ShotPath]);
    leave(shots);
    prompter.expectAsk(Question::RegisterAbandonedRun, Answer::Yes);
    registration.offerAbandoned();
    EXPECT_EQ(read(shots[0].entry[ShotPath]), marked);
    EXPECT_EQ(pixel(2, {200, 60}), black);
    EXPECT_EQ(pageNumbers(), u"8 9"_s);

    // It died after the pages were in the database and before the journal was gone: nothing is asked.
    leave(shots);
    registration.offerAbandoned();
    EXPECT_EQ(pageNumbers(), u"8 9"_s);
    EXPECT_TRUE(journals().isEmpty());

    // One page has gone since: the other one is not made twice.
    leave(shots);
    execute(u"delete from PageData where PageNumber=9"_s);
    prompter.expectAsk(Question::RegisterAbandonedRun, Answer::Yes);
    registration.offerAbandoned();
    EXPECT_EQ(prompter.asked.back().title, u"Unfinished capture: 1 snapshots"_s);
    EXPECT_EQ(pageNumbers(), u"8 9"_s);
}

TEST_F(RegistrationTest, OneBadSnapshotDoesNotKeepTheOthersFromTheirPages)
{
    const std::vector<RunShot> shots{shot(1, {1, 1}), shot(2, {2, 2}), shot(3, {3, 3})};
    write(shots[0].entry[ShotPath], "replaced by text");
    QFile::remove(shots[1].entry[ShotPath]);
    leave(shots);
    prompter.expectAsk(Question::RegisterAbandonedRun, Answer::Yes);
    prompter.expectTell(Question::SnapshotsNotMarked);
    registration.offerAbandoned();
    EXPECT_TRUE(prompter.asked[1].text.contains(u"onto 2 of the snapshots"_s));
    EXPECT_EQ(pixel(3, {3, 3}), black);
    EXPECT_EQ(pageNumbers(), u"8 9 10"_s);
}

TEST_F(RegistrationTest, CancelLeavesEverythingForAnotherTime)
{
    leave({shot(1, {1, 1}), shot(2, {2, 2})});
    progress.cancelAtOnce = true;
    for (const QString &step :
         {u"Drawing the pointer"_s, u"Bringing the pictures to the disk"_s, u"Registering the pages"_s}) {
        progress.cancelWhat = step;
        prompter.expectAsk(Question::RegisterAbandonedRun, Answer::Yes);
        prompter.expectTell(Question::PagesNotRegistered);
        registration.offerAbandoned();
        EXPECT_EQ(pageNumbers(), QString()) << step.toStdString();
        EXPECT_EQ(journals().size(), 1);
    }
    progress.cancelAtOnce = false;
    prompter.expectAsk(Question::RegisterAbandonedRun, Answer::Yes);
    registration.offerAbandoned();
    EXPECT_EQ(pageNumbers(), u"8 9"_s);
}

TEST_F(RegistrationTest, ADatabaseThatCannotBeReadSaysNothingAboutPages)
{
    leave({shot(1, {1, 1})});
    state.ConnectionString = u"Data Source="_s + folder.path() + u"/gone.mdb"_s;
    EXPECT_FALSE(registration.offerAbandoned()); // nobody is asked, nothing is set aside
    EXPECT_THROW(registration.offerAbandoned(u"Demo"_s), RunTimeError);
    EXPECT_EQ(journals().size(), 1);
    EXPECT_EQ(filesOf(state.ProjectDirectory), u"sh0008.bmp"_s);
}

TEST_F(RegistrationTest, OnlyTheProjectThatIsAskedForAndNoEmptyOrForeignJournals)
{
    leave({shot(1, {1, 1})});
    leave({}); // no snapshot was taken
    write(state.ApplicationPath + u"/run-0.journal"_s, "");
    write(state.ApplicationPath + u"/run-1.journal"_s, "random bytes\n[1,2]\n");
    write(inProject(u".shotly-999999999-1.tmp"_s), "half"); // by a process that cannot be
    registration.offerAbandoned(u"other"_s);
    EXPECT_EQ(journals().size(), 2); // the empty ones are gone, the one nobody can read stays
    EXPECT_FALSE(QFile::exists(inProject(u".shotly-999999999-1.tmp"_s)));
    prompter.expectAsk(Question::RegisterAbandonedRun, Answer::Yes);
    registration.offerAbandoned(u"demo"_s);
    EXPECT_EQ(pageNumbers(), u"8"_s);
}
