#pragma once

#include "platform/OsVersion.h"
#include "platform/Prompter.h"
#include "state/Module1.h"

#include <functional>

/// What happens between the start of the program and the main window.
namespace StartUp
{
/// Paths, options and the operating-system test.
void fillState(Module1 &state, const QString &applicationFolder, const OsVersion &version);

/// Makes sure of the base directory: the default one is created with a message, for any other that does not
/// exist `choose` asks the user. The program goes on whatever comes of it.
void ensureBaseDirectory(Module1 &state, Prompter &prompter, const std::function<void()> &choose);

/// The state of capture and of the screens' hand-over flags.
void initialState(Module1 &state);
} // namespace StartUp
