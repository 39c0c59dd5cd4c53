#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>

/// The longest time between two beats of a timer of one millisecond.
class Heartbeat
{
public:
    Heartbeat()
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { beat(); });
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.start(1);
        QCoreApplication::processEvents();
        m_sinceBeat.start();
    }

    /// The last gap ends now.
    double longestGap()
    {
        beat();
        return m_longest;
    }

private:
    void beat()
    {
        m_longest = std::max(m_longest, static_cast<double>(m_sinceBeat.nsecsElapsed()) / 1e6);
        m_sinceBeat.start();
    }

    QTimer m_timer;
    QElapsedTimer m_sinceBeat;
    double m_longest = 0;
};
