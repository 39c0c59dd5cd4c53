#include "documents/HtmlPageWriter.h"
#include "documents/HtmlText.h"
#include "support/TestPages.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
class HtmlPageWriterTest : public testing::Test
{
protected:
    TestPages t;
    HtmlPageWriter writer{t.state, t.prompter};
    HtmlPage page;

    QString name(const QString &path) const { return QDir(t.state.ProjectDirectory).relativeFilePath(path); }
    QString choose(int ordinal = 3) { return name(writer.ChoosePageHtmlPath(page, ordinal)); }
    void exists(const QString &file) { t.write(t.inProject(file), "there"); }
};

TEST(HtmlText, escapesOnlyWhatTheTemplateNeeds)
{
    EXPECT_EQ(HtmlText::EscapeHtmlText(u"a<b>c & \"d\"\r\ne\nf\r"_s), u"a&lt;b&gt;c & \"d\"<br>\ne\nf<br>"_s);
}

TEST(HtmlText, encodesWindows1252AndNumbersTheRest)
{
    const std::pair<QString, QByteArray> rows[] = {
        {u"~\r\n\t\u007F"_s, "~\r\n\t\x7F"},
        {u"\u00A0\u00FF\u00DF"_s, "\xA0\xFF\xDF"},
        {u"€‚ƒ„…†‡ˆ‰Š‹ŒŽ"_s, "\x80\x82\x83\x84\x85\x86\x87\x88\x89\x8A\x8B\x8C\x8E"},
        {u"‘’“”•–—˜™š›œžŸ"_s, "\x91\x92\x93\x94\x95\x96\x97\x98\x99\x9A\x9B\x9C\x9E\x9F"},
        {QString(QChar(0x81)) + QChar(0x9D), "\x81\x9D"},
        {QString(QChar(0x80)), "&#128;"},
        {u"Я 漢?"_s, "&#1071; &#28450;?"},
        {u"😀"_s, "&#128512;"},
        {QString(QChar(0xD83D)), "&#65533;"},
        {u"sixteen and more plain letters€ sixteen and more €"_s,
         "sixteen and more plain letters\x80 sixteen and more \x80"},
        {QString(QChar(0xDE00)) + u"a"_s, "&#65533;a"},
        {u"\u4E00\u4E01\u4E02"_s, "&#19968;&#19969;&#19970;"}};
    for (const auto &[text, bytes] : rows)
        EXPECT_EQ(HtmlText::encode(text), bytes) << qPrintable(text);
}

TEST_F(HtmlPageWriterTest, theLayoutDecidesWhereTheSubTitleStands)
{
    struct Row {
        std::int16_t layout;
        std::int16_t option;
        bool below;
    };
    page.ScreenShotFilePath = u"/p/a.bmp"_s;
    for (const Row &row : {Row{1, 2, true}, Row{2, 1, false}, Row{0, 1, true}, Row{0, 2, false},
                           Row{0, 0, false}, Row{7, 1, false}, Row{-1, 1, false}}) {
        page.Layout = row.layout;
        t.state.AppOptions.OptionFlags[PageLayout] = row.option;
        const QByteArray bytes = writer.pageBytes(page);
        EXPECT_EQ(bytes.indexOf("sPicture") < bytes.indexOf(" sub title line "), row.below)
            << row.layout << " " << row.option;
    }
    page.ScreenShotFilePath = u"  "_s;
    EXPECT_FALSE(writer.pageBytes(page).contains("<img")) << "a blank name is no picture";
}

TEST_F(HtmlPageWriterTest, aPageIsReplacedAsAWholeAndNamesItsPictureWithoutFolder)
{
    page.ScreenShotFilePath = t.inProject(u"a<b.bmp"_s);
    t.write(t.inProject(u"x.htm"_s), QByteArray(100000, 'x'));
    writer.WritePageHtml(page, t.inProject(u"x.htm"_s));
    const QByteArray bytes = t.read(t.inProject(u"x.htm"_s));
    EXPECT_TRUE(bytes.contains("<img src=\r\n\"a%3Cb.bmp\"\r\n>") && bytes.endsWith("</body></html>"));
    t.state.FileSystem.createFolder(t.inProject(u"y.htm"_s));
    try {
        writer.WritePageHtml(page, t.inProject(u"y.htm"_s));
        ADD_FAILURE();
    } catch (const RunTimeError &error) {
        EXPECT_TRUE(error.description().contains(t.inProject(u"y.htm"_s)));
    }
}

TEST_F(HtmlPageWriterTest, aPageWithPictureIsNamedAfterIt)
{
    page.ScreenShotFilePath = u"/a<b/sh0012.bmp"_s;
    page.HTMLFilePath = t.inProject(u"stored.htm"_s);
    EXPECT_EQ(writer.ChoosePageHtmlPath(page, 3), u"/a<b/sh0012.htm"_s);
    page.ScreenShotFilePath = t.inProject(u"p.bmp"_s);
    exists(u"p.htm"_s);
    EXPECT_EQ(choose(), u"p.htm"_s) << "without a question";
    page.ScreenShotFilePath = u"  "_s;
    EXPECT_EQ(choose(), u"stored.htm"_s);
}

TEST_F(HtmlPageWriterTest, aPageWithoutPictureCountsUpToAFreeName)
{
    EXPECT_EQ(choose(), u"sh3A.htm"_s);
    exists(u"sh3A.htm"_s);
    EXPECT_EQ(choose(), u"sh3A0.htm"_s);
    exists(u"sh3A0.htm"_s);
    EXPECT_EQ(choose(), u"sh3A01.htm"_s);
    EXPECT_EQ(choose(4), u"sh4A.htm"_s);
}

TEST_F(HtmlPageWriterTest, aStoredNameThatIsTakenIsAskedAbout)
{
    page.HTMLFilePath = u"notes.txt"_s;
    EXPECT_EQ(choose(), u"notes.txt"_s) << "free: as it stands";
    exists(u"notes.txt"_s);
    t.prompter.expectAsk(Question::OverwriteHtmlFile, Answer::Yes);
    EXPECT_EQ(choose(), u"notes.txt"_s);
    EXPECT_EQ(t.prompter.asked[0].text,
              u"File "_s + t.inProject(u"notes.txt"_s) + u" already exists, overwrite it?."_s);
    EXPECT_EQ(t.prompter.asked[0].title, u"Overwrite?"_s);
    EXPECT_EQ(t.prompter.asked[0].icon, Icon::Question);

    exists(u"taken.htm"_s);
    t.prompter.expectAsk(Question::OverwriteHtmlFile, Answer::No);
    t.prompter.expectInput(Question::NewHtmlFileName, std::nullopt);
    t.prompter.expectInput(Question::NewHtmlFileName, QString());
    t.prompter.expectInput(Question::NewHtmlFileName, u"taken"_s);
    t.prompter.expectAsk(Question::OverwriteHtmlFile, Answer::No);
    t.prompter.expectInput(Question::NewHtmlFileName, t.inProject(u"free.HTML"_s));
    EXPECT_EQ(choose(), u"free.HTML"_s);
    EXPECT_EQ(t.prompter.asked[2].text, u"Please enter a unique file name for the new html file:"_s);
    EXPECT_EQ(t.prompter.asked[2].title, u"New HTML File Name"_s);
    EXPECT_TRUE(t.prompter.asked[5].text.contains(t.inProject(u"taken.htm"_s)));
}
} // namespace
