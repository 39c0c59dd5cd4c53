#pragma once

#include "capture/frmToolBar.h"
#include "capture/SnapshotFiles.h"

#include <QObject>

#include <memory>

/// What a capture run shows: the stop bar. Also keeps the time of the user's last action on a window of the
/// program, by which the order of a click and the command that it chose is known.
class RunView : public QObject, public CaptureView
{
    Q_OBJECT

public:
    RunView(Clock &clock, QWidget &mainWindow);

    void showStopBar() override;
    void hideStopBar() override;
    void raiseStopBar() override;
    void PicIconFlash() override;
    void deleteTrayIcon() override;
    void handleWaitingInput() override;

    /// Time stamp of the display.
    std::uint32_t lastInputTime() const { return m_lastInputTime; }
    void setLastInputTime(std::uint32_t time) { m_lastInputTime = time; }

Q_SIGNALS:
    void stopRequested();
    void helpRequested();
    void trayIconObsolete();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    Clock &m_clock;
    QWidget &m_mainWindow;
    std::unique_ptr<frmToolBar> m_stopBar;
    std::uint32_t m_lastInputTime = 0;
};
