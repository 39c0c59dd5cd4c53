#include "pagestore/ProjectDeletion.h"
#include "platform/FileChecks.h"
#include "settings/OptionsStore.h"
#include "support/FakeClock.h"
#include "support/TestPages.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
class ProjectDeletionTest : public testing::Test
{
protected:
    TestPages t;
    FakeClock clock; // 21 March 2026, 13:43:02
    QString seen;    ///< what there was when the projects changed
    ProjectDeletion deletion{{t.state, t.pages, t.directories, t.prompter, clock}, [this] { seen = all(); }};
    const QString base = t.state.AppOptions.BaseDirectory;

    ProjectDeletionTest()
    {
        t.execute(u"insert into PageData(ProjectName, ProjectDirectory) values(\"Demo\",\" %1 \")"_s.arg(
            t.state.ProjectDirectory));
        t.execute(u"insert into PageData(ProjectName) values(\"Other\")"_s);
        t.workspace.names = QStringList{u"Demo"_s, u"Other"_s};
        t.write(t.inProject(u"a.bmp"_s), "BM");
        OptionsStore::writeProjectName(t.state.OptionsFilePath, u"Demo"_s);
    }
    /// Number of pages, names in the main window, folders, and the name in the options file.
    QString all()
    {
        return t.value(u"select count(*) from PageData"_s) + u'|' + t.workspace.names.join(u' ') + u'|' +
               QDir(base).entryList(QDir::Dirs | QDir::NoDotAndDotDot).join(u' ') + u'|' +
               OptionsStore::LoadOptions(t.state.OptionsFilePath).ProjectName;
    }
    /// Deletes, with an answer and what is told after it. No name stands for all.
    void remove(const QString &name, Answer answer, std::optional<Question> told = {})
    {
        t.prompter.expectAsk(name.isEmpty() ? Question::DeleteAllProjects : Question::DeleteProject, answer);
        if (told)
            t.prompter.expectTell(*told);
        name.isEmpty() ? deletion.deleteAllProjects() : deletion.deleteProject(name);
    }
    QString lastText() const { return t.prompter.asked.back().text; }
    static QString renameFailed(const QString &folder)
    {
        return u"Rename file directory \r\n%1 to \r\n%1_del_Mar21134302 failed.\r\n"
               "Some applications may be using that directory.\r\n"
               "You can do it later using Window Explorer."_s.arg(folder);
    }
};

TEST_F(ProjectDeletionTest, oneProjectGoesAndItsFolderIsRenamed)
{
    deletion.deleteProject(QString());
    remove(u"Demo"_s, Answer::No, Question::DeleteCanceled);
    EXPECT_EQ(t.prompter.asked[0].text + lastText(), u"Delete project\r\nDemo\r\nAre you sure?Canceled."_s);
    EXPECT_EQ(all(), u"2|Demo Other|Demo|Demo"_s);
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); // where the month is "März"
    remove(u"Demo"_s, Answer::Yes);
    QLocale::setDefault(QLocale::c());
    EXPECT_EQ(seen, u"1|Other|Demo|Demo"_s);
    EXPECT_EQ(all(), u"1|Other|Demo_del_Mar21134302|"_s);
    EXPECT_EQ(t.filesOf(base + u"/Demo_del_Mar21134302"_s), u"a.bmp"_s);
    OptionsStore::writeProjectName(t.state.OptionsFilePath, u"Other"_s);
    remove(u"Other"_s, Answer::Yes);
    EXPECT_EQ(all(), u"0||Demo_del_Mar21134302|"_s) << "also when there is no folder";
}

TEST_F(ProjectDeletionTest, allProjectsGoAndTheBaseDirectoryIsNew)
{
    remove({}, Answer::No, Question::DeleteCanceled);
    EXPECT_EQ(t.prompter.asked[0].text + lastText(), u"Delete ALL projects!\r\n\r\nAre you sure?Canceled."_s);
    EXPECT_EQ(all(), u"2|Demo Other|Demo|Demo"_s);
    t.state.AppOptions.BaseDirectory += u'/';
    remove({}, Answer::Yes);
    EXPECT_EQ(seen, u"0|Demo Other|Demo|Demo"_s);
    EXPECT_TRUE(QDir(base).exists());
    EXPECT_EQ(all(), u"0|Demo Other||"_s);
    EXPECT_EQ(t.filesOf(base + u"_del_Mar21134302/Demo"_s), u"a.bmp"_s);
    t.state.AppOptions.BaseDirectory = base + u"/none"_s;
    remove({}, Answer::Yes);
    EXPECT_FALSE(QDir(base + u"/none"_s).exists()) << "one that was not there is not made";
}

TEST_F(ProjectDeletionTest, aFolderThatCannotBeRenamedKeepsItsNameAndFiles)
{
    t.execute(u"update PageData set ProjectDirectory = null"_s); // copied images: below the base directory
    t.state.FileSystem.createFolder(base + u"/Demo_del_Mar21134302"_s); // empty ones could be replaced
    t.execute(u"update PageData set ProjectDirectory = \"%1\" where ProjectName = \"Other\""_s.arg(base));
    remove(u"Other"_s, Answer::Yes, Question::DeleteRenameFailed);
    EXPECT_EQ(lastText(), renameFailed(base)) << "other projects are in it";
    t.state.FileSystem.createFolder(base + u"_del_Mar21134302"_s);
    remove(u"Demo"_s, Answer::Yes, Question::DeleteRenameFailed);
    EXPECT_EQ(lastText(), renameFailed(base + u"/Demo"_s));
    remove({}, Answer::Yes, Question::DeleteRenameFailed);
    EXPECT_EQ(lastText(), renameFailed(base));
    t.state.AppOptions.BaseDirectory = t.folder.path();
    remove({}, Answer::Yes, Question::DeleteRenameFailed);
    EXPECT_EQ(lastText(), renameFailed(t.folder.path())) << "the program itself is in it";
    EXPECT_EQ(all(), u"0||Demo Demo_del_Mar21134302|Demo"_s);
    EXPECT_EQ(t.filesOf(t.state.ProjectDirectory), u"a.bmp"_s);
}

TEST_F(ProjectDeletionTest, whatIsBeingCapturedStays)
{
    t.state.CaptureRunning = true;
    t.prompter.expectTell(Question::ProjectIsCaptured);
    deletion.deleteProject(u"dEMO"_s);
    t.prompter.expectTell(Question::ProjectIsCaptured);
    deletion.deleteAllProjects();
    for (const Question question : {Question::DeleteProject, Question::DeleteAllProjects}) {
        t.state.CaptureRunning = false;
        t.prompter.expectAsk(question, Answer::Yes);
        t.prompter.whileOpen([this] { t.state.CaptureRunning = true; }); // by a hot key
        t.prompter.expectTell(Question::ProjectIsCaptured);
        question == Question::DeleteProject ? deletion.deleteProject(u"Demo"_s)
                                            : deletion.deleteAllProjects();
    }
    EXPECT_EQ(all(), u"2|Demo Other|Demo|Demo"_s);
    remove(u"Other"_s, Answer::Yes);
}

TEST_F(ProjectDeletionTest, aReadOnlyDatabaseIsReportedAndNothingIsRenamed)
{
    QFile::setPermissions(t.state.OptionsFilePath,
                          QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther); // for this user as well
    const OrdinaryUser reader(t.folder.path());
    for (const QString &name : {u"Demo"_s, QString()})
        EXPECT_EQ(errorOf([&] { remove(name, Answer::Yes); }), RunTimeError::DatabaseError);
    EXPECT_EQ(all() + seen, u"2|Demo Other|Demo|Demo"_s);
}
} // namespace
