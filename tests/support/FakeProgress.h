#pragma once

#include "state/Progress.h"

#include <vector>

/// Remembers the progress it is told of, and cancels where it is meant to.
class FakeProgress : public Progress
{
public:
    int cancelAt = 0;   ///< the step that is answered with "stop"; 0: none
    QString cancelWhat; ///< of the work with this title alone; empty: of any
    int total = 0;
    std::vector<int> steps;
    bool open = false;

    void begin(const QString &what, int count) override
    {
        m_what = what;
        total = count;
        open = true;
    }
    bool step(int done) override
    {
        steps.push_back(done);
        const bool meant = cancelWhat.isEmpty() || cancelWhat == m_what;
        return !(cancelAt > 0 && done == cancelAt && meant);
    }
    void end() override { open = false; }

private:
    QString m_what;
};
