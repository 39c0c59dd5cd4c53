#pragma once

#include "state/Progress.h"

#include <functional>
#include <vector>

/// Remembers the progress it is told of, and cancels where it is meant to.
class FakeProgress : public Progress
{
public:
    int cancelAt = 0;          ///< the step that is answered with "stop"; 0: none
    QString cancelWhat;        ///< of the work with this title alone; empty: of any
    bool cancelAtOnce = false; ///< at the first step of cancelWhat
    int total = 0;
    std::vector<int> steps;
    bool open = false;

    std::function<void(const QString &what, int done)> whileWorking; ///< what happens at each step

    void begin(const QString &what, int count) override
    {
        m_what = what;
        if (count > 0)
            total = count;
        ++m_depth;
        open = true;
    }
    bool step(int done) override
    {
        steps.push_back(done);
        if (whileWorking)
            whileWorking(m_what, done);
        if (cancelAtOnce && m_what == cancelWhat)
            return false;
        const bool meant = cancelWhat.isEmpty() || cancelWhat == m_what;
        return !(cancelAt > 0 && done == cancelAt && meant);
    }
    void end() override { open = --m_depth > 0; }

private:
    int m_depth = 0;
    QString m_what;
};
