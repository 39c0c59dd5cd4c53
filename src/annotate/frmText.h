#pragma once

#include "platform/qt/Guarded.h"
#include "state/Module1.h"

#include <QDialog>

class QPlainTextEdit;
class QPushButton;
class Spelling;

/// Asks for a text that is to be put on a picture: Module1::TextMessage, empty when the user cancels. Modal;
/// if TextRetry is set, the user goes on with the text he gave before.
class frmText : public QDialog
{
    Q_OBJECT

public:
    /// Must outlive the dialog.
    struct Services {
        Module1 &state;
        Prompter &prompter;
        Workspace &workspace;
        Spelling &spelling;
    };
    frmText(const Services &services, QWidget *parent);

    /// Cancel, Escape and the window's close button.
    void reject() override;

private:
    void layOut();
    void connectControls();
    QString text() const;
    void Form_Load();
    void cmdOK_Click();
    void cmdChkSpell_Click();
    void replaceText(const QString &text);

    Services m_services;
    FailureBox m_failures;

    QPlainTextEdit *text1;
    QPushButton *cmdOK;
    QPushButton *cmdCancel;
    QPushButton *cmdChkSpell;
    QPushButton *cmdHelp;
};
