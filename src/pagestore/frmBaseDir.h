#pragma once

#include "platform/Prompter.h"
#include "platform/qt/Guarded.h"
#include "state/Module1.h"

#include <QDialog>

class QLabel;
class QPushButton;

/// Chooses the base directory of all projects, when the configured one does not exist. Modal; closing it
/// without a choice leaves the options as they are.
class frmBaseDir : public QDialog
{
    Q_OBJECT

public:
    frmBaseDir(Module1 &state, Prompter &prompter);

private:
    void cmdBrowse_Click();

    Module1 &m_state;
    Prompter &m_prompter;
    FailureBox m_failures;

    QLabel *lblBaseDir;
    QPushButton *cmdBrowse;
};
