#include "platform/office/OfficeApplication.h"
#include "platform/RunTimeError.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// What backends are asked for.
struct Asked {
    std::vector<DocumentContent> saved;
    QStringList calls;
};

class FakeBackend : public DocumentBackend
{
public:
    explicit FakeBackend(Asked &asked) : m_asked(asked) {}
    void save(const DocumentContent &content, DocumentPictures &, const QString &path,
              const DocumentWork &) override
    {
        m_asked.saved.push_back(content);
        m_asked.calls += u"save "_s + path;
    }
    void savePdf(const DocumentContent &content, DocumentPictures &, const QString &documentPath,
                 const QString &pdfPath, const DocumentWork &) override
    {
        m_asked.saved.push_back(content);
        m_asked.calls += u"pdf "_s + documentPath + u' ' + pdfPath;
    }
    void convertFile(const QString &documentPath, const QString &pdfPath, const DocumentWork &) override
    {
        m_asked.calls += u"convert "_s + documentPath + u' ' + pdfPath;
    }
    void open(const QString &path, bool rewritten) override
    {
        m_asked.calls += (rewritten ? u"show "_s : u"open "_s) + path;
    }

private:
    Asked &m_asked;
};

class OfficeApplicationTest : public testing::Test
{
protected:
    QTemporaryDir folder;
    Asked asked;
    OfficeApplication word{std::make_unique<FakeBackend>(asked)};

    QString made(const QString &name) const
    {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        return file.fileName();
    }
    /// The paragraphs of what is saved: a "/" before those that begin a page.
    QStringList lines(WordDocument &document)
    {
        document.saveAs(u"/p/Demo.doc"_s, {});
        QStringList result;
        for (const DocumentParagraph &paragraph : asked.saved.back().paragraphs)
            result +=
                (paragraph.pageBreakBefore ? u"/"_s : QString()) +
                (paragraph.picture ? u"<"_s + paragraph.picture->alternativeText + u'>' : paragraph.text);
        return result;
    }
};
} // namespace

TEST_F(OfficeApplicationTest, LineEndsBeginParagraphsOfTheSameLook)
{
    WordDocument &document = word.addDocument(u"/p/Shotly.dot"_s);
    EXPECT_EQ(lines(document), QStringList());
    document.addParagraph()->insertBefore(u"first"_s);
    const auto range = document.addParagraph();
    range->setFontSize(9);
    range->insertBefore(u"c\r\n"_s);
    range->insertBefore(u"a\nb\r"_s);
    range->setFontBold(true);
    range->setFontName(u"Georgia"_s);
    range->setFontColorIndex(6);
    range->setFontItalic(true);
    range->setUnderline(true);
    range->setAlignment(2);
    range->setOutlineLevel(1);
    const auto last = document.addParagraph();
    EXPECT_EQ(lines(document), (QStringList{u"first"_s, u"a"_s, u"b"_s, u"c"_s, QString(), QString()}));
    const auto &paragraphs = asked.saved.back().paragraphs;
    ParagraphLook look{u"Georgia"_s, 9, 6, true, true, true, 2, 1};
    for (std::size_t i = 1; i <= 3; ++i)
        EXPECT_EQ(paragraphs[i].look, look) << i;
    look.outlineLevel = WordRange::BodyText; // there are no words to read as a heading
    EXPECT_EQ(paragraphs[4].look, look);
    EXPECT_EQ(paragraphs[0].look, ParagraphLook());
    EXPECT_EQ(paragraphs[5].look, ParagraphLook());
    last->insertBefore(u"d\ve\u2028f\u2029g"_s);
    EXPECT_EQ(lines(document).mid(5), (QStringList{u"d"_s, u"e"_s, u"f"_s, u"g"_s}));
    EXPECT_EQ(asked.saved.back().title, u"Demo"_s);
    EXPECT_EQ(asked.saved.back().templatePath, u"/p/Shotly.dot"_s);
}

TEST_F(OfficeApplicationTest, ABreakBeginsAPageAndNothingElse)
{
    WordDocument &document = word.addDocument({});
    EXPECT_THROW(word.insertBreak(WordApplication::PageBreak), RunTimeError) << "nothing is selected";
    document.addParagraph()->insertBefore(u"contents"_s);
    const auto addBreak = [&](const QString &after) {
        const auto range = document.addParagraph();
        range->select();
        word.insertBreak(WordApplication::PageBreak);
        word.insertAfter(after);
    };
    addBreak(u"\r\n"_s);
    document.addParagraph()->insertBefore(u"title\r\n"_s);
    EXPECT_EQ(lines(document), (QStringList{u"contents"_s, u"/title"_s, QString()}));
    addBreak(u"\r\nmore\r\nlines"_s);
    addBreak(u"at once"_s);
    addBreak(u"\r\n"_s);
    EXPECT_EQ(lines(document), (QStringList{u"contents"_s, u"/title"_s, QString(), u"/more"_s, u"lines"_s,
                                            u"/at once"_s, u"/"_s}));
    const auto text = document.addParagraph();
    text->insertBefore(u"a\r\nb"_s);
    text->select();
    word.insertAfter(u"c\r\nd"_s);
    EXPECT_EQ(lines(document).mid(6), (QStringList{u"/a"_s, u"bc"_s, u"d"_s}));
}

TEST_F(OfficeApplicationTest, APictureTakesThePlaceOfTheText)
{
    WordDocument &document = word.addDocument({});
    const auto range = document.addParagraph();
    range->insertBefore(u"a\r\nb"_s);
    range->setAlignment(1);
    EXPECT_THROW(document.addPicture(folder.filePath(u"none.png"_s), u"alt"_s, *range), RunTimeError);
    document.addPicture(made(u"a.png"_s), u"alt"_s, *range);
    EXPECT_EQ(lines(document), QStringList{u"<alt>"_s});
    EXPECT_EQ(asked.saved.back().paragraphs[0].text, QString());
    EXPECT_EQ(asked.saved.back().paragraphs[0].look.alignment, 1);
}

TEST_F(OfficeApplicationTest, PdfsAreMadeOfTheActiveDocument)
{
    const auto toPdf = [this] { word.run(WordProcessor::pdfMacro(), {}); };
    EXPECT_THROW(toPdf(), RunTimeError) << "no document";
    word.setActivePrinter(u"Adobe PDF on "_s);
    EXPECT_THROW(toPdf(), RunTimeError);
    WordDocument &document = word.addDocument({});
    EXPECT_EQ(document.fullName(), u"Document1"_s);
    EXPECT_THROW(toPdf(), RunTimeError) << "not saved";
    document.saveAs(u"/p/Demo.doc"_s, {});
    EXPECT_EQ(document.fullName(), u"/p/Demo.doc"_s);
    toPdf();
    word.addDocument({}).saveAs(u"/p/Demo1.doc"_s, {});
    toPdf();
    EXPECT_THROW(word.run(u"Other"_s, {}), RunTimeError);
    word.setActivePrinter(u"Office Printer"_s);
    EXPECT_THROW(toPdf(), RunTimeError);
    EXPECT_EQ(asked.calls, (QStringList{u"save /p/Demo.doc"_s, u"pdf /p/Demo.doc /p/Demo.pdf"_s,
                                        u"save /p/Demo1.doc"_s, u"pdf /p/Demo1.doc /p/Demo1.pdf"_s}));
    asked.calls.clear();
    word.show();
    EXPECT_TRUE(asked.calls.isEmpty()) << "it was not to be seen";
    word.setVisible(true);
    word.show();
    const QString other = made(u"other.doc"_s);
    EXPECT_EQ(word.openDocument(other).fullName(), other);
    word.setActivePrinter(u"Adobe PDF on "_s);
    toPdf();
    EXPECT_EQ(asked.calls, (QStringList{u"show /p/Demo.doc"_s, u"open "_s + other,
                                        u"convert %1 %2"_s.arg(other, folder.filePath(u"other.pdf"_s))}));
    try {
        word.openDocument(u"/none.doc"_s);
        ADD_FAILURE() << "there is no such file";
    } catch (const RunTimeError &error) {
        EXPECT_EQ(error.number(), 4198);
    }
    EXPECT_EQ(word.documents(), 3);
}
