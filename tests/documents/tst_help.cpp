// Every topic of the help that a button or a key leads to is there, and so is what the topics refer to.

#include "documents/frmHelp.h"
#include "platform/qt/WidgetBrowsers.h"
#include "support/FakePrograms.h"
#include "support/ScriptedPrompter.h"
#include "support/TestState.h"

#include <QDirIterator>
#include <QImage>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace
{
const QString helpFolder = QStringLiteral(SHOTLY_DELIVERED_DIR "/help");

QString textOf(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

QStringList matches(const QString &text, const QString &pattern)
{
    QStringList found;
    for (const auto &match : QRegularExpression(pattern).globalMatch(text))
        found += match.captured(1);
    return found;
}

/// Names of pages in the sources, but for the page of contents of a guide.
QStringList topicsOfTheProgram()
{
    QStringList topics;
    QDirIterator sources(QStringLiteral(SHOTLY_SOURCE_DIR "/src"), {u"*.cpp"_s}, QDir::Files,
                         QDirIterator::Subdirectories);
    while (sources.hasNext())
        topics += matches(textOf(sources.next()), u"u\"([A-Za-z0-9]{2,}\\.htm)\"_s"_s);
    topics.removeAll(u"index.htm"_s);
    topics.removeDuplicates();
    return topics;
}

class HelpTest : public ::testing::Test, protected TestState
{
protected:
    ScriptedPrompter user;
    FakePrograms programs;
    WidgetBrowsers browsers{{}};

    HelpTest() { state.HelpFilePath = helpFolder; }
};
} // namespace

TEST_F(HelpTest, EveryTopicOfTheProgramOpens)
{
    frmHelp help({state, user, browsers, programs});
    const QStringList topics = topicsOfTheProgram();
    EXPECT_GE(topics.size(), 11);
    for (const QString &topic : topics) {
        help.showTopic(helpFolder + u"::/"_s + topic);
        const QStringList titles = matches(textOf(helpFolder + u'/' + topic), u"<title>(.*)</title>"_s);
        ASSERT_EQ(titles.size(), 1) << topic.toStdString();
        EXPECT_TRUE(QTest::qWaitFor([&] { return help.windowTitle().startsWith(titles.first()); }))
            << topic.toStdString();
    }
}

TEST_F(HelpTest, LinksAndPicturesLeadSomewhereAndEveryTopicIsReached)
{
    const QStringList pages = QDir(helpFolder).entryList({u"*.htm"_s}, QDir::Files);
    QStringList reached{u"features.htm"_s};
    for (qsizetype i = 0; i < reached.size(); ++i) {
        const QString text = textOf(helpFolder + u'/' + reached[i]);
        for (const QString &link : matches(text, u"href=\"([^\":]+\\.htm)\""_s)) {
            EXPECT_TRUE(pages.contains(link)) << reached[i].toStdString() << ": " << link.toStdString();
            if (!reached.contains(link))
                reached += link;
        }
        for (const QString &picture : matches(text, u"<img src=\"([^\"]+)\""_s))
            EXPECT_FALSE(QImage(helpFolder + u'/' + picture).isNull()) << picture.toStdString();
        EXPECT_EQ(text.count(u"<img "_s), text.count(u" alt=\""_s)) << reached[i].toStdString();
    }
    reached.sort();
    EXPECT_EQ(reached, pages) << "from the first topic on";
}
