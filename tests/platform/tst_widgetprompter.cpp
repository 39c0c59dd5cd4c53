#include "platform/qt/WidgetPrompter.h"

#include "FileChecks.h"
#include "platform/PrintJob.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// Answers the box that comes up next.
void whenAsked(std::function<void(QDialog &)> answer)
{
    QTimer::singleShot(0, qApp, [answer = std::move(answer)]() mutable {
        auto *box = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (box && box->isVisible())
            answer(*box);
        else
            whenAsked(std::move(answer)); // not there yet
    });
}

void pressButton(QDialog &box, QDialogButtonBox::StandardButton which)
{
    QTest::mouseClick(box.findChild<QDialogButtonBox *>()->button(which), Qt::LeftButton);
}

const PromptText prompt{u"First line\r\nsecond line"_s, u"Title"_s, Icon::Question};
} // namespace

TEST(WidgetPrompterTest, EveryAnswerToAQuestion)
{
    WidgetPrompter prompter;
    struct Case {
        Buttons buttons;
        std::function<void(QDialog &)> act;
        Answer answer;
    };
    const auto press = [](QDialogButtonBox::StandardButton which) {
        return [which](QDialog &box) { pressButton(box, which); };
    };
    const auto escape = [](QDialog &box) { QTest::keyClick(&box, Qt::Key_Escape); };
    const auto close = [](QDialog &box) { box.close(); };
    const auto enter = [](QDialog &box) { QTest::keyClick(&box, Qt::Key_Return); };
    for (const Case &each :
         {Case{Buttons::YesNo, press(QDialogButtonBox::Yes), Answer::Yes},
          Case{Buttons::YesNo, press(QDialogButtonBox::No), Answer::No},
          Case{Buttons::YesNo, escape, Answer::No}, Case{Buttons::YesNo, close, Answer::No},
          Case{Buttons::YesNoCancel, press(QDialogButtonBox::Yes), Answer::Yes},
          Case{Buttons::YesNoCancel, press(QDialogButtonBox::No), Answer::No},
          Case{Buttons::YesNoCancel, press(QDialogButtonBox::Cancel), Answer::Cancel},
          Case{Buttons::YesNoCancel, escape, Answer::Cancel},
          Case{Buttons::YesNoCancel, close, Answer::Cancel},
          Case{Buttons::YesNoCancel, enter, Answer::Yes}}) {
        whenAsked(each.act);
        EXPECT_EQ(prompter.ask(Question::KeepExistingPages, each.buttons, prompt), each.answer);
    }
    // Where no answer is harmless, one has to be given.
    whenAsked([](QDialog &box) {
        QTest::keyClick(&box, Qt::Key_Escape);
        box.close();
        EXPECT_TRUE(box.isVisible());
        for (QPushButton *button : box.findChildren<QPushButton *>()) {
            if (button->text() == u"&No"_s)
                QTest::mouseClick(button, Qt::LeftButton);
        }
    });
    EXPECT_EQ(prompter.ask(Question::SaveImageChangesOnClose, Buttons::YesNo, prompt), Answer::No);
    whenAsked(enter);
    EXPECT_EQ(prompter.ask(Question::SaveImageChangesOnClose, Buttons::YesNo, prompt), Answer::Yes);
    // Return alone never throws a file away.
    whenAsked(enter);
    EXPECT_EQ(prompter.ask(Question::OverwriteHtmlFile, Buttons::YesNo, prompt), Answer::No);
}

TEST(WidgetPrompterTest, MessagesShowTheirLines)
{
    WidgetPrompter prompter;
    QString text;
    QString title;
    whenAsked([&](QDialog &box) {
        title = box.windowTitle();
        text = box.findChild<QLabel *>(u"qt_msgbox_label"_s)->text();
        QTest::keyClick(&box, Qt::Key_Escape);
    });
    prompter.tell(Question::CommandFailed, prompt);
    EXPECT_EQ(title, u"Title"_s);
    EXPECT_EQ(text, u"First line\nsecond line"_s);
}

TEST(WidgetPrompterTest, ALineOfTextOrNothing)
{
    WidgetPrompter prompter;
    whenAsked([](QDialog &box) {
        EXPECT_EQ(box.findChild<QLineEdit *>()->text(), u"3"_s);
        QTest::keyClicks(box.findChild<QLineEdit *>(), u"12"_s);
        QTest::keyClick(&box, Qt::Key_Return);
    });
    EXPECT_EQ(prompter.input(Question::ShotDelay, prompt, u"3"_s), u"12"_s); // the proposal is selected
    whenAsked([](QDialog &box) { QTest::keyClick(&box, Qt::Key_Escape); });
    EXPECT_EQ(prompter.input(Question::ShotDelay, prompt, u"3"_s), std::nullopt);
    whenAsked([](QDialog &box) {
        box.findChild<QLineEdit *>()->clear();
        QTest::keyClick(&box, Qt::Key_Return);
    });
    EXPECT_EQ(prompter.input(Question::ShotDelay, prompt, u"3"_s), QString());
}

TEST(WidgetPrompterTest, FilesAndFolders)
{
    WidgetPrompter prompter;
    QTemporaryDir folder;
    QFile existing(folder.filePath(u"taken.bmp"_s));
    ASSERT_TRUE(existing.open(QIODevice::WriteOnly));
    existing.close();
    FilePrompt file{u"Save As"_s, folder.path(), u"snapshot1.bmp"_s, u"Image Files (*.bmp)|*.bmp"_s, true};

    whenAsked([](QDialog &box) {
        EXPECT_EQ(box.findChild<QLineEdit *>(u"fileNameEdit"_s)->text(), u"snapshot1.bmp"_s);
        pressButton(box, QDialogButtonBox::Save);
    });
    EXPECT_EQ(prompter.saveFile(Question::SaveSnapshotAs, file), folder.filePath(u"snapshot1.bmp"_s));
    whenAsked([](QDialog &box) { QTest::keyClick(&box, Qt::Key_Escape); });
    EXPECT_EQ(prompter.saveFile(Question::SaveSnapshotAs, file), std::nullopt);

    // A name without a suffix gets that of the first pattern.
    file.filter = u"All Image Files|*.Bmp;*.jpg;*.gif |"_s;
    file.fileName = u"plain"_s;
    whenAsked([](QDialog &box) { pressButton(box, QDialogButtonBox::Save); });
    EXPECT_EQ(prompter.saveFile(Question::SaveImageAs, file), folder.filePath(u"plain.bmp"_s));

    // ... or of the kind that is chosen, which also changes the name's.
    file.filter = u"Bitmap|*.bmp;*.dib|PNG|*.png"_s;
    for (const QString &name : {u"plain"_s, u"plain.bmp"_s}) {
        file.fileName = name;
        whenAsked([](QDialog &box) {
            box.findChild<QComboBox *>(u"fileTypeCombo"_s)->setFocus();
            QTest::keyClick(box.findChild<QComboBox *>(u"fileTypeCombo"_s), Qt::Key_Down);
            pressButton(box, QDialogButtonBox::Save);
        });
        EXPECT_EQ(prompter.saveFile(Question::PaintSaveAs, file), folder.filePath(u"plain.png"_s));
    }

    file.fileName = u"taken.bmp"_s;
    whenAsked([](QDialog &box) { pressButton(box, QDialogButtonBox::Open); });
    EXPECT_EQ(prompter.openFile(Question::OpenFailed, file), folder.filePath(u"taken.bmp"_s));

    whenAsked([](QDialog &box) { pressButton(box, QDialogButtonBox::Cancel); });
    EXPECT_EQ(prompter.pickFolder(Question::ChooseBaseDirectory, u"Select a Folder"_s, folder.path()),
              std::nullopt);
    whenAsked([](QDialog &box) {
        for (auto *button : box.findChild<QDialogButtonBox *>()->buttons()) {
            if (box.findChild<QDialogButtonBox *>()->buttonRole(button) == QDialogButtonBox::AcceptRole)
                QTest::mouseClick(button, Qt::LeftButton);
        }
    });
    EXPECT_EQ(prompter.pickFolder(Question::ChooseBaseDirectory, u"Select a Folder"_s, folder.path()),
              folder.path());
}

TEST(WidgetPrompterTest, APrinterOrAFileInItsPlace)
{
    WidgetPrompter prompter;
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"printed.pdf"_s);
    const auto printToFile = [](QDialog &box, const QString &file) {
        auto *printers = box.findChild<QComboBox *>(u"printers"_s);
        printers->setCurrentIndex(printers->count() - 1); // behind all real ones
        box.findChild<QLineEdit *>(u"filename"_s)->setText(file);
        pressButton(box, QDialogButtonBox::Ok);
    };
    whenAsked([](QDialog &box) { pressButton(box, QDialogButtonBox::Cancel); });
    EXPECT_EQ(prompter.choosePrinter(Question::PrintImage), nullptr);
    whenAsked([&](QDialog &box) { printToFile(box, path); });
    const std::unique_ptr<PrintJob> job = prompter.choosePrinter(Question::PrintImage);
    ASSERT_NE(job, nullptr);
    QPainter(&job->device()).drawLine(0, 0, 100, 100);
    EXPECT_FALSE(QFile::exists(path));
    job->finish();
    EXPECT_TRUE(contents(path).startsWith("%PDF"));
}

TEST(WidgetPrompterTest, ColoursAndFonts)
{
    WidgetPrompter prompter;
    const QColor present(10, 20, 30);
    whenAsked([](QDialog &box) { pressButton(box, QDialogButtonBox::Ok); });
    EXPECT_EQ(prompter.chooseColour(Question::PaintColour, present), present);
    whenAsked([](QDialog &box) { pressButton(box, QDialogButtonBox::Cancel); });
    EXPECT_EQ(prompter.chooseColour(Question::PaintColour, present), std::nullopt);

    QFont font = QApplication::font();
    font.setPointSize(24);
    whenAsked([](QDialog &box) { pressButton(box, QDialogButtonBox::Ok); });
    const auto chosen = prompter.chooseFont(Question::PaintFont, font);
    ASSERT_TRUE(chosen);
    EXPECT_EQ(chosen->pointSize(), 24);
    whenAsked([](QDialog &box) { pressButton(box, QDialogButtonBox::Cancel); });
    EXPECT_EQ(prompter.chooseFont(Question::PaintFont, font), std::nullopt);
}
