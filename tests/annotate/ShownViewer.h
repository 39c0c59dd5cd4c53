#pragma once

#include "ViewerFixture.h"

#include "annotate/frmVpic.h"
#include "annotate/frmVpicFiles.h"
#include "support/FakeSpelling.h"

#include <gtest/gtest.h>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <QToolBar>

using namespace Qt::Literals::StringLiterals;

inline constexpr int patience = 10'000; // milliseconds

/// A viewer in a window of its own, 900 x 600.
struct ShownViewer {
    explicit ShownViewer(const frmVpic::Services &services) : form(services)
    {
        form.setProperty("formID", 7);
        form.resize(900, 600);
        form.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&form));
    }

    template <typename Control>
    Control &control(const QString &name)
    {
        auto *found = form.findChild<Control *>(name);
        EXPECT_TRUE(found) << name.toStdString();
        return *found;
    }
    bool enabled(const QString &key) { return control<QAction>(key).isEnabled(); }
    void press(const QString &key)
    {
        auto *button = control<QToolBar>(key.startsWith(u't') ? u"tlbcolor"_s : u"tlbmain"_s)
                           .widgetForAction(&control<QAction>(key));
        QTest::mouseClick(button, Qt::LeftButton);
    }
    QWidget &canvas() { return control<QWidget>(u"Picture1"_s); }
    /// A pixel of the picture, as it is on the screen.
    QColor pixel(int x, int y) { return canvas().grab().toImage().pixelColor(x + 1, y + 1); }
    void drag(QPoint from, QPoint to)
    {
        const QPoint border(1, 1);
        QTest::mousePress(&canvas(), Qt::LeftButton, {}, from + border);
        QTest::mouseMove(&canvas(), to + border);
        QTest::mouseRelease(&canvas(), Qt::LeftButton, {}, to + border);
    }
    FileList &files() { return *form.findChild<FileList *>(); }
    QString fileName() { return control<QLineEdit>(u"txtFileName"_s).text(); }
    bool shows(const QString &name)
    {
        return QTest::qWaitFor([&] { return fileName() == name; }, patience);
    }
    /// On the file list.
    void key(Qt::Key key)
    {
        QTest::keyClick(&files(), key);
        QTest::qWait(0);
    }

    frmVpic form;
};

class frmVpicTest : public ::testing::Test, protected ViewerFixture
{
protected:
    FakeSpelling spelling;
    frmVpic::Services services{state, pages, prompter, workspace, spelling};
    const QString first = addPicture(u"sh2.bmp"_s, Qt::red, 1);
    const QString second = addPicture(u"sh10.bmp"_s, Qt::blue, 2);

    /// Types into the text dialog when it appears, and closes it with a button.
    void answerTextDialog(const QString &expected, const QString &text, const QString &button)
    {
        QTimer::singleShot(0, qApp, [=] {
            QWidget *dialog = QApplication::activeModalWidget();
            ASSERT_TRUE(dialog);
            auto *box = dialog->findChild<QPlainTextEdit *>(u"text1"_s);
            EXPECT_EQ(box->toPlainText(), expected);
            box->setPlainText(text);
            dialog->findChild<QPushButton *>(button)->click();
        });
    }
};
