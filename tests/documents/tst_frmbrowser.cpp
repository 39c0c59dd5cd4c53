#include "documents/frmBrowser.h"
#include "documents/frmHelp.h"
#include "support/FakeBrowsers.h"
#include "support/FakePrograms.h"
#include "support/FakeWorkspace.h"
#include "support/ScriptedPrompter.h"
#include "support/TestState.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QTest>
#include <QWheelEvent>

using namespace Qt::Literals::StringLiterals;

namespace
{
class BrowserFormTest : public ::testing::Test, protected TestState
{
protected:
    ScriptedPrompter user;
    FakeWorkspace workspace;
    FakeBrowsers browsers;
    FakePrograms programs;
    std::unique_ptr<frmBrowser> form;
    QComboBox *box = nullptr;

    BrowserFormTest() { state.AppOptions.SearchPage = u"https://search.example/"_s; }

    void open(const QString &address = {})
    {
        form = std::make_unique<frmBrowser>(frmBrowser::Services{state, user, workspace, browsers, programs},
                                            address);
        form->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(form.get()));
        box = form->findChild<QComboBox *>(u"cboAddress"_s);
    }
    QAction *button(const QString &key) { return form->findChild<QAction *>(key); }
    void press(const QString &key)
    {
        browsers.calls.clear();
        button(key)->setEnabled(true);
        button(key)->trigger();
    }
    QStringList history() const
    {
        QStringList entries;
        for (int i = 0; i < box->count(); ++i)
            entries += box->itemText(i);
        return entries;
    }
    void type(const QString &text)
    {
        browsers.calls.clear();
        box->setFocus();
        box->lineEdit()->clear();
        QTest::keyClicks(box, text);
        QTest::keyClick(box, Qt::Key_Return);
    }
    bool captionBecomes(const QString &text)
    {
        return QTest::qWaitFor([&] { return form->windowTitle() == text; }, 10'000);
    }
};
} // namespace

TEST_F(BrowserFormTest, ContentsAreShownWhenTheyAreAskedFor)
{
    open();
    EXPECT_EQ(browsers.calls, QStringList());
    EXPECT_EQ(form->windowTitle(), u"Browser"_s); // not kept by the working space
    for (const char *key : {"Back", "Forward", "Refresh", "Stop", "print"})
        EXPECT_FALSE(button(QLatin1StringView(key))->isEnabled()) << key;

    // Without a path the request stands; without a request the path means nothing.
    state.ShowContentsRequested = true;
    form->showContents();
    EXPECT_TRUE(state.ShowContentsRequested);
    state.ShowContentsRequested = false;
    state.ContentsPagePath = u"/g/My guide #1/50%.htm"_s;
    form->showContents();
    EXPECT_EQ(browsers.calls, QStringList());

    state.ShowContentsRequested = true;
    form->showContents();
    EXPECT_FALSE(state.ShowContentsRequested);
    const QString address = u"file:///g/My guide %231/50%25.htm"_s;
    EXPECT_EQ(browsers.calls, QStringList(address));
    EXPECT_EQ(box->currentText(), address);
    EXPECT_EQ(history(), QStringList(address));
    EXPECT_EQ(form->windowTitle(), u'<' + address + u" (loading)"_s);

    // A tab that the working space kept while it was loading.
    open(u"file:///g/a.htm (loading)"_s);
    EXPECT_EQ(browsers.calls.last(), u"file:///g/a.htm"_s);
}

TEST_F(BrowserFormTest, TheHistoryHoldsEachAddressOnceTheLatestOnTop)
{
    open(u"/a.htm"_s);
    for (const char16_t *address : {u"file:///a.htm", u"file:///b.htm", u"file:///c.htm", u"file:///a.htm"})
        browsers.last->complete(QString::fromUtf16(address));
    const QStringList visited{u"file:///a.htm"_s, u"file:///c.htm"_s, u"file:///b.htm"_s};
    EXPECT_EQ(history(), visited);
    EXPECT_EQ(box->currentText(), u"file:///a.htm"_s);
    EXPECT_EQ(browsers.calls, QStringList(u"file:///a.htm"_s)); // selecting it has led nowhere

    // Return goes to the text, once, also when it stands in the list.
    type(u"file:///b.htm"_s);
    EXPECT_EQ(browsers.calls, QStringList(u"file:///b.htm"_s));
    // Leaving the box, or turning the wheel over it, leads nowhere.
    browsers.calls.clear();
    box->lineEdit()->setText(u"file:///c.htm"_s);
    box->clearFocus();
    QWheelEvent turn({5, 5}, box->mapToGlobal(QPointF(5, 5)), {}, {0, -120}, {}, {}, Qt::NoScrollPhase,
                     false);
    QApplication::sendEvent(box, &turn);
    EXPECT_EQ(browsers.calls, QStringList());
    // An entry that is chosen leads to its page.
    box->setFocus();
    box->showPopup();
    QTest::keyClick(box->view(), Qt::Key_End);
    QTest::keyClick(box->view(), Qt::Key_Return);
    EXPECT_EQ(browsers.calls, QStringList(u"file:///b.htm"_s));
    EXPECT_EQ(history(), visited);
}

TEST_F(BrowserFormTest, TheCaptionFollowsTheLoadingUntilItEndsOrIsStopped)
{
    open(u"/a.htm"_s);
    browsers.last->address = u"file:///a.htm"_s;
    EXPECT_TRUE(captionBecomes(u"<file:///a.htm (loading)"_s));
    auto *timer = form->findChild<QTimer *>(u"timTimer"_s);
    EXPECT_TRUE(timer->isActive());
    EXPECT_TRUE(button(u"Stop"_s)->isEnabled());
    browsers.last->busy = false;
    EXPECT_TRUE(captionBecomes(u"<file:///a.htm"_s));
    EXPECT_FALSE(timer->isActive() || button(u"Stop"_s)->isEnabled());

    press(u"Refresh"_s);
    EXPECT_TRUE(timer->isActive());
    EXPECT_TRUE(captionBecomes(u"<file:///a.htm (loading)"_s));
    press(u"Stop"_s);
    EXPECT_EQ(browsers.calls, QStringList(u"Stop"_s));
    EXPECT_FALSE(timer->isActive());
    EXPECT_EQ(form->windowTitle(), u"<file:///a.htm"_s);
}

TEST_F(BrowserFormTest, ButtonsAndKeysDoWhatTheySay)
{
    open(u"/a.htm"_s);
    browsers.last->back = true;
    browsers.last->complete(u"file:///a.htm"_s);
    EXPECT_TRUE(button(u"Back"_s)->isEnabled());
    EXPECT_FALSE(button(u"Forward"_s)->isEnabled());
    for (const char *key : {"Back", "Forward"}) {
        press(QLatin1StringView(key));
        EXPECT_EQ(browsers.calls, QStringList(u"Go"_s + QLatin1StringView(key)));
    }
    press(u"Home"_s);
    EXPECT_EQ(browsers.calls, QStringList(state.HelpFilePath + u"/features.htm"_s));
    press(u"Search"_s);
    EXPECT_EQ(browsers.calls, QStringList(u"https://search.example/"_s));

    browsers.calls.clear();
    form->activateWindow();
    box->setFocus();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form.get()));
    browsers.last->back = true;
    browsers.last->complete(u"file:///a.htm"_s);
    QTest::keyClick(box, Qt::Key_Left, Qt::AltModifier);
    QTest::keyClick(box, Qt::Key_F5);
    QTest::keyClick(box, Qt::Key_Escape);
    EXPECT_EQ(browsers.calls, (QStringList{u"GoBack"_s, u"Refresh"_s, u"Stop"_s}));

    browsers.last->events.openOutside(u"file:///g/My%20guide.pdf"_s);
    browsers.last->events.openOutside(u"https://example.com/a b"_s);
    EXPECT_EQ(programs.opened, (QStringList{u"/g/My guide.pdf"_s, u"https://example.com/a%20b"_s}));
}

TEST_F(BrowserFormTest, PrintingEndsTheJobOrTellsWhyNot)
{
    open(u"/a.htm"_s);
    browsers.last->complete(u"file:///a.htm"_s);
    user.expectFile(Question::PrintPage, std::nullopt);
    press(u"print"_s);
    EXPECT_EQ(browsers.calls, QStringList());

    const QString pdf = folder.filePath(u"page.pdf"_s);
    user.expectFile(Question::PrintPage, pdf);
    press(u"print"_s);
    press(u"print"_s); // one is enough
    ASSERT_TRUE(browsers.last->printed);
    browsers.last->printed(true);

    user.expectFile(Question::PrintPage, pdf);
    user.expectTell(Question::CommandFailed);
    press(u"print"_s);
    browsers.last->printed(false);
    user.expectFile(Question::PrintPage, QString()); // a printer without paper
    user.expectTell(Question::CommandFailed);
    press(u"print"_s);
    browsers.last->printed(true);
    EXPECT_TRUE(user.asked.back().text.contains(u"no paper"_s));
}

TEST_F(BrowserFormTest, TheHelpHasOneWindowThatDialogsDoNotBlock)
{
    state.HelpFilePath = QStringLiteral(SHOTLY_DELIVERED_DIR "/help");
    frmHelp help({state, user, browsers, programs});
    const QString multi = state.HelpFilePath + u"/multi.htm"_s;
    help.showTopic(state.HelpFilePath + u"::/multi.htm"_s);
    EXPECT_EQ(browsers.calls, QStringList(multi));
    EXPECT_TRUE(QTest::qWaitForWindowActive(&help));
    browsers.last->back = true;
    browsers.last->complete(u"file://"_s + multi);
    EXPECT_EQ(help.windowTitle(), u"Title - Shotly Help"_s);
    EXPECT_TRUE(help.findChild<QAction *>(u"Back"_s)->isEnabled());
    QTest::keyClick(&help, Qt::Key_Left, Qt::AltModifier);
    help.findChild<QAction *>(u"Contents"_s)->trigger();
    EXPECT_EQ(browsers.calls.mid(1), (QStringList{u"GoBack"_s, state.HelpFilePath + u"/features.htm"_s}));
    try {
        help.showTopic(state.HelpFilePath + u"::/nothing.htm"_s);
        ADD_FAILURE() << "a topic that is not there";
    } catch (const RunTimeError &error) {
        EXPECT_EQ(error.number(), RunTimeError::FileNotFound);
        EXPECT_TRUE(error.description().contains(state.HelpFilePath + u"/nothing.htm"_s));
    }
    QTest::keyClick(&help, Qt::Key_Escape);
    EXPECT_FALSE(help.isVisible());

    {
        QDialog dialog;
        dialog.setModal(true);
        dialog.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
        help.showTopic(state.HelpFilePath + u"::/multi.htm"_s);
        EXPECT_TRUE(QTest::qWaitForWindowActive(&help));
        browsers.calls.clear();
        QTest::keyClick(help.windowHandle(), Qt::Key_Left, Qt::AltModifier); // as the window system sends it
        EXPECT_EQ(browsers.calls, QStringList(u"GoBack"_s));
    }
    EXPECT_TRUE(help.isVisible()); // longer than the dialog
}
