#include "platform/AtomicFile.h"
#include "platform/FileChecks.h"
#include "platform/office/LibreOfficeBackend.h"
#include "support/PdfFile.h"

#include <QFileInfo>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>

#include <csignal>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// The real LibreOffice; what it has made is read by other programs.
class LibreOfficeTest : public ::testing::Test
{
protected:
    static QTemporaryDir *profiles; ///< one for all tests: the first run in it takes longest

    static void SetUpTestSuite() { profiles = new QTemporaryDir; }
    static void TearDownTestSuite() { delete profiles; }

    QTemporaryDir m_folder;
    OfficeProgram m_office{profiles->path()};
    LibreOfficeBackend m_backend{m_office, LibreOfficeBackend::Template::Honoured};
    DocumentPictures m_pictures;
    DocumentContent m_content;
    QString m_document = path("a d\u00f6cument.doc");
    QString m_pdf = path("a d\u00f6cument.pdf");

    QString path(const char *name) const { return m_folder.filePath(QString::fromUtf8(name)); }

    void add(const QString &text, const ParagraphLook &look = {}, bool pageBreak = false)
    {
        m_content.paragraphs.push_back({text, {}, look, pageBreak});
    }
    /// A picture like a photograph, which lossy compression would make smaller.
    QImage addPicture(QSize size)
    {
        QImage image(size, QImage::Format_RGB32);
        unsigned noise = 1;
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                noise = noise * 1664525 + 1013904223;
                image.setPixel(x, y,
                               qRgb(x * 240 / size.width() + static_cast<int>(noise >> 28), y % 256, 90));
            }
        }
        const QString file = path("picture.png");
        EXPECT_TRUE(image.save(file));
        m_content.paragraphs.push_back({{}, DocumentPicture{file, u"noise"_s}, {}, false});
        return image;
    }
    void save() { m_backend.save(m_content, m_pictures, m_document, {}); }
    void savePdf() { m_backend.savePdf(m_content, m_pictures, m_document, m_pdf, {}); }

    static QString output(const QString &program, const QStringList &arguments)
    {
        QProcess process;
        process.start(program, arguments);
        EXPECT_TRUE(process.waitForFinished() && process.exitCode() == 0) << program.toStdString();
        return QString::fromUtf8(process.readAllStandardOutput());
    }
    QString textOfPdf() const { return output(u"pdftotext"_s, {u"-layout"_s, m_pdf, u"-"_s}); }

    /// A template, of whatever format, with a page of 15 x 20 cm, 3 cm of margin on the left, 2 on the right,
    /// and a header.
    void makeTemplate(const QByteArray &header, const QString &suffix, const QString &filter) const
    {
        const QByteArray source = R"(<?xml version="1.0"?>
<office:document xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0" xmlns:style="urn:oasis:names:tc:opendocument:xmlns:style:1.0" xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0" xmlns:fo="urn:oasis:names:tc:opendocument:xmlns:xsl-fo-compatible:1.0" office:version="1.2" office:mimetype="application/vnd.oasis.opendocument.text">
<office:automatic-styles><style:page-layout style:name="L"><style:page-layout-properties fo:page-width="15cm" fo:page-height="20cm" fo:margin-left="3cm" fo:margin-right="2cm" fo:margin-top="1cm" fo:margin-bottom="1cm"/><style:header-style><style:header-footer-properties fo:min-height="1cm"/></style:header-style></style:page-layout></office:automatic-styles>
<office:master-styles><style:master-page style:name="Standard" style:page-layout-name="L"><style:header><text:p>)" +
                                  header +
                                  R"(</text:p></style:header></style:master-page></office:master-styles>
<office:body><office:text><text:p/></office:text></office:body></office:document>)";
        m_office.convert({u"fodt"_s, {}, suffix, filter},
                         [&](const QString &input) { putFile(input, source); }, m_content.templatePath, {});
    }
};

QTemporaryDir *LibreOfficeTest::profiles = nullptr;
} // namespace

TEST_F(LibreOfficeTest, aWord97DocumentAndItsPdf)
{
    m_content.title = u"How it is done"_s;
    m_content.templatePath = QStringLiteral(SHOTLY_DELIVERED_DIR "/Shotly.dot");
    add(u"First step"_s, {u"DejaVu Sans"_s, 20, 6, true, false, false, 1, 1});
    add(u"Press the \u201cbutton\u201d."_s);
    const QImage picture = addPicture({2400, 200}); // 381 pixels an inch when it is as wide as the text
    add(u"Second step"_s, {{}, 14, 0, false, false, false, 0, 2}, true);

    // Another LibreOffice is being used meanwhile, and goes on.
    QProcess other;
    other.setChildProcessModifier([] { ::setpgid(0, 0); });
    other.start(u"soffice"_s, {u"-env:UserInstallation=file://"_s + path("other"), u"--headless"_s,
                               u"--norestore"_s, u"--accept=pipe,name=shotly-test;urp;"_s});
    ASSERT_TRUE(other.waitForStarted());
    save();
    savePdf();
    EXPECT_FALSE(other.waitForFinished(0));
    ::kill(-static_cast<pid_t>(other.processId()), SIGKILL);
    other.waitForFinished();

    EXPECT_TRUE(output(u"file"_s, {u"-b"_s, m_document}).startsWith(u"Composite Document File V2"_s));
    for (const QString &program : {u"antiword"_s, u"catdoc"_s}) {
        const QString text = output(program, {m_document});
        EXPECT_TRUE(text.contains(u"First step"_s) && text.contains(u"Second step"_s)) << text.toStdString();
    }
    EXPECT_EQ(textOfPdf().count(u'\f'), 2);
    EXPECT_TRUE(output(u"pdfinfo"_s, {m_pdf}).contains(u"How it is done"_s));
    const QString outline = output(u"pdftohtml"_s, {u"-xml"_s, u"-i"_s, u"-stdout"_s, m_pdf});
    EXPECT_TRUE(outline.contains(u"<item page=\"1\">First step</item>"_s)) << outline.toStdString();
    EXPECT_TRUE(outline.contains(u"<item page=\"2\">Second step</item>"_s)) << outline.toStdString();
    const QList<QImage> pictures = PdfFile::pictures(m_pdf);
    ASSERT_EQ(pictures.size(), 1);
    EXPECT_EQ(pictures[0].convertToFormat(picture.format()), picture);
}

TEST_F(LibreOfficeTest, aTemplateOfTheUsersGivesThePage)
{
    m_content.templatePath = path("Shotly.dot");
    addPicture({1000, 20});
    // One after the other under the same name, which says nothing of the format. The second is as long as the
    // first.
    int number = 0;
    qint64 length = 0;
    for (const QString &format : {u"dot:MS Word 97 Vorlage"_s, u"dot:MS Word 97 Vorlage"_s,
                                  u"dotx:MS Word 2007 XML Template"_s, u"ott:writer8_template"_s}) {
        const QString header = u"Inc. %1"_s.arg(++number);
        makeTemplate(header.toUtf8(), format.section(u':', 0, 0), format.section(u':', 1));
        if (number == 2) {
            EXPECT_EQ(QFileInfo(m_content.templatePath).size(), length);
        }
        length = QFileInfo(m_content.templatePath).size();
        save();
        EXPECT_TRUE(output(u"catdoc"_s, {m_document}).contains(header)) << header.toStdString();
    }
    // A pixel is a tenth of a millimetre: the picture fills the text's 10 cm and begins at the margin.
    savePdf();
    const QList<QImage> pages = PdfFile::pages(m_pdf);
    ASSERT_EQ(pages.size(), 1);
    EXPECT_NEAR(pages[0].width(), 1500, 3);
    EXPECT_NEAR(pages[0].height(), 2000, 3);
    EXPECT_NEAR(PdfFile::printedArea(pages[0]).left(), 300, 4);
    EXPECT_NEAR(PdfFile::printedArea(pages[0]).right(), 1300, 4);
}

TEST_F(LibreOfficeTest, damagedTemplatesAreRefused)
{
    m_content.templatePath = path("Shotly.dot");
    putFile(m_document, "old");
    const QByteArray whole = contents(QStringLiteral(SHOTLY_DELIVERED_DIR "/Shotly.dot"));
    for (const QByteArray &bytes :
         {whole.first(2000), whole.first(8) + "Dear Sir", QByteArray("PK\x03\x04")}) {
        putFile(m_content.templatePath, bytes);
        try {
            save();
            ADD_FAILURE() << bytes.size();
        } catch (const RunTimeError &error) {
            EXPECT_TRUE(error.description().startsWith(u"Cannot read the document template \""_s +
                                                       m_content.templatePath + u"\": LibreOffice "_s))
                << error.what();
        }
    }
    EXPECT_EQ(contents(m_document), "old");
}

TEST_F(LibreOfficeTest, anyWordFileBecomesAPdf)
{
    EXPECT_EQ(errorOf([this] { m_backend.convertFile(m_document, m_pdf, {}); }),
              RunTimeError::WordFileMissing);
    putFile(m_document, R"({\rtf1\ansi Rich {\b text}\par})");
    m_backend.convertFile(m_document, m_pdf, {});
    EXPECT_TRUE(textOfPdf().contains(u"Rich text"_s)) << textOfPdf().toStdString();
}
