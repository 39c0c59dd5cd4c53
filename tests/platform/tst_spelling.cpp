#include "platform/linux/SpellingSession.h"

#include "SpellingFiles.h"

using namespace Qt::Literals::StringLiterals;

/// The words with a space behind each.
static QString wordsOf(const QString &text)
{
    QString found;
    SpellingWords words(text);
    while (const auto word = words.next())
        found += text.sliced(word->begin, word->length) + u' ';
    return found;
}

TEST(SpellingWordsTest, WhatIsAWordAndWhatIsNot)
{
    const std::pair<QString, QString> cases[] = {
        {u""_s, u""_s},
        {u"One, two.\r\nThree\tfour-five and/or"_s, u"One two Three four five and or "_s},
        {u"don't l\u2019eau 'a' \u2018b\u2019 dogs' rock''n"_s, u"don't l\u2019eau a b dogs rock n "_s},
        {u"Stra\u00dfe col\u00b7lecci\u00f3 e\u0301te\u0301"_s,
         u"Stra\u00dfe col\u00b7lecci\u00f3 e\u0301te\u0301 "_s},
        {u"12 3rd MP3-Player x\u00b2 some_name _so_"_s, u"Player so "_s},
        {u"a.b@c.org, http://x.org/a_(b),c www.x.org mailto:me (see: https://x.org) end"_s, u"see end "_s},
        {u"/usr/x ~/y ../z C:\\Program C:/x .bashrc `notes.txt` \u201cREADME.TXT\u201d x.tar.gz. e.g. last"_s,
         u"last "_s},
        {u"end.Next wait...then Yes!"_s, u"end Next wait then Yes "_s},
        {u"HTML PRINT PRINTS \u00c4\u00d6\u00dc I \u05d0\u05d1"_s, u"PRINTS \u05d0\u05d1 "_s},
        {u"\u6f22\u5b57 \u30ab\u30ca word\U0001F600"_s + QChar(0xd800), u"word "_s},
    };
    for (const auto &[text, words] : cases)
        EXPECT_EQ(wordsOf(text), words);
}

TEST(SpellingWordsTest, PlacesBehindCharactersOfTwoUnits)
{
    const QString text = u"\U0001F600 a \U00010400\U00010401x, b"_s; // a face, two letters of Deseret
    SpellingWords words(text);
    for (const auto &[begin, length] : {std::pair(3, 1), std::pair(5, 5), std::pair(12, 1)}) {
        const SpellingWords::Word word = words.next().value();
        EXPECT_TRUE(word.begin == begin && word.length == length) << word.begin;
    }
    EXPECT_FALSE(words.next());
}

TEST(HunspellDictionaryTest, TheUsersLanguageOrTheNextBest)
{
    const SpellingFiles files;
    HunspellDictionary none(files.places(u"de_DE"_s));
    EXPECT_FALSE(none.installed());
    EXPECT_TRUE(none.isCorrect(u"teh"_s));
    putFile(files.path(u"af_ZA.dic"_s), "0\n"); // its other half is missing
    const std::tuple<QString, QStringList, QString> steps[] = {
        {u"bg_BG"_s, {u"de_DE"_s}, u"bg_BG"_s},           {u"en_GB"_s, {}, u"en_GB"_s},
        {u"en_US"_s, {u"de-DE"_s}, u"en_US"_s},           {u"de_AT"_s, {u"de-DE"_s, u"en-GB"_s}, u"de_AT"_s},
        {u"de_DE_old"_s, {u"fr"_s, u"bg"_s}, u"bg_BG"_s}, {u"de_DE"_s, {u"de-DE"_s}, u"de_DE"_s},
    };
    for (const auto &[added, languages, found] : steps) {
        files.write(added, "", "a");
        EXPECT_EQ(HunspellDictionary::find({files.path(u"missing"_s), files.path(u"."_s)}, languages),
                  files.path(u"./"_s + found));
    }
    EXPECT_TRUE(none.installed()) << "since then";
}

TEST(HunspellDictionaryTest, SpeaksTheEncodingOfItsDictionary)
{
    const SpellingFiles files;
    files.write(u"de_DE"_s, "SET ISO8859-1\nTRY \xfc\n", "T\xfcr Ma\xdf");
    files.write(u"ru_RU"_s, "SET microsoft-cp1251\nTRY \xec\n", "\xe4\xee\xec"); // dom
    HunspellDictionary german(files.places(u"de_DE"_s));
    EXPECT_TRUE(german.isCorrect(u"T\u00fcr"_s));
    EXPECT_TRUE(german.isCorrect(u"Tu\u0308r"_s)) << "decomposed";
    EXPECT_TRUE(german.isCorrect(u"Ma\u00ad\u00df"_s)) << "with a soft hyphen";
    EXPECT_EQ(german.suggestions(u"Tur"_s), QStringList{u"T\u00fcr"_s});
    EXPECT_FALSE(german.isCorrect(u"\u0434\u043e\u043c"_s));
    EXPECT_EQ(german.suggestions(u"\u0434\u043e\u043c"_s), QStringList());
    HunspellDictionary russian(files.places(u"ru_RU"_s));
    EXPECT_TRUE(russian.isCorrect(u"\u0434\u043e\u043c"_s));
    EXPECT_EQ(russian.suggestions(u"\u0434\u043e"_s), QStringList{u"\u0434\u043e\u043c"_s});
}

TEST(HunspellDictionaryTest, TheUsersWordsStay)
{
    const SpellingFiles files;
    files.write(u"de_DE"_s, "SET ISO8859-1\n", "Haus");
    HunspellDictionary first(files.places(u"de_DE"_s));
    HunspellDictionary other(files.places(u"de_DE"_s));
    EXPECT_FALSE(first.isCorrect(u"Shotly"_s));
    first.add(u"Shotly"_s);
    other.add(u"\u0434\u043e\u043c"_s); // the dictionary's encoding lacks it
    EXPECT_TRUE(first.isCorrect(u"Shotly"_s));
    EXPECT_TRUE(other.isCorrect(u"\u0434\u043e\u043c"_s));
    EXPECT_EQ(contents(files.wordsFile()), "Shotly\n\xd0\xb4\xd0\xbe\xd0\xbc\n");

    putFile(files.wordsFile(), "\xef\xbb\xbfr\xc3\xa9sum\xc3\xa9\r\n\r\nlast"); // as an editor leaves it
    HunspellDictionary later(files.places(u"de_DE"_s));
    EXPECT_TRUE(later.isCorrect(u"r\u00e9sum\u00e9"_s));
    later.add(u"new"_s);
    EXPECT_EQ(contents(files.wordsFile()), "\xef\xbb\xbfr\xc3\xa9sum\xc3\xa9\r\n\r\nlast\nnew\n");
}

struct SpellingSessionTest : ::testing::Test {
    SpellingSessionTest() { files.writeEnglish(); }
    SpellingFiles files;
    HunspellDictionary dictionary{files.places(u"en_US"_s)};
    SpellingAnswers answers;
};

TEST_F(SpellingSessionTest, EveryAnswerGoesOnToTheNextWord)
{
    SpellingSession session(
        u"\U0001F600 teh cat, teh dgo\r\nxat sta xat; hous zzz hous zzz sta don\u2019t dom\u2019t"_s,
        dictionary, answers);
    EXPECT_EQ(session.word(), u"teh"_s);
    EXPECT_EQ(session.suggestions().value(0), u"the"_s);
    session.change(u"the other"_s);
    EXPECT_EQ(session.word(), u"teh"_s) << "once is not always";
    session.ignore();
    const auto [before, word, after] = session.context();
    EXPECT_EQ(
        before + u'[' + word + u']' + after,
        u"\U0001F600 the other cat, teh [dgo] xat sta xat; hous zzz hous zzz sta don\u2019t dom\u2019t"_s);
    session.change(u"dog"_s);
    session.changeAll(u"cat"_s);
    session.ignore();
    EXPECT_EQ(session.word(), u"hous"_s);
    session.ignoreAll();
    session.add();
    session.change(u""_s);
    session.change(session.suggestions().value(0));
    ASSERT_TRUE(session.finished());
    EXPECT_EQ(
        session.text(),
        u"\U0001F600 the other cat, teh dog\r\ncat sta cat; hous zzz hous zzz  don\u2019t don\u2019t"_s);
    EXPECT_EQ(contents(files.wordsFile()), "zzz\n");

    const SpellingSession next(u"hous xat zzz the"_s, dictionary, answers);
    EXPECT_EQ(next.text(), u"hous cat zzz the"_s);
}

TEST_F(SpellingSessionTest, LongTexts)
{
    constexpr int count = 200'000; // quadratic time would take hours
    SpellingSession session(QString(u"teh\U0001F600, "_s).repeated(count), dictionary, answers);
    EXPECT_EQ(session.context().after.size(), 4 + 8 * 7 + 1)
        << "face, comma, space; words with those; ellipsis";
    session.changeAll(u"the"_s);
    EXPECT_TRUE(session.finished());
    EXPECT_EQ(session.text(), QString(u"the\U0001F600, "_s).repeated(count));

    SpellingSession oneToken(QString(u'.').repeated(1 << 20) + u"teh"_s, dictionary, answers);
    EXPECT_EQ(oneToken.text().right(3), u"the"_s);
    const SpellingSession oneWord(QString(u'x').repeated(1 << 20), dictionary, answers);
    EXPECT_EQ(oneWord.suggestions(), QStringList());
}
