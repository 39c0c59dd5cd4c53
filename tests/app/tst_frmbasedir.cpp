#include "pagestore/frmBaseDir.h"
#include "settings/OptionsStore.h"
#include "support/ScriptedPrompter.h"
#include "support/TestState.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

TEST(BaseDirectoryChooser, TakesAnExistingFolderAndStaysOpenOtherwise)
{
    TestState test;
    Module1 &state = test.state;
    const QString good = test.folder.path() + u"/guides"_s;
    const QString gone = test.folder.path() + u"/gone"_s;
    state.FileSystem.createFolder(good);
    ScriptedPrompter user;
    frmBaseDir form(state, user);
    form.show();
    auto *browse = form.findChild<QPushButton *>(u"cmdBrowse"_s);
    const auto *label = form.findChild<QLabel *>(u"lblBaseDir"_s);
    ASSERT_TRUE(browse && label);

    user.expectFile(Question::ChooseBaseDirectory, std::nullopt); // nothing chosen: nothing changes
    QTest::mouseClick(browse, Qt::LeftButton);
    EXPECT_EQ(state.AppOptions.BaseDirectory, test.folder.path() + u"/base"_s);

    user.expectFile(Question::ChooseBaseDirectory, gone);
    user.expectTell(Question::BaseDirectoryNotExisting);
    QTest::mouseClick(browse, Qt::LeftButton);
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(user.asked.back().text, gone + u"\r\nis not exist. Please select an existing directory."_s);

    user.expectFile(Question::ChooseBaseDirectory, good);
    QTest::mouseClick(browse, Qt::LeftButton);
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(form.result(), static_cast<int>(QDialog::Accepted));
    EXPECT_EQ(label->text(), good);
    EXPECT_EQ(state.AppOptions.BaseDirectory, good);
    EXPECT_EQ(OptionsStore::LoadOptions(state.OptionsFilePath).BaseDirectory, good);
    EXPECT_EQ(user.asked[0].title, u"Select a Folder"_s);
}
