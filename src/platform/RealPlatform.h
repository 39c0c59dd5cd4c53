#pragma once

#include "platform/BrowserView.h"
#include "platform/Clock.h"
#include "platform/Database.h"
#include "platform/DisplayModes.h"
#include "platform/ExternalPrograms.h"
#include "platform/HotKeys.h"
#include "platform/InputHook.h"
#include "platform/Screen.h"
#include "platform/Sound.h"
#include "platform/Spelling.h"
#include "platform/WordProcessor.h"

#include <functional>
#include <memory>

/// The real parts of the platform layer, owned by Main.
struct Platform {
    std::unique_ptr<Clock> clock;
    std::unique_ptr<Screen> screen;
    std::unique_ptr<DisplayModes> displayModes;
    std::unique_ptr<InputHook> inputHook;
    std::unique_ptr<HotKeys> hotKeys;
    std::unique_ptr<Sound> sound;
    std::unique_ptr<Database> database;
    std::unique_ptr<ExternalPrograms> programs;
    std::unique_ptr<WordProcessor> wordProcessor; ///< refers to `programs`
    std::unique_ptr<Browsers> browsers;           ///< null until Main puts one here
    std::unique_ptr<Spelling> spelling; ///< without a dictionary until Main puts one with a dialog here
};

/// Makes them. Without an X display the program still starts: screen and hot keys are stand-ins then, which
/// see nothing, and a capture run says why it cannot begin. So it does in a Wayland session, with or
/// without an X display; there the screen takes its pictures through the desktop's portal.
///
/// `wordProcessor` gives the setting of that name whenever it is wanted, see OfficeWordProcessor.
Platform makeRealPlatform(const std::function<QString()> &wordProcessor);

/// Whether windows can be shown: there is an X server that answers, a Wayland session, or another platform
/// has been chosen for Qt.
bool displayAnswers();
