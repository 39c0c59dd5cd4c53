#pragma once

#include "settings/frmOption.h"
#include "settings/OptionsStore.h"
#include "support/FakeHotKeys.h"
#include "support/FakePrograms.h"
#include "support/FakeWordProcessor.h"
#include "support/FakeWorkspace.h"
#include "support/ScriptedPrompter.h"
#include "support/TestState.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QTest>
#include <QWheelEvent>

using namespace Qt::Literals::StringLiterals;

/// The options dialog over a temporary options file, driven by clicks and keys.
class OptionTest : public ::testing::Test, protected TestState
{
protected:
    ScriptedPrompter user;
    FakeWorkspace workspace;
    FakePrograms programs;
    FakeWordProcessor word;
    FakeHotKeys keys;
    mHotKey hotKeys{keys};
    std::unique_ptr<frmOption> form;

    AppOptions &options = state.AppOptions;

    OptionTest()
    {
        options = OptionsStore::LoadOptions(state.OptionsFilePath); // there is none: the defaults
        options.BaseDirectory = folder.filePath(u"base"_s);
    }

    void open()
    {
        form =
            std::make_unique<frmOption>(frmOption::Services{state, user, workspace, programs, word, hotKeys});
        form->setProperty("formID", 7);
        form->resize(1280, 640); // what the main window leaves of 1280x800
        form->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(form.get()));
    }

    template <typename T>
    T *control(const QString &name) const
    {
        auto *found = form->findChild<T *>(name);
        EXPECT_TRUE(found) << name.toStdString();
        return found;
    }
    /// Brings the control's page to the front by a click on the page's tab.
    template <typename T>
    T *onItsPage(const QString &name) const
    {
        auto *widget = control<T>(name);
        auto *tabs = control<QTabWidget>(u"TabStrip1"_s);
        for (int page = 0; page < tabs->count(); ++page)
            if (tabs->widget(page)->isAncestorOf(widget))
                QTest::mouseClick(tabs->tabBar(), Qt::LeftButton, {}, tabs->tabBar()->tabRect(page).center());
        EXPECT_TRUE(widget->isVisible()) << name.toStdString();
        return widget;
    }
    /// One after the other; names are separated by blanks.
    void press(const QString &names) const
    {
        for (const QString &each : names.split(u' ')) {
            auto *button = onItsPage<QAbstractButton>(each);
            EXPECT_TRUE(button->isEnabled()) << each.toStdString();
            const QPoint place(9, button->height() / 2);
            QTest::mousePress(button, Qt::LeftButton, {}, place);
            QApplication::processEvents(); // a field that is left may have something to say
            QTest::mouseRelease(button, Qt::LeftButton, {}, place);
        }
    }
    void type(const QString &name, const QString &text) const
    {
        auto *box = onItsPage<QWidget>(name);
        box->setFocus();
        QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
        if (text.isEmpty())
            QTest::keyClick(box, Qt::Key_Delete);
        else
            QTest::keyClicks(box, text);
    }
    /// From the list, with the keyboard.
    void select(const QString &name, int entry) const
    {
        auto *box = onItsPage<QComboBox>(name);
        box->setFocus();
        for (int tries = 0; box->currentIndex() != entry && tries < 100; ++tries)
            QTest::keyClick(box, box->currentIndex() < entry ? Qt::Key_Down : Qt::Key_Up);
        EXPECT_EQ(box->currentIndex(), entry) << name.toStdString();
    }
    /// The keyboard goes on to the next control.
    void leave(const QString &name) const
    {
        QTest::keyClick(control<QWidget>(name), Qt::Key_Tab);
        QApplication::processEvents();
    }
    bool checked(const QString &name) const { return control<QAbstractButton>(name)->isChecked(); }
    QString listText(const QString &name) const { return control<QComboBox>(name)->currentText(); }
    static bool shows(QLabel &label, QRgb colour)
    {
        const QImage picture = label.grab().toImage().convertToFormat(QImage::Format_RGB32);
        const auto bytes = [](const auto *data) { return reinterpret_cast<const char *>(data); };
        return QByteArray::fromRawData(bytes(picture.constBits()), picture.sizeInBytes())
            .contains(QByteArray(bytes(&colour), sizeof colour));
    }
    QString label(const QString &name) const { return control<QLabel>(name)->text(); }
    /// What the user does, and the message that it brings.
    template <typename Action>
    void told(Question which, const QString &text, Action action)
    {
        user.expectTell(which);
        action();
        EXPECT_EQ(user.asked.back().text, text);
    }

    QByteArray file() const
    {
        QFile in(state.OptionsFilePath);
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray("(missing)");
    }
    AppOptions kept() const { return OptionsStore::LoadOptions(state.OptionsFilePath); }
    bool closed() const { return !form->isVisible(); }

    /// Save, with the message that ends it.
    void save()
    {
        told(Question::HotKeysAfterRestart,
             u"Change on hot key will be effect after restart the application."_s,
             [&] { press(u"cmdSave"_s); });
        EXPECT_TRUE(closed());
    }
};
