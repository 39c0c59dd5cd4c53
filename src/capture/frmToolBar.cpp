#include "capture/frmToolBar.h"

#include "platform/qt/ThemedIcon.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QToolButton>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int flashTime = 50; // milliseconds
constexpr QSize cameraSize(48, 36);
constexpr QSize buttonIconSize(28, 28);

QToolButton *makeButton(QWidget *parent, const char *name, const QString &icon, const QString &text)
{
    auto *button = new QToolButton(parent);
    button->setObjectName(QLatin1StringView(name));
    button->setIcon(themedIcon(icon));
    button->setIconSize(buttonIconSize);
    button->setText(text);
    button->setToolButtonStyle(text.isEmpty() ? Qt::ToolButtonIconOnly : Qt::ToolButtonTextBesideIcon);
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}
} // namespace

frmToolBar::frmToolBar(Clock &clock)
    : QWidget(nullptr,
              Qt::Window | Qt::WindowStaysOnTopHint | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus),
      m_clock(clock), picCameraUp(themedIcon(u"camera-up.svg"_s)),
      picCameraDown(themedIcon(u"camera-down.svg"_s)),
      Picture1(new IconPicture(picCameraUp, cameraSize, this)),
      picStop(makeButton(this, "picStop", u"stop.svg"_s, u"Stop"_s)),
      picHelp(makeButton(this, "picHelp", u"help.svg"_s, QString()))
{
    setObjectName("frmToolBar"_L1);
    setWindowTitle(u"Shotly Stop Bar"_s);
    setAttribute(Qt::WA_X11NetWmWindowTypeDock); // above all others, and not minimised with the main window
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_StyledBackground);
    Picture1->setObjectName("Picture1"_L1);
    picStop->setToolTip(u"Stop the capture and make the pages"_s);
    picStop->setAccessibleName(u"Stop"_s);
    picHelp->setToolTip(u"Help on capturing screens"_s);
    picHelp->setAccessibleName(u"Help"_s);

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(8, 6, 8, 6);
    row->setSpacing(8);
    row->addWidget(Picture1);
    row->addWidget(picStop);
    row->addWidget(picHelp);
    setFixedSize(sizeHint());

    connect(picStop, &QToolButton::clicked, this, &frmToolBar::stopRequested);
    connect(picHelp, &QToolButton::clicked, this, &frmToolBar::helpRequested);
}

void frmToolBar::PicIconFlash()
{
    showCamera(picCameraDown);
    m_clock.sleep(flashTime);
    showCamera(picCameraUp);
}

void frmToolBar::showCamera(const QIcon &picture)
{
    Picture1->setIcon(picture);
    Picture1->repaint(); // no event runs during a flash
}

void frmToolBar::closeEvent(QCloseEvent *event)
{
    event->ignore(); // only Stop ends a run
}
