#include "pagestore/ProjectCommands.h"
#include "platform/FileChecks.h"
#include "support/FakeClock.h"
#include "support/FakePrograms.h"
#include "support/TestPages.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
struct SomePrograms : FakePrograms {
    void paint(const QString &program, const QString &picture) override
    {
        if (program.isEmpty())
            throw RunTimeError(RunTimeError::CannotCreateObject, u"none is installed"_s);
        FakePrograms::paint(program, picture);
    }
};

class ProjectCommandsTest : public testing::Test
{
protected:
    TestPages t;
    SomePrograms programs;
    FakeClock clock; // 21 March 2026
    using Commands = ProjectCommands;
    Commands commands{{t.state, t.pages, t.directories, t.prompter, t.workspace, programs, clock}};

    ProjectCommandsTest()
    {
        for (const QString &number : {u"12"_s, u"3"_s})
            t.execute(u"insert into PageData(ProjectName, PageNumber, PageStatus, ScreenShotFilePath, "
                      "ProjectDirectory) values(\"Demo\",%1,\"OK\",\"%2\",\"%3\")"_s.arg(
                          number, t.inProject(number + u".bmp"_s), t.state.ProjectDirectory));
        for (const QString &name : {u"a.bmp"_s, u"b.jpg"_s, u"c.gif"_s})
            t.write(t.folder.filePath(name), "picture " + name.toUtf8());
    }
    void expectImage(const QString &name, std::optional<Answer> more = {})
    {
        t.prompter.expectFile(Question::ChooseImageToAdd, t.folder.filePath(name));
        if (more)
            t.prompter.expectAsk(Question::AddMoreImages, *more);
    }
    QString lastText() const { return t.prompter.asked.back().text; }
    void expectTold(void (Commands::*command)(), Question question, const QString &what)
    {
        t.prompter.expectTell(question);
        (commands.*command)();
        EXPECT_TRUE(lastText().startsWith(what)) << qPrintable(lastText());
    }
};

TEST_F(ProjectCommandsTest, withoutAProjectEachCommandSaysSo)
{
    const QString comments = u"You can only add comments to an existing project. \r\nPlease select a "
                             "project from the pink dropdown list."_s;
    const QString textPage = u"You can only add a 'No-image' Text Page to an existing project. \r\n"_s;
    const QString list = u"Shotly can only show Page List of an existing project. \r\n"_s;
    t.workspace.text = u" "_s;
    expectTold(&Commands::editPages, Question::SelectProjectForComments, comments);
    EXPECT_EQ(t.prompter.asked[0].title, u"Please select a project"_s);
    expectTold(&Commands::editAllPages, Question::SelectProjectForComments, comments);
    expectTold(&Commands::addTextPage, Question::SelectProjectForTextPage, textPage);
    expectTold(&Commands::copyImages, Question::SelectProjectForTextPage, textPage);
    expectTold(&Commands::listPages, Question::SelectProjectForPageList, list);
}

TEST_F(ProjectCommandsTest, editorAndListOpenOnTheProject)
{
    commands.editPages();
    EXPECT_TRUE(std::exchange(t.state.EditorProjectPages, false));
    commands.editAllPages();
    EXPECT_TRUE(std::exchange(t.state.EditorJumpToPage, false));
    commands.addTextPage();
    EXPECT_TRUE(std::exchange(t.state.EditorAddPage, false));
    EXPECT_EQ(t.state.EditorLastPageNumber, 2) << "the number of pages";
    QDir(t.state.ProjectDirectory).removeRecursively();
    for (const auto command : {&Commands::editPages, &Commands::editAllPages, &Commands::addTextPage,
                               &Commands::copyImages, &Commands::listPages})
        expectTold(command, Question::ProjectDirectoryMissing, {});
    EXPECT_FALSE(t.state.EditorProjectPages || t.state.EditorJumpToPage || t.state.EditorAddPage);
    EXPECT_EQ(t.workspace.calls.join(u','),
              u"editor Add Notes,editor Add Notes,editor New Page,list Page List"_s);
}

TEST_F(ProjectCommandsTest, threeImagesBecomeTheLastPages)
{
    t.write(t.inProject(u"index.htm"_s), "older");
    t.write(t.inProject(u"12.bmp"_s), "BM");
    expectImage(u"a.bmp"_s, Answer::Yes);
    expectImage(u"b.jpg"_s, Answer::Yes);
    expectImage(u"c.gif"_s, Answer::No);
    commands.copyImages();
    EXPECT_EQ(lastText(),
              u"Image %1/c.gif\r\nhas been added into the project.\r\nTo avoid overwriting other files, it "
              "has been renamed as: \r\n\r\n%2\r\n\r\nAdd more image files?"_s.arg(
                  t.folder.path(), t.inProject(u"15_c.gif"_s)));
    EXPECT_EQ(t.filesOf(t.state.ProjectDirectory), u"12.bmp 13_a.bmp 14_b.jpg 15_c.gif"_s);
    EXPECT_EQ(t.read(t.inProject(u"oldDocument/index.htm"_s)), "older");
    EXPECT_EQ(t.read(t.inProject(u"14_b.jpg"_s)), "picture b.jpg");
    for (const QString &name : {u"13_a.bmp"_s, u"14_b.jpg"_s, u"15_c.gif"_s})
        EXPECT_EQ(t.value(u"select ProjectName || PageStatus || Layout || OrderInPage || PageNumber || Date "
                          "from PageData where ScreenShotFilePath = \"%1\""_s.arg(t.inProject(name))),
                  u"DemoOK00"_s + name.left(2) + u"2026-03-21"_s);
    EXPECT_EQ(t.workspace.calls.last() + t.state.CurrentImagePath,
              u"viewer first"_s + t.inProject(u"12.bmp"_s));
}

TEST_F(ProjectCommandsTest, copyingEndsWhenTheUserAFileOrTheDatabaseGivesUp)
{
    expectImage(u"a.bmp"_s, Answer::Yes);
    t.prompter.expectFile(Question::ChooseImageToAdd, std::nullopt);
    commands.copyImages();
    expectImage(u"not there.bmp"_s);
    EXPECT_EQ(errorOf([this] { commands.copyImages(); }), RunTimeError::FileNotFound);
    EXPECT_EQ(t.filesOf(t.state.ProjectDirectory), u"13_a.bmp"_s);
    SqliteDatabase other;
    const auto writing = other.beginBatch(t.state.ConnectionString);
    expectImage(u"b.jpg"_s);
    EXPECT_EQ(errorOf([this] { commands.copyImages(); }), RunTimeError::DatabaseError);
    EXPECT_EQ(t.value(u"select count(*) from PageData"_s), u"3"_s);
    EXPECT_FALSE(t.workspace.calls.contains(u"viewer first"_s));
}

TEST_F(ProjectCommandsTest, imagesOpenInTheChosenTool)
{
    t.state.CurrentImagePath = u"/old.bmp"_s;
    t.state.AppOptions.OptionFlags[PaintTool] = 2;
    commands.openImages();
    t.state.AppOptions.OptionFlags[PaintTool] = 1;
    expectTold(
        &Commands::openImages, Question::PaintToolMissing,
        u"Your PC does not have Microsoft Paint installed.\r\nSelect the Built-in Paint Tool or another "
        "paint tool\r\non the Admin->Option screen."_s);
    t.state.AppOptions.PaintProgram = u"paint"_s;
    commands.openImages();
    EXPECT_EQ(programs.painted, QStringList{u"paint /old.bmp"_s});
    t.state.AppOptions.OptionFlags[PaintTool] = 0;
    commands.openImages();
    EXPECT_EQ(t.state.CurrentImagePath, QString()) << "its file is gone";
    EXPECT_FALSE(t.state.ImageFileRequested);
    t.write(t.inProject(u"12.bmp"_s), "BM");
    commands.openImages();
    EXPECT_EQ(t.state.CurrentImagePath, t.inProject(u"12.bmp"_s));
    EXPECT_TRUE(t.state.ImageFileRequested);
}
} // namespace
