#include "app/CountdownWindow.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int shownInLastSecond = 600; // milliseconds; in the rest the windows below draw themselves
constexpr int fromTheTop = 24;         // pixels
} // namespace

CountdownWindow::CountdownWindow()
    : QLabel(nullptr, Qt::Window | Qt::WindowStaysOnTopHint | Qt::FramelessWindowHint |
                          Qt::WindowDoesNotAcceptFocus | Qt::WindowTransparentForInput)
{
    setObjectName("countdown"_L1);
    setWindowTitle(u"Shotly Countdown"_s);
    setAttribute(Qt::WA_X11NetWmWindowTypeDock); // above all others, and no program of the task bar
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAlignment(Qt::AlignCenter);
    setStyleSheet(u"background: #1e293b; color: white; font-size: 40px; font-weight: bold; "
                  "padding: 4px 24px"_s);
    m_leave.setSingleShot(true);
    m_leave.setInterval(shownInLastSecond);
    connect(&m_leave, &QTimer::timeout, this, &QWidget::hide);
}

void CountdownWindow::showSeconds(int seconds)
{
    m_leave.stop();
    if (seconds <= 0) {
        hide();
        return;
    }
    setText(QString::number(seconds));
    setAccessibleName(u"Snapshot in %1 seconds"_s.arg(seconds));
    adjustSize();
    const QScreen *screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const QRect place = screen->availableGeometry();
    move(place.center().x() - width() / 2, place.top() + fromTheTop);
    show();
    raise();
    if (seconds == 1)
        m_leave.start();
}
