#include "pagestore/frmBackupDatabase.h"
#include "pagestore/frmDelProj.h"
#include "support/FakeClock.h"
#include "support/TestPages.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace
{
void click(const QWidget &form, const QString &name)
{
    QTest::mouseClick(form.findChild<QPushButton *>(name), Qt::LeftButton);
}

TEST(ProjectDeletionWindow, projectsAreChosenFromTheListAndDeleted)
{
    TestPages t;
    FakeClock clock;
    for (const QString &name : {u"Alpha"_s, u"Beta"_s, u"Gamma"_s})
        t.execute(u"insert into PageData(ProjectName) values(\"%1\")"_s.arg(name));
    frmDelProj form({t.state, t.pages, t.directories, t.prompter, clock}, nullptr);
    form.show();
    auto *box = form.findChild<QComboBox *>(u"cmbProj"_s);
    click(form, u"cmdDelete"_s); // nothing is selected
    QTest::keyClicks(box, u"b"_s);
    t.prompter.expectAsk(Question::DeleteProject, Answer::No);
    t.prompter.expectTell(Question::DeleteCanceled);
    click(form, u"cmdDelete"_s);
    EXPECT_EQ(box->currentText(), u"Beta"_s);
    t.prompter.expectAsk(Question::DeleteProject, Answer::Yes);
    click(form, u"cmdDelete"_s);
    EXPECT_EQ(box->currentText(), QString());
    t.prompter.expectTell(Question::HowToDeleteProject);
    click(form, u"cmdHelp"_s);
    QFile::remove(t.state.DatabasePath);
    t.prompter.expectAsk(Question::DeleteAllProjects, Answer::Yes);
    t.prompter.expectTell(Question::CommandFailed);
    click(form, u"cmdDelAll"_s);
    EXPECT_EQ(box->count(), 2) << "Beta is gone, the others could not be deleted";
    QTest::keyClick(&form, Qt::Key_Return);
    EXPECT_FALSE(form.isVisible()) << "Return deletes nothing";
}

TEST(BackupWindow, closesWhenTheCopyIsMade)
{
    TestPages t;
    frmBackupDatabase form({t.state, t.database, t.prompter}, nullptr);
    form.show();
    const auto *path = form.findChild<QLabel *>(u"lblpath"_s);
    auto *name = form.findChild<QLineEdit *>(u"txtName"_s);
    click(form, u"cmdHelp"_s);
    EXPECT_EQ(t.workspace.calls, QStringList{u"help backupDB.htm"_s});
    t.prompter.expectFile(Question::ChooseBackupSource, std::nullopt);
    click(form, u"cmdBrowse"_s);
    EXPECT_EQ(path->text(), t.state.DatabasePath);
    const QString distant = t.folder.path() + u"/long folder"_s.repeated(30) + u"/other.mdb"_s;
    t.prompter.expectFile(Question::ChooseBackupSource, distant);
    click(form, u"cmdBrowse"_s);
    EXPECT_GE(path->height(), path->heightForWidth(path->width())) << "no line of it is cut off";
    t.prompter.expectFile(Question::ChooseBackupSource, t.state.DatabasePath);
    click(form, u"cmdBrowse"_s);
    QTest::keyClicks(name, u"copy"_s);
    t.prompter.expectFile(Question::ChooseBackupTarget, t.folder.filePath(u"copy.mdb"_s));
    t.prompter.expectTell(Question::BackupDone);
    QTest::keyClick(name, Qt::Key_Return);
    EXPECT_FALSE(form.isVisible());
    EXPECT_TRUE(QFile::exists(t.folder.filePath(u"copy.mdb"_s)));
}
} // namespace
