#include "documents/DocumentFixture.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
class WordDocumentsTest : public DocumentGenerationTest
{
protected:
    const QStringList begin{u"state 0"_s, u"height 450"_s, u"width 600"_s, u"visible 1"_s};
    const QStringList toPdf{u"printer Adobe PDF on "_s, u"run AdobePDFMaker.AutoExec.ConvertToPDF"_s,
                            u"printer Office Printer"_s};

    WordDocumentsTest()
    {
        t.state.AppOptions.FinalDocumentFormat = 1;
        t.state.AppOptions.OneWordDocumentIncludeAllPages = true;
        t.state.AppOptions.WordStyles = {{{u"Impact"_s, 20, 1, 0, 1, 1, 9},
                                          {QString(), 14, 0, 1, 0, 0, 2},
                                          {u"Georgia"_s, 11, 0, 0, 0, 0, 0},
                                          {u"Arial"_s, 9, 0, 1, 0, 2, 6},
                                          {u"Courier"_s, 8, 0, 0, 1, 0, 14}}};
        addPage(1, true, u" Open "_s);
        t.execute(u"update PageData set SubTitle=\"Menu\", PageSummary=\"Line one\r\nLine two\", "
                  "Note1=\"One\", Note2=\"Two\""_s);
        t.write(t.inProject(u"sh0001.bmp"_s), "a picture");
    }

    static QStringList styled(const QString &text, const QStringList &style)
    {
        return QStringList{u"paragraph"_s, u"text "_s + text} + style;
    }
    static QStringList picture(const QString &name, const QString &text)
    {
        return {u"paragraph"_s, u"picture %1 (%2)"_s.arg(name, text)};
    }
    static QStringList look(const QString &font, int size, int color, std::array<int, 3> flags, int align)
    {
        return {u"font "_s + font,          u"size %1"_s.arg(size),       u"color %1"_s.arg(color),
                u"bold %1"_s.arg(flags[0]), u"italic %1"_s.arg(flags[1]), u"underline %1"_s.arg(flags[2]),
                u"align %1"_s.arg(align)};
    }
    const QStringList title = look(u"Impact"_s, 20, 9, {1, 0, 1}, 1) + QStringList{u"level 1"_s};
    const QStringList subTitle = look(u"Arial"_s, 14, 2, {0, 1, 0}, 0); // the font is filled in
    const QStringList other = look(u"Georgia"_s, 11, 0, {0, 0, 0}, 0);
    const QStringList note1 = look(u"Arial"_s, 9, 6, {0, 1, 0}, 2);
    const QStringList note2 = look(u"Courier"_s, 8, 14, {0, 0, 1}, 0);
    const QStringList contentsHead = QStringList{u"new Shotly.dot"_s} +
                                     styled(u"Contents"_s, {u"font Georgia"_s, u"size 15"_s, u"color 1"_s});
    const QStringList pageBreak{u"paragraph"_s, u"select"_s, u"break 7"_s, u"after |"_s};

    static QStringList contentsLine(const QString &text)
    {
        return styled(text, {u"font Arial"_s, u"size 10"_s});
    }
    QStringList notes(const QString &summary, const QString &one, const QString &two) const
    {
        return styled(u'|' + summary, other) + styled(u'|' + one, note1) + styled(u'|' + two, note2);
    }
    void generate()
    {
        t.prompter.expectTell(Question::CloseWordFirst);
        word.log.clear();
        documents.CreateDocuments();
    }
};
} // namespace

TEST_F(WordDocumentsTest, oneDocumentIsTypedInTheOrderOfItsPages)
{
    addPage(2, false, QString());
    t.execute(u"update PageData set Layout=1 where PageNumber=2"_s);
    t.write(t.state.ApplicationPath + u"/line.bmp"_s, "a line");
    generate();
    const QStringList line = picture(u"line.bmp"_s, u"Line"_s);
    const QStringList expected =
        begin + contentsHead + line + contentsLine(u"|1. Open"_s) + contentsLine(u"|2. "_s) +
        // above the picture
        pageBreak + styled(u"Open"_s, title) + line + styled(u"Menu|"_s, subTitle) +
        picture(u"sh0001.bmp"_s, u"Open, page 1"_s) + notes(u"Line one|Line two"_s, u"One"_s, u"Two"_s) +
        // below it; there is none
        pageBreak + styled(u"|"_s, title) + styled(QString(), subTitle) +
        notes(QString(), QString(), QString()) + QStringList{u"save Demo.doc"_s, u"show"_s};
    EXPECT_EQ(word.log, expected);
    EXPECT_EQ(t.state.AppOptions.WordStyles[1].Font, u"Arial"_s);
    EXPECT_EQ(t.workspace.status, u"1 Word document written."_s);
    EXPECT_FALSE(t.workspace.busy || progress.open);

    t.state.AppOptions.ProjectName = u"Another"_s;
    EXPECT_TRUE(documents.GenerateWordDocuments(u"Demo"_s));
    EXPECT_EQ(word.log.last(), u"save Demo.doc"_s);
}

TEST_F(WordDocumentsTest, aDocumentForEachPageComesWithAContentsDocumentAndPdfs)
{
    addPage(7, true, u"Save"_s);
    t.execute(u"update PageData set Layout=1 where PageNumber=7"_s);
    t.write(t.inProject(u"sh0007.bmp"_s), "another");
    t.state.AppOptions.OneWordDocumentIncludeAllPages = false;
    t.state.AppOptions.AutoConvertWord2PDF = 1;
    t.state.AppOptions.OptionFlags[PageLayout] = 2;
    t.state.AppOptions.WordStyles[0].Font.clear();
    const QStringList times = QStringList{u"font Times New Roman"_s} + title.mid(1);
    t.write(t.inProject(u"Demo1.pdf"_s), "old pdf");
    QFile::setPermissions(t.inProject(u"Demo1.pdf"_s), QFile::ReadOwner);
    generate();
    const QStringList expected = begin + contentsHead + contentsLine(u"|1. Open"_s) +
                                 contentsLine(u"|2. Save"_s) + QStringList{u"save contents.doc"_s} + toPdf +
                                 QStringList{u"new Shotly.dot"_s} + styled(u"Open"_s, times) +
                                 styled(u"Menu|"_s, subTitle) + picture(u"sh0001.bmp"_s, u"Open, page 1"_s) +
                                 notes(u"Line one|Line two"_s, u"One"_s, u"Two"_s) +
                                 QStringList{u"save Demo1.doc"_s} + toPdf + QStringList{u"new Shotly.dot"_s} +
                                 styled(u"Save|"_s, times) + picture(u"sh0007.bmp"_s, u"Save, page 7"_s) +
                                 styled(QString(), subTitle) + notes(QString(), QString(), QString()) +
                                 QStringList{u"save Demo2.doc"_s} + toPdf + QStringList{u"show"_s};
    EXPECT_EQ(word.log, expected);
    EXPECT_EQ(files(), u"Demo1.doc Demo1.pdf Demo2.doc Demo2.pdf contents.doc contents.pdf sh0001.bmp "
                       "sh0007.bmp"_s);
    EXPECT_EQ(t.read(t.inProject(u"Demo1.pdf"_s)), "new pdf");
    EXPECT_EQ(t.workspace.status, u"3 Word documents written, and as PDF."_s);
}

TEST_F(WordDocumentsTest, whatIsCancelledOrFailsLeavesTheOldDocuments)
{
    t.state.AppOptions.AutoConvertWord2PDF = 1;
    t.write(t.inProject(u"Demo.doc"_s), "old document");
    t.write(t.inProject(u"other.doc"_s), "mine");
    t.write(t.inProject(u"Demo.pdf"_s), "old pdf");
    const QString leftByAKill = t.inProject(u".Demo.pdf.old1"_s);
    t.write(leftByAKill, "older pdf");
    t.state.FileSystem.createFolder(t.inProject(u"oldDocument"_s));
    t.write(t.inProject(u"oldDocument/Demo.doc"_s), "older document");
    const Tree before = tree();
    const RunTimeError full(RunTimeError::DiskFull, u"The disk is full."_s);

    word.failsToSave = full;
    t.prompter.expectTell(Question::CloseWordFirst);
    t.prompter.expectTell(Question::DocumentsFailed);
    documents.CreateDocuments();
    EXPECT_EQ(t.prompter.asked.back().text, u"No Word documents were created: The disk is full."_s);
    EXPECT_EQ(tree(), before);

    word.failsToSave.reset();
    word.failsToConvert = full;
    t.prompter.expectTell(Question::CloseWordFirst);
    t.prompter.expectTell(Question::DocumentsFailed);
    documents.CreateDocuments();
    EXPECT_EQ(tree(), before) << "the document was written already";
    EXPECT_EQ(word.log.last(), u"printer Office Printer"_s);

    word.failsToConvert.reset();
    for (const auto &[what, one] : {std::pair(u"Writing the Word document"_s, true),
                                    {u"Saving the Word document"_s, true},
                                    {u"Making the PDF"_s, true},
                                    {u"Writing Word documents"_s, false}}) {
        t.state.AppOptions.OneWordDocumentIncludeAllPages = one;
        progress.cancelAtOnce = true;
        progress.cancelWhat = what;
        generate();
        EXPECT_EQ(tree(), before) << qPrintable(what);
        EXPECT_EQ(t.workspace.status, u"Cancelled: the previous documents are back."_s);
        EXPECT_FALSE(word.log.contains(u"show"_s));
    }
    t.state.AppOptions.OneWordDocumentIncludeAllPages = true;
    progress.cancelAtOnce = false;
    progress.cancelAt = 1; // the only picture: too late for the word processor to notice
    for (const QString &what : {u"Saving the Word document"_s, u"Making the PDF"_s}) {
        progress.cancelWhat = what;
        generate();
        EXPECT_EQ(tree(), before) << qPrintable(what);
        EXPECT_EQ(t.workspace.status, u"Cancelled: the previous documents are back."_s);
    }
    EXPECT_FALSE(t.workspace.busy || progress.open);
    EXPECT_EQ(t.read(leftByAKill), "older pdf") << "perhaps the only one";

    progress.cancelAt = 0;
    generate();
    EXPECT_FALSE(QFile::exists(leftByAKill) || QFile::exists(t.inProject(u".Demo.pdf.old2"_s)));
}

TEST_F(WordDocumentsTest, aProjectWithoutFinishedPagesStartsNoWordProcessor)
{
    t.execute(u"update PageData set PageStatus=\"Deleted\""_s);
    t.prompter.expectTell(Question::CloseWordFirst);
    t.prompter.expectTell(Question::NoPagesForDocuments);
    documents.CreateDocuments();
    EXPECT_EQ(t.prompter.asked.back().text, u"There is no data or screen shot \r\n"
                                            "for this project. No HTML document created."_s);
    EXPECT_TRUE(word.log.isEmpty());
}
