#include "app/RunView.h"

#include <QApplication>
#include <QInputEvent>
#include <QScreen>

RunView::RunView(Clock &clock, QWidget &mainWindow) : m_clock(clock), m_mainWindow(mainWindow)
{
    QApplication::instance()->installEventFilter(this);
}

void RunView::showStopBar()
{
    m_stopBar = std::make_unique<frmToolBar>(m_clock);
    connect(m_stopBar.get(), &frmToolBar::stopRequested, this, &RunView::stopRequested);
    connect(m_stopBar.get(), &frmToolBar::helpRequested, this, &RunView::helpRequested);
    // The corner of the desktop may be one that no monitor shows.
    const QScreen *screen = QGuiApplication::primaryScreen();
    m_stopBar->move(screen ? screen->geometry().topLeft() : QPoint());
    m_stopBar->show();
}

void RunView::handleWaitingInput()
{
    QCoreApplication::processEvents();
}

void RunView::hideStopBar()
{
    if (!m_stopBar)
        return;
    m_stopBar->hide();
    m_stopBar.release()->deleteLater(); // its own button may have brought us here
}

void RunView::raiseStopBar()
{
    QWidget *window = m_stopBar ? m_stopBar.get() : &m_mainWindow;
    if (window->isMinimized())
        window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->show();
    window->raise();
}

void RunView::PicIconFlash()
{
    if (m_stopBar)
        m_stopBar->PicIconFlash();
}

void RunView::deleteTrayIcon()
{
    Q_EMIT trayIconObsolete();
}

bool RunView::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        if (event->spontaneous())
            m_lastInputTime = static_cast<std::uint32_t>(static_cast<QInputEvent *>(event)->timestamp());
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}
