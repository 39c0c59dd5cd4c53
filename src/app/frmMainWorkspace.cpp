// The main window as the other screens see it, and what happens to the window itself.

#include "annotate/frmVpic.h"
#include "annotate/ImageFolder.h"
#include "app/CommandSet.h"
#include "app/frmMain.h"
#include "app/PaintTab.h"
#include "app/ProjectBox.h"
#include "app/RunView.h"
#include "app/TabHost.h"
#include "app/WidgetProgress.h"
#include "app/WindowPlace.h"
#include "app/WorkingSpace.h"
#include "capture/DisplaySwitch.h"
#include "capture/frmRegion.h"
#include "pagestore/frmPageData1.h"
#include "pagestore/frmPageList.h"
#include "paint/frmPaint.h"
#include "platform/qt/TrayIcon.h"
#include "platform/RunTimeError.h"
#include "settings/frmOption.h"

#include <QApplication>
#include <QCloseEvent>
#include <QStatusBar>

#include <cstdlib>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int minimiseLimit = 1000; // milliseconds
}

void frmMain::addTab(QWidget *child, const QString &caption)
{
    child->setProperty("formID", m_nextTabId);
    m_tabs->addTab(m_nextTabId, child, caption);
    ++m_nextTabId;
}

void frmMain::deleteTab(int id)
{
    m_tabs->deleteTab(id);
}

void frmMain::turnTab(int id)
{
    m_tabs->turnTab(id);
}

QString frmMain::projectText() const
{
    return cmbProj->currentText();
}

QStringList frmMain::projectNames() const
{
    return cmbProj->names();
}

void frmMain::setProjectText(const QString &name)
{
    cmbProj->setCurrentText(name);
}

void frmMain::addProjectName(const QString &name)
{
    cmbProj->addItem(name);
}

void frmMain::removeProjectName(const QString &name)
{
    QStringList names = cmbProj->names();
    names.removeOne(name);
    cmbProj->setNames(names);
}

void frmMain::openViewer(ViewerSelection select)
{
    auto *viewer = new frmVpic({m_state, m_cores->database, m_prompter, *this, *m_platform.spelling});
    addTab(viewer, u"Screen Shots"_s);
    const QStringList files = viewer->fileNames();
    if (select == ViewerSelection::FirstFile && !files.isEmpty())
        viewer->selectFile(0);
    else if (select == ViewerSelection::CurrentImage)
        viewer->selectFile(ImageFolder::searchListBox(files, FileSystem::bareName(m_state.CurrentImagePath)));
}

/// The picture that the program was started with.
void frmMain::openCommandLinePicture()
{
    if (m_state.CommandLinePath.isEmpty())
        return;
    m_state.CurrentImagePath = ImageFolder::pathOfArgument(m_state.CommandLinePath);
    m_state.ImageFileRequested = true;
    if (!m_state.FileSystem.fileExists(m_state.CurrentImagePath))
        m_prompter.tell(Question::OpenFailed, {u"%1 cannot be found."_s.arg(m_state.CurrentImagePath),
                                               m_state.AppTitle, Icon::Exclamation});
    openViewer(ViewerSelection::CurrentImage);
}

frmPaint &frmMain::paintEditor()
{
    if (!m_paint)
        m_paint = std::make_unique<frmPaint>(frmPaint::Services{m_state, m_prompter, *this});
    return *m_paint;
}

/// Where it is shown already, or as a window.
void frmMain::openPaintEditor(const QString &path)
{
    if (m_paintTab)
        turnTab(m_paintTab->property("formID").toInt());
    paintEditor().showPic(path);
}

void frmMain::openPaintTab()
{
    if (m_paintTab)
        return turnTab(m_paintTab->property("formID").toInt());
    m_paintTab = new PaintTab(paintEditor());
    m_paintTab->setProperty(helpTopic, u"paint.htm"_s);
    addTab(m_paintTab, u"Screen Shots"_s);
    connect(m_paintTab, &PaintTab::editorClosed, this, [this] {
        const PaintTab *closed = std::exchange(m_paintTab, nullptr); // it lives on for a moment
        if (closed)
            deleteTab(closed->property("formID").toInt());
    });
}

void frmMain::openPageEditor(const QString &caption)
{
    try {
        auto *editor = new frmPageData1({m_state, m_cores->database, m_prompter, *this, *m_platform.programs,
                                         *m_platform.spelling, *m_platform.clock, *m_platform.wordProcessor});
        editor->setProperty(helpTopic, u"data1.htm"_s);
        addTab(editor, caption);
    } catch (const RunTimeError &) {
        m_state.EditorAddPage = false; // an order for this editor, not for the next one
        throw;
    }
}

void frmMain::openPageList(const QString &caption)
{
    auto *list = new frmPageList({m_state, m_cores->database, m_prompter, *this});
    list->setProperty(helpTopic, u"pageList.htm"_s);
    addTab(list, caption);
}

/// One is enough: two would write over each other's changes.
void frmMain::mnuOption_Click()
{
    if (const auto *open = m_tabs->findChild<frmOption *>())
        turnTab(open->property("formID").toInt());
    else
        addTab(new frmOption({m_state, m_prompter, *this, *m_platform.programs, *m_platform.wordProcessor,
                              m_cores->hotKeys}),
               u"Options"_s);
}

void frmMain::setBusyPointer(bool busy)
{
    if (busy)
        setCursor(Qt::WaitCursor);
    else
        unsetCursor();
}

void frmMain::endAtOnce()
{
    std::_Exit(0);
}

void frmMain::minimise()
{
    showMinimized();
    // The request must be on its way before anybody waits for it.
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    m_platform.screen->waitUntilMinimised(static_cast<std::uint32_t>(winId()), minimiseLimit);
}

void frmMain::restoreNormal()
{
    if (isMinimized())
        setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void frmMain::refreshPageViews()
{
    for (frmPageList *list : m_tabs->findChildren<frmPageList *>())
        list->refresh();
}

void frmMain::showStatus(const QString &text)
{
    statusBar()->showMessage(text);
}

void frmMain::cmdIntoTray_Click()
{
    if (!m_state.TrayAllowed) {
        m_prompter.tell(Question::CannotGoIntoTray,
                        {u"Screen capture is running, you cannot send the icon into\r\n"
                         "system tray. Please click the Yellow Camera Button or the Step 2 \r\n"
                         "Button to stop the capture first. Then you can send the \r\n"
                         "icon into the system tray."_s,
                         u"Cannot Send Icon into System Tray"_s});
        return;
    }
    showMinimized();
    if (!TrayIcon::available())
        return;
    m_tray->add(m_state.TrayIconData.tip);
    m_state.TrayIconData.added = true;
    hide();
}

void frmMain::mPopRestore_Click()
{
    restoreNormal();
    m_tray->remove();
    m_state.TrayIconData.added = false;
}

QString frmMain::control(const QStringList &request)
{
    const QString &wanted = request.constFirst();
    const bool busy = QApplication::activeModalWidget() || m_progress->active() || m_region;
    QString refusal;
    runGuarded(*m_failures, [&] {
        if (wanted == u"stop"_s && !m_state.CaptureRunning)
            refusal = u"No capture is running."_s;
        else if (wanted == u"begin"_s && m_state.CaptureRunning)
            refusal = u"A capture is running already."_s;
        else if (wanted != u"show"_s && busy)
            refusal = u"Shotly waits for an answer, or is at work."_s;
        else if (wanted == u"stop"_s)
            stopBar_Stop();
        else if (wanted == u"begin"_s)
            refusal = beginFor(request.value(1));
        else if (m_state.CaptureRunning)
            m_runView->raiseStopBar();
        else
            mPopRestore_Click();
        if (wanted == u"show"_s && !busy && !m_state.CaptureRunning) {
            m_state.CommandLinePath = request.value(1);
            QTimer::singleShot(0, this, guarded(*m_failures, [this] { openCommandLinePicture(); }));
        }
    });
    return refusal;
}

QString frmMain::beginFor(const QString &project)
{
    if (!CaptureRun::isProjectName(project) && !projectNames().contains(project))
        return u"Only alphabet, number, - and _ are allowed in the name of a project."_s;
    mPopRestore_Click();
    setProjectText(project);
    mnuBeginCap_Click();
    updateCommands();
    return m_state.CaptureRunning ? QString() : u"The capture has not begun."_s;
}

void frmMain::mnuPopStartCap_Click()
{
    mPopRestore_Click();
    mnuBeginCap_Click();
}

void frmMain::mnuSaveWorkingSpace_Click()
{
    WorkingSpace::save(m_settings, m_tabs->captions(), m_state.AppTitle, m_currentUser);
}

void frmMain::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    if (isMinimized())
        return;
    const QSize child = WindowPlace::childSize(size());
    m_state.ChildWidth = child.width();
    m_state.ChildHeight = child.height();
}

void frmMain::closeEvent(QCloseEvent *event)
{
    // The window manager's own button sends no click: all that has happened by now counts.
    runGuarded(*m_failures, [this] { m_cores->run.stop(0); });
    runGuarded(*m_failures, [this] { mnuSaveWorkingSpace_Click(); });
    if ((m_paint && !m_paintTab && !m_paint->close()) || !m_tabs->closeAll()) {
        event->ignore();
        return;
    }
    if (m_state.IsWinXPOrLater)
        runGuarded(*m_failures, [this] { m_display.RestoreDisplay(); });
    m_cores->hotKeys.UnregisterAllHotKeys();
    if (!isMinimized())
        WindowPlace::save(m_settings, QRect(pos(), size()));
    m_tray->remove();
    event->accept();
    QApplication::quit();
}
