#pragma once

/// What the enabling of commands depends on. A command that answers with a message when something is missing
/// stays enabled and answers; only what cannot do anything at all is disabled.
struct MainState {
    bool captureRunning = false;
    bool shotArmed = false; ///< a delayed single snapshot is on its way
};

/// Rules of the command table.
namespace CommandRules
{
bool always(const MainState &state);
bool whileRunning(const MainState &state);
bool whileIdle(const MainState &state);
/// No second single snapshot while one is on its way.
bool whenNoShotArmed(const MainState &state);
} // namespace CommandRules
