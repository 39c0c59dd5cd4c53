// Commands of the main window on files and folders with names of any kind.

#include "MainWindowFixture.h"

#include "pagestore/frmDelProj.h"
#include "paint/frmPaint.h"
#include "support/OddNames.h"

#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QToolBar>

namespace
{
class OddNamesTest : public MainWindowTest
{
protected:
    QString base = folder.filePath(u"it's \"my\" $(touch z);`id`\n<100%41#top?>*"_s);
    QString project = base + u"/guide"_s;
    QDir given{folder.filePath(u"given"_s)};

    OddNamesTest()
    {
        state.AppOptions.BaseDirectory = base;
        state.FileSystem.createFolder(base);
        state.FileSystem.createFolder(given.path());
    }
    void record()
    {
        type(u"guide"_s);
        press(u"StartCap"_s);
        click({20, 30});
        control<QAction>(u"mnuStopCap"_s)->trigger();
        EXPECT_EQ(state.CurrentImagePath, project + u"/sh0001.bmp"_s);
    }
    QString valueOf(const QString &query)
    {
        return platform.database->open(state.ConnectionString)->openRecordset(query)->field(0).toString();
    }
    /// A picture of one colour, for each name another.
    QString give(const QString &name, int number) const
    {
        QImage picture(40, 30, QImage::Format_RGB32);
        picture.fill(QColor(number, 0, 0));
        const QString path = given.filePath(name + u".bmp"_s);
        ImageFile::save(picture, path);
        return path;
    }
    static int numberIn(const QString &path) { return QImage(path, "BMP").pixelColor(0, 0).red(); }
    void closeTab() { press(u"cmdCloseTab"_s); }
};
} // namespace

TEST_F(OddNamesTest, PicturesAreCopiedIntoAProjectShownGeneratedAndSetAside)
{
    record();
    closeTab();
    QStringList names = oddNames();
    const QString longest = names.takeLast();
    for (int i = 0; i < names.size(); ++i) {
        user.expectFile(Question::ChooseImageToAdd, give(names[i], i + 1));
        user.expectAsk(Question::AddMoreImages, Answer::Yes);
    }
    user.expectFile(Question::ChooseImageToAdd, give(longest, 99)); // its number does not go before it
    user.expectTell(Question::CommandFailed);
    control<QAction>(u"mnuOddProject"_s)->trigger();
    EXPECT_TRUE(user.asked.back().text.contains(longest)) << user.asked.back().text.toStdString();
    EXPECT_EQ(valueOf(u"select count(*) from PageData where PageStatus='OK'"_s).toInt(), names.size() + 1);
    const auto copyOf = [&](int i) { return project + u"/%1_%2.bmp"_s.arg(i + 2).arg(names[i]); };
    for (int i = 0; i < names.size(); ++i)
        EXPECT_EQ(numberIn(copyOf(i)), i + 1) << names[i].toStdString();

    state.AppOptions.FinalDocumentFormat = 0;
    press(u"CreateHTML"_s);
    for (int i = 0; i < names.size(); ++i)
        EXPECT_TRUE(QFile::exists(copyOf(i).chopped(3) + u"htm"_s)) << names[i].toStdString();

    user.expectAsk(Question::DeleteProject, Answer::Yes);
    QTimer::singleShot(0, [this] {
        QDialog *dialog = window->findChild<frmDelProj *>();
        ASSERT_TRUE(dialog);
        QTest::keyClicks(dialog->findChild<QComboBox *>(u"cmbProj"_s), u"guide"_s);
        QTest::mouseClick(dialog->findChild<QPushButton *>(u"cmdDelete"_s), Qt::LeftButton);
        dialog->close();
    });
    const QStringList files = QDir(project).entryList(QDir::Files);
    control<QAction>(u"mnuDeleteProject"_s)->trigger();
    const QStringList folders = QDir(base).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    ASSERT_EQ(folders.size(), 1);
    EXPECT_TRUE(folders[0].startsWith(u"guide_del_"_s));
    EXPECT_EQ(QDir(base + u'/' + folders[0]).entryList(QDir::Files), files);
    EXPECT_EQ(valueOf(u"select count(*) from PageData"_s), u"0"_s);
    EXPECT_FALSE(QFile::exists(u"x"_s) || QFile::exists(u"y"_s) || QFile::exists(u"z"_s));
}

TEST_F(OddNamesTest, PicturesAreShownChangedAndDeleted)
{
    record();
    closeTab();
    const QStringList names = oddNames();
    for (int i = 0; i < names.size(); ++i) {
        const QString path = give(names[i], i + 1);
        // As a later start of the program hands it over.
        EXPECT_EQ(window->control({u"show"_s, path}), QString());
        EXPECT_TRUE(QTest::qWaitFor([&] { return state.CurrentImagePath == path; }, 10'000));
        const QPixmap shown = control<QWidget>(u"Picture1"_s)->grab();
        EXPECT_EQ(shown.toImage().pixelColor(5, 5).red(), i + 1) << names[i].toStdString();

        state.AppOptions.OptionFlags[PaintTool] = 1;
        state.AppOptions.PaintProgram = u"painter"_s;
        press(u"Painter"_s);
        EXPECT_EQ(programs->painted.last(), u"painter "_s + path);

        window->openPaintEditor(path);
        frmPaint *editor = nullptr;
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (auto *found = qobject_cast<frmPaint *>(widget))
                editor = found;
        }
        ASSERT_TRUE(editor);
        editor->findChild<QAction *>(u"mnuInvert"_s)->trigger();
        editor->findChild<QAction *>(u"mnuSave"_s)->trigger();
        EXPECT_TRUE(editor->close());
        EXPECT_EQ(numberIn(path), 255 - (i + 1));

        auto *toolBar = control<QToolBar>(u"tlbmain"_s);
        user.expectAsk(Question::DeleteImage, Answer::Yes);
        const bool fits = QFileInfo(path).fileName().toUtf8().size() + 8 <= 255;
        if (!fits)
            user.expectTell(Question::CommandFailed);
        QTest::mouseClick(toolBar->widgetForAction(control<QAction>(u"pDelete"_s)), Qt::LeftButton);
        EXPECT_EQ(QFile::exists(path), !fits);
        EXPECT_EQ(QFile::exists(path + u".removed"_s), fits);
        if (!fits)
            closeTab();
    }
    EXPECT_EQ(QDir(given.path()).entryList(QDir::Files | QDir::Hidden).size(), names.size());
}
