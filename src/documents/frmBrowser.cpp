#include "documents/frmBrowser.h"

#include "platform/qt/BrowserAddress.h"
#include "platform/qt/ThemedIcon.h"
#include "platform/qt/ToolTip.h"
#include "state/Module1.h"

#include <QAction>
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QShortcut>
#include <QStandardPaths>
#include <QToolBar>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int timerInterval = 200; // milliseconds
constexpr int longestHistory = 100;
const QString loadingMark = u" (loading)"_s;

/// As the address box shows it once the page is there.
QString normalized(const QString &address)
{
    const QUrl meant = BrowserAddress::understand(address);
    return meant.isEmpty() ? address.trimmed() : BrowserAddress::shown(meant);
}
} // namespace

struct frmBrowser::Row {
    const char16_t *key;
    const char16_t *toolTip;
    const char16_t *icon;
    const char *shortcut;
};

std::span<const frmBrowser::Row, frmBrowser::commandCount> frmBrowser::rows()
{
    static constexpr Row table[commandCount] = {
        {u"Back", u"Go back to the page before", u"browser-back", "Alt+Left"},
        {u"Forward", u"Go forward again", u"browser-forward", "Alt+Right"},
        {u"Refresh", u"Read this page again", u"browser-refresh", "F5"},
        {u"Home", u"Go to the home page", u"browser-home", "Alt+Home"},
        {u"Search", u"Go to the search page", u"browser-search", "Ctrl+E"},
        {u"Stop", u"Stop loading", u"browser-stop", "Esc"},
        {u"print", u"Print this page", u"browser-print", "Ctrl+P"},
    };
    return table;
}

frmBrowser::frmBrowser(const Services &services, const QString &startingAddress)
    : m_services(services), m_failures(services.prompter), brwWebBrowser(services.browsers.make()),
      tbToolBar(new QToolBar(this)), cboAddress(new QComboBox(this)), timTimer(new QTimer(this))
{
    setObjectName("frmBrowser"_L1);
    setWindowTitle(u"Browser"_s);
    setProperty(Workspace::helpTopic, u"browser.htm"_s);
    buildControls();
    connectControls();
    const AppOptions &options = services.state.AppOptions;
    brwWebBrowser->setStartPages(options.HomePage.trimmed().isEmpty()
                                     ? FileSystem::join(services.state.HelpFilePath, u"features.htm"_s)
                                     : options.HomePage,
                                 options.SearchPage);
    updateButtons();
    start(startingAddress.endsWith(loadingMark) ? startingAddress.chopped(loadingMark.size())
                                                : startingAddress);
}

frmBrowser::~frmBrowser()
{
    brwWebBrowser->setEvents({});
}

void frmBrowser::buildControls()
{
    tbToolBar->setObjectName("tbToolBar"_L1);
    tbToolBar->setIconSize({24, 24});
    buildCommands();
    cboAddress->setObjectName("cboAddress"_L1);
    cboAddress->setEditable(true);
    cboAddress->setInsertPolicy(QComboBox::NoInsert);
    cboAddress->setCompleter(nullptr);
    cboAddress->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cboAddress->setMaxCount(longestHistory);
    cboAddress->installEventFilter(this);
    timTimer->setObjectName("timTimer"_L1);
    timTimer->setInterval(timerInterval);
    brwWebBrowser->widget()->setObjectName("brwWebBrowser"_L1);

    auto *label = new QLabel(u"A&ddress:"_s, this);
    label->setBuddy(cboAddress);
    auto *bars = new QHBoxLayout;
    bars->setSpacing(8);
    bars->addWidget(tbToolBar);
    bars->addWidget(label);
    bars->addWidget(cboAddress, 1);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(4, 2, 4, 4);
    column->setSpacing(2);
    column->addLayout(bars);
    column->addWidget(brwWebBrowser->widget(), 1);
    setFocusProxy(brwWebBrowser->widget());
}

void frmBrowser::buildCommands()
{
    for (std::size_t i = 0; i < commandCount; ++i) {
        const Row &row = rows()[i];
        const QKeySequence shortcut(QLatin1StringView(row.shortcut));
        auto *made = new QAction(themedIcon(QString::fromUtf16(row.icon) + u".svg"_s),
                                 QString::fromUtf16(row.key), this);
        made->setObjectName(QString::fromUtf16(row.key));
        made->setToolTip(ToolTip::withKeys(QString::fromUtf16(row.toolTip), shortcut));
        made->setShortcut(shortcut);
        connect(made, &QAction::triggered, this,
                guarded(m_failures, [this, i] { tbToolBar_ButtonClick(static_cast<Command>(i)); }));
        if (i == Home || i == Stop || i == Print)
            tbToolBar->addSeparator();
        tbToolBar->addAction(made);
        addAction(made);
        m_commands[i] = made;
    }
}

void frmBrowser::connectControls()
{
    // The box would choose an entry whenever its text is left, and twice by Return.
    disconnect(cboAddress->lineEdit(), &QLineEdit::editingFinished, cboAddress, nullptr);
    disconnect(cboAddress->lineEdit(), &QLineEdit::returnPressed, cboAddress, nullptr);
    connect(cboAddress, &QComboBox::activated, this, guarded(m_failures, [this] { navigateToText(); }));
    connect(cboAddress->lineEdit(), &QLineEdit::returnPressed, this,
            guarded(m_failures, [this] { navigateToText(); }));
    connect(timTimer, &QTimer::timeout, this, guarded(m_failures, [this] { timTimer_Timer(); }));
    auto *toAddress = new QShortcut(QKeySequence(u"Ctrl+L"_s), this);
    connect(toAddress, &QShortcut::activated, this, [this] {
        cboAddress->setFocus();
        cboAddress->lineEdit()->selectAll();
    });
    brwWebBrowser->setEvents(viewEvents());
}

BrowserView::Events frmBrowser::viewEvents()
{
    BrowserView::Events events;
    events.navigateComplete = guarded(m_failures, [this] { brwWebBrowser_NavigateComplete(); });
    events.changed = [this] {
        if (brwWebBrowser->Busy() && !timTimer->isActive())
            timTimer->start();
        if (!brwWebBrowser->Busy())
            showCaption();
        updateButtons();
    };
    events.openOutside = [this](const QString &address) {
        runGuarded(m_failures,
                   [&] { m_services.programs.openWithDesktop(BrowserAddress::forDesktop(address)); });
    };
    events.askDownload = [this](const QString &name) { return askDownload(name); };
    events.report = [this](const QString &text) { m_services.workspace.showStatus(text); };
    return events;
}

// ---- addresses

void frmBrowser::showContents()
{
    Module1 &state = m_services.state;
    if (!state.ShowContentsRequested || state.ContentsPagePath.isEmpty())
        return;
    state.ShowContentsRequested = false;
    start(state.ContentsPagePath);
}

void frmBrowser::start(const QString &address)
{
    if (address.isEmpty())
        return;
    const QString text = normalized(address);
    cboAddress->setEditText(text);
    if (cboAddress->findText(text, Qt::MatchFixedString | Qt::MatchCaseSensitive) < 0)
        cboAddress->insertItem(0, text);
    timTimer->start();
    brwWebBrowser->Navigate(text);
    showCaption();
}

void frmBrowser::navigateToText()
{
    const QString text = cboAddress->currentText();
    timTimer->start();
    if (!text.trimmed().isEmpty())
        brwWebBrowser->Navigate(text);
}

void frmBrowser::brwWebBrowser_NavigateComplete()
{
    const QString address = brwWebBrowser->LocationURL();
    if (const int old = cboAddress->findText(address, Qt::MatchFixedString | Qt::MatchCaseSensitive);
        old >= 0)
        cboAddress->removeItem(old);
    cboAddress->insertItem(0, address);
    cboAddress->setCurrentIndex(0);
    showCaption();
    updateButtons();
}

void frmBrowser::timTimer_Timer()
{
    if (!brwWebBrowser->Busy())
        timTimer->stop();
    showCaption();
    updateButtons();
}

void frmBrowser::showCaption()
{
    const QString address = brwWebBrowser->LocationURL();
    const QString known = address.isEmpty() ? cboAddress->currentText() : address;
    if (!known.isEmpty())
        setWindowTitle(u'<' + known +
                       (timTimer->isActive() && brwWebBrowser->Busy() ? loadingMark : QString()));
}

// ---- commands

void frmBrowser::tbToolBar_ButtonClick(Command command)
{
    timTimer->start();
    switch (command) {
    case Back:
        return brwWebBrowser->GoBack();
    case Forward:
        return brwWebBrowser->GoForward();
    case Refresh:
        return brwWebBrowser->Refresh();
    case Home:
        return brwWebBrowser->GoHome();
    case Search:
        return brwWebBrowser->GoSearch();
    case Stop:
        timTimer->stop();
        brwWebBrowser->Stop();
        showCaption();
        return updateButtons();
    case Print:
        return printPage();
    }
}

void frmBrowser::printPage()
{
    if (m_job)
        return;
    m_job = m_services.prompter.choosePrinter(Question::PrintPage);
    if (!m_job)
        return;
    brwWebBrowser->print(m_job->device(), [this](bool printed) {
        const std::unique_ptr<PrintJob> job = std::move(m_job);
        runGuarded(m_failures, [&] {
            if (!printed)
                throw RunTimeError(RunTimeError::PrinterError, u"The page cannot be printed."_s);
            job->finish();
        });
    });
}

std::optional<QString> frmBrowser::askDownload(const QString &name)
{
    FilePrompt prompt;
    prompt.title = u"Save As"_s;
    prompt.directory = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    prompt.fileName = name;
    prompt.filter = u"All Files (*.*)|*.*"_s;
    prompt.askOverwrite = true;
    return m_services.prompter.saveFile(Question::SaveDownload, prompt);
}

void frmBrowser::updateButtons()
{
    action(Back).setEnabled(brwWebBrowser->canGoBack());
    action(Forward).setEnabled(brwWebBrowser->canGoForward());
    action(Stop).setEnabled(brwWebBrowser->Busy());
    const bool page = !brwWebBrowser->LocationURL().isEmpty();
    action(Refresh).setEnabled(page);
    action(Print).setEnabled(page);
}

bool frmBrowser::eventFilter(QObject *watched, QEvent *event)
{
    // Turning the wheel over the box must not lead to other pages.
    return event->type() == QEvent::Wheel || QWidget::eventFilter(watched, event);
}
