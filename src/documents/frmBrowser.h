#pragma once

#include "platform/BrowserView.h"
#include "platform/ExternalPrograms.h"
#include "platform/PrintJob.h"
#include "platform/qt/Guarded.h"
#include "state/Workspace.h"

#include <QTimer>
#include <QWidget>

#include <array>
#include <span>

struct Module1;
class QAction;
class QComboBox;
class QToolBar;

/// The built-in browser: shows generated pages, and others that the user goes to.
///
/// Its caption is "<" and the address, by which the working space knows it again.
class frmBrowser : public QWidget
{
    Q_OBJECT

public:
    struct Services {
        Module1 &state;
        Prompter &prompter;
        Workspace &workspace;
        Browsers &browsers;
        ExternalPrograms &programs;
    };

    /// Goes to the starting address, which may carry a caption's mark of loading; empty: nowhere.
    explicit frmBrowser(const Services &services, const QString &startingAddress = {});
    ~frmBrowser() override;

    /// Shows Module1::ContentsPagePath if ShowContentsRequested is set, and clears that. Without a path
    /// nothing happens.
    void showContents();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// Buttons of `tbToolBar`, in their order.
    enum Command { Back, Forward, Refresh, Home, Search, Stop, Print };
    static constexpr std::size_t commandCount = Print + 1;
    struct Row;
    static std::span<const Row, commandCount> rows();

    void buildControls();
    void buildCommands();
    void connectControls();
    BrowserView::Events viewEvents();

    void start(const QString &address);
    void navigateToText();
    void tbToolBar_ButtonClick(Command command);
    void brwWebBrowser_NavigateComplete();
    void timTimer_Timer();
    void printPage();
    std::optional<QString> askDownload(const QString &name);
    void showCaption();
    void updateButtons();
    QAction &action(Command command) const { return *m_commands[command]; }

    Services m_services;
    FailureBox m_failures;
    std::unique_ptr<PrintJob> m_job; ///< what is being printed; outlives the view
    std::unique_ptr<BrowserView> brwWebBrowser;
    std::array<QAction *, commandCount> m_commands{};
    QToolBar *tbToolBar;
    QComboBox *cboAddress;
    QTimer *timTimer;
};
