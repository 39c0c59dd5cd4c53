#pragma once

#include "platform/ExternalPrograms.h"
#include "state/Module1.h"
#include "state/Workspace.h"

/// Shows the single snapshot that Module1::CurrentImagePath names: the paint-tool option says whether in a
/// viewer of our own (0), in the paint program (1), or not at all. Throws RunTimeError when the paint program
/// cannot be started.
void showSnapshot(Module1 &state, Workspace &workspace, ExternalPrograms &programs);
