// How the main window shows pages: generated ones, those of the last working space, and the help.

#include "app/frmMain.h"
#include "app/TabHost.h"
#include "app/WorkingSpace.h"
#include "documents/frmBrowser.h"
#include "documents/frmHelp.h"
#include "platform/qt/BrowserAddress.h"

#include <QKeyEvent>

using namespace Qt::Literals::StringLiterals;

frmBrowser *frmMain::makeBrowser(const QString &startingAddress)
{
    return new frmBrowser({m_state, m_prompter, *this, *m_platform.browsers, *m_platform.programs},
                          startingAddress);
}

void frmMain::mnuIndexPage_Click()
{
    FilePrompt prompt;
    prompt.title = u"Open"_s;
    prompt.directory = FileSystem::join(m_state.AppOptions.BaseDirectory, projectText().trimmed());
    prompt.filter = u"HTML Files (*.htm)|*.htm;*.html"_s;
    if (const std::optional<QString> path = m_prompter.openFile(Question::OpenFailed, prompt)) {
        m_state.ContentsPagePath = *path;
        m_state.ShowContentsRequested = true;
        openContentsPage();
    }
}

void frmMain::mnuHelpContents_Click()
{
    openHelp(u"features.htm"_s);
}

void frmMain::openContentsPage()
{
    if (m_state.ContentsPagePath.isEmpty())
        return;
    if (m_state.AppOptions.OptionFlags[BrowserChoice] == 0) {
        m_state.ShowContentsRequested = false;
        return openWithDesktop(m_state.ContentsPagePath);
    }
    if (m_contents) {
        turnTab(m_contents->property("formID").toInt());
    } else {
        m_contents = makeBrowser({});
        addTab(m_contents, u"Contents"_s);
    }
    m_contents->showContents();
}

void frmMain::openWithDesktop(const QString &path)
{
    try {
        m_platform.programs->openWithDesktop(path);
    } catch (const RunTimeError &error) {
        m_prompter.tell(Question::OpenFailed, {error.description(), m_state.AppTitle, Icon::Exclamation});
    }
}

void frmMain::closeWebSearchTab()
{
    if (m_contents)
        deleteTab(m_contents->property("formID").toInt());
    m_contents = nullptr; // it lives on for a moment
}

void frmMain::reopenWorkingSpace()
{
    const WorkingSpace::Kept kept = WorkingSpace::load(m_settings, m_state.AppTitle);
    if (m_currentUser.isEmpty())
        m_currentUser = kept.user;
    for (const QString &address : kept.pageAddresses)
        addTab(makeBrowser(address), u"Browser"_s);
}

void frmMain::openHelp(const QString &topic)
{
    try {
        if (!m_help)
            m_help = std::make_unique<frmHelp>(
                frmHelp::Services{m_state, m_prompter, *m_platform.browsers, *m_platform.programs});
        m_help->showTopic(m_state.HelpFilePath + u"::/"_s + topic);
    } catch (const RunTimeError &error) {
        m_prompter.tell(Question::OpenFailed, {error.description(), m_state.AppTitle, Icon::Exclamation});
    }
}

/// The help key is about the screen that is seen; where that has no topic, it is the menu's.
bool frmMain::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        const auto *key = static_cast<QKeyEvent *>(event);
        const QWidget *screen = m_tabs->current();
        const QString topic = screen ? screen->property(helpTopic).toString() : QString();
        if (key->key() == Qt::Key_F1 && key->modifiers() == Qt::NoModifier && !topic.isEmpty()) {
            event->accept();
            // Not in the middle of a key press, which some screens never get to see.
            if (!key->isAutoRepeat())
                QTimer::singleShot(0, this, guarded(*m_failures, [this, topic] { openHelp(topic); }));
            return true;
        }
    }
    return QMainWindow::event(event);
}
