#pragma once

#include "state/Progress.h"

#include <QElapsedTimer>

#include <memory>

class QProgressDialog;

/// Progress in a small box with a Cancel button over the program's windows; it appears only when the work
/// takes a moment. Events run meanwhile: what the window system sends from the beginning, the user's own from
/// the moment when the box keeps them from everything else.
class WidgetProgress : public Progress
{
public:
    WidgetProgress();
    ~WidgetProgress() override;

    void begin(const QString &what, int total) override;
    bool step(int done) override;
    void end() override;

private:
    std::unique_ptr<QProgressDialog> m_box;
    QElapsedTimer m_sinceEvents;
};
