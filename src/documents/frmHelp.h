#pragma once

#include "platform/BrowserView.h"
#include "platform/ExternalPrograms.h"
#include "platform/qt/Guarded.h"

#include <QWidget>

struct Module1;
class QAction;

/// The help: topics in a window of their own, one for all. It stays usable while a dialog is open.
class frmHelp : public QWidget
{
    Q_OBJECT

public:
    struct Services {
        const Module1 &state;
        Prompter &prompter;
        Browsers &browsers;
        ExternalPrograms &programs;
    };

    explicit frmHelp(const Services &services);
    ~frmHelp() override;

    /// Shows a topic by its address, Module1::HelpFilePath & "::/multi.htm", and brings the window forward.
    /// Throws RunTimeError when there is no such topic.
    void showTopic(const QString &address);

private:
    QAction *addCommand(const char16_t *name, const QString &toolTip, const char16_t *icon,
                        const QString &shortcut, const std::function<void()> &command);
    void bringForward();
    void updateControls();

    Services m_services;
    FailureBox m_failures;
    std::unique_ptr<BrowserView> brwHelp;
    class QToolBar *tbHelp;
    QAction *m_back;
    QAction *m_forward;
};
