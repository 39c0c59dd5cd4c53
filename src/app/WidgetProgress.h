#pragma once

#include "state/Progress.h"

#include <QElapsedTimer>

#include <memory>

class QProgressDialog;

/// Progress in a small box with a Cancel button over the program's windows; it appears only when the work
/// takes a moment. Events run meanwhile: what the window system sends from the beginning, the user's own from
/// the moment when the box keeps them from everything else.
///
/// Work within other work is shown in the same box. What begins after Cancel, which is putting things back,
/// cannot be cancelled itself.
class WidgetProgress : public Progress
{
public:
    WidgetProgress();
    ~WidgetProgress() override;

    void begin(const QString &what, int total) override;
    bool step(int done) override;
    void end() override;

    /// Work is going on: between the first begin() and the last end().
    bool active() const { return m_depth > 0; }

private:
    void makeBox(const QString &cancelText);

    std::unique_ptr<QProgressDialog> m_box;
    QElapsedTimer m_sinceBegin;
    QElapsedTimer m_sinceEvents;
    int m_depth = 0;
};
