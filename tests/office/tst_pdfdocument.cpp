#include "office/OtherPrograms.h"
#include "platform/FileChecks.h"
#include "platform/ImageFile.h"
#include "platform/office/PdfDocument.h"
#include "support/PdfFile.h"

#include <QDir>
#include <QImage>
#include <QImageWriter>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <future>
#include <sys/resource.h>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr PageFormat a4{{11906, 16838}, 1417};

/// Noise, which no encoding makes small.
QImage noise(QSize size, unsigned seed = 1)
{
    QImage picture(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            picture.setPixel(x, y, 0xff000000U | (seed = seed * 1664525U + 1013904223U) >> 8);
    return picture;
}

struct PdfDocumentTest : testing::Test {
    QTemporaryDir folder;
    DocumentContent content;
    QString pdf = folder.filePath(u"out.pdf"_s);

    QString path(const QString &name) const { return folder.filePath(name); }

    DocumentParagraph &add(const QString &text, const ParagraphLook &look = {})
    {
        return content.paragraphs.emplace_back(DocumentParagraph{text, {}, look, false});
    }
    DocumentParagraph &addPicture(const QString &file, int alignment = 0)
    {
        DocumentParagraph &paragraph = add({});
        paragraph.picture = DocumentPicture{file, u"Picture "_s + QFileInfo(file).fileName()};
        paragraph.look.alignment = alignment;
        return paragraph;
    }
    DocumentParagraph &addBitmap(const QImage &picture, int alignment = 0)
    {
        const QString file = path(u"%1.bmp"_s.arg(content.paragraphs.size()));
        ImageFile::save(picture, file);
        return addPicture(file, alignment);
    }
    /// In a thread of its own, as the program does.
    void write(const DocumentWork &work = {})
    {
        std::async(std::launch::async, [&] {
            DocumentPictures pictures;
            writePdfDocument(content, pictures, a4, pdf, work);
        }).get();
    }
    void writeAndCheck()
    {
        write();
        const QByteArray checked = printedBy("qpdf --check", {pdf});
        EXPECT_TRUE(checked.contains("No syntax or stream encoding errors found")) << checked.constData();
    }
    QString text() const { return QString::fromUtf8(printedBy("pdftotext -enc UTF-8", {pdf, u"-"_s})); }
    qsizetype pageCount() const { return text().count(u'\f'); }
    /// What matches the pattern in mupdf's description of all pages.
    QList<QRegularExpressionMatch> found(const char *format, const QString &pattern) const
    {
        const QByteArray described =
            printedBy(qPrintable(u"mutool draw -q -F %1 -o -"_s.arg(QLatin1StringView(format))), {pdf});
        QList<QRegularExpressionMatch> matches;
        for (auto next = QRegularExpression(pattern).globalMatch(QString::fromUtf8(described));
             next.hasNext();)
            matches += next.next();
        return matches;
    }
    struct Seen {
        int page;
        QRectF place; ///< points, from the upper left corner
    };
    QList<Seen> seenPictures() const
    {
        QList<Seen> seen;
        int page = 0;
        for (const QRegularExpressionMatch &match :
             found("trace", u"<page |<fill_image [^>]*transform=\"(\\S+) 0 -?0 (\\S+) (\\S+) (\\S+)\""_s)) {
            const auto number = [&](int index) { return match.captured(index).toDouble(); };
            if (match.captured().startsWith(u"<page"_s))
                ++page;
            else
                seen.append({page, QRectF(number(3), number(4), number(1), number(2))});
        }
        return seen;
    }
};

/// The highest memory of this process since the last call, in megabytes.
int peakMemory()
{
    const QByteArray status = contents(u"/proc/self/status"_s);
    const qsizetype at = status.indexOf("VmHWM:");
    putFile(u"/proc/self/clear_refs"_s, "5");
    return status.mid(at + 6, status.indexOf("kB", at) - at - 6).trimmed().toInt() / 1024;
}
} // namespace

TEST_F(PdfDocumentTest, TextLooksAsItsParagraphsSay)
{
    content.title = u"Späße & <more>"_s;
    add(u"Heading"_s, {u"DejaVu Sans"_s, 18, 2, true, false, false, 1});
    add(u"slanted"_s, {u"DejaVu Serif"_s, 12, 6, false, true, false, 2});
    add({});
    add(u"underlined"_s, {u"DejaVu Sans Mono"_s, 10, 10, false, false, true, 0});
    add(u"plain"_s);
    writeAndCheck();

    const auto lines =
        found("stext", u"<line bbox=\"(\\S+) \\S+ (\\S+) \\S+\"[^>]*>\\s*<font name=\"(\\S+)\" "
                       "size=\"(\\S+)\">\\s*<char [^>]* y=\"(\\S+)\" color=\"(\\S+)\""_s);
    ASSERT_EQ(lines.size(), 4);
    const auto value = [&](int line, int index) { return lines[line].captured(index).toDouble(); };
    const QStringList colors{u"#0000ff"_s, u"#ff0000"_s, u"#008080"_s, u"#000000"_s};
    // Without an italic font an upright one is slanted.
    const QStringList fonts{u"DejaVuSans-Bold"_s, u"DejaVuSerif"_s, u"DejaVuSansMono"_s, {}};
    EXPECT_EQ(found("trace", u"<span font=\"\\S+-Italic\"|<span [^>]*trm=\"\\S+ 0 [^0]"_s).size(), 1);
    const QList<int> sizes{18, 12, 10, 11};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(lines[i].captured(6), colors[i]);
        EXPECT_DOUBLE_EQ(value(i, 4), sizes[i]);
        EXPECT_TRUE(lines[i].captured(3).startsWith(fonts[i]));
    }
    // The text lies between 70.85 and 524.45 points.
    EXPECT_NEAR((value(0, 1) + value(0, 2)) / 2, 297.65, 0.5);
    EXPECT_NEAR(value(1, 2), 524.45, 0.5);
    EXPECT_NEAR(value(2, 1), 70.85, 0.5);
    // Line heights of DejaVu are 1.164 of the size; the blank line is of another font.
    EXPECT_NEAR(value(1, 5) - value(0, 5), 18 * 0.236 + 12 * 0.928, 0.3);
    EXPECT_GT(value(2, 5) - value(1, 5), 12 * 0.236 + 11 + 10 * 0.928);
    const auto underlines = found("trace", u"<stroke_path [^>]*color=\"0 \\.50\\d+ \\.50\\d+\""_s);
    EXPECT_EQ(underlines.size(), 1);

    const QByteArray information = printedBy("pdfinfo -enc UTF-8", {pdf});
    EXPECT_TRUE(information.contains("Title:           Späße & <more>\n")) << information.constData();
    EXPECT_TRUE(information.contains("Producer:        Shotly\n"));
    EXPECT_TRUE(information.contains("595 x 842 pts (A4)"));
    for (const QByteArray &font : printedBy("pdffonts", {pdf}).split('\n').mid(2, 4))
        EXPECT_TRUE(font.contains(" yes ")) << font.constData(); // embedded
}

TEST_F(PdfDocumentTest, TextFlowsOverPages)
{
    QStringList words;
    for (int i = 0; i < 4000; ++i)
        words += u"word%1"_s.arg(i);
    add(u"first"_s).pageBreakBefore = true; // no blank page before the first
    add(words.join(u' '));
    add(u"last"_s).pageBreakBefore = true;
    add(u"W"_s.repeated(300)); // no place to break
    add(u"H"_s, {{}, 4000});   // higher than a page
    add(u"behind"_s);
    writeAndCheck();

    EXPECT_EQ(text().simplified().remove(u"W W"_s).split(u' ').mid(0, 4002),
              QStringList{u"first"_s} + words + QStringList{u"last"_s});
    QList<int> pageOfLine;
    int page = 0;
    for (const auto &match :
         found("stext",
               u"<page |<line bbox=\"(\\S+) (\\S+) (\\S+) (\\S+)\"(?=[^>]*>\\s*<font [^>]*size=\"11\")"_s)) {
        if (match.captured().startsWith(u"<page"_s)) {
            ++page;
            continue;
        }
        EXPECT_GT(match.captured(1).toDouble(), 70.8);
        EXPECT_GT(match.captured(2).toDouble(), 70.8);
        EXPECT_LT(match.captured(3).toDouble(), 528); // a space may hang over
        EXPECT_LT(match.captured(4).toDouble(), 771.2);
        pageOfLine.append(page);
    }
    EXPECT_EQ(pageOfLine.first(), 1);
    EXPECT_EQ(pageOfLine.last(), pageCount());
    EXPECT_TRUE(text().section(u'\f', -4, -4).startsWith(u"last"_s)); // "H" and "behind" have a page each
}

TEST_F(PdfDocumentTest, PicturesLieWhereTheyFit)
{
    add(u"above"_s, {u"DejaVu Sans"_s, 10});
    addBitmap(noise({600, 400}));      // 450 x 300 points
    addBitmap(noise({100, 40}), 1);    // 75 x 30
    addBitmap(noise({200, 300}), 2);   // 150 x 225
    addBitmap(noise({300, 200}));      // 225 x 150: not on this page any more
    addBitmap(noise({1920, 1080}), 1); // as wide as the text
    addBitmap(noise({100, 2000}), 2);  // as high as the text but for a line: 676.2 points
    addBitmap(noise({1, 1})).pageBreakBefore = true;
    writeAndCheck();

    const QList<Seen> seen = seenPictures();
    ASSERT_EQ(seen.size(), 7);
    const QList<int> pages{1, 1, 1, 2, 2, 3, 4};
    const QList<QSizeF> sizes{{450, 300},      {75, 30},      {150, 225}, {225, 150},
                              {453.6, 255.15}, {33.8, 676.2}, {.75, .75}};
    const QList<double> lefts{70.85, 260.15, 374.45, 70.85, 70.85, 490.65, 70.85};
    for (int i = 0; i < seen.size(); ++i) {
        EXPECT_EQ(seen[i].page, pages[i]) << i;
        EXPECT_NEAR(seen[i].place.width(), sizes[i].width(), 0.1) << i;
        EXPECT_NEAR(seen[i].place.height(), sizes[i].height(), 0.1) << i;
        EXPECT_NEAR(seen[i].place.left(), lefts[i], 0.1) << i;
        EXPECT_LT(seen[i].place.bottom(), 771.2) << i;
        const bool first = i == 0 || seen[i - 1].page != seen[i].page;
        const double top = i == 0 ? 70.85 + 11.64 : first ? 70.85 : seen[i - 1].place.bottom();
        EXPECT_GT(seen[i].place.top(), top - 0.2) << i;
        EXPECT_LT(seen[i].place.top(), top + 5) << i;
    }
}

TEST_F(PdfDocumentTest, PicturesAreUnchanged)
{
    const QImage picture = noise({60, 40});
    QImage fewColors(70, 30, QImage::Format_RGB32);
    for (int i = 0; i < 70 * 30; ++i)
        fewColors.setPixel(i % 70, i / 70, 0xff0a0b0cU * static_cast<QRgb>(i % 200));
    fewColors = fewColors.convertToFormat(QImage::Format_RGB32);
    const QList<QImage> sources{picture, fewColors, picture.convertToFormat(QImage::Format_Mono),
                                picture.convertToFormat(QImage::Format_Grayscale8),
                                picture.convertToFormat(QImage::Format_Indexed8)};
    addBitmap(sources[0]);
    addBitmap(sources[1]);
    for (int i = 2; i < sources.size(); ++i) {
        ASSERT_TRUE(sources[i].save(path(u"%1.png"_s.arg(i))));
        addPicture(path(u"%1.png"_s.arg(i)));
    }
    addPicture(path(u"2.png"_s)); // lies in the file once
    writeAndCheck();
    const QList<QImage> found = PdfFile::pictures(pdf);
    ASSERT_EQ(found.size(), sources.size() + 1);
    for (int i = 0; i < sources.size(); ++i)
        EXPECT_EQ(found[i].convertToFormat(QImage::Format_RGB32),
                  sources[i].convertToFormat(QImage::Format_RGB32))
            << i;
    EXPECT_EQ(printedBy("qpdf --json", {pdf}).count("\"/Image\""), sources.size());

    content = {};
    ASSERT_TRUE(picture.save(path(u"a.jpg"_s)) && sources[3].save(path(u"grey.jpg"_s)));
    addPicture(path(u"a.jpg"_s));
    addPicture(path(u"grey.jpg"_s));
    writeAndCheck();
    printedBy("pdfimages -all", {pdf, path(u"got"_s)});
    EXPECT_EQ(contents(path(u"got-000.jpg"_s)), contents(path(u"a.jpg"_s)));
    EXPECT_EQ(contents(path(u"got-001.jpg"_s)), contents(path(u"grey.jpg"_s)));
}

TEST_F(PdfDocumentTest, AnyTextIsWritten)
{
    QString every;
    for (char32_t character = 1; character <= 0x1ffff; character += character < 0x3000 ? 1 : 37)
        every += QString::fromUcs4(&character, 1) + (character % 50 == 0 ? u" "_s : u""_s);
    add(every);
    for (const char16_t lonely : {u'\xd83d', u'\xde00', u'\xffff', u'\x2029', u'\0'})
        add(u"a"_s + QChar(lonely));
    writeAndCheck();

    content = {};
    add(u"Grüße, Ελληνικά, Русский"_s, {u"DejaVu Sans"_s});
    add(u"one\x01two\tthree\x1b[0m\vfour"_s);
    add(u"مرحبا بالعالم"_s, {u"DejaVu Sans"_s});
    add(u"long words wrapped "_s.repeated(20));
    writeAndCheck();
    EXPECT_TRUE(text().contains(u"Grüße, Ελληνικά, Русский"_s));
    const QString read = QString::fromUtf8(printedBy("mutool draw -q -F text -o -", {pdf})).simplified();
    EXPECT_TRUE(read.contains(u"one two three [0m four"_s));
    EXPECT_TRUE(read.contains(u"مرحبا بالعالم"_s)) << "letters, not their shapes";
    EXPECT_TRUE(read.endsWith(u"long words wrapped "_s.repeated(20).trimmed()));

    content = {};
    writeAndCheck();
    EXPECT_EQ(pageCount(), 1);
}

TEST_F(PdfDocumentTest, HeadingsAndPicturesAreToldOf)
{
    const auto heading = [&](const QString &title, int level) -> DocumentParagraph & {
        return add(title, {u"DejaVu Sans"_s, 10, 0, false, false, false, 0, level});
    };
    heading(u"One"_s, 1);
    heading(u"  Two\tof “1”"_s, 3);
    heading(u" "_s, 2);
    add(u"text"_s);
    addBitmap(noise({20, 20}));
    heading(u"Three"_s, 2).pageBreakBefore = true;
    heading(u"Four"_s, 1);
    heading(u"Nine"_s, 9);
    writeAndCheck();
    const QString outline = QString::fromUtf8(printedBy("mutool show", {pdf, u"outline"_s}));
    // Lines are 11.64 points high and begin 70.85 points below the upper edge.
    const QStringList expected{
        u".\t\"One\"\t#page=1&zoom=nan,0,70.8"_s, u".\t\t\"Two of “1”\"\t#page=1&zoom=nan,0,82.5"_s,
        u".\t\t\"Three\"\t#page=2&zoom=nan,0,70.8"_s, u".\t\"Four\"\t#page=2&zoom=nan,0,82.5"_s,
        u".\t\t\"Nine\"\t#page=2&zoom=nan,0,94.1"_s};
    const QStringList lines = outline.trimmed().split(u'\n');
    ASSERT_EQ(lines.size(), expected.size()) << outline.toStdString();
    for (int i = 0; i < lines.size(); ++i)
        EXPECT_TRUE(lines[i].mid(1).startsWith(expected[i].mid(1))) << lines[i].toStdString();

    const QString structure =
        QString::fromUtf8(printedBy("pdfinfo -struct-text", {pdf})).remove(QRegularExpression(u"\\s"_s));
    EXPECT_TRUE(
        structure.startsWith(u"DocumentH1(block)\"One\"H3(block)\"Twoof“1”\"P(block)\"text\"Figure"_s))
        << structure.toStdString();
    EXPECT_TRUE(structure.endsWith(u"H2(block)\"Three\"H1(block)\"Four\"H6(block)\"Nine\""_s));
    EXPECT_TRUE(printedBy("qpdf --json", {pdf}).contains("\"/Alt\": \"u:Picture 4.bmp\""));
}

TEST_F(PdfDocumentTest, FailuresLeaveTheOldFile)
{
    for (int i = 0; i < 6; ++i)
        addBitmap(noise({120, 120}, static_cast<unsigned>(i + 1)));
    putFile(pdf, "old");
    const auto entries = [&] {
        return QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System);
    };
    const QStringList before = entries();

    std::stop_source stop;
    std::vector<int> progress;
    const DocumentWork stopped{stop.get_token(), [&](int done) {
                                   progress.push_back(done);
                                   if (done == 3)
                                       stop.request_stop();
                               }};
    EXPECT_EQ(errorOf([&] { write(stopped); }), RunTimeError::UserInterrupt);
    EXPECT_EQ(progress, (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(errorOf([&] { write(stopped); }), RunTimeError::UserInterrupt);
    EXPECT_EQ(progress.size(), 3U);
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit unlimited = {};
    ::getrlimit(RLIMIT_FSIZE, &unlimited);
    const rlimit full{50'000, unlimited.rlim_max};
    EXPECT_EQ(errorOf([&] {
                  write({{}, [&](int) { ::setrlimit(RLIMIT_FSIZE, &full); }});
              }),
              RunTimeError::DiskFull);
    ::setrlimit(RLIMIT_FSIZE, &unlimited);
    addPicture(path(u"missing.png"_s));
    EXPECT_EQ(errorOf([&] { write(); }), RunTimeError::FileNotFound);
    content.paragraphs.back().picture->path = pdf;
    EXPECT_EQ(errorOf([&] { write(); }), RunTimeError::InvalidPicture);
    content.paragraphs.pop_back();
    {
        const OrdinaryUser user(folder.path());
        EXPECT_EQ(errorOf([&] { write(); }), RunTimeError::PermissionDenied); // the file is root's
    }
    EXPECT_EQ(contents(pdf), "old");
    EXPECT_EQ(entries(), before);
    pdf = path(u"missing/out.pdf"_s);
    EXPECT_EQ(errorOf([&] { write(); }), RunTimeError::PathNotFound);
    EXPECT_EQ(entries(), before);

    pdf = path(u"out.pdf"_s);
    progress.clear();
    addPicture(content.paragraphs[0].picture->path); // the same once more
    write({{}, [&](int done) { progress.push_back(done); }});
    EXPECT_EQ(progress.back(), 7);
    EXPECT_EQ(entries(), before);
}

TEST_F(PdfDocumentTest, MemoryDoesNotGrowWithThePages)
{
    ImageFile::save(noise({400, 300}), path(u"picture.bmp"_s));
    const auto writePages = [&](int count) {
        content = {};
        for (int page = 0; page < count; ++page) {
            const QString file = path(u"link%1.bmp"_s.arg(page));
            QFile::link(path(u"picture.bmp"_s), file); // another name is another picture
            add(u"Page %1"_s.arg(page)).pageBreakBefore = true;
            addPicture(file);
            add(u"Some text that is long enough for several lines. "_s.repeated(20));
        }
        peakMemory();
        write();
        return peakMemory();
    };
    const int few = writePages(30);
    const int many = writePages(300);
    EXPECT_EQ(pageCount(), 300);
    EXPECT_GT(QFileInfo(pdf).size(), 300 * 400 * 300 * 2);
    // All pictures are 97 megabytes more, encoded, and 130 decoded.
    EXPECT_LT(many, few + 30) << few;
}
