#include "platform/ApplicationFolder.h"
#include "platform/RunTimeError.h"
#include "settings/OptionsStore.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QSet>
#include <QTemporaryDir>

#include <random>

using namespace Qt::Literals::StringLiterals;

namespace
{
class OptionsStoreTest : public ::testing::Test
{
protected:
    QTemporaryDir folder;
    QString file = folder.filePath(u"options.ini"_s);

    void write(const QByteArray &bytes)
    {
        QFile out(file);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(bytes);
    }
    QByteArray content()
    {
        QFile in(file);
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
    }
};

const OptionsStore::Row &row(const QString &key)
{
    for (const OptionsStore::Row &candidate : OptionsStore::rows()) {
        if (candidate.key == key)
            return candidate;
    }
    ADD_FAILURE() << "no key " << key.toStdString();
    return OptionsStore::rows().front();
}
} // namespace

TEST_F(OptionsStoreTest, WithoutAFileEveryKeyHasItsDefault)
{
    const AppOptions options = OptionsStore::LoadOptions(file);
    EXPECT_EQ(options.OptionFlags, (std::array<std::int16_t, 8>{0, 0, 0, 0, 0, 1, 0, 0}));
    EXPECT_EQ(
        options.HotKeyNames,
        (std::array<QString, 10>{u"Ctrl-F1"_s, u"Ctrl-F2"_s, u"Ctrl-F3"_s, u"Ctrl-F5"_s, u"Ctrl-F6"_s,
                                 u"Ctrl-F7"_s, u"Ctrl-F8"_s, u"Ctrl-F9"_s, u"Ctrl-F10"_s, u"Ctrl-F11"_s}));
    EXPECT_EQ(options.ProjectName, QString());
    EXPECT_EQ(options.BaseDirectory, ApplicationFolder::defaultBaseDirectory());
    EXPECT_EQ(options.FileNamePrefix, u"sh"_s);
    EXPECT_EQ(options.BigPicSize, 90);
    EXPECT_FALSE(options.UseSystemMouseShape);
    EXPECT_EQ(options.SingleScreenShotFileLocation, u"Desktop"_s);
    EXPECT_TRUE(options.OneWordDocumentIncludeAllPages);

    const HtmlTextStyle &title = options.HtmlStyles[0];
    EXPECT_EQ(title.Font, u"Times New Roman, Times, serif"_s);
    EXPECT_EQ(title.FontSize, 4);
    EXPECT_EQ(title.FontStyle, u"Bold"_s);
    EXPECT_EQ(title.Color, u"Blue"_s);
    EXPECT_EQ(title.Align, u"Left"_s);
    EXPECT_EQ(options.HtmlStyles[4].Color, u"Black"_s);

    const WordTextStyle &wordTitle = options.WordStyles[0];
    EXPECT_EQ(wordTitle.Font, u"Times New Roman"_s);
    EXPECT_EQ(wordTitle.FontSize, 18);
    EXPECT_EQ(wordTitle.Bold, 1);
    EXPECT_EQ(wordTitle.Italic, 0);
    EXPECT_EQ(wordTitle.Align, 1);
    EXPECT_EQ(wordTitle.Color, 1);
    EXPECT_EQ(options.WordStyles[2].FontSize, 10);
    EXPECT_EQ(options.WordStyles[2].Align, 0);
}

TEST_F(OptionsStoreTest, EveryKeyReadsIntoAFieldOfItsOwn)
{
    // Each key gets a value that no other has; what is read back must be just those.
    QHash<QString, QByteArray> sections;
    int number = 100;
    QHash<QString, QString> expected;
    bool booleanValue = true;
    for (const OptionsStore::Row &each : OptionsStore::rows()) {
        AppOptions probe;
        const bool isBool = std::holds_alternative<bool *>(each.field(probe));
        const QString value = isBool ? (booleanValue ? u"True"_s : u"False"_s) : QString::number(++number);
        booleanValue = booleanValue != isBool;
        expected.insert(each.key, value);
        sections[each.section] += each.key.toUtf8() + "=" + value.toUtf8() + "\r\n";
    }
    write("[Options]\r\n" + sections[u"Options"_s] + "[HotKeys]\r\n" + sections[u"HotKeys"_s]);
    const AppOptions options = OptionsStore::LoadOptions(file);
    for (const OptionsStore::Row &each : OptionsStore::rows())
        EXPECT_EQ(OptionsStore::textOf(options, each), expected.value(each.key)) << each.key.toStdString();
    // Field by field where a swap would go unnoticed above.
    EXPECT_EQ(QString::number(options.OptionFlags[HideStopButtonDuringCapture]),
              expected.value(u"HideStopButtonDuringCapture"_s));
    EXPECT_EQ(options.HotKeyNames[4], expected.value(u"EndMultiScreenCapture"_s));
    EXPECT_EQ(QString::number(options.SnapShotByPressReturn), expected.value(u"SnapShotByPressReturn"_s));
    EXPECT_EQ(options.HtmlStyles[3].Align, expected.value(u"HTMLNote1Align"_s));
    EXPECT_EQ(QString::number(options.WordStyles[4].Underline), expected.value(u"WordNote2Underline"_s));
    EXPECT_EQ(QString::number(options.WordStyles[1].Color), expected.value(u"WordSubTitleColor"_s));
}

TEST_F(OptionsStoreTest, TheTableHoldsEveryKeyOnce)
{
    QSet<QString> keys;
    for (const OptionsStore::Row &each : OptionsStore::rows())
        keys.insert(each.section + u'/' + each.key);
    // 8 flags, 10 hot keys, 12 plain keys, the paint program, the word processor and two pages of the
    // browser, 25 HTML and 35 word-processor style keys
    EXPECT_EQ(keys.size(), 94);
    EXPECT_EQ(OptionsStore::rows().size(), 94U);
    EXPECT_EQ(row(u"BigPicSize"_s).reset, u"100"_s);
    EXPECT_EQ(row(u"PageLayout"_s).reset, u"1"_s);
    EXPECT_EQ(row(u"HTMLNote2FontStyle"_s).reset, u"Italic"_s);
    EXPECT_EQ(row(u"WordNote1Color"_s).reset, u"11"_s);
    EXPECT_FALSE(row(u"ProjectName"_s).reset.has_value());
    EXPECT_FALSE(row(u"SnapShotByPressTab"_s).reset.has_value());
}

TEST_F(OptionsStoreTest, ValuesThatDoNotFitTakeTheDefault)
{
    struct Case {
        QByteArray value;
        int bigPicSize;
    };
    for (const Case &each :
         {Case{"80", 80}, Case{"banana", 90}, Case{"", 90}, Case{"40000", 90}, Case{"-32768", -32768},
          Case{"82.5", 82}, Case{"83.5", 84}, Case{" 70 ", 70}, Case{"nan", 90}}) {
        write("[Options]\r\nBigPicSize=" + each.value + "\r\n");
        EXPECT_EQ(OptionsStore::LoadOptions(file).BigPicSize, each.bigPicSize) << each.value.toStdString();
    }
    struct BoolCase {
        QByteArray value;
        bool expected;
    };
    for (const BoolCase &each : {BoolCase{"TRUE", true}, BoolCase{"false", false}, BoolCase{"-1", true},
                                 BoolCase{"0", false}, BoolCase{"perhaps", true}}) {
        write("[options]\r\nonewordDOCUMENTincludeAllPages=" + each.value + "\r\n");
        EXPECT_EQ(OptionsStore::LoadOptions(file).OneWordDocumentIncludeAllPages, each.expected)
            << each.value.toStdString();
    }
}

TEST_F(OptionsStoreTest, LongValuesAreCutAndLineBreaksBecomeBlanks)
{
    OptionsStore::WriteIniValue(file, u"Options"_s, u"FileNamePrefix"_s, QString(300, u'x'));
    EXPECT_EQ(OptionsStore::LoadOptions(file).FileNamePrefix, QString(255, u'x'));

    OptionsStore::WriteIniValue(file, u"Options"_s, u"FileNamePrefix"_s, u"a\r\nb\nc"_s);
    EXPECT_EQ(OptionsStore::LoadOptions(file).FileNamePrefix, u"a  b c"_s);
}

TEST_F(OptionsStoreTest, SingleKeysAreWrittenBesideTheOthers)
{
    write("; my own\r\n[Options]\r\nFileNamePrefix=demo\r\n");
    OptionsStore::writeProjectName(file, u"first"_s);
    OptionsStore::writeBaseDirectory(file, u"/srv/guides"_s);
    const AppOptions options = OptionsStore::LoadOptions(file);
    EXPECT_EQ(options.ProjectName, u"first"_s);
    EXPECT_EQ(options.BaseDirectory, u"/srv/guides"_s);
    EXPECT_EQ(options.FileNamePrefix, u"demo"_s);
    EXPECT_TRUE(content().startsWith("; my own\r\n"));

    // A file that cannot be written is no reason to fail.
    OptionsStore::writeProjectName(folder.filePath(u"missing/options.ini"_s), u"second"_s);
}

TEST_F(OptionsStoreTest, SavingChangesTheKeysOfTheTableAlone)
{
    write("; my own\n[Options]\nProjectName=theirs\nBigPicSize = 90\nUnknown=1\n");
    AppOptions options = OptionsStore::LoadOptions(file);
    options.ProjectName = u"mine"_s;
    options.BigPicSize = 80;
    options.FileNamePrefix = u" a\r\nb "_s;
    options.UseSystemMouseShape = true;
    OptionsStore::SaveOptions(file, options);
    EXPECT_TRUE(
        content().startsWith("; my own\n[Options]\nProjectName=theirs\nBigPicSize = 80\nUnknown=1\n"));
    EXPECT_TRUE(content().contains("\nUseSystemMouseShape=True\n"));
    EXPECT_EQ(OptionsStore::LoadOptions(file).FileNamePrefix, u" a  b "_s);
    const QString missing = folder.filePath(u"missing/options.ini"_s);
    EXPECT_THROW(OptionsStore::SaveOptions(missing, options), RunTimeError);
}

TEST_F(OptionsStoreTest, ResetWritesTheFactorySettings)
{
    write("[Options]\nProjectName=theirs\nSnapShotByPressTab=1\nWordNote1Font=Arial\nWordProcessor=none\n"
          "[HotKeys]\nViewIndexPage=Alt-Z\n");
    AppOptions options = OptionsStore::LoadOptions(file);
    options.SnapShotByPressReturn = 1; // in memory alone
    OptionsStore::ResetOptions(file, options);
    EXPECT_EQ(options.SnapShotByPressReturn, 1);
    const AppOptions next = OptionsStore::LoadOptions(file);
    EXPECT_EQ(next.SnapShotByPressReturn, 0);
    for (const AppOptions &each : {options, next}) {
        EXPECT_EQ(each.OptionFlags, (std::array<std::int16_t, 8>{0, 0, 1, 1, 0, 1, 1, 0}));
        EXPECT_EQ(each.BigPicSize, 100);
        EXPECT_EQ(each.SnapShotByPressTab, 1);
        EXPECT_EQ(each.ProjectName, u"theirs"_s);
        EXPECT_EQ(each.HotKeyNames[7], u"Ctrl-F9"_s);
        EXPECT_EQ(each.HtmlStyles[4].FontSize, 1);
        EXPECT_EQ(each.WordStyles[3].Font, u"BankGothic Md BT"_s);
        EXPECT_EQ(each.WordStyles[4].Italic, 1);
        EXPECT_EQ(each.WordProcessor, u"auto"_s);
    }
}

TEST_F(OptionsStoreTest, AnyFileIsReadAndSavedAgain)
{
    OptionsStore::SaveOptions(file, OptionsStore::LoadOptions(file));
    const QByteArray whole = content();
    std::mt19937 random(20260321);
    const auto saveAgain = [this] { OptionsStore::SaveOptions(file, OptionsStore::LoadOptions(file)); };
    for (int round = 0; round < 60; ++round) {
        QByteArray bytes = round % 3 == 0 ? QByteArray(3000, '\0') : whole;
        const int changes = round % 3 == 0 ? 6000 : 1 << (random() % 10);
        for (int i = 0; i < changes; ++i)
            bytes[static_cast<qsizetype>(random() % static_cast<unsigned>(bytes.size()))] =
                static_cast<char>(random());
        write(bytes);
        saveAgain(); // what cannot stand in a line of text is gone by the second time
        saveAgain();
        const QByteArray saved = content();
        saveAgain();
        ASSERT_EQ(content(), saved) << round;
    }
}
