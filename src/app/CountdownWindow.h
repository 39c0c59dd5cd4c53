#pragma once

#include <QLabel>
#include <QTimer>

/// The seconds that are left until a delayed snapshot, in large figures at the top of the screen. It takes
/// neither the focus nor a click, and is away before the snapshot is taken.
class CountdownWindow : public QLabel
{
    Q_OBJECT

public:
    CountdownWindow();

    /// To be told every second; 0 hides the window.
    void showSeconds(int seconds);

private:
    QTimer m_leave;
};
