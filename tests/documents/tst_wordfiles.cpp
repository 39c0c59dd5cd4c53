#include "documents/DocumentFixture.h"
#include "documents/PdfConversion.h"
#include "documents/WordFiles.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
struct WordFilesTest : DocumentGenerationTest {
    const QString doc = t.inProject(u"Demo.doc"_s);

    WordFilesTest()
    {
        t.write(doc, "document");
        addPage(1);
    }
    void pick(const std::optional<QString> &path) { t.prompter.expectFile(Question::ChooseWordFile, path); }
};
} // namespace

TEST_F(WordFilesTest, thePdfTakesTheNameOfTheDocument)
{
    EXPECT_EQ(WordProcessor::pdfPathOf(u"/p/Demo.doc"_s), u"/p/Demo.pdf"_s);
    EXPECT_EQ(WordProcessor::pdfPathOf(u"/p/a.b.doc"_s), u"/p/a.b.pdf"_s);
    EXPECT_EQ(WordProcessor::pdfPathOf(u"/p.q/Demo"_s), u"/p.q/Demo.pdf"_s);
}

TEST_F(WordFilesTest, onlyAPrinterOfExactlyThatNameMakesPdfs)
{
    for (const QString &name : {u"Adobe PDF 2"_s, u"adobe pdf"_s, u"PDF"_s}) {
        word.printerNames = QStringList{u"Office Printer"_s, name};
        t.prompter.expectTell(Question::PdfPrinterMissing);
        EXPECT_FALSE(PdfConversion::AdobePdfPrinterInstalled(word, t.prompter));
        t.prompter.expectTell(Question::PdfPrinterMissing);
        PdfConversion::ConvertWordFileToPdf(services); // nothing more is asked
    }
    EXPECT_TRUE(t.prompter.asked[0].text.startsWith(
        u"Your computer does not have an 'Adobe PDF Printer' installed.\r\nWithout"_s));
    EXPECT_TRUE(word.log.isEmpty());
}

TEST_F(WordFilesTest, aPickedWordFileIsOpenedAndConverted)
{
    const QString pdf = t.inProject(u"Demo.pdf"_s);
    t.write(pdf, "old pdf");
    QFile::setPermissions(pdf, QFile::ReadOwner);
    pick(doc);
    t.prompter.expectTell(Question::CloseWordFirst);
    PdfConversion::ConvertWordFileToPdf(services);
    EXPECT_EQ(t.prompter.asked[0].text, u"Word Files (*.doc)|*.doc"_s);
    EXPECT_EQ(t.prompter.asked[0].directory, t.state.AppOptions.BaseDirectory + u"/Demo"_s);
    EXPECT_EQ(t.prompter.asked[1].title, u"Please Close Microsoft Word and Adobe Applications"_s);
    EXPECT_TRUE(t.prompter.asked[1].text.contains(u"if they are open with the file.\r\n\r\nPlease"_s));
    EXPECT_EQ(word.log,
              (QStringList{u"visible 1"_s, u"open Demo.doc"_s, u"printer Adobe PDF on "_s,
                           u"run AdobePDFMaker.AutoExec.ConvertToPDF"_s, u"printer Office Printer"_s}));
    EXPECT_EQ(t.read(pdf), "new pdf");
    EXPECT_FALSE(t.workspace.busy || progress.open);

    word.failsToConvert = RunTimeError(RunTimeError::WordFileNotWritten, u"It took too long."_s);
    pick(doc);
    t.prompter.expectTell(Question::CloseWordFirst);
    t.prompter.expectTell(Question::WordFileFailed);
    PdfConversion::ConvertWordFileToPdf(services);
    EXPECT_EQ(t.prompter.asked.back().text, u"Error 5155: It took too long."_s);
    EXPECT_FALSE(QFile::exists(pdf)) << "no stale one";

    word.converts = false;
    word.log.clear();
    pick(doc);
    t.prompter.expectTell(Question::WordFileFailed);
    PdfConversion::ConvertWordFileToPdf(services);
    EXPECT_TRUE(t.prompter.asked.back().text.contains(u"needs LibreOffice"_s));
    pick(std::nullopt);
    PdfConversion::ConvertWordFileToPdf(services);
    EXPECT_TRUE(word.log.isEmpty());
}

TEST_F(WordFilesTest, documentsOfTheProjectAreOpenedByTheirKind)
{
    pick(doc);
    WordFiles::openDocumentOfProject(services);
    EXPECT_EQ(t.prompter.asked[0].directory, t.state.ProjectDirectory);
    EXPECT_EQ(word.log, (QStringList{u"visible 1"_s, u"open Demo.doc"_s}));
    pick(t.inProject(u"Demo.PDF"_s));
    WordFiles::openDocumentOfProject(services);
    EXPECT_EQ(programs.opened, QStringList{t.inProject(u"Demo.PDF"_s)});
    pick(std::nullopt);
    WordFiles::openDocumentOfProject(services);
    t.workspace.names.clear();
    t.prompter.expectTell(Question::SelectProjectForDocuments);
    WordFiles::openDocumentOfProject(services);
    EXPECT_EQ(word.log.size(), 2);
}

TEST_F(WordFilesTest, failuresAreToldByTheirNumber)
{
    const auto told = [this](int number) {
        word.failsToOpen = RunTimeError(number, u"Something."_s);
        t.prompter.expectTell(Question::WordFileFailed);
        WordFiles::open(word, t.prompter, u"/p/x.doc"_s);
        return t.prompter.asked.back().title + u": "_s + t.prompter.asked.back().text;
    };
    EXPECT_EQ(told(429),
              u"Shotly: Microsoft Word is not installed or is not functioning right. Error Number: 429"_s);
    EXPECT_EQ(told(4198), u"Shotly: File does not exist: /p/x.doc Error Number: 4198"_s);
    EXPECT_EQ(told(5216), u"ERROR: Could not find Acrobat Distiller"_s);
    EXPECT_EQ(told(75), u"Module1.Shotly: Error 75: Something."_s);
    word.installed = false;
    EXPECT_EQ(told(0).right(3), u"429"_s);
}
