#include "platform/office/WordBinary.h"

#include "platform/FileChecks.h"

#include <QCryptographicHash>
#include <QDir>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

#include <random>
#include <set>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr PageFormat a4 = {QSize(11906, 16838), 1417};

/// What a program prints.
QString output(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(-1);
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    return QString::fromUtf8(process.readAllStandardOutput());
}

class WordBinary : public testing::Test
{
protected:
    QTemporaryDir folder;
    QString path = folder.filePath(u"guide.doc"_s);
    DocumentContent content;
    DocumentPictures pictures;

    void write(const DocumentWork &work = {}) { writeWordDocument(content, pictures, a4, path, work); }

    /// What the checker finds in the file, without the first two lines, which are those of every document.
    QStringList listing(const QString &title = {})
    {
        const QString script = QStringLiteral(SHOTLY_SOURCE_DIR "/tests/office/check_word_file.py");
        QStringList lines = output(u"/usr/bin/python3"_s, {u"-X"_s, u"utf8"_s, script, path}).split(u'\n');
        EXPECT_GE(lines.size(), 4);
        EXPECT_EQ(lines.value(0), u"page 11906 16838 1417 1417 1417 1417"_s);
        EXPECT_EQ(lines.value(1), u"title %1 by Shotly"_s.arg(title));
        EXPECT_EQ(lines.value(lines.size() - 1), QString());
        return lines.mid(2, lines.size() - 3);
    }

    /// A file of noise; with zeros behind its end where it has to be of a certain length.
    QString picture(const QString &name, QSize size, qint64 length = 0)
    {
        QImage image(size, QImage::Format_RGB32);
        std::mt19937 numbers(static_cast<unsigned>(size.width()));
        for (int y = 0; y < size.height(); ++y)
            for (int x = 0; x < size.width(); ++x)
                image.setPixel(x, y, static_cast<unsigned>(numbers()));
        const QString file = folder.filePath(name);
        EXPECT_TRUE(image.save(file));
        EXPECT_TRUE(length == 0 || (QFileInfo(file).size() <= length && QFile::resize(file, length)));
        return file;
    }
    static QString digest(const QString &file)
    {
        return QString::fromLatin1(
            QCryptographicHash::hash(contents(file), QCryptographicHash::Sha1).toHex());
    }
    void addPicture(const QString &file, const QString &alternativeText = {})
    {
        content.paragraphs.push_back({{}, DocumentPicture{file, alternativeText}, {}, false});
    }
    QStringList files() const { return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden); }
};
} // namespace

TEST_F(WordBinary, KeepsLooksHeadingsPicturesAndBreaks)
{
    const QString png = picture(u"a.png"_s, {1008, 100}); // 9072 twips fit: 9 a pixel
    const QString jpeg = picture(u"b.jpg"_s, {40, 20});
    content.title = u"Grüße ☃"_s;
    content.paragraphs = {
        {u"First"_s, {}, {u"Arial"_s, 20, 9, true, false, false, 1, 1}, false},
        {u"Deep"_s, {}, {u"Courier New"_s, 9, 16, false, true, true, 2, 9}, true},
        {u"Plain"_s, {}, {}, false},
        {u""_s, {}, {u"Arial"_s, 5000, 99, false, false, false, 7, 0}, false},
        {{}, DocumentPicture{png, u"Noise ☃ \"𝄞\""_s}, {u"Verdana"_s, 8, 0, false, false, false, 1}, true},
        {{}, DocumentPicture{jpeg, {}}, {}, false},
        {u"Last"_s, {}, {u"arial"_s, 11, 1, true, true, true, 0}, false},
    };
    std::vector<int> progress;
    write({{}, [&progress](int done) { progress.push_back(done); }});
    const QStringList expected = {
        u"heading 1, center | Arial 20 bold color9 | First"_s,
        u"heading 9, right, break | Courier New 9 italic underline color16 | Deep"_s,
        u"Normal, left | Times New Roman 11 | Plain"_s,
        u"Normal, left | Arial 1638 | "_s,
        u"Normal, center, break | Verdana 8 | {png 9072x900 %1 Noise ☃ \"𝄞\"}"_s.arg(digest(png)),
        u"Normal, left | Times New Roman 11 | {jpeg 600x300 %1 }"_s.arg(digest(jpeg)),
        u"Normal, left | arial 11 bold italic underline color1 | Last"_s,
    };
    EXPECT_EQ(listing(u"Grüße ☃"_s), expected);
    EXPECT_EQ(progress, (std::vector{1, 2}));
    EXPECT_EQ(output(u"file"_s, {u"--brief"_s, u"--mime-type"_s, path}), u"application/msword\n"_s);
}

TEST_F(WordBinary, KeepsTextAndNoMarks)
{
    QString marks = u"a\tb"_s;
    for (char16_t mark = 0; mark < 0x20; ++mark)
        marks += mark == u'\t' ? QChar(u'|') : QChar(mark);
    marks += u"\u007f\u0085\u2028\u2029c\ufffe"_s + QChar(0xd834) + u'd' + QChar(0xdd1e);
    const QString longText = u"0123456789"_s.repeated(20'000);
    const QString planes = u"Ω Ж ع 漢 𝄞 😀 \U000e0041\U0010fffd ("_s;
    for (const QString &text : {u"Alpha"_s, marks, planes, longText, u"Omega"_s})
        content.paragraphs.push_back({text, {}, {}, false});
    write();
    const QString start = u"Normal, left | Times New Roman 11 | "_s;
    const QString blanks =
        u"a\tb"_s + QString(9, u' ') + u'|' + QString(22 + 4, u' ') + u"c\ufffd\ufffdd\ufffd"_s;
    EXPECT_EQ(listing(), (QStringList{start + u"Alpha"_s, start + blanks, start + planes, start + longText,
                                      start + u"Omega"_s}));

    const QString antiword = output(u"antiword"_s, {u"-w"_s, u"0"_s, u"-m"_s, u"UTF-8.txt"_s, path});
    EXPECT_TRUE(antiword.contains(longText)); // catdoc shows only the end of so long a paragraph
    for (const QString &text : {antiword, output(u"catdoc"_s, {u"-w"_s, u"-d"_s, u"utf-8"_s, path})}) {
        qsizetype place = -1;
        for (const QString &part : {u"Alpha"_s, u"c"_s, u"Ω Ж ع 漢"_s, u"Omega"_s}) {
            EXPECT_GT(text.indexOf(part, place + 1), place) << part.toStdString();
            place = text.indexOf(part, place + 1);
        }
    }
}

TEST_F(WordBinary, ADocumentWithoutParagraphsHasAnEmptyOne)
{
    write();
    EXPECT_EQ(listing(), QStringList{u"Normal, left | Times New Roman 11 | "_s});
}

TEST_F(WordBinary, HoldsAThousandPages)
{
    const QString png = picture(u"a.png"_s, {40, 20});
    const QString sum = digest(png);
    QStringList expected;
    for (int page = 0; page < 1000; ++page) {
        const int level = page % 9 + 1;
        content.paragraphs.push_back({u"Page %1"_s.arg(page),
                                      {},
                                      {u"Font %1"_s.arg(page), 12, 0, true, false, false, 0, level},
                                      true});
        addPicture(png, u"Picture %1"_s.arg(page));
        expected += u"heading %1, left, break | Font %2 12 bold | Page %2"_s.arg(level).arg(page);
        expected += u"Normal, left | Times New Roman 11 | {png 600x300 %1 Picture %2}"_s.arg(sum).arg(page);
    }
    write();
    EXPECT_EQ(listing(), expected);
}

// Streams just below and from 4096 bytes on, which lie in different places; allocation tables that just fit
// into the header, that need one sector more, and that need a second one for the last of 128 tables.
TEST_F(WordBinary, AllocatesFilesOfAnySize)
{
    constexpr qint64 description = 205; // bytes before the picture
    std::set<int> tables;
    std::vector<qint64> sizes = {4095 - description, 4096 - description, 4096 + 1 - description};
    for (qint64 sectors = 13952 - 140; sectors < 13952 - 100; sectors += 3)
        sizes.push_back(sectors * 512);
    sizes.push_back((237 * 128 - 64 - 259) * 512);
    for (const qint64 size : sizes) {
        const QString file = picture(u"a.jpg"_s, {8, 8}, size);
        content.paragraphs.clear();
        addPicture(file);
        DocumentPictures fresh;
        writeWordDocument(content, fresh, a4, path, {});
        EXPECT_EQ(listing().value(0),
                  u"Normal, left | Times New Roman 11 | {jpeg 120x120 %1 }"_s.arg(digest(file)));
        tables.insert(static_cast<unsigned char>(contents(path).at(44)));
    }
    EXPECT_EQ(tables, (std::set{1, 109, 110, 237}));

    const QString large = picture(u"large.png"_s, {1000, 1000});
    for (int i = 0; i < 24; ++i)
        addPicture(large);
    write();
    EXPECT_GT(QFileInfo(path).size(), 70'000'000);
    EXPECT_EQ(listing().size(), 25);
}

TEST_F(WordBinary, LeavesTheOldFileWhereItCannotWrite)
{
    putFile(path, "old");
    for (int i = 0; i < 3; ++i)
        addPicture(picture(u"%1.png"_s.arg(i), {4, 4}));
    const QString large = picture(u"large.png"_s, {1000, 1000}); // 3 MB
    const QStringList before = files();

    std::stop_source stop;
    const auto stopAfterTwo = [&stop](int done) { done == 2 && stop.request_stop(); };
    EXPECT_EQ(errorOf([&] { write({stop.get_token(), stopAfterTwo}); }), RunTimeError::UserInterrupt);
    EXPECT_EQ(errorOf([&] { write({stop.get_token(), {}}); }), RunTimeError::UserInterrupt);

    const DocumentContent right = content;
    addPicture(folder.filePath(u"guide.doc"_s));
    EXPECT_EQ(errorOf([&] { write(); }), RunTimeError::InvalidPicture);
    content.paragraphs.clear();
    for (int i = 0; i < 750; ++i)
        addPicture(large);
    EXPECT_EQ(errorOf([&] { write(); }), RunTimeError::WordFileNotWritten);
    content = right;

    EXPECT_EQ(contents(path), "old");
    EXPECT_EQ(files(), before);
    path = folder.filePath(u"missing/guide.doc"_s);
    EXPECT_EQ(errorOf([&] { write(); }), RunTimeError::PathNotFound);
    EXPECT_EQ(files(), before);
}
