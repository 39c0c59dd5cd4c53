#pragma once

#include "state/Progress.h"

#include <QElapsedTimer>
#include <QImage>
#include <QObject>

#include <functional>
#include <mutex>

/// How a filter that takes its time is shown: after a moment, a text and the picture as far as it is, as
/// often as the screen shows pictures. Events run meanwhile, but the user can do nothing other than cancel
/// with Escape.
class FilterProgress : public QObject, public Progress
{
public:
    /// `retrieving`: the snapshot of the colours is being taken.
    using Show = std::function<void(int percent, bool retrieving, const QImage &partial)>;
    explicit FilterProgress(Show show) : m_show(std::move(show)) {}

    void begin(const QString &what, int total) override;
    bool step(int percent) override;
    void end() override;
    bool active() const { return m_active; }

    /// From the working thread: the picture so far, taken over only when it is time to show one. False:
    /// cancelled.
    bool take(int percent, const QImage &partial, bool retrieving = false);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    Show m_show;
    QElapsedTimer m_sinceBegin;
    QElapsedTimer m_sinceShown;
    bool m_active = false;

    std::mutex m_mutex; ///< of what follows
    bool m_wanted = false;
    bool m_cancelled = false;
    int m_percent = 0;
    bool m_retrieving = false;
    QImage m_partial;
};
