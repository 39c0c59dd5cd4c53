#include "documents/DocumentFixture.h"
#include "documents/OutputFile.h"

#include <QRegularExpression>

#include <algorithm>
#include <numeric>

using namespace Qt::Literals::StringLiterals;

TEST_F(DocumentGenerationTest, writesTheBytesOfTheTemplate)
{
    t.state.AppOptions.HtmlStyles = {{{u"Arial, Helvetica"_s, 5, u"Bold"_s, u"navy"_s, u"Center"_s},
                                      {u"Georgia"_s, 4, u"Italic"_s, u"red"_s, u"Left"_s},
                                      {u"Verdana"_s, 2, u"Regular"_s, u"black"_s, u"Right"_s},
                                      {u"Courier New"_s, 1, u"Bold Italic"_s, u"green"_s, u"Left"_s},
                                      {u"Times"_s, 3, u"bold"_s, u"gray"_s, u"Center"_s}}};
    addPage(2, true, u"Save"_s);
    t.execute(
        u"update PageData set SubTitle=\"Second\", PageSummary=\"Body\", Note1=\"One\", Note2=\"Two\""_s);
    addPage(1, true, u"Open <File>"_s);
    t.execute(u"update PageData set SubTitle=\"Menu & bar\", PageSummary=\"Line one\r\nLine two\", "
              "Note1=\"Grüße – 5 €\", Note2=\"Да 😀\", Layout=1 where PageNumber=1"_s);
    t.execute(u"insert into PageData(ProjectName,PageNumber,PageStatus,PageSummary,Layout) "
              "values(\"Demo\",3,\"OK\",\"Only text\",1)"_s);
    EXPECT_TRUE(documents.GenerateHtmlDocuments(u"Demo"_s));
    EXPECT_EQ(files(), u"index.htm sh0001.htm sh0002.htm sh3A.htm"_s);
    EXPECT_EQ(t.read(t.inProject(u"sh0001.htm"_s)), golden(u"page_subtitle_below.htm"_s));
    EXPECT_EQ(t.read(t.inProject(u"sh0002.htm"_s)), golden(u"page_subtitle_above.htm"_s));
    EXPECT_EQ(t.read(t.inProject(u"sh3A.htm"_s)), golden(u"page_without_picture.htm"_s));
    EXPECT_EQ(t.read(t.inProject(u"index.htm"_s)), golden(u"contents.htm"_s));
    EXPECT_EQ(storedPath(3), t.inProject(u"sh3A.htm"_s));
    EXPECT_EQ(t.state.ContentsPagePath, t.inProject(u"index.htm"_s));
}

TEST_F(DocumentGenerationTest, everyFinishedPageIsLinkedInOrder)
{
    for (int number = 45; number >= 1; --number)
        addPage(number, number % 10 != 0, u"Step %1"_s.arg(number));
    addPage(46, true, u"gone"_s, u"Deleted"_s);
    addPage(47, true, u"blocked"_s, u"draft"_s);
    t.execute(u"insert into PageData(ProjectName,PageNumber,PageStatus) values(\"Other\",1,\"OK\")"_s);
    std::vector<int> steps;
    progress.whileWorking = [&steps](const QString &what, int done) {
        if (what == u"Writing HTML pages"_s)
            steps.push_back(done);
    };
    EXPECT_TRUE(documents.GenerateHtmlDocuments(u"Demo"_s));
    const QString contents = QString::fromLatin1(t.read(t.state.ContentsPagePath));
    static const QRegularExpression link(u"<a href='([^']*)'>(\\d+)\\. ([^<]*) </a>"_s);
    int number = 0;
    for (auto match = link.globalMatch(contents); match.hasNext();) {
        const QRegularExpressionMatch found = match.next();
        ++number;
        EXPECT_EQ(found.captured(2).toInt(), number);
        EXPECT_EQ(found.captured(3), u"Step %1"_s.arg(number));
        const QByteArray page = t.read(t.inProject(found.captured(1)));
        EXPECT_TRUE(page.contains("<title>Step " + QByteArray::number(number) + "</title>")) << number;
        EXPECT_EQ(storedPath(number), t.inProject(found.captured(1)));
    }
    EXPECT_EQ(number, 45);
    EXPECT_EQ(files().count(u".htm"_s), 46);
    EXPECT_EQ(t.value(u"select count(*) from PageData where HTMLFilePath is null"_s), u"3"_s);
    std::vector<int> everyPage(45);
    std::iota(everyPage.begin(), everyPage.end(), 1);
    // Events run after every page, and as often as they like while something is waited for.
    EXPECT_TRUE(std::includes(steps.begin(), steps.end(), everyPage.begin(), everyPage.end()));
    EXPECT_EQ(steps.back(), 45);
    EXPECT_EQ(progress.total, 45);
}

TEST_F(DocumentGenerationTest, anExistingOutputFileIsAskedAbout)
{
    const auto choose = [this] {
        return ChooseOutputFile(t.state.FileSystem, t.prompter, t.state.ProjectDirectory, u"index.htm"_s,
                                u"Contents Page"_s);
    };
    const QString path = t.inProject(u"index.htm"_s);
    EXPECT_EQ(choose(), path);
    t.write(path, "x");
    t.write(t.inProject(u" b.htm"_s), "x");
    for (const bool closed : {false, true}) {
        t.prompter.expectAsk(Question::OverwriteContentsPage, Answer::No);
        if (closed)
            t.prompter.expectInput(Question::NewContentsPageName, std::nullopt);
        else
            t.prompter.expectInput(Question::NewContentsPageName, u"  "_s);
        EXPECT_FALSE(choose().has_value());
    }
    EXPECT_EQ(t.prompter.asked[0].text, u"File: "_s + path + u"\r\nalready exists. Overwrite it?"_s);
    EXPECT_EQ(t.prompter.asked[0].title, u"File Existing"_s);
    EXPECT_EQ(t.prompter.asked[1].text, u"Please enter a new file name for Contents Page\r\n"
                                        "If you do not want to overwrite this file in this\r\n"
                                        "directory, provide a name that has not been \r\n"
                                        "used in this directory:"_s +
                                            t.state.ProjectDirectory + u"\r\nThe file name was index.htm"_s);
    EXPECT_EQ(t.prompter.asked[1].title, u"Enter File Name"_s);
    t.prompter.expectAsk(Question::OverwriteContentsPage, Answer::No);
    t.prompter.expectInput(Question::NewContentsPageName, u" b.htm"_s);
    t.prompter.expectAsk(Question::OverwriteContentsPage, Answer::No);
    t.prompter.expectInput(Question::NewContentsPageName, u"c.htm"_s);
    EXPECT_EQ(choose(), t.inProject(u"c.htm"_s));
    EXPECT_TRUE(QFile::exists(path));
    t.prompter.expectAsk(Question::OverwriteContentsPage, Answer::Yes);
    EXPECT_EQ(choose(), path);
    EXPECT_TRUE(QFile::exists(path)) << "until it is overwritten";
}

TEST_F(DocumentGenerationTest, htmlOutputReportsAndShowsTheContents)
{
    generatedBefore();
    t.prompter.expectTell(Question::HtmlPagesCreated);
    t.prompter.whileOpen([this] { EXPECT_TRUE(QFile::exists(t.inProject(u"index.htm"_s))); });
    documents.CreateDocuments();
    EXPECT_EQ(t.prompter.asked[0].text, u"HTML pages created for this project are in \r\n"_s +
                                            t.state.AppOptions.BaseDirectory +
                                            u"/Demo\r\n\r\nThe file names end with .htm"_s);
    EXPECT_EQ(t.read(t.inProject(u"oldDocument/sh0001.htm"_s)), "old page");
    EXPECT_EQ(files(), u"index.htm sh0001.htm sh0002.htm"_s);
    EXPECT_EQ(t.workspace.calls, QStringList{u"contents"_s});
    EXPECT_TRUE(t.state.ShowContentsRequested);
    EXPECT_EQ(t.workspace.busyChanges, 2);
    EXPECT_FALSE(t.workspace.busy);
    t.state.AppOptions.ShowLessMessage = 1;
    documents.CreateDocuments();
    EXPECT_EQ(oldFiles(), u"index.htm sh0001.htm sh0002.htm"_s) << "the first run's pages";
    EXPECT_EQ(t.workspace.calls, (QStringList{u"contents"_s, u"contents"_s}));
}

TEST_F(DocumentGenerationTest, aProjectWithoutFinishedPagesHasNoDocuments)
{
    addPage(1, true, u"T"_s, u"Deleted"_s);
    t.workspace.busy = true;
    t.prompter.expectTell(Question::NoPagesForDocuments);
    EXPECT_FALSE(documents.GenerateHtmlDocuments(u"Demo"_s));
    EXPECT_EQ(files(), QString());
    EXPECT_FALSE(t.workspace.busy);
}

TEST_F(DocumentGenerationTest, onlyAKnownProjectWithADirectoryIsGenerated)
{
    generatedBefore();
    t.workspace.names.clear();
    t.prompter.expectTell(Question::SelectProjectForDocuments);
    documents.CreateDocuments();
    EXPECT_EQ(t.prompter.asked[0].title, u"Please select a project"_s);
    t.workspace.names = QStringList{u"Demo"_s};
    t.execute(u"update PageData set ProjectDirectory=\"/not/there\""_s);
    const QString directory = std::exchange(t.state.ProjectDirectory, QString());
    t.prompter.expectTell(Question::ProjectDirectoryMissing);
    documents.CreateDocuments();
    t.prompter.expectTell(Question::OldDocumentsDirectoryMissing);
    documents.GenerateHtmlOutput();
    t.state.ProjectDirectory = directory;
    EXPECT_EQ(t.workspace.busyChanges, 0);
    expectNothingHappened(u"index.htm sh0001.htm"_s);
}

TEST_F(DocumentGenerationTest, theOptionSaysWhichKindsAreWritten)
{
    struct Row {
        std::int16_t format;
        Answer answer; ///< to the question for the kind; Ok: it is not asked
        bool html;
        bool word;
    };
    addPage(1);
    t.state.AppOptions.ShowLessMessage = 1;
    t.state.AppOptions.OneWordDocumentIncludeAllPages = true;
    word.whileSaving = [this] { EXPECT_TRUE(t.workspace.busy) << t.state.AppOptions.FinalDocumentFormat; };
    for (const Row &row : {Row{0, Answer::Ok, true, false}, Row{1, Answer::Ok, false, true},
                           Row{2, Answer::Yes, true, false}, Row{2, Answer::No, false, true},
                           Row{3, Answer::Ok, true, true}, Row{4, Answer::Ok, false, false}}) {
        t.state.AppOptions.FinalDocumentFormat = row.format;
        t.write(t.inProject(u"Demo.doc"_s), "old");
        if (row.answer != Answer::Ok)
            t.prompter.expectAsk(Question::DocumentFormat, row.answer);
        if (row.word)
            t.prompter.expectTell(Question::CloseWordFirst);
        t.workspace.calls.clear();
        word.log.clear();
        documents.CreateDocuments();
        EXPECT_EQ(t.workspace.calls.size(), row.html ? 1 : 0) << row.format;
        EXPECT_EQ(word.log.contains(u"save Demo.doc"_s), row.word) << row.format;
        EXPECT_EQ(t.read(t.inProject(u"Demo.doc"_s)), row.word ? "new document" : "old");
        if (row.word) {
            EXPECT_EQ(t.read(t.inProject(u"oldDocument/Demo.doc"_s)), "old");
        }
        EXPECT_FALSE(t.workspace.busy);
    }
}

TEST_F(DocumentGenerationTest, aMissingWordProcessorIsToldAfterTheWarningAndNothingMoves)
{
    t.write(t.inProject(u"Demo.doc"_s), "old");
    word.installed = false;
    for (const bool convert : {false, true}) {
        t.state.AppOptions.AutoConvertWord2PDF = convert ? 1 : 0;
        t.prompter.expectTell(Question::CloseWordFirst);
        t.prompter.expectTell(Question::WordNotInstalled);
        documents.GenerateWordOutput();
        EXPECT_EQ(files(), u"Demo.doc"_s);
    }
    EXPECT_EQ(t.prompter.asked[0].title, u"Please Close Microsoft Word"_s);
    EXPECT_FALSE(t.prompter.asked[0].text.contains(u"Adobe"_s));
    EXPECT_EQ(t.prompter.asked[2].title, u"Please Close Microsoft Word and Adobe Applications"_s);
    EXPECT_TRUE(t.prompter.asked[2].text.contains(u"and Adobe PDF will generate"_s));
}
