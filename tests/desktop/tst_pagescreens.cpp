// The page editor and the page list on a real display; what they wrote is read back with the sqlite3 program.

#include "DesktopFixture.h"

#include "platform/ImageFile.h"

#include <QLabel>
#include <QLineEdit>
#include <QTabBar>
#include <QTableView>

using namespace Qt::Literals::StringLiterals;

namespace
{
class PageScreensTest : public DesktopTest
{
protected:
    PageScreensTest()
    {
        const QString directory = state.AppOptions.BaseDirectory + u"/guide"_s;
        state.FileSystem.createFolder(directory);
        QImage picture(600, 400, QImage::Format_RGB32);
        picture.fill(qRgb(0x20, 0x40, 0x80));
        for (int page = 1; page <= 3; ++page) {
            const QString path = directory + u"/sh000%1.bmp"_s.arg(page);
            ImageFile::save(picture, path);
            sqlite(
                u"insert into PageData(ProjectName, PageNumber, PageStatus, ScreenShotFilePath, Date, "
                "ProjectDirectory, PageTitle) values('guide', %1, 'OK', '%2', '2026-11-23', '%3', 'Step %1')"_s
                    .arg(QString::number(page), path, directory));
        }
        window->addProjectName(u"guide"_s);
        window->setProjectText(u"guide"_s);
        state.AppOptions.ProjectName = u"guide"_s;
    }

    /// What the command-line program answers.
    QString sqlite(const QString &statement) const
    {
        QProcess process;
        process.start(u"sqlite3"_s, {state.DatabasePath, statement});
        EXPECT_TRUE(process.waitForFinished()) << "sqlite3";
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
        return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    }
    void key(const QString &keys) const { xdotool({u"key"_s, u"--delay"_s, u"30"_s, keys}); }
    void type(const QString &text) const { xdotool({u"type"_s, u"--delay"_s, u"20"_s, text}); }
    void press(const QString &name) { click(middleOf(control(name))); }
    bool becomes(const std::function<bool()> &condition) const
    {
        return QTest::qWaitFor(condition, desktopPatience);
    }
};
} // namespace

TEST_F(PageScreensTest, TextsAreTypedSavedAndReadBack)
{
    press(u"PageList"_s);
    ASSERT_TRUE(becomes([this] { return window->findChild<QWidget *>(u"frmPageData1"_s); }));
    ASSERT_TRUE(becomes([this] { return control(u"txtFields_0"_s)->hasFocus(); }));
    EXPECT_EQ(window->findChild<QTabBar *>(u"tab1"_s)->tabText(0), u"Add Notes"_s);
    // The step's picture is beside the text.
    EXPECT_TRUE(
        becomes([this] { return !window->findChild<QLabel *>(u"lblThumbnail"_s)->pixmap().isNull(); }));
    key(u"ctrl+a"_s);
    type(u"Open the \"File\" menu"_s);
    press(u"txtFields_3"_s);
    type(u"Then choose Open."_s);
    key(u"ctrl+s"_s);
    EXPECT_TRUE(becomes([this] {
        return sqlite(u"select PageSummary from PageData where ID=1"_s) == u"Then choose Open."_s;
    }));
    EXPECT_EQ(sqlite(u"select PageTitle from PageData where ID=1"_s), u"Open the \"File\" menu"_s);

    press(u"cmdNext"_s);
    press(u"txtFields_1"_s);
    type(u"second"_s);
    user.expectAsk(Question::SavePendingPage, Answer::Yes);
    press(u"cmdCloseTab"_s);
    EXPECT_TRUE(
        becomes([this] { return sqlite(u"select SubTitle from PageData where ID=2"_s) == u"second"_s; }));
    EXPECT_TRUE(becomes([this] { return window->findChild<QTabBar *>(u"tab1"_s)->count() == 0; }));
    EXPECT_EQ(sqlite(u"pragma integrity_check"_s), u"ok"_s);
}

TEST_F(PageScreensTest, PagesAreFoundMovedAndOpened)
{
    press(u"PageGrid"_s);
    ASSERT_TRUE(becomes([this] { return window->findChild<QTableView *>(u"grdDataGrid"_s); }));
    auto *grid = window->findChild<QTableView *>(u"grdDataGrid"_s);
    ASSERT_TRUE(becomes([&] { return grid->model()->rowCount() == 3; }));
    ASSERT_TRUE(becomes([this] { return control(u"txtSearch_0"_s)->hasFocus(); }));
    key(u"alt+Down"_s);
    EXPECT_TRUE(
        becomes([this] { return sqlite(u"select PageNumber from PageData order by ID"_s) == u"2\n1\n3"_s; }));
    press(u"optSearch_1"_s);
    press(u"txtSearch_0"_s);
    type(u"step 3"_s);
    ASSERT_TRUE(becomes([&] { return grid->model()->rowCount() == 1; }));
    key(u"Down"_s);
    const QPoint row = grid->viewport()->mapToGlobal(grid->visualRect(grid->model()->index(0, 3)).center());
    xdotool({u"mousemove"_s, QString::number(row.x()), QString::number(row.y()), u"click"_s, u"--repeat"_s,
             u"2"_s, u"--delay"_s, u"60"_s, u"1"_s});
    ASSERT_TRUE(becomes([this] { return window->findChild<QWidget *>(u"frmPageData1"_s); }));
    EXPECT_EQ(window->findChild<QTabBar *>(u"tab1"_s)->tabText(0), u"Page: 3"_s);
    EXPECT_TRUE(becomes([this] {
        auto *title = window->findChild<QLineEdit *>(u"txtFields_0"_s);
        return title && title->text() == u"Step 3"_s;
    }));
}
