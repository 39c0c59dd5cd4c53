#include "app/MainState.h"

namespace CommandRules
{
bool always(const MainState &)
{
    return true;
}

bool whileRunning(const MainState &state)
{
    return state.captureRunning;
}

bool whileIdle(const MainState &state)
{
    return !state.captureRunning;
}

bool whenNoShotArmed(const MainState &state)
{
    return !state.shotArmed;
}
} // namespace CommandRules
