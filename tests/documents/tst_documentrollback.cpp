#include "documents/DocumentFixture.h"

#include <sqlite3.h>

using namespace Qt::Literals::StringLiterals;

using DocumentRollbackTest = DocumentGenerationTest;

TEST_F(DocumentRollbackTest, whatIsCancelledLeavesEverythingAsItWas)
{
    generatedBefore();
    const QString moving = u"Moving the previous documents"_s;
    const QString writing = u"Writing HTML pages"_s;
    for (const bool older : {false, true}) {
        if (older) {
            t.state.FileSystem.createFolder(t.inProject(u"oldDocument"_s));
            t.write(t.inProject(u"oldDocument/sh0001.htm"_s), "older page");
            t.write(t.inProject(u"oldDocument/other.htm"_s), "older still");
        }
        const Tree before = tree();
        for (const auto &[what, step] : {std::pair(moving, 2), {writing, 1}, {writing, 2}}) {
            progress.cancelWhat = what;
            progress.cancelAt = step;
            documents.CreateDocuments();
            EXPECT_EQ(tree(), before) << qPrintable(what);
            EXPECT_EQ(t.workspace.status, u"Cancelled: the previous documents are back."_s);
        }
        progress.cancelAt = 0;
        progress.cancelAtOnce = true;
        for (const QString &what : {moving, writing, u"Storing the file names"_s}) {
            progress.cancelWhat = what;
            documents.CreateDocuments();
            EXPECT_EQ(tree(), before) << qPrintable(what);
            EXPECT_EQ(storedPath(1), u"before"_s);
        }
        progress.cancelAtOnce = false;
    }
    EXPECT_TRUE(t.workspace.calls.isEmpty() && !progress.open);
}

TEST_F(DocumentRollbackTest, whatTheUserLetsGoComesBackWhenTheRestIsCancelled)
{
    generatedBefore();
    t.execute(u"update PageData set ScreenShotFilePath=null, HTMLFilePath=\"before\""_s);
    t.write(t.inProject(u"before"_s), "another's file");
    t.state.FileSystem.createFolder(t.inProject(u"oldDocument/index.htm/in the way"_s)); // so it cannot move
    const Tree before = tree();
    progress.cancelWhat = u"Storing the file names"_s;
    progress.cancelAtOnce = true;
    t.prompter.expectAsk(Question::OverwriteContentsPage, Answer::Yes);
    for (int page = 0; page < 2; ++page)
        t.prompter.expectAsk(Question::OverwriteHtmlFile, Answer::Yes);
    documents.CreateDocuments();
    EXPECT_EQ(tree(), before);
    t.prompter.expectAsk(Question::OverwriteContentsPage, Answer::No);
    t.prompter.expectInput(Question::NewContentsPageName, QString());
    documents.CreateDocuments();
    EXPECT_EQ(tree(), before);
}

TEST_F(DocumentRollbackTest, whatTheUserChangesMeanwhileStays)
{
    generatedBefore();
    progress.cancelWhat = u"Writing HTML pages"_s;
    progress.cancelAt = 1;
    progress.whileWorking = [this](const QString &what, int /*done*/) {
        if (what == progress.cancelWhat)
            t.execute(u"update PageData set Note1=\"typed meanwhile\""_s);
    };
    documents.CreateDocuments();
    EXPECT_EQ(t.value(u"select Note1 from PageData"_s), u"typed meanwhile"_s);
    progress.whileWorking = [this](const QString & /*what*/, int /*done*/) { documents.CreateDocuments(); };
    documents.CreateDocuments();
    expectNothingHappened(u"index.htm sh0001.htm"_s);
}

TEST_F(DocumentRollbackTest, eventsRunWhileTheDatabaseKeepsItWaiting)
{
    generatedBefore();
    t.state.AppOptions.ShowLessMessage = 1;
    SqliteDatabase patient{std::chrono::minutes(1)};
    PageDatabase pages{patient, t.state, t.prompter};
    DocumentGeneration waiting{
        DocumentServices{t.state, pages, t.directories, t.prompter, t.workspace, progress, word, programs}};
    sqlite3 *other = nullptr;
    sqlite3_open(t.state.DatabasePath.toUtf8().constData(), &other);
    const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> owner(other, sqlite3_close);
    int beats = 0;
    progress.whileWorking = [&](const QString &what, int /*done*/) {
        if (what != u"Storing the file names"_s)
            return;
        ++beats;
        if (beats == 1)
            sqlite3_exec(other, "begin immediate", nullptr, nullptr, nullptr);
        // Only events end the wait: a program that does not let them run waits in vain.
        if (beats == 5)
            sqlite3_exec(other, "rollback", nullptr, nullptr, nullptr);
    };
    waiting.CreateDocuments();
    EXPECT_GE(beats, 5);
    EXPECT_EQ(storedPath(2), t.inProject(u"sh0002.htm"_s));
    EXPECT_EQ(t.workspace.status, u"2 HTML pages written."_s);
}

TEST_F(DocumentRollbackTest, aFailureNamesTheFileAndLeavesEverythingAsItWas)
{
    generatedBefore();
    const auto expectFailure = [this](const QString &path) {
        t.prompter.expectTell(Question::DocumentsFailed);
        documents.CreateDocuments();
        const QString text = t.prompter.asked.back().text;
        EXPECT_TRUE(text.startsWith(u"No HTML documents were created: Cannot "_s) && text.contains(path) &&
                    !text.contains(u'\n'))
            << qPrintable(text);
        expectNothingHappened(u"index.htm sh0001.htm"_s);
    };
    const QString inTheWay = t.inProject(u"sh0002.htm"_s);
    t.state.FileSystem.createFolder(inTheWay);
    expectFailure(inTheWay);
    QDir(inTheWay).removeRecursively();

    sqlite3 *other = nullptr;
    sqlite3_open(t.state.DatabasePath.toUtf8().constData(), &other);
    const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> owner(other, sqlite3_close);
    progress.whileWorking = [other](const QString &what, int /*done*/) {
        if (what == u"Writing HTML pages"_s)
            sqlite3_exec(other, "begin immediate", nullptr, nullptr, nullptr);
    };
    expectFailure(t.state.DatabasePath);
    EXPECT_EQ(t.workspace.status, u"Failed: the previous documents are back."_s);
    sqlite3_exec(other, "rollback", nullptr, nullptr, nullptr);

    progress.whileWorking = [this](const QString &what, int /*done*/) {
        if (what == u"Writing HTML pages"_s)
            QFile::remove(t.inProject(u"oldDocument/index.htm"_s));
    };
    t.state.FileSystem.createFolder(inTheWay);
    t.prompter.expectTell(Question::DocumentsFailed);
    documents.CreateDocuments();
    EXPECT_TRUE(t.prompter.asked.back().text.contains(
        u"\r\nSome of the previous ones could not be put back. They are in the folder "_s +
        t.inProject(u"oldDocument"_s)));
    EXPECT_EQ(t.read(t.inProject(u"sh0001.htm"_s)), "old page");
}
