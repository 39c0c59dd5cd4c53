#pragma once

#include "state/Progress.h"

#include <vector>

/// Remembers the progress it is told of, and cancels where it is meant to.
class FakeProgress : public Progress
{
public:
    int cancelAt = 0; ///< the step that is answered with "stop"; 0: none
    int total = 0;
    std::vector<int> steps;
    bool open = false;

    void begin(const QString &, int count) override
    {
        total = count;
        open = true;
    }
    bool step(int done) override
    {
        steps.push_back(done);
        return done != cancelAt;
    }
    void end() override { open = false; }
};
