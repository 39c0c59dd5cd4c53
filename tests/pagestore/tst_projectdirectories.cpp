#include "support/FakeProgress.h"
#include "support/TestPages.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
class ProjectDirectoriesTest : public testing::Test
{
protected:
    TestPages t;

    void addPage(const QString &directory, const QString &image = {}, const QString &status = u"OK"_s)
    {
        t.execute(u"insert into PageData(ProjectName, ProjectDirectory, ScreenShotFilePath, PageStatus) "
                  "values(\"Demo\",%1,\"%2\",\"%3\")"_s.arg(directory, image, status));
    }
    QString old(const QString &name) const { return t.inProject(u"oldDocument/"_s + name); }
    QString asked(int index) const { return t.prompter.asked[static_cast<std::size_t>(index)].text; }
};

TEST_F(ProjectDirectoriesTest, aKnownProjectHasItsStoredDirectory)
{
    const QString elsewhere = t.folder.path() + u"/else where"_s;
    t.state.FileSystem.createFolder(elsewhere);
    addPage(u"null"_s);
    addPage(u"\"\""_s);
    addPage(u"\" %1 \""_s.arg(elsewhere));
    t.workspace.text = u"  Demo "_s;
    t.state.ProjectDirectory.clear();
    EXPECT_TRUE(t.directories.LocateProjectDirectory());
    EXPECT_EQ(t.state.ProjectDirectory, elsewhere) << "copied images in front of it have none";
    EXPECT_EQ(t.state.AppOptions.ProjectName, u"Demo"_s);
    EXPECT_EQ(t.workspace.text, u"  Demo "_s);
}

TEST_F(ProjectDirectoriesTest, copiedImagesAloneLieUnderTheBaseDirectory)
{
    const QString expected = t.state.ProjectDirectory;
    addPage(u"null"_s);
    addPage(u"\"\""_s);
    t.state.ProjectDirectory = u"/of/another/project"_s;
    EXPECT_TRUE(t.directories.LocateProjectDirectory());
    EXPECT_EQ(t.state.ProjectDirectory, expected);
    QDir(expected).removeRecursively();
    t.prompter.expectTell(Question::ProjectDirectoryMissing);
    EXPECT_FALSE(t.directories.LocateProjectDirectory());
    EXPECT_EQ(asked(0), u"This project directory is not accessible:\r\n"_s + expected);
}

TEST_F(ProjectDirectoriesTest, aNameInOtherLetterCaseTakesTheKnownSpelling)
{
    addPage(u"\"%1\""_s.arg(t.state.ProjectDirectory));
    t.workspace.names = QStringList{u"demos"_s, u"Demo"_s};
    t.workspace.text = u"dEMO"_s;
    EXPECT_TRUE(t.directories.LocateProjectDirectory());
    EXPECT_EQ(t.workspace.text, u"Demo"_s);
    EXPECT_EQ(t.state.AppOptions.ProjectName, u"Demo"_s);
    t.workspace.names.append(u"DEMO"_s);
    t.workspace.text = u"DEMO"_s;
    EXPECT_TRUE(t.directories.LocateProjectDirectory());
    EXPECT_EQ(t.workspace.text, u"DEMO"_s) << "a spelling that is known itself";
}

TEST_F(ProjectDirectoriesTest, anUnknownNameStartsANewProject)
{
    t.workspace.text = u"New"_s;
    t.state.ShotCounter = 8;
    t.state.PageNumberBase = 9;
    EXPECT_FALSE(t.directories.LocateProjectDirectory());
    EXPECT_EQ(t.state.AppOptions.ProjectName, u"New"_s);
    EXPECT_EQ(t.state.ShotCounter, 1);
    EXPECT_EQ(t.state.PageNumberBase, 0);
    EXPECT_EQ(t.state.ProjectDirectory, QString());
}

TEST_F(ProjectDirectoriesTest, realFailuresOfTheLookupAreTold)
{
    t.prompter.expectTell(Question::NoPageFound);
    t.prompter.expectTell(Question::ProjectDirectoryMissing);
    EXPECT_FALSE(t.directories.LocateProjectDirectory()) << "in the list, but without rows";
    QFile::remove(t.state.DatabasePath);
    t.prompter.expectTell(Question::DatabaseUnreachable);
    t.prompter.expectTell(Question::ProjectDirectoryMissing);
    EXPECT_FALSE(t.directories.LocateProjectDirectory());
}

TEST_F(ProjectDirectoriesTest, theTestOfCommandsWantsANameThatIsListed)
{
    EXPECT_TRUE(t.directories.existingProject());
    t.state.AppOptions.ProjectName = u"demo"_s;
    EXPECT_FALSE(t.directories.existingProject());
    t.state.AppOptions.ProjectName = u"Demo"_s;
    t.workspace.text = u"  "_s;
    EXPECT_FALSE(t.directories.existingProject());
}

TEST_F(ProjectDirectoriesTest, theFirstImageIsTheFirstFinishedPages)
{
    addPage(u"\"\""_s, t.inProject(u"gone.bmp"_s), u"Deleted"_s);
    t.directories.show1stPic();
    EXPECT_TRUE(t.workspace.calls.isEmpty() && t.state.CurrentImagePath.isEmpty()) << "no finished page";
    addPage(u"\"\""_s, u" "_s + t.inProject(u"b.bmp"_s));
    addPage(u"\"\""_s, t.inProject(u"a.bmp"_s));
    t.write(t.inProject(u"a.bmp"_s), "BM");
    t.directories.show1stPic();
    EXPECT_TRUE(t.workspace.calls.isEmpty() && t.state.CurrentImagePath.isEmpty()) << "its file is gone";
    EXPECT_FALSE(t.state.ImageFileRequested);
    t.write(t.inProject(u"b.bmp"_s), "BM");
    t.directories.show1stPic();
    EXPECT_EQ(t.workspace.calls, QStringList{u"viewer first"_s});
    EXPECT_EQ(t.state.CurrentImagePath, t.inProject(u"b.bmp"_s));
    EXPECT_TRUE(t.state.ImageFileRequested);
}

TEST_F(ProjectDirectoriesTest, eachKindMovesItsFiles)
{
    struct Row {
        QString kind;
        QString stay;
        QString moved;
    };
    const Row rows[] = {
        {u"HTML"_s, u"README b.doc c.bmp d.html"_s, u"A.HTM index.htm"_s},
        {u"Word"_s, u"A.HTM README c.bmp d.html index.htm"_s, u"b.doc"_s},
        {u"bmp"_s, u"A.HTM README b.doc d.html index.htm"_s, u"c.bmp"_s},
        {u"All"_s, u"README b.doc c.bmp d.html"_s, u"A.HTM README b.doc c.bmp d.html index.htm"_s},
        {u"other"_s, u"A.HTM README b.doc c.bmp d.html index.htm"_s, QString()},
    };
    for (const Row &row : rows) {
        for (const QString &name :
             {u"A.HTM"_s, u"index.htm"_s, u"b.doc"_s, u"c.bmp"_s, u"d.html"_s, u"README"_s})
            t.write(t.inProject(name), "new " + name.toUtf8());
        EXPECT_TRUE(t.directories.MoveOldDocuments(row.kind));
        EXPECT_EQ(t.filesOf(t.state.ProjectDirectory), row.stay) << qPrintable(row.kind);
        EXPECT_EQ(t.filesOf(old(QString())), row.moved) << qPrintable(row.kind);
        EXPECT_TRUE(QDir(old(QString())).removeRecursively()) << "made whatever the kind";
    }
}

TEST_F(ProjectDirectoriesTest, olderFilesAreReplacedAndFailedOnesStay)
{
    t.write(t.inProject(u"a.htm"_s), "second");
    t.write(t.inProject(u"b.htm"_s), "kept");
    t.write(t.inProject(u"c.htm"_s), "third");
    t.state.FileSystem.createFolder(old(u"b.htm/in the way"_s));
    t.write(old(u"a.htm"_s), "first");
    t.write(old(u"z.htm"_s), "other");
    for (const QString &kind : {u"All"_s, u"HTML"_s}) {
        EXPECT_TRUE(t.directories.MoveOldDocuments(kind));
        EXPECT_EQ(t.filesOf(t.state.ProjectDirectory), u"b.htm"_s);
        EXPECT_EQ(t.filesOf(old(QString())), u"a.htm c.htm z.htm"_s);
        EXPECT_EQ(t.read(old(u"a.htm"_s)), "second");
    }
    QDir(old(QString())).removeRecursively();
    t.write(t.inProject(u"oldDocument"_s), "a file in the way");
    EXPECT_TRUE(t.directories.MoveOldDocuments(u"HTML"_s));
    EXPECT_EQ(t.read(t.inProject(u"b.htm"_s)), "kept");
}

TEST_F(ProjectDirectoriesTest, whatWasMovedCanComeBackOrStay)
{
    FakeProgress progress;
    t.write(t.inProject(u"a.htm"_s), "second");
    t.write(t.inProject(u"b.htm"_s), "kept");
    t.write(t.inProject(u"c.htm"_s), "third");
    t.state.FileSystem.createFolder(old(u"b.htm/in the way"_s));
    t.write(old(u"a.htm"_s), "first");
    const auto move = [&](MovedDocuments &moved) {
        EXPECT_EQ(t.directories.MoveOldDocuments(u"HTML"_s, moved, progress),
                  ProjectDirectories::Moving::Done);
        EXPECT_EQ(moved.count(), 2);
        EXPECT_EQ(t.filesOf(t.state.ProjectDirectory), u"b.htm"_s);
        EXPECT_EQ(t.read(old(u"a.htm"_s)), "second");
    };
    for (const bool asked : {true, false}) {
        MovedDocuments moved(t.state.FileSystem, t.state.ProjectDirectory);
        move(moved);
        const QStringList hidden = QDir(old(QString())).entryList({u".*"_s}, QDir::Dirs | QDir::Hidden);
        EXPECT_EQ(t.read(old(hidden.last() + u"/a.htm"_s)), "first") << "it is on the disk all the time";
        if (asked) {
            EXPECT_TRUE(moved.putBack(progress));
        }
    }
    EXPECT_EQ(t.filesOf(t.state.ProjectDirectory), u"a.htm b.htm c.htm"_s);
    EXPECT_EQ(t.filesOf(old(QString())), u"a.htm"_s);
    EXPECT_EQ(t.read(old(u"a.htm"_s)), "first");

    MovedDocuments moved(t.state.FileSystem, t.state.ProjectDirectory);
    move(moved);
    t.state.FileSystem.createFolder(old(u".shotly-replaced-999999999-0"_s)); // of a process that is gone
    moved.keep(progress);
    EXPECT_EQ(t.filesOf(old(QString())), u"a.htm c.htm"_s);
    EXPECT_EQ(QDir(old(QString())).entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList{u"b.htm"_s});
}

TEST_F(ProjectDirectoriesTest, whatSomebodyElseHasPutThereIsNotOverwritten)
{
    FakeProgress progress;
    t.write(t.inProject(u"a.htm"_s), "ours");
    MovedDocuments moved(t.state.FileSystem, t.state.ProjectDirectory);
    EXPECT_TRUE(moved.move(u"*.htm"_s, progress));
    t.write(t.inProject(u"a.htm"_s), "theirs");
    EXPECT_FALSE(moved.putBack(progress));
    EXPECT_EQ(t.read(t.inProject(u"a.htm"_s)), "theirs");
    EXPECT_EQ(t.read(old(u"a.htm"_s)), "ours");
}

TEST_F(ProjectDirectoriesTest, aMissingProjectDirectoryIsTold)
{
    t.state.ProjectDirectory = u"/not/there"_s;
    t.prompter.expectTell(Question::OldDocumentsDirectoryMissing);
    EXPECT_FALSE(t.directories.MoveOldDocuments(u"HTML"_s));
    EXPECT_TRUE(asked(0).startsWith(u"The project directory is not exist:\r\n\r\n/not/there\r\n\r\n"_s));
}
} // namespace
