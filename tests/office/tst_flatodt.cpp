#include "platform/FileChecks.h"
#include "platform/office/DocumentTemplate.h"
#include "platform/office/FlatOdt.h"

#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// A4 with margins of 2.5 cm: 9072 twips (453.6 pt) of text in a line, 14004 twips in a column.
const PageFormat a4 = {QSize(11906, 16838), 1417};

class FlatOdtTest : public ::testing::Test
{
protected:
    QTemporaryDir m_folder;
    QString m_file = m_folder.filePath(u"written.fodt"_s);
    DocumentPictures m_pictures;
    DocumentContent m_content;
    DocumentWork m_work;

    DocumentParagraph &add(const QString &text, const ParagraphLook &look = {})
    {
        m_content.paragraphs.push_back({text, {}, look, false});
        return m_content.paragraphs.back();
    }
    QString addPicture(QSize size, const QString &alternativeText = {})
    {
        const QString path = m_folder.filePath(u"%1.png"_s.arg(m_content.paragraphs.size()));
        EXPECT_TRUE(QImage(size, QImage::Format_RGB32).save(path));
        add({}).picture = {path, alternativeText};
        return path;
    }
    void write(const OdtSkeleton &skeleton = OdtSkeleton::plain(a4))
    {
        QFile file(m_file);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        FlatOdt::write(m_content, m_pictures, skeleton, file, m_work);
    }

    /// The value of an XPath expression with qualified names, as xmllint reads the file.
    QString xpath(const QString &expression) const
    {
        static const QRegularExpression name(u"(@?)([a-z]+:[a-z-]+)"_s);
        QProcess process;
        process.start(u"xmllint"_s,
                      {u"--xpath"_s, QString(expression).replace(name, u"\\1*[name()='\\2']"_s), m_file});
        EXPECT_TRUE(process.waitForFinished() && process.exitCode() == 0)
            << process.readAllStandardError().constData();
        return QString::fromUtf8(process.readAllStandardOutput()).chopped(1);
    }
    /// An attribute of the style of the n-th paragraph.
    QString styleOf(int number, const QString &attribute) const
    {
        return xpath(
            u"string(//style:style[@style:name=//*[local-name()='text']/*[%1]/@text:style-name]//@%2)"_s
                .arg(number)
                .arg(attribute));
    }
    /// What lies between the tags of the text.
    QString body() const
    {
        const QString all = QString::fromUtf8(contents(m_file));
        const qsizetype begin = all.indexOf(u"<office:text>"_s) + 13;
        return all.mid(begin, all.indexOf(u"</office:text>"_s) - begin);
    }
};
} // namespace

TEST_F(FlatOdtTest, everyCharacterComesThrough)
{
    m_content.title = u"A & <B>"_s;
    add(u"<a> & \"b\""_s);
    add(u" x  y z\tw "_s);
    add(u"one\vtwo\u0001\u001e\ufffe"_s);
    add(u"\U0001f4f7 \u4e2d\u00e9"_s + QChar(0xd83d));
    add({});
    write();
    const QString p = u"<text:p text:style-name=\"ShotlyParagraph1\">"_s;
    EXPECT_EQ(body(), p + u"&lt;a&gt; &amp; &quot;b&quot;</text:p>\n"_s + p +
                          u"<text:s/>x<text:s text:c=\"2\"/>y z<text:tab/>w<text:s/></text:p>\n"_s + p +
                          u"one<text:line-break/>two</text:p>\n"_s + p +
                          u"\U0001f4f7 \u4e2d\u00e9\ufffd</text:p>\n"_s +
                          u"<text:p text:style-name=\"ShotlyParagraph1\"/>\n"_s);
    EXPECT_EQ(xpath(u"string(//dc:title)"_s), u"A & <B>"_s);
}

TEST_F(FlatOdtTest, looksBecomeStyles)
{
    add(u"plain"_s);
    add(u"rich"_s, {u"Com\"ic'MS"_s, 20, 6, true, true, true, 2, 3}).pageBreakBefore = true;
    add(u"plain again"_s);
    write();
    EXPECT_EQ(xpath(u"string(//office:text/*[3]/@text:style-name)"_s), u"ShotlyParagraph1"_s);
    const QStringList attributes =
        u"fo:font-size style:font-size-asian fo:color fo:font-weight style:font-weight-complex fo:font-style "
        "style:text-underline-style fo:text-align fo:break-before style:parent-style-name fo:font-family"_s
            .split(u' ');
    const QStringList plain =
        u"11pt 11pt #000000 normal normal normal none start - Standard -"_s.remove(u'-').split(u' ');
    const QStringList decorated =
        u"20pt 20pt #ff0000 bold bold italic solid end page Heading_20_3 'Com\"icMS'"_s.split(u' ');
    for (qsizetype i = 0; i < attributes.size(); ++i) {
        EXPECT_EQ(styleOf(1, attributes[i]), plain[i]) << attributes[i].toStdString();
        EXPECT_EQ(styleOf(2, attributes[i]), decorated[i]) << attributes[i].toStdString();
    }
    EXPECT_EQ(xpath(u"string(//text:h/@text:outline-level)"_s), u"3"_s);
    EXPECT_EQ(xpath(u"count(//style:style[@style:display-name='Heading 3']/*)"_s), u"0"_s) << "no look";
}

TEST_F(FlatOdtTest, sizesAreThoseThatWordHas)
{
    for (const int points : {0, -5, 4000})
        add(u"x"_s, {{}, points});
    write();
    for (const auto &[number, size] : {std::pair(1, u"1pt"_s), {2, u"1pt"_s}, {3, u"1638pt"_s}})
        EXPECT_EQ(styleOf(number, u"fo:font-size"_s), size);
}

TEST_F(FlatOdtTest, picturesLieInTheTextAndFitIntoIt)
{
    const QString small = addPicture({100, 50}, u"a \"small\" one"_s);
    addPicture({1000, 500});
    addPicture({100, 2000});
    QList<int> told;
    m_work.progressed = [&](int done) { told += done; };
    write();
    EXPECT_EQ(told, (QList<int>{1, 2, 3}));
    EXPECT_EQ(QByteArray::fromBase64(xpath(u"string(//draw:frame[1]//office:binary-data)"_s).toUtf8()),
              contents(small));
    EXPECT_EQ(xpath(u"string(//svg:desc)"_s), u"a \"small\" one"_s);
    EXPECT_EQ(xpath(u"count(//draw:frame[@text:anchor-type='as-char'])"_s), u"3"_s);
    const auto size = [this](int number) {
        const QString frame = u"//office:text/*[%1]/draw:frame/"_s.arg(number);
        return xpath(u"concat(%1@svg:width,' ',%1@svg:height)"_s.arg(frame));
    };
    EXPECT_EQ(size(1), u"75.00pt 37.50pt"_s);
    EXPECT_EQ(size(2), u"453.60pt 226.80pt"_s);
    // The height leaves a line of 24 pt free: 14004 - 480 twips = 676.2 pt.
    EXPECT_EQ(size(3), u"33.80pt 676.20pt"_s);

    add({}).picture = {m_folder.filePath(u"missing.png"_s), {}};
    EXPECT_EQ(errorOf([this] { write(); }), RunTimeError::FileNotFound);
    std::stop_source stop;
    m_work = {stop.get_token(), [&](int) { stop.request_stop(); }};
    EXPECT_EQ(errorOf([this] { write(); }), RunTimeError::UserInterrupt) << "after the first";
}

TEST_F(FlatOdtTest, aTemplateKeepsWhatItHas)
{
    // The room: (15 - 3 - 2) cm in width; (20 - 1 - 1 - 1.5 - 0.5) cm in height.
    const QString path = m_folder.filePath(u"Shotly.dot"_s);
    putFile(path, R"(<?xml version="1.0"?>
<o:document xmlns:o="urn:oasis:names:tc:opendocument:xmlns:office:1.0" xmlns:style="urn:oasis:names:tc:opendocument:xmlns:style:1.0" xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0" xmlns:fo="urn:oasis:names:tc:opendocument:xmlns:xsl-fo-compatible:1.0" o:mimetype="application/vnd.oasis.opendocument.text-template">
<o:meta><text:p>Ann</text:p></o:meta>
<o:styles><style:style style:name="Heading_20_1"/></o:styles>
<o:automatic-styles><style:style style:name="P1" style:master-page-name="First"/><style:page-layout style:name="L1"><style:page-layout-properties fo:page-width="15cm" fo:page-height="20cm" fo:margin-left="30mm" fo:margin-right="2cm" fo:margin-top="1cm" fo:margin-bottom="1cm"/><style:header-style><style:header-footer-properties fo:min-height="1.5cm" fo:margin-bottom="0.5cm"/></style:header-style></style:page-layout></o:automatic-styles>
<o:master-styles><style:master-page style:name="Standard" style:page-layout-name="L0"/><style:master-page style:name="First" style:page-layout-name="L1"><style:header><text:p>ACME</text:p></style:header></style:master-page></o:master-styles>
<o:body><o:text><text:p/><text:p>Dear <text:span>Sir</text:span></text:p> <text:p text:style-name="P1"/></o:text></o:body>
</o:document>)");
    add(u"heading"_s).look.outlineLevel = 1;
    addPicture({1000, 10});
    write(DocumentTemplate::read(path, OfficeProgram(m_folder.path(), u"no program"_s), {}));
    EXPECT_EQ(xpath(u"count(/o:document/o:body/o:text/*)"_s), u"4"_s) << "the last empty one makes room";
    EXPECT_EQ(xpath(u"string(//o:text/text:p[2])"_s), u"Dear Sir"_s);
    EXPECT_EQ(xpath(u"string(//style:header)"_s), u"ACME"_s);
    EXPECT_EQ(xpath(u"string(/*/@o:mimetype)"_s), u"application/vnd.oasis.opendocument.text"_s);
    EXPECT_EQ(xpath(u"count(//o:meta/text:p)"_s), u"0"_s);
    EXPECT_EQ(styleOf(3, u"style:master-page-name"_s), u"First"_s);
    EXPECT_EQ(styleOf(3, u"style:parent-style-name"_s), u"Shotly_20_Heading_20_1"_s)
        << "the template's own headings may have a look";
    EXPECT_EQ(xpath(u"substring-before(//*[local-name()='frame']/@*[local-name()='width'],'.')"_s), u"283"_s)
        << "10 cm";
}

TEST_F(FlatOdtTest, whatIsNoTemplateIsRefused)
{
    const QString path = m_folder.filePath(u"Shotly.dot"_s);
    const auto reading = [&] {
        return errorOf([&] { DocumentTemplate::read(path, OfficeProgram(m_folder.path(), u"none"_s), {}); });
    };
    EXPECT_EQ(reading(), RunTimeError::WordFileMissing);
    for (const char *bytes : {"", "Dear Sir", "<office:document>", "<html/>"}) {
        putFile(path, bytes);
        EXPECT_EQ(reading(), RunTimeError::WordFileNotWritten) << bytes;
    }
    putFile(path, "PK\x03\x04");
    EXPECT_EQ(reading(), RunTimeError::CannotCreateObject) << "which could tell";
    EXPECT_FALSE(DocumentTemplate::isDelivered(path));
    EXPECT_TRUE(DocumentTemplate::isDelivered(QStringLiteral(SHOTLY_DELIVERED_DIR "/Shotly.dot")));
}
