#pragma once

#include "platform/Clock.h"

#include <QIcon>
#include <QWidget>

class IconPicture;
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
    void showCamera(const QIcon &picture);

    Clock &m_clock;

    QIcon picCameraUp;
    QIcon picCameraDown;
    IconPicture *Picture1;
    QToolButton *picStop;
    QToolButton *picHelp;
};
