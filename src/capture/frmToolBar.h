#pragma once

#include "platform/Clock.h"

#include <QWidget>

class QLabel;
class QToolButton;

/// The stop bar: a small window in the top left corner of the screen, on top of all others while a capture
/// run is on. Its camera flashes at every snapshot.
class frmToolBar : public QWidget
{
    Q_OBJECT

public:
    explicit frmToolBar(Clock &clock);

    /// Shows the pressed camera for 50 milliseconds, then the resting one.
    void PicIconFlash();

Q_SIGNALS:
    void stopRequested();
    void helpRequested();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void showCamera(const QPixmap &picture);

    Clock &m_clock;

    QLabel *Picture1;
    QToolButton *picStop;
    QToolButton *picHelp;
    QPixmap picCameraUp;
    QPixmap picCameraDown;
};
