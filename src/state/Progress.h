#pragma once

#include <QString>

/// How long work tells the user how far it is. The forms implement it (a progress box); a core that works
/// through many items calls step() after each.
class Progress
{
public:
    virtual ~Progress() = default;

    virtual void begin(const QString &what, int total) = 0;
    /// `done` items of the total are finished. False: the user wants the work to stop.
    virtual bool step(int done) = 0;
    virtual void end() = 0;
};

/// Ends a progress on every way out of a scope.
class ProgressScope
{
public:
    ProgressScope(Progress &progress, const QString &what, int total) : m_progress(progress)
    {
        m_progress.begin(what, total);
    }
    ~ProgressScope() { m_progress.end(); }
    ProgressScope(const ProgressScope &) = delete;
    ProgressScope &operator=(const ProgressScope &) = delete;

    bool step(int done) { return m_progress.step(done); }

private:
    Progress &m_progress;
};
