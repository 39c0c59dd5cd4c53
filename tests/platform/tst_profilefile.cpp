#include "FileChecks.h"
#include "platform/ProfileFile.h"

#include <QTemporaryDir>

#include <algorithm>
#include <random>

namespace
{
class ProfileFileTest : public ::testing::Test
{
protected:
    QTemporaryDir m_folder;
    QString m_path = m_folder.filePath(QStringLiteral("options.ini"));

    /// "-" when there is no such value.
    QString read(const char *section, const char *key) const
    {
        return ProfileFile::read(m_path, QString::fromUtf8(section), QString::fromUtf8(key),
                                 QStringLiteral("-"));
    }
    void write(const QString &value) const
    {
        ProfileFile::write(m_path, QStringLiteral("Options"), QStringLiteral("Key"), value);
    }
};
} // namespace

TEST_F(ProfileFileTest, findsTheFirstKeyOfTheFirstSection)
{
    EXPECT_EQ(read("Options", "Key"), QStringLiteral("-"));
    putFile(m_path,
            "\xEF\xBB\xBFlost=1\r\n; Key=comment\n[ Options ] ; with [brackets]\r  Key \t=  some text  \n"
            "KEY=second\n;Hidden=1\nEmpty=\nNoEquals\nDouble=\"  blanks \"\nSingle='one'\n"
            "Open=\"Times\", serif\nQuote=\"\nTwice=\"\"in\"\"\nEquals=a=b\nUtf8=\xC3\xA9\nLatin1=\xE9\n"
            "[broken\nInBroken=still Options\n[Hot Keys]\nKey=other\n[options]\nLate=1\n[]\nNameless=1");
    const char *const rows[][3] = {{"Options", "Key", "some text"}, {"OPTIONS", "key", "some text"},
                                   {"Hot Keys", "Key", "other"},    {"Options", "lost", "-"},
                                   {"Options", "Hidden", "-"},      {"Options", "Empty", ""},
                                   {"Options", "NoEquals", "-"},    {"Options", "Double", "  blanks "},
                                   {"Options", "Single", "one"},    {"Options", "Open", "\"Times\", serif"},
                                   {"Options", "Quote", "\""},      {"Options", "Twice", "\"in\""},
                                   {"Options", "Equals", "a=b"},    {"Options", "Utf8", "\u00e9"},
                                   {"Options", "Latin1", "\u00e9"}, {"Options", "InBroken", "still Options"},
                                   {"Options", "Late", "-"},        {"", "Nameless", "1"}};
    for (const auto &[section, key, value] : rows)
        EXPECT_EQ(read(section, key), QString::fromUtf8(value)) << section << ' ' << key;
}

TEST_F(ProfileFileTest, writingChangesOneLine)
{
    write(QStringLiteral("v"));
    EXPECT_EQ(contents(m_path), "[Options]\r\nKey=v\r\n");
    // The file before, the value, the file after.
    const char *const rows[][3] = {
        {"; top\n[OPTIONS]\n KEY = old\nX=1", "v", "; top\n[OPTIONS]\n KEY = v\nX=1"},
        {"[Options]\r\nKey=old", "v", "[Options]\r\nKey=v"},
        {"[Options]\nA=1\n\n; next\n[B]\nKey=b\n", "v", "[Options]\nA=1\nKey=v\n\n; next\n[B]\nKey=b\n"},
        {"[B]\n[Options]", "v", "[B]\n[Options]\nKey=v\n"},
        {"A=1\rB=2", "v", "A=1\rB=2\r[Options]\rKey=v\r"},
        {"[Options]\nKey=1\nKey=2\n[Options]\nKey=3\n", "v", "[Options]\nKey=v\nKey=2\n[Options]\nKey=3\n"},
        {"[Options]\nKey\n", "v", "[Options]\nKey=v\n"},
        {"[Options]\nA=\xE9\nKey=\xE9\n", "\u00e9", "[Options]\nA=\xE9\nKey=\xC3\xA9\n"},
        {"[Options]\nKey=1\n", "a\r\nb", "[Options]\nKey=a  b\n"},
        {"[Options]\nKey=1\n", " v", "[Options]\nKey=\" v\"\n"},
    };
    for (const auto &[before, value, after] : rows) {
        putFile(m_path, before);
        write(QString::fromUtf8(value));
        EXPECT_EQ(contents(m_path), after);
    }
}

TEST_F(ProfileFileTest, manyKeysAreWrittenAtOnce)
{
    const auto entry = [](const char *section, const char *key, const char *value) {
        return ProfileFile::Entry{QString::fromUtf8(section), QString::fromUtf8(key),
                                  QString::fromUtf8(value)};
    };
    const ProfileFile::Entry entries[] = {entry("Options", "A", "1"), entry("Keys", "B", "2"),
                                          entry("options", "C", "3"), entry("Options", "a", "4")};
    ProfileFile::write(m_path, entries);
    EXPECT_EQ(contents(m_path), "[Options]\r\nA=4\r\nC=3\r\n[Keys]\r\nB=2\r\n");
    putFile(m_path, "[Keys]\nB=old");
    ProfileFile::write(m_path, entries);
    EXPECT_EQ(contents(m_path), "[Keys]\nB=2\n[Options]\nA=4\nC=3\n");
}

TEST_F(ProfileFileTest, whatCannotBeReadIsNotReplaced)
{
    const OrdinaryUser user(m_folder.path());
    putFile(m_path, "[Options]\nOther=1\n");
    QFile(m_path).setPermissions(QFile::WriteOwner);
    EXPECT_EQ(read("Options", "Other"), QStringLiteral("-"));
    EXPECT_NE(errorOf([&] { write(QStringLiteral("v")); }), 0);
    QFile(m_path).setPermissions(QFile::ReadOwner);
    EXPECT_EQ(read("Options", "Other"), QStringLiteral("1"));
    m_path = m_folder.filePath(QStringLiteral("missing/options.ini"));
    EXPECT_EQ(errorOf([&] { write(QStringLiteral("v")); }), RunTimeError::PathNotFound);
}

TEST_F(ProfileFileTest, anyFileSurvivesAnyValue)
{
    const QByteArrayList fileParts = {"[Options]",
                                      "[options",
                                      "]",
                                      "[",
                                      "Key",
                                      "KEY",
                                      "=",
                                      ";",
                                      " ",
                                      "\t",
                                      "\"",
                                      "'",
                                      "\r\n",
                                      "\n",
                                      "\r",
                                      "\n[Options]\n",
                                      "\nKey=",
                                      "x",
                                      "\xC3\xA9",
                                      "\xE9",
                                      "\xFF",
                                      QByteArray(1, '\0'),
                                      "\xEF\xBB\xBF",
                                      "[B]\n",
                                      QByteArray(200, 'y')};
    const QString valueParts = QStringLiteral("\"' ;=[]a\t\u00e9\u4e2d\ufeff\u0001");
    std::mt19937 random(20260321);
    const auto below = [&random](qsizetype count) {
        return static_cast<qsizetype>(random() % static_cast<unsigned>(count));
    };
    for (int round = 0; round < 300; ++round) {
        QByteArray before;
        for (qsizetype parts = below(40); parts > 0; --parts)
            before += fileParts[below(fileParts.size())];
        QString value;
        for (qsizetype parts = below(8); parts > 0; --parts)
            value += valueParts[below(valueParts.size())];
        putFile(m_path, before);
        write(value);
        const QByteArray after = contents(m_path);
        ASSERT_EQ(read("Options", "Key"), value) << before.toPercentEncoding().constData();

        // What the beginnings and the ends of both files do not share lies within one old line.
        const auto [oldStart, newStart] =
            std::mismatch(before.begin(), before.end(), after.begin(), after.end());
        const auto rest = std::min(before.end() - oldStart, after.end() - newStart);
        const auto oldEnd =
            std::mismatch(before.rbegin(), before.rbegin() + rest, after.rbegin()).first.base();
        const QByteArray changed = before.mid(oldStart - before.begin(), oldEnd - oldStart);
        ASSERT_FALSE(changed.contains('\n') || changed.contains('\r'))
            << before.toPercentEncoding().constData();
        write(value);
        ASSERT_EQ(contents(m_path), after) << before.toPercentEncoding().constData();
    }
}
