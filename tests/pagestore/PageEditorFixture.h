#pragma once

#include "pagestore/frmPageData1.h"
#include "support/FakeClock.h"
#include "support/FakePrograms.h"
#include "support/FakeSpelling.h"
#include "support/FakeWordProcessor.h"
#include "support/TestPages.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace PageFields;

/// Three pages of "Demo", titled "one" to "three"; the second one's image was deleted.
class PageEditorTest : public ::testing::Test, protected TestPages
{
protected:
    FakeClock clock;
    FakePrograms programs;
    FakeWordProcessor word;
    FakeSpelling spelling;
    std::unique_ptr<frmPageData1> form;

    PageEditorTest()
    {
        for (const QString &page :
             {u"1, \"OK\", \"one\""_s, u"2, \"Deleted\", \"two\""_s, u"3, \"OK\", \"three\""_s})
            execute(u"insert into PageData(ProjectName, ProjectDirectory, [Date], Layout, PageNumber, "
                    u"PageStatus, "
                    "PageTitle) values(\"Demo\", \"%1\", #11/23/2026#, 0, "_s.arg(state.ProjectDirectory) +
                    page + u')');
    }
    ~PageEditorTest() override
    {
        if (form)
            form->close();
    }

    void open()
    {
        form = std::make_unique<frmPageData1>(
            PageEditorServices{state, pages, prompter, workspace, programs, spelling, clock, word});
        form->setProperty("formID", 7);
        form->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(form.get()));
        EXPECT_TRUE(QTest::qWaitFor([this] { return box(PageTitle)->hasFocus(); }));
    }
    void openProject()
    {
        state.EditorProjectPages = true;
        open();
    }
    void openNewPage()
    {
        state.EditorAddPage = true;
        state.EditorLastPageNumber = 3;
        open();
    }

    template <typename T>
    T *control(const QString &name) const
    {
        auto *found = form->findChild<T *>(name);
        EXPECT_TRUE(found) << name.toStdString();
        return found;
    }
    QWidget *box(Index index) const
    {
        return control<QWidget>(u"txtFields_%1"_s.arg(static_cast<int>(index)));
    }
    QString text(Index index) const
    {
        const auto *line = qobject_cast<QLineEdit *>(box(index));
        return line ? line->text() : static_cast<QPlainTextEdit *>(box(index))->toPlainText();
    }
    void type(Index index, const QString &keys)
    {
        control<QTabWidget>(u"TabStrip1"_s)->setCurrentIndex(field(index).tab - 1);
        box(index)->setFocus();
        QTest::keyClick(box(index), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(box(index), Qt::Key_Delete);
        QTest::keyClicks(box(index), keys);
    }
    void paste(Index index, const QString &what)
    {
        QApplication::clipboard()->setText(what);
        box(index)->setFocus();
        QTest::keyClick(box(index), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(box(index), Qt::Key_V, Qt::ControlModifier);
    }
    /// The keyboard goes on to the next box.
    void leave(Index index)
    {
        QTest::keyClick(box(index), Qt::Key_Tab);
        QApplication::processEvents();
    }
    void press(const QString &name) const
    {
        auto *button = control<QAbstractButton>(name);
        EXPECT_TRUE(button->isVisible() && button->isEnabled()) << name.toStdString();
        QTest::mouseClick(button, Qt::LeftButton);
    }
    bool shown(const QString &name) const { return control<QWidget>(name)->isVisible(); }
    QString status() const { return control<QLabel>(u"lblStatus"_s)->text(); }
    QString stored(const QString &column, int id)
    {
        return value(u"select [%1] from PageData where ID=%2"_s.arg(column).arg(id));
    }
};
