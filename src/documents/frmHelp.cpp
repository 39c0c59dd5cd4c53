#include "documents/frmHelp.h"

#include "platform/qt/BrowserAddress.h"
#include "platform/qt/ThemedIcon.h"
#include "platform/qt/ToolTip.h"
#include "state/Module1.h"

#include <QAction>
#include <QApplication>
#include <QShortcut>
#include <QToolBar>
#include <QVBoxLayout>
#include <QWindow>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr QSize firstSize(820, 640);
const QString topicMark = u"::/"_s;
const QString contents = u"features.htm"_s;
} // namespace

frmHelp::frmHelp(const Services &services)
    : m_services(services), m_failures(services.prompter), brwHelp(services.browsers.make()),
      tbHelp(new QToolBar(this)),
      m_back(addCommand(u"Back", u"Go back to the topic before"_s, u"browser-back", u"Alt+Left"_s,
                        [this] { brwHelp->GoBack(); })),
      m_forward(addCommand(u"Forward", u"Go forward again"_s, u"browser-forward", u"Alt+Right"_s,
                           [this] { brwHelp->GoForward(); }))
{
    setObjectName("frmHelp"_L1);
    setWindowTitle(u"Shotly Help"_s);
    resize(firstSize);
    tbHelp->setObjectName("tbHelp"_L1);
    tbHelp->setIconSize({24, 24});
    tbHelp->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    tbHelp->addSeparator();
    addCommand(u"Contents", u"Go to the first topic"_s, u"help-contents", u"Alt+Home"_s,
               [this] { showTopic(m_services.state.HelpFilePath + topicMark + contents); });
    brwHelp->widget()->setObjectName("brwHelp"_L1);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 2, 0, 0);
    column->setSpacing(2);
    column->addWidget(tbHelp);
    column->addWidget(brwHelp->widget(), 1);
    setFocusProxy(brwHelp->widget());
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QWidget::close);

    BrowserView::Events events;
    events.navigateComplete = [this] { updateControls(); };
    events.changed = events.navigateComplete;
    events.openOutside = [this](const QString &address) {
        runGuarded(m_failures,
                   [&] { m_services.programs.openWithDesktop(BrowserAddress::forDesktop(address)); });
    };
    brwHelp->setEvents(std::move(events));
    updateControls();
}

frmHelp::~frmHelp()
{
    brwHelp->setEvents({});
}

QAction *frmHelp::addCommand(const char16_t *name, const QString &toolTip, const char16_t *icon,
                             const QString &shortcut, const std::function<void()> &command)
{
    auto *made =
        new QAction(themedIcon(QString::fromUtf16(icon) + u".svg"_s), QString::fromUtf16(name), this);
    made->setObjectName(QString::fromUtf16(name));
    made->setToolTip(ToolTip::withKeys(toolTip, shortcut));
    made->setShortcut(QKeySequence(shortcut));
    connect(made, &QAction::triggered, this, guarded(m_failures, command));
    tbHelp->addAction(made);
    return made;
}

void frmHelp::showTopic(const QString &address)
{
    const qsizetype mark = address.lastIndexOf(topicMark);
    const QString topic = address.mid(mark + topicMark.size());
    const QString path = FileSystem::join(address.left(mark), topic);
    if (!m_services.state.FileSystem.fileExists(path))
        throw RunTimeError(RunTimeError::FileNotFound,
                           u"There is no help on this: the file \"%1\" is missing."_s.arg(path));
    brwHelp->Navigate(path);
    bringForward();
}

void frmHelp::bringForward()
{
    if (isMinimized())
        showNormal();
    show();
    // A dialog that keeps the user from everything else lets through what belongs to it.
    const QWidget *dialog = QApplication::activeModalWidget();
    windowHandle()->setTransientParent(dialog ? dialog->windowHandle() : nullptr);
    raise();
    activateWindow();
}

void frmHelp::updateControls()
{
    m_back->setEnabled(brwHelp->canGoBack());
    m_forward->setEnabled(brwHelp->canGoForward());
    const QString title = brwHelp->title();
    setWindowTitle(title.isEmpty() ? u"Shotly Help"_s : title + u" - Shotly Help"_s);
}
