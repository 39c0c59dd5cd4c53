#pragma once

#include "app/Cores.h"
#include "app/CountdownWindow.h"
#include "platform/qt/Guarded.h"
#include "platform/UserSettings.h"
#include "state/Workspace.h"

#include <QMainWindow>
#include <QPointer>
#include <QTimer>

#include <memory>

class CommandSet;
class DisplaySwitch;
class ProjectBox;
class QDialog;
class QMenu;
class QToolBar;
class RunView;
class TabHost;
class TrayIcon;
class WidgetProgress;
class frmBrowser;
class frmHelp;
class frmPaint;
class PaintTab;
class frmRegion;

/// The program's one top-level window: menus, toolbars, project box, the tabs of the child windows, tray
/// icon. A thin shell: handlers read the controls, ask a core, show the result. Closing it ends the program.
class frmMain : public QMainWindow, public Workspace
{
    Q_OBJECT

public:
    /// References must outlive the window.
    frmMain(Module1 &state, Platform &platform, Prompter &prompter, UserSettings &settings,
            DisplaySwitch &display);
    ~frmMain() override;

    // Commands of the table, by the names of their menu items.
    void mnuBeginCap_Click();
    void mnuStopCap_Click();
    void mnuPageList_Click();
    void mnuAllPage_Click();
    void mnuBlankPage_Click();
    void mnuPageGrid_Click();
    void mnuOddProject_Click();
    void mnuViewScreenShot_Click();
    void mnuPaintEditor_Click();
    void mnuCreateHTML_Click();
    void mnuFileExit_Click();
    void mnuWordtoPDF_Click();
    void mnuViewWord_Click();
    void mnuIndexPage_Click();
    void mnuOption_Click();
    void mnuDeleteProject_Click();
    void mnuBackupDatabase_Click();
    void mnuRegion_Click();
    void mnuActiveWindow_Click();
    void mnuDesktop_Click();
    void mnuHelpContents_Click();
    void mnuHelpAbout_Click();
    void mnuPopStartCap_Click();
    void mPopRestore_Click();

    /// Registers a child window as a tab; it belongs to the tab strip from then on. Its property "formID"
    /// keeps the tab's id.
    void addTab(QWidget *child, const QString &caption);
    void deleteTab(int id) override;
    void turnTab(int id);

    /// What a later start of the program wants of this one: "show" (with the path of a picture, if there is
    /// one), "begin" with a project's name, "stop". The answer is empty, or says why it cannot be.
    QString control(const QStringList &request);

    /// Asks for delay and file, then takes a single snapshot of the active window or of the desktop.
    void make1Shot(bool activeWindow);
    QString getSavePath() { return m_cores->snapshots.getSavePath(); }
    QImage CaptureScreen() { return m_cores->grabbing.CaptureScreen(); }
    void mkPic() { m_cores->snapshots.mkPic(); }

    // Workspace
    QString projectText() const override;
    QStringList projectNames() const override;
    void setProjectText(const QString &name) override;
    void addProjectName(const QString &name) override;
    void removeProjectName(const QString &name) override;
    void openViewer(ViewerSelection select) override;
    void openPaintEditor(const QString &path) override;
    void openPaintTab() override;
    void openContentsPage() override;
    void openPageEditor(const QString &caption) override;
    void openPageList(const QString &caption) override;
    void openHelp(const QString &topic) override;
    void setBusyPointer(bool busy) override;
    void endAtOnce() override;
    void minimise() override;
    void restoreNormal() override;
    void closeWebSearchTab() override;
    void refreshPageViews() override;
    void showStatus(const QString &text) override;

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void buildControls();
    void connectControls();
    void MDIForm_Load();
    bool setHotKey();
    void HotKeyWindowProc(int id, std::uint32_t time);
    void mnuSaveWorkingSpace_Click();
    void reopenWorkingSpace();
    void fillProjectBox();
    void whenShown();
    void updateCommands();

    QString beginFor(const QString &project);
    void execWithHelp(QDialog &&dialog, const QString &topic);
    void openCommandLinePicture();
    frmPaint &paintEditor();
    void openWithDesktop(const QString &path);
    frmBrowser *makeBrowser(const QString &startingAddress);
    void cmdIntoTray_Click();
    void stopBar_Stop();
    void Timer1_Timer();
    void frmRegion_Unload();

    // Events of the input hook `sh`.
    void dispatchHookEvent(const InputEvent &event);
    void sh_KeyDown(const InputEvent &event);
    void sh_KeyUp(const InputEvent &event);
    void sh_MouseUp(const InputEvent &event);

    Module1 &m_state;
    Platform &m_platform;
    Prompter &m_prompter;
    UserSettings &m_settings;
    DisplaySwitch &m_display;
    std::unique_ptr<FailureBox> m_failures;
    std::unique_ptr<RunView> m_runView;
    std::unique_ptr<WidgetProgress> m_progress;
    std::unique_ptr<Cores> m_cores;
    std::unique_ptr<CommandSet> m_commands;
    std::unique_ptr<frmPaint> m_paint; ///< made when it is first asked for
    QPointer<PaintTab> m_paintTab;     ///< while it is shown as a tab
    std::unique_ptr<frmHelp> m_help;   ///< made when it is first asked for
    QPointer<frmBrowser> m_contents;   ///< the tab "Contents", while it is open
    std::unique_ptr<TrayIcon> m_tray;
    std::unique_ptr<frmRegion> m_region; ///< while a region is being drawn
    CountdownWindow m_countdown;
    QString m_currentUser;
    int m_nextTabId = 1;

    ProjectBox *cmbProj;
    QToolBar *Toolbar1;
    QToolBar *Toolbar2;
    TabHost *m_tabs;
    QMenu *mPopupSys;
    QTimer *Timer1;
};
