// The page list, driven by keys and clicks over a real database.

#include "pagestore/frmPageList.h"
#include "pagestore/PageOrder.h"
#include "support/TestPages.h"

#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QTest>

#include <sqlite3.h>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int patience = 20'000; // milliseconds

/// Pages 1 to 3 of "Demo" and 1 to 2 of "Other"; IDs in the order of insertion, from 1.
class PageListTest : public ::testing::Test, protected TestPages
{
protected:
    std::unique_ptr<frmPageList> form;

    PageListTest()
    {
        const QStringList rows{u"\"Demo\", 2, \"Press the button\", \"\""_s,
                               u"\"Demo\", 1, \"Open\", \"with the mouse\""_s,
                               u"\"Demo\", 3, \"Close 100%\", \"\""_s, u"\"Other\", 2, \"Mouse\", \"\""_s,
                               u"\"Other\", 1, \"Start\", \"50 of 100\""_s};
        for (const QString &row : rows)
            execute(u"insert into PageData(ProjectName, PageNumber, PageTitle, PageSummary, PageStatus) "
                    u"values(%1, "
                    "\"OK\")"_s.arg(row));
        workspace.names = QStringList{u"Demo"_s, u"Other"_s};
    }

    void open()
    {
        form = std::make_unique<frmPageList>(PageListServices{state, pages, prompter, workspace});
        form->resize(1000, 500);
        form->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(form.get()));
        EXPECT_TRUE(QTest::qWaitFor([this] { return words()->hasFocus(); }));
    }
    template <typename T>
    T *control(const QString &name) const
    {
        auto *found = form->findChild<T *>(name);
        EXPECT_TRUE(found) << name.toStdString();
        return found;
    }
    QComboBox *words() const { return control<QComboBox>(u"txtSearch_0"_s); }
    QTableView *grid() const { return control<QTableView>(u"grdDataGrid"_s); }
    QString status() const { return control<QLabel>(u"lblStatus"_s)->text(); }
    void press(const QString &name) const
    {
        QTest::mouseClick(control<QAbstractButton>(name), Qt::LeftButton);
    }
    void type(const QString &box, const QString &text) const
    {
        auto *combo = control<QComboBox>(box);
        combo->setFocus();
        QTest::keyClick(combo, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(combo, Qt::Key_Delete);
        QTest::keyClicks(combo, text);
    }
    /// The IDs in the grid, once they are these.
    ::testing::AssertionResult shows(const QString &ids) const
    {
        QString now;
        const bool seen = QTest::qWaitFor(
            [&] {
                now.clear();
                for (int row = 0; row < grid()->model()->rowCount(); ++row)
                    now += grid()->model()->index(row, 0).data().toString();
                return now == ids;
            },
            now.isEmpty() ? patience : 1);
        return seen ? ::testing::AssertionSuccess() : ::testing::AssertionFailure() << now.toStdString();
    }
    void doubleClick(QPoint point) const
    {
        QTest::mouseClick(grid()->viewport(), Qt::LeftButton, {}, point);
        QTest::mouseDClick(grid()->viewport(), Qt::LeftButton, {}, point);
    }
    QString numbers(const QString &project)
    {
        QStringList all;
        const auto rows = pages.openRecordset(
            u"select PageNumber from PageData where ProjectName=\"%1\" order by [ID]"_s.arg(project));
        for (; !rows->atEnd(); rows->moveNext())
            all += rows->field(0).toString();
        return all.join(u' ');
    }
};
} // namespace

TEST_F(PageListTest, EveryKeystrokeSearchesAndTheJoinersMeanWhatTheySay)
{
    open();
    EXPECT_TRUE(shows(u"213"_s)); // the current project in the order of its pages
    EXPECT_EQ(status(), u"1 of 3 Record(s)"_s);
    type(u"txtSearch_0"_s, u"mouse"_s);
    EXPECT_TRUE(shows(u"2134"_s)); // all of the project, and whatever holds the word
    press(u"optSearch_1"_s);
    EXPECT_TRUE(shows(u"2"_s));
    type(u"cmbProj"_s, u""_s);
    EXPECT_TRUE(shows(u"24"_s)); // of every project
    type(u"txtSearch_0"_s, u"100%"_s);
    EXPECT_TRUE(shows(u"35"_s)) << "\"%\" stands for any characters, as typed";
    press(u"cmdClear"_s);
    EXPECT_TRUE(shows(u"21354"_s));
    EXPECT_TRUE(control<QRadioButton>(u"optSearch_0"_s)->isChecked());
    EXPECT_EQ(words()->count(), 2) << "words searched before, each once";
}

TEST_F(PageListTest, AFailingSearchTellsInTheStatusLineAndLeavesTheGrid)
{
    open();
    EXPECT_TRUE(shows(u"213"_s));
    type(u"txtSearch_0"_s, u"say \"x\""_s); // a quote ends no text
    EXPECT_TRUE(shows(u"213"_s));
    sqlite3 *other = nullptr;
    sqlite3_open(state.DatabasePath.toUtf8().constData(), &other);
    sqlite3_busy_timeout(other, patience); // what was typed may still be searched for
    sqlite3_exec(other, "begin exclusive", nullptr, nullptr, nullptr);
    press(u"optSearch_1"_s);
    EXPECT_TRUE(QTest::qWaitFor([this] { return status().contains(u"locked"_s); }, patience));
    EXPECT_EQ(grid()->model()->rowCount(), 3);
    sqlite3_close(other);
    press(u"optSearch_0"_s);
    EXPECT_TRUE(QTest::qWaitFor([this] { return status() == u"1 of 3 Record(s)"_s; }, patience));
}

TEST_F(PageListTest, KeysMoveWhereverTheKeyboardIs)
{
    open();
    EXPECT_TRUE(shows(u"213"_s));
    const auto key = [this](Qt::Key code, Qt::KeyboardModifiers with = {}) {
        QTest::keyClick(words(), code, with);
        return status().section(u' ', 0, 0).toInt();
    };
    EXPECT_EQ(key(Qt::Key_Down), 2);
    EXPECT_EQ(key(Qt::Key_PageDown), 3);
    EXPECT_EQ(key(Qt::Key_Down), 3); // beeps
    EXPECT_EQ(key(Qt::Key_Up), 2);
    EXPECT_EQ(key(Qt::Key_End), 3);
    EXPECT_EQ(key(Qt::Key_PageUp, Qt::ControlModifier), 1);
    EXPECT_EQ(key(Qt::Key_Down, Qt::ControlModifier), 3);
    EXPECT_EQ(key(Qt::Key_Home), 1);
    EXPECT_EQ(grid()->currentIndex().row(), 0);
    EXPECT_TRUE(words()->hasFocus());
    QTest::mouseClick(grid()->viewport(), Qt::LeftButton, {},
                      grid()->visualRect(grid()->model()->index(1, 3)).center());
    EXPECT_EQ(status(), u"2 of 3 Record(s)"_s);
}

TEST_F(PageListTest, DeleteTakesTheRowAtOnceAndTheLastOneGivesItsPlaceToTheNewLast)
{
    open();
    EXPECT_TRUE(shows(u"213"_s));
    press(u"cmdDelete"_s);
    EXPECT_TRUE(shows(u"13"_s));
    EXPECT_EQ(status(), u"1 of 2 Record(s)"_s);
    QTest::keyClick(words(), Qt::Key_Down);
    press(u"cmdDelete"_s);
    EXPECT_TRUE(shows(u"1"_s));
    EXPECT_EQ(status(), u"1 of 1 Record(s)"_s);
    press(u"cmdDelete"_s);
    EXPECT_EQ(value(u"select count(*) from PageData where ProjectName=\"Demo\""_s), u"0"_s);
    prompter.expectTell(Question::PageListFailed); // nothing to move in
    press(u"cmdFirst"_s);
    EXPECT_EQ(prompter.asked.back().text, u"There is no current record."_s);
}

TEST_F(PageListTest, ADoubleClickOpensTheEditorOnThePage)
{
    open();
    type(u"cmbProj"_s, u"Other"_s);
    EXPECT_TRUE(shows(u"54"_s));
    const QPoint second = grid()->visualRect(grid()->model()->index(1, 3)).center();
    doubleClick(second);
    EXPECT_EQ(workspace.calls, QStringList{u"editor Page: 4"_s});
    EXPECT_TRUE(state.EditorJumpToPage);
    EXPECT_EQ(state.EditorPageId, 4);
    EXPECT_EQ(workspace.text + state.AppOptions.ProjectName, u"OtherOther"_s);

    execute(u"delete from PageData where ID=4"_s);
    prompter.expectTell(Question::PageNotExisting);
    doubleClick(second);
    EXPECT_EQ(workspace.calls.size(), 1);
    EXPECT_FALSE(state.EditorJumpToPage);
    press(u"cmdRefresh"_s);
    EXPECT_TRUE(shows(u"5"_s));
}

TEST_F(PageListTest, PagesMoveUpAndDownWithinTheirProject)
{
    open();
    type(u"cmbProj"_s, u""_s);
    EXPECT_TRUE(shows(u"21354"_s));
    QTest::keyClick(words(), Qt::Key_Down, Qt::AltModifier);
    EXPECT_TRUE(shows(u"12354"_s));
    EXPECT_EQ(status(), u"2 of 5 Record(s)"_s);
    EXPECT_EQ(numbers(u"Demo"_s), u"1 2 3"_s);
    for (int row = 0; row < 2; ++row)
        EXPECT_EQ(grid()->model()->index(row, 2).data().toInt(), row + 1);
    press(u"cmdMoveDown"_s);
    EXPECT_TRUE(shows(u"13254"_s));
    press(u"cmdMoveDown"_s); // the next page is another project's
    EXPECT_TRUE(shows(u"13254"_s));
    press(u"cmdMoveUp"_s);
    EXPECT_TRUE(shows(u"12354"_s));

    // In another order there is nothing to be moved up.
    auto *header = grid()->horizontalHeader();
    const auto clickTitle = [&] {
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          {header->sectionPosition(3) + 20, header->height() / 2});
    };
    clickTitle();
    EXPECT_TRUE(shows(u"34215"_s));
    EXPECT_FALSE(control<QPushButton>(u"cmdMoveUp"_s)->isEnabled());
    for (const Qt::KeyboardModifier with : {Qt::NoModifier, Qt::NoModifier, Qt::AltModifier})
        QTest::keyClick(words(), Qt::Key_Down, with); // to the third row, then not with it
    EXPECT_EQ(numbers(u"Demo"_s), u"1 2 3"_s);
    clickTitle();
    EXPECT_TRUE(shows(u"51243"_s));
    clickTitle();
    EXPECT_TRUE(shows(u"12354"_s));
}

TEST_F(PageListTest, SharedNumbersAreToldApartUpwards)
{
    execute(u"update PageData set PageNumber=3 where ID=1"_s);
    PageOrder::exchange(pages, 1, 2);
    EXPECT_EQ(numbers(u"Demo"_s), u"1 3 3"_s) << "two that differ change no third one";
    execute(u"update PageData set PageNumber=5 where ProjectName=\"Demo\""_s);
    PageOrder::exchange(pages, 1, 2);
    EXPECT_EQ(numbers(u"Demo"_s), u"6 5 7"_s);
    PageOrder::exchange(pages, 3, 2);
    EXPECT_EQ(numbers(u"Demo"_s), u"6 7 5"_s);
    EXPECT_THROW(PageOrder::exchange(pages, 1, 4), RunTimeError); // of another project
    EXPECT_EQ(numbers(u"Demo"_s) + numbers(u"Other"_s), u"6 7 52 1"_s);
}
