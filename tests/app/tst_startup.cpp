#include "app/StartUp.h"
#include "capture/mOSversion.h"
#include "support/ScriptedPrompter.h"
#include "support/TestState.h"

#include <QDir>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// A home folder of its own, so that the default base directory lies in it.
class StartUpTest : public ::testing::Test
{
protected:
    QTemporaryDir home;
    QByteArray oldHome = qgetenv("HOME");
    Module1 state;

    StartUpTest()
    {
        qputenv("HOME", home.path().toUtf8());
        StartUp::fillState(state, home.path(), {2, 6, 2});
        state.AppOptions.BaseDirectory = home.path() + u"/Shotly"_s;
    }
    ~StartUpTest() override { qputenv("HOME", oldHome); }
};
} // namespace

TEST_F(StartUpTest, PathsLieInTheApplicationFolder)
{
    StartUp::fillState(state, u"/opt/app"_s, {2, 5, 0});
    EXPECT_EQ(state.AppTitle, u"Shotly"_s);
    EXPECT_EQ(state.OptionsFilePath, u"/opt/app/options.ini"_s);
    EXPECT_EQ(state.DatabasePath, u"/opt/app/Shotly.mdb"_s);
    EXPECT_EQ(state.ConnectionString, u"PROVIDER=Microsoft.Jet.OLEDB.4.0;Data Source=/opt/app/Shotly.mdb"_s);
    EXPECT_FALSE(state.IsWinXPOrLater);
    EXPECT_EQ(state.AppOptions.BigPicSize, 90);
}

TEST_F(StartUpTest, ADefaultBaseDirectoryThatIsMissingIsCreatedWithAMessage)
{
    ScriptedPrompter user;
    user.expectTell(Question::BaseDirectoryCreated);
    StartUp::ensureBaseDirectory(state, user, [] { ADD_FAILURE() << "nothing to choose"; });
    EXPECT_TRUE(QDir(home.path() + u"/Shotly"_s).exists());
    ASSERT_EQ(user.asked.size(), 1U);
    EXPECT_EQ(user.asked[0].text, u"Shotly's base directory is not exist, it will be created now."_s);

    // Once it is there nothing is said.
    StartUp::ensureBaseDirectory(state, user, [] { ADD_FAILURE(); });
}

TEST_F(StartUpTest, AnyOtherMissingDirectoryIsChosenAndNotCreated)
{
    ScriptedPrompter user;
    for (const QString &directory : {home.path() + u"/elsewhere"_s, home.path() + u"/shotly"_s}) {
        state.AppOptions.BaseDirectory = directory;
        int chosen = 0;
        StartUp::ensureBaseDirectory(state, user, [&] { ++chosen; });
        EXPECT_EQ(chosen, 1);
        EXPECT_FALSE(QDir(directory).exists());
    }
}

TEST_F(StartUpTest, ADirectoryThatCannotBeCreatedIsSaidAndTheProgramGoesOn)
{
    qputenv("HOME", "/proc/nowhere");
    state.AppOptions.BaseDirectory = u"/proc/nowhere/Shotly"_s;
    ScriptedPrompter user;
    user.expectTell(Question::BaseDirectoryCreated);
    user.expectTell(Question::CommandFailed);
    StartUp::ensureBaseDirectory(state, user, [] { ADD_FAILURE(); });
}

TEST(OsTest, MinorVersionCountsToo)
{
    EXPECT_TRUE(mOSversion::CheckOsVersion({2, 5, 1}));
    EXPECT_TRUE(mOSversion::CheckOsVersion({2, 6, 2}));
    EXPECT_FALSE(mOSversion::CheckOsVersion({2, 5, 0}));
    EXPECT_FALSE(mOSversion::CheckOsVersion({2, 10, 0}));
    EXPECT_FALSE(mOSversion::CheckOsVersion({1, 6, 2}));
    EXPECT_FALSE(mOSversion::CheckOsVersion({2, 4, 9}));
}
