#include "annotate/frmText.h"

#include "support/FakeSpelling.h"
#include "support/FakeWorkspace.h"
#include "support/ScriptedPrompter.h"
#include "support/TestState.h"

#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

#include <memory>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
struct TextDialog : TestState {
    ScriptedPrompter prompter;
    FakeWorkspace workspace;
    FakeSpelling spelling;
    std::unique_ptr<frmText> form;
    QPlainTextEdit *box = nullptr;

    explicit TextDialog(const QString &before = {})
    {
        state.TextRetry = !before.isEmpty();
        state.TextMessage = before;
        form = std::make_unique<frmText>(frmText::Services{state, prompter, workspace, spelling}, nullptr);
        box = form->findChild<QPlainTextEdit *>(u"text1"_s);
        form->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(form.get())); // shortcuts want that
    }
    void click(const QString &name)
    {
        QTest::mouseClick(form->findChild<QPushButton *>(name), Qt::LeftButton);
    }
    QString message() const { return prompter.asked.back().text; }
};

TEST(TextDialogTest, theTextOrNothing)
{
    const std::pair<void (*)(TextDialog &), QString> endings[] = {
        {[](TextDialog &t) { t.click(u"cmdOK"_s); }, u"two\r\nlines"_s},
        {[](TextDialog &t) { QTest::keyClick(t.box, Qt::Key_Return, Qt::ControlModifier); },
         u"two\r\nlines"_s},
        {[](TextDialog &t) { QTest::keyClick(t.box, Qt::Key_Enter, Qt::ControlModifier); },
         u"two\r\nlines"_s},
        {[](TextDialog &t) { t.click(u"cmdCancel"_s); }, {}},
        {[](TextDialog &t) { QTest::keyClick(t.box, Qt::Key_Escape); }, {}},
        {[](TextDialog &t) { t.form->close(); }, {}},
    };
    for (const auto &[end, text] : endings) {
        TextDialog t;
        t.state.TextMessage = u"of the text before"_s;
        EXPECT_EQ(t.box->toPlainText(), QString());
        QTest::keyClicks(t.box, u"two"_s);
        QTest::keyClick(t.box, Qt::Key_Return);
        QTest::keyClicks(t.box, u"lines"_s);
        EXPECT_TRUE(t.form->isVisible()) << "Return begins a line";
        end(t);
        EXPECT_EQ(t.state.TextMessage, text);
        EXPECT_FALSE(t.form->isVisible());
    }
}

TEST(TextDialogTest, aTextThatWasTakenBackIsOfferedOnce)
{
    TextDialog t(u"two\r\nlines"_s);
    EXPECT_EQ(t.box->toPlainText(), u"two\nlines"_s);
    EXPECT_FALSE(t.state.TextRetry);
    EXPECT_EQ(t.state.TextMessage, QString());
    QTest::keyClicks(t.box, u"!"_s);
    t.click(u"cmdOK"_s);
    EXPECT_EQ(t.state.TextMessage, u"two\r\nlines!"_s);
}

TEST(TextDialogTest, helpByButtonAndKey)
{
    TextDialog t;
    t.click(u"cmdHelp"_s);
    QTest::keyClick(t.box, Qt::Key_F1);
    EXPECT_EQ(t.workspace.calls, (QStringList{u"help notes.htm"_s, u"help notes.htm"_s}));
}

TEST(TextDialogTest, spellingIsCorrectedInPlace)
{
    TextDialog t(u"teh\r\nsecond teh"_s);
    t.prompter.expectTell(Question::SpellingCompleted);
    t.click(u"cmdChkSpell"_s);
    EXPECT_EQ(t.spelling.checked, QStringList{u"teh\r\nsecond teh"_s});
    EXPECT_EQ(t.box->toPlainText(), u"the\nsecond the"_s);
    EXPECT_EQ(t.state.SpellCheckText, u"the\r\nsecond the"_s);
    EXPECT_TRUE(t.state.WordInstalled);
    EXPECT_EQ(t.message(), u"Spell Check Completed"_s);
    EXPECT_EQ(t.prompter.asked.back().title, u"Spell Checker"_s);
    EXPECT_EQ(t.prompter.asked.back().icon, Icon::Information);
    QTest::keyClick(t.box, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(t.box->toPlainText(), u"teh\nsecond teh"_s);

    // Broken off: nothing is said. It is forgotten when there is nothing to check.
    t.spelling.cancelAt = u"teh\r\nsecond teh"_s;
    t.click(u"cmdChkSpell"_s);
    EXPECT_EQ(t.box->toPlainText(), u"teh\nsecond teh"_s);
    t.box->clear();
    t.prompter.expectTell(Question::SpellingCompleted);
    t.click(u"cmdChkSpell"_s);
    EXPECT_EQ(t.spelling.checked.size(), 2);
}

TEST(TextDialogTest, withoutDictionaryItSaysSo)
{
    TextDialog t(u"teh"_s);
    t.state.WordInstalled = true;
    t.spelling.present = false;
    t.prompter.expectTell(Question::SpellingNotInstalled);
    t.click(u"cmdChkSpell"_s);
    EXPECT_EQ(t.message(),
              u"The Spell Check function is based on Microsoft Office.\r\nBecause Microsoft Office is "
              "not installed on this PC,\r\nspell check can not be done."_s);
    EXPECT_EQ(t.prompter.asked.back().title, u"Shotly"_s);
    EXPECT_FALSE(t.state.WordInstalled);
    EXPECT_EQ(t.spelling.checked, QStringList());
    EXPECT_EQ(t.box->toPlainText(), u"teh"_s);
}
} // namespace
