#pragma once

#include "platform/RunTimeError.h"

#include <stop_token>

/// Ends long work where the user has asked for it.
inline void throwIfStopped(const std::stop_token &stop)
{
    if (stop.stop_requested())
        throw RunTimeError(RunTimeError::UserInterrupt, QStringLiteral("Stopped by the user"));
}
