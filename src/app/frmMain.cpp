#include "app/frmMain.h"

#include "app/CommandSet.h"
#include "app/frmAbout.h"
#include "app/HookAwareFailureBox.h"
#include "app/InstructionsPanel.h"
#include "app/PaintTab.h"
#include "app/ProjectBox.h"
#include "app/RunView.h"
#include "app/TabHost.h"
#include "app/WidgetProgress.h"
#include "app/WindowPlace.h"
#include "app/WorkingSpace.h"
#include "capture/frmRegion.h"
#include "documents/frmHelp.h"
#include "documents/PdfConversion.h"
#include "documents/WordFiles.h"
#include "pagestore/frmBackupDatabase.h"
#include "pagestore/frmDelProj.h"
#include "pagestore/Statements.h"
#include "paint/frmPaint.h"
#include "platform/qt/TrayIcon.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QScopeGuard>
#include <QScreen>
#include <QShortcut>
#include <QStatusBar>
#include <QTabBar>
#include <QToolBar>
#include <QToolButton>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int tick = 1000; // milliseconds
constexpr QSize firstSize(1100, 740);
} // namespace

frmMain::frmMain(Module1 &state, Platform &platform, Prompter &prompter, UserSettings &settings,
                 DisplaySwitch &display)
    : m_state(state), m_platform(platform), m_prompter(prompter), m_settings(settings), m_display(display),
      m_runView(std::make_unique<RunView>(*platform.clock, *this)),
      m_progress(std::make_unique<WidgetProgress>()),
      m_cores(std::make_unique<Cores>(state, platform, prompter, *this, *m_runView, *m_progress, display)),
      cmbProj(new ProjectBox(this)), Toolbar1(new QToolBar(this)), Toolbar2(new QToolBar(this)),
      m_tabs(new TabHost(new InstructionsPanel(this), this)), mPopupSys(new QMenu(u"&SysTray"_s, this)),
      Timer1(new QTimer(this))
{
    setObjectName("frmMain"_L1);
    m_failures = std::make_unique<HookAwareFailureBox>(prompter, *platform.inputHook);
    m_commands = std::make_unique<CommandSet>(*this, [this](void (frmMain::*handler)()) {
        // Hot keys and the tray know nothing of the progress box, which keeps the user from everything else.
        if (m_progress->active())
            return;
        runGuarded(*m_failures, [&] { (this->*handler)(); });
        updateCommands();
    });
    buildControls();
    connectControls();
    m_tray = std::make_unique<TrayIcon>(QIcon(u":/icons/tray.svg"_s), mPopupSys);
    connect(m_tray.get(), &TrayIcon::restoreRequested, this,
            guarded(*m_failures, [this] { mPopRestore_Click(); }));
    runGuarded(*m_failures, [this] { MDIForm_Load(); });
}

frmMain::~frmMain()
{
    m_platform.hotKeys->setHandler({});
    delete m_paintTab; // gives the editor back before that goes
}

void frmMain::buildControls()
{
    const auto labelled = [this](QToolBar *bar, const char *name, const QString &text) {
        bar->setObjectName(QLatin1StringView(name));
        bar->setMovable(false);
        bar->setIconSize({24, 24});
        bar->setContextMenuPolicy(Qt::PreventContextMenu);
        auto *label = new QLabel(text, bar);
        label->setObjectName("toolBarLabel"_L1);
        bar->addWidget(label);
        addToolBar(bar);
        return label;
    };
    labelled(Toolbar1, "Toolbar1", u"Single Shot:"_s)->setWindowTitle(u"Single Shot"_s);
    m_commands->fillToolBar(*Toolbar1);
    addToolBarBreak();
    QLabel *projectLabel = labelled(Toolbar2, "Toolbar2", u"Multi-Snapshot Project:"_s);
    projectLabel->setBuddy(cmbProj);
    Toolbar2->addWidget(cmbProj);
    Toolbar2->addSeparator();
    m_commands->fillToolBar(*Toolbar2);

    mPopupSys->setObjectName("mPopupSys"_L1);
    m_commands->fillTrayMenu(*mPopupSys);
    setCentralWidget(m_tabs);
    statusBar()->setObjectName("statusBar"_L1);
    setMinimumSize(WindowPlace::smallestMainWindow());
    Timer1->setObjectName("Timer1"_L1);
    Timer1->setInterval(tick);
}

void frmMain::connectControls()
{
    connect(cmbProj, &ProjectBox::projectSelected, this,
            [this](const QString &name) { m_state.AppOptions.ProjectName = name; });
    connect(cmbProj, &ProjectBox::characterRefused, this, guarded(*m_failures, [this] {
                m_prompter.tell(Question::ProjectNameCharacter,
                                {u"Only alphabet, number, - and _ allowed in this box."_s, m_state.AppTitle});
            }));
    connect(m_tabs->cmdCloseTab, &QToolButton::clicked, this,
            guarded(*m_failures, [this] { m_tabs->closeCurrent(); }));
    connect(m_tabs->cmdCloseWebSearch, &QToolButton::clicked, this,
            guarded(*m_failures, [this] { m_tabs->closeAll(); }));
    connect(m_tabs->cmdIntoTray, &QToolButton::clicked, this,
            guarded(*m_failures, [this] { cmdIntoTray_Click(); }));
    connect(m_runView.get(), &RunView::stopRequested, this, guarded(*m_failures, [this] { stopBar_Stop(); }));
    connect(m_runView.get(), &RunView::helpRequested, this,
            guarded(*m_failures, [this] { openHelp(u"multi.htm"_s); }));
    connect(m_runView.get(), &RunView::trayIconObsolete, this, [this] {
        m_tray->remove();
        m_state.TrayIconData.added = false;
    });
    connect(Timer1, &QTimer::timeout, this, guarded(*m_failures, [this] { Timer1_Timer(); }));
}

void frmMain::MDIForm_Load()
{
    m_state.CaptureRunning = false;
    m_state.RightClickPending = false;
    m_state.MainWindow = this;
    setWindowTitle(m_state.AppTitle);
    m_platform.hotKeys->setHandler([this](int id, std::uint32_t time) { HotKeyWindowProc(id, time); });
    if (!setHotKey())
        m_prompter.tell(Question::HotKeysFailed, {u"Set hotkey failed"_s, m_state.AppTitle});
    m_commands->showHotKeys(m_cores->hotKeys, m_state.AppOptions.HotKeyNames);
    m_state.TrayIconData.tip = u"Shotly"_s;

    resize(firstSize);
    const QSize child = WindowPlace::childSize(size());
    const QScreen *primary = QApplication::primaryScreen();
    const QRect place =
        WindowPlace::load(m_settings, child, primary ? primary->availableVirtualGeometry() : QRect());
    resize(place.size());
    move(place.topLeft());

    if (m_state.AppOptions.OptionFlags[LoadLastWorkingSpace] == 1)
        reopenWorkingSpace();
    fillProjectBox();
    cmbProj->setCurrentText(m_state.AppOptions.ProjectName);
    Timer1->start();
    updateCommands();
    QTimer::singleShot(0, this, guarded(*m_failures, [this] { whenShown(); }));
}

/// What needs the window to be there: the focus, and a question about runs that were interrupted.
void frmMain::whenShown()
{
    cmbProj->setFocus();
    if (m_cores->run.offerAbandonedRuns())
        fillProjectBox();
    openCommandLinePicture();
}

void frmMain::fillProjectBox()
{
    QStringList names;
    m_cores->database.FillListFromQuery(Statements::projectNames(), names);
    cmbProj->setNames(names);
}

void frmMain::updateCommands()
{
    m_commands->setState({m_state.CaptureRunning, m_cores->delayedShot.armed()});
}

// ---- capture run
// -------------------------------------------------------------------------------------------

void frmMain::mnuBeginCap_Click()
{
    m_cores->run.begin([this](const InputEvent &event) { dispatchHookEvent(event); });
}

void frmMain::mnuStopCap_Click()
{
    m_cores->run.stop(m_runView->lastInputTime());
}

void frmMain::stopBar_Stop()
{
    mnuStopCap_Click();
    restoreNormal();
    updateCommands();
}

void frmMain::dispatchHookEvent(const InputEvent &event)
{
    switch (event.kind) {
    case InputEvent::Kind::KeyDown:
        return sh_KeyDown(event);
    case InputEvent::Kind::KeyUp:
        return sh_KeyUp(event);
    case InputEvent::Kind::MouseUp:
        return sh_MouseUp(event);
    case InputEvent::Kind::MouseDown:
    case InputEvent::Kind::MouseMove:
    case InputEvent::Kind::SystemKeyDown: // the hook only watches: Alt+F4 cannot be kept from its window
        return;
    }
}

void frmMain::sh_KeyDown(const InputEvent &event)
{
    m_cores->run.keyDown(event.keyCode);
}

void frmMain::sh_KeyUp(const InputEvent &event)
{
    m_cores->run.keyUp(event.keyCode);
}

void frmMain::sh_MouseUp(const InputEvent &event)
{
    m_cores->run.mouseUp(event);
}

bool frmMain::setHotKey()
{
    return m_cores->hotKeys.setHotKey(m_state.AppOptions.HotKeyNames);
}

void frmMain::HotKeyWindowProc(int id, std::uint32_t time)
{
    m_runView->setLastInputTime(time);
    m_commands->triggerHotKey(id);
}

// ---- single snapshots
// --------------------------------------------------------------------------------------

void frmMain::mnuRegion_Click()
{
    if (!m_cores->regionShot.begin())
        return;
    m_region = std::make_unique<frmRegion>(m_cores->regionShot.frozenDesktop());
    connect(m_region.get(), &frmRegion::unloaded, this, guarded(*m_failures, [this] { frmRegion_Unload(); }));
    m_region->showOverDesktop();
}

void frmMain::frmRegion_Unload()
{
    const std::optional<QRect> region = m_region->region();
    frmRegion *overlay = m_region.release();
    // A box that was asked for meanwhile belongs to the overlay and may still be open.
    if (const auto *box = overlay->findChild<QDialog *>())
        connect(box, &QObject::destroyed, overlay, &QObject::deleteLater);
    else
        overlay->deleteLater();
    if (region)
        m_cores->regionShot.SaveRegionSnapshot(*region);
    else
        m_cores->regionShot.cancel();
}

void frmMain::mnuActiveWindow_Click()
{
    make1Shot(true);
}

void frmMain::mnuDesktop_Click()
{
    make1Shot(false);
}

void frmMain::make1Shot(bool activeWindow)
{
    const std::optional<int> delay = m_cores->delayedShot.askDelay();
    if (!delay)
        return;
    const QString path = getSavePath();
    if (!path.isEmpty())
        m_cores->delayedShot.arm(activeWindow, *delay, path);
}

void frmMain::Timer1_Timer()
{
    if (!m_cores->delayedShot.armed())
        return;
    const auto showCountdown = qScopeGuard([this] {
        const int seconds = m_cores->delayedShot.countdown();
        m_countdown.showSeconds(seconds);
        setWindowTitle(seconds > 0 ? u"%1 - snapshot in %2 s"_s.arg(m_state.AppTitle).arg(seconds)
                                   : m_state.AppTitle);
        updateCommands();
    });
    m_cores->delayedShot.tick();
}

// ---- pages and projects
// ------------------------------------------------------------------------------------

void frmMain::mnuPageList_Click()
{
    m_cores->projects.editPages();
}

void frmMain::mnuAllPage_Click()
{
    m_cores->projects.editAllPages();
}

void frmMain::mnuBlankPage_Click()
{
    m_cores->projects.addTextPage();
}

void frmMain::mnuPageGrid_Click()
{
    m_cores->projects.listPages();
}

void frmMain::mnuOddProject_Click()
{
    m_cores->projects.copyImages();
}

void frmMain::mnuViewScreenShot_Click()
{
    m_cores->projects.openImages();
}

void frmMain::mnuPaintEditor_Click()
{
    openPaintEditor(m_state.CurrentImagePath);
}

// ---- administration
// ----------------------------------------------------------------------------------------

/// The help key is the dialog's own while it is open.
void frmMain::execWithHelp(QDialog &&dialog, const QString &topic)
{
    connect(new QShortcut(Qt::Key_F1, &dialog), &QShortcut::activated, this,
            guarded(*m_failures, [this, topic] { openHelp(topic); }));
    dialog.exec();
}

void frmMain::mnuDeleteProject_Click()
{
    execWithHelp(
        frmDelProj({m_state, m_cores->database, m_cores->directories, m_prompter, *m_platform.clock}, this),
        u"multi.htm"_s);
    fillProjectBox();
}

void frmMain::mnuBackupDatabase_Click()
{
    execWithHelp(frmBackupDatabase({m_state, *m_platform.database, m_prompter}, this), u"backupDB.htm"_s);
}

// ---- documents, help
// ---------------------------------------------------------------------------------------

void frmMain::mnuCreateHTML_Click()
{
    m_cores->documents.CreateDocuments();
}

void frmMain::mnuWordtoPDF_Click()
{
    PdfConversion::ConvertWordFileToPdf(m_cores->documentServices);
}

void frmMain::mnuViewWord_Click()
{
    WordFiles::openDocumentOfProject(m_cores->documentServices);
}

void frmMain::mnuHelpAbout_Click()
{
    execWithHelp(frmAbout(*m_platform.programs, m_prompter, this), u"features.htm"_s);
}

void frmMain::mnuFileExit_Click()
{
    close();
}
