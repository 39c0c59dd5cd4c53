#pragma once

#include "state/Progress.h"

#include <memory>

class QProgressDialog;

/// Progress in a small box over the program's windows; it appears only when the work takes a moment.
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
};
