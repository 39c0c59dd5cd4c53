#pragma once

#include "app/frmMain.h"
#include "capture/DisplaySwitch.h"
#include "platform/ImageFile.h"
#include "platform/sqlite/SqliteDatabase.h"
#include "support/FakeBrowsers.h"
#include "support/FakeClock.h"
#include "support/FakeDisplayModes.h"
#include "support/FakeHotKeys.h"
#include "support/FakeInputHook.h"
#include "support/FakePrograms.h"
#include "support/FakeScreen.h"
#include "support/FakeSound.h"
#include "support/FakeSpelling.h"
#include "support/FakeWordProcessor.h"
#include "support/ScriptedPrompter.h"
#include "support/TestState.h"
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QToolButton>

using namespace Qt::Literals::StringLiterals;

/// The main window over fakes and a real database, driven by clicks and keys.
class MainWindowTest : public ::testing::Test, protected TestState
{
protected:
    ScriptedPrompter user;
    UserSettings settings{folder.filePath(u"settings.ini"_s)};
    Platform platform;
    FakeDisplayModes displayModes;
    DisplaySwitch display{{state, displayModes, settings, user, folder.path()}};
    FakeScreen *screen = nullptr;
    FakeInputHook *hook = nullptr;
    FakeHotKeys *hotKeys = nullptr;
    FakePrograms *programs = nullptr;
    FakeBrowsers *browsers = nullptr;
    std::unique_ptr<frmMain> window;

    MainWindowTest()
    {
        const auto add = [](auto &place, auto part) {
            auto *raw = part.get();
            place = std::move(part);
            return raw;
        };
        add(platform.clock, std::make_unique<FakeClock>());
        screen = add(platform.screen, std::make_unique<FakeScreen>());
        hook = add(platform.inputHook, std::make_unique<FakeInputHook>());
        hotKeys = add(platform.hotKeys, std::make_unique<FakeHotKeys>());
        add(platform.sound, std::make_unique<FakeSound>());
        add(platform.database, std::make_unique<SqliteDatabase>());
        programs = add(platform.programs, std::make_unique<FakePrograms>());
        browsers = add(platform.browsers, std::make_unique<FakeBrowsers>());
        add(platform.wordProcessor, std::make_unique<FakeWordProcessor>());
        add(platform.spelling, std::make_unique<FakeSpelling>());
        screen->picture = QImage(400, 300, QImage::Format_RGB32);
        screen->picture.fill(Qt::gray);
        state.AppOptions.ShowLessMessage = 1;
        state.AppOptions.OptionFlags[BrowserChoice] = 1;
        state.HelpFilePath = QStringLiteral(SHOTLY_DELIVERED_DIR "/help");
        state.AppOptions.HotKeyNames.fill(u"Ctrl-F5"_s); // only the first is available
        state.AppOptions.HotKeyNames[4] = u"Ctrl-F6"_s;
        open();
    }

    void open()
    {
        window.reset();
        window = std::make_unique<frmMain>(state, platform, user, settings, display);
        window->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    }

    template <typename T>
    T *control(const QString &name)
    {
        T *found = window->findChild<T *>(name);
        EXPECT_TRUE(found) << name.toStdString();
        return found;
    }
    void click(QPoint position, int button = 1)
    {
        hook->send({InputEvent::Kind::MouseUp, 0, button, 0, position, ++m_time});
        hook->deliver();
    }
    void pressHotKey(int id)
    {
        hotKeys->press(id, ++m_time);
        QApplication::processEvents();
    }
    void press(const QString &name) { QTest::mouseClick(control<QAbstractButton>(name), Qt::LeftButton); }
    void type(const QString &text)
    {
        auto *edit = control<QComboBox>(u"cmbProj"_s)->lineEdit();
        edit->setFocus();
        edit->clear();
        QTest::keyClicks(edit, text);
    }

private:
    std::uint32_t m_time = 1;
};
