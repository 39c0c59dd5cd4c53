#pragma once

#include "platform/Sound.h"

#include <QStringList>

#include <functional>

/// Remembers what was played.
class FakeSound : public Sound
{
public:
    QStringList played;
    std::function<void()> whilePlaying;

    void playAndWait(const QString &path) override
    {
        played += path;
        if (whilePlaying)
            whilePlaying();
    }
};
