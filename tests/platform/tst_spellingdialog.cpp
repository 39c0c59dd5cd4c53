#include "platform/qt/Guarded.h"
#include "platform/qt/WidgetSpelling.h"

#include "SpellingFiles.h"

#include "support/ScriptedPrompter.h"

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSet>
#include <QTest>
#include <QTextEdit>
#include <QTimer>

#include <functional>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// The dialog as its user sees it.
struct Shown {
    QDialog &dialog;
    QLineEdit *changeTo = dialog.findChild<QLineEdit *>(u"txtChangeTo"_s);
    QListWidget *suggestions = dialog.findChild<QListWidget *>(u"lstSuggestions"_s);

    QString context() const { return dialog.findChild<QTextEdit *>(u"txtContext"_s)->toPlainText(); }
    QPushButton *button(const QString &name) const { return dialog.findChild<QPushButton *>(name); }
    void click(const QString &name) const { QTest::mouseClick(button(name), Qt::LeftButton); }
    void key(Qt::Key key) const { QTest::keyClick(QApplication::focusWidget(), key); }
};

struct SpellingDialogTest : ::testing::Test {
    SpellingDialogTest() { files.writeEnglish(); }

    /// What correct() makes of `text` when the user does this once the dialog has come up.
    QString correct(const QString &text, const std::function<void(const Shown &)> &act)
    {
        shown = false;
        QTimer waiting;
        QObject::connect(&waiting, &QTimer::timeout, [&] {
            auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            if (!dialog || QApplication::activeWindow() != dialog)
                return;
            waiting.stop();
            shown = true;
            act({*dialog});
            EXPECT_FALSE(dialog->isVisible()) << "still asks";
            dialog->close();
        });
        waiting.start(0);
        return spelling.correct(text);
    }

    SpellingFiles files;
    ScriptedPrompter prompter;
    FailureBox failures{prompter};
    WidgetSpelling spelling{failures, files.places(u"en_US"_s)};
    bool shown = false;
};
} // namespace

TEST_F(SpellingDialogTest, EveryButton)
{
    const QString text = u"teh cat, dgo dgo a xat, sta, hous hous <a>zzz</a>"_s;
    const QString result = u"the cat, dog dog a catty, sta, hous hous <a>zzz</a>"_s;
    const QString corrected = correct(text, [&](const Shown &user) {
        EXPECT_EQ(user.context(), text);
        EXPECT_EQ(user.changeTo->text(), u"the"_s);
        user.click(u"cmdChange"_s);
        EXPECT_EQ(user.changeTo->selectedText(), u"dog"_s);
        user.click(u"cmdChangeAll"_s);
        QTest::keyClicks(QApplication::focusWidget(), u"catty"_s); // replaces the proposal, which is selected
        user.key(Qt::Key_Return);
        EXPECT_EQ(user.context(), result);
        user.click(u"cmdIgnore"_s);
        user.click(u"cmdIgnoreAll"_s);
        EXPECT_EQ(user.changeTo->text(), u"zzz"_s) << "nothing is like it";
        user.click(u"cmdAdd"_s);
    });
    EXPECT_EQ(corrected, result);
    EXPECT_EQ(contents(files.wordsFile()), "zzz\n");

    EXPECT_EQ(correct(u"the zzz dgo hous"_s, [](const Shown &) {}), u"the zzz dog hous"_s);
    EXPECT_FALSE(shown || spelling.cancelled());
}

TEST_F(SpellingDialogTest, EveryWayToCancelGivesTheTextBack)
{
    const std::function<void(const Shown &)> ways[] = {
        [](const Shown &user) { user.click(u"cmdCancel"_s); },
        [](const Shown &user) { user.key(Qt::Key_Escape); },
        [](const Shown &user) { user.dialog.close(); },
    };
    for (const auto &cancel : ways) {
        const auto act = [&](const Shown &user) {
            user.click(u"cmdChangeAll"_s);
            EXPECT_EQ(user.changeTo->text(), u"dog"_s);
            cancel(user);
        };
        EXPECT_EQ(correct(u"teh cat, teh dgo"_s, act), u"teh cat, teh dgo"_s);
        EXPECT_TRUE(shown && spelling.cancelled());
    }
    EXPECT_EQ(correct(u"teh"_s, [](const Shown &user) { user.key(Qt::Key_Return); }), u"the"_s);
}

TEST_F(SpellingDialogTest, TheListOfSuggestions)
{
    const QString corrected = correct(u"xat teh xat"_s, [&](const Shown &user) {
        const QListWidget &suggested = *user.suggestions;
        const QPoint first = suggested.visualItemRect(suggested.item(0)).center();
        const QPoint second = suggested.visualItemRect(suggested.item(1)).center();
        QWidget *list = user.suggestions->viewport();
        QTest::mouseClick(list, Qt::LeftButton, {}, second);
        EXPECT_EQ(user.changeTo->text(), user.suggestions->item(1)->text());
        QTest::keyClick(user.suggestions, Qt::Key_Up);
        EXPECT_EQ(user.changeTo->text(), u"cat"_s);
        user.changeTo->setText(u"other"_s);
        QTest::mouseClick(list, Qt::LeftButton, {}, first);
        EXPECT_EQ(user.changeTo->text(), u"cat"_s) << "current before, too";
        QTest::mouseDClick(list, Qt::LeftButton, {}, first);
        EXPECT_EQ(user.changeTo->text(), u"the"_s) << "only one word has been changed";
        QTest::keyClick(user.suggestions, Qt::Key_Return);
        user.changeTo->clear();
        EXPECT_FALSE(user.button(u"cmdChange"_s)->isEnabled() || user.button(u"cmdChangeAll"_s)->isEnabled());
        QTest::keyClick(user.changeTo, Qt::Key_Return);
        user.click(u"cmdIgnore"_s);
    });
    EXPECT_EQ(corrected, u"cat the xat"_s);
}

TEST_F(SpellingDialogTest, TheKeyboardReachesEverything)
{
    correct(u"teh dgo"_s, [](const Shown &user) {
        QSet<QChar> letters{u't', u's'}; // of the labels
        for (const auto *button : user.dialog.findChildren<QPushButton *>())
            letters += button->text().section(u'&', 1).at(0).toLower();
        EXPECT_EQ(letters.size(), 8);
        for (const auto &name : {u"txtChangeTo"_s, u"lstSuggestions"_s, u"cmdChange"_s, u"cmdChangeAll"_s}) {
            EXPECT_EQ(QApplication::focusWidget()->objectName(), name);
            user.key(Qt::Key_Tab);
        }
        user.key(Qt::Key_Space); // Ignore
        user.key(Qt::Key_Space); // the focus has stayed
    });
    EXPECT_FALSE(spelling.cancelled());
}

TEST_F(SpellingDialogTest, AWordThatCannotBeAddedIsTold)
{
    putFile(files.path(u"user"_s), "no folder");
    prompter.expectTell(Question::CommandFailed);
    const auto add = [](const Shown &user) { user.click(u"cmdAdd"_s), user.click(u"cmdChange"_s); };
    EXPECT_EQ(correct(u"teh"_s, add), u"the"_s) << "it stayed at the word";
}
