#pragma once

#include "pagestore/DatabaseBackup.h"
#include "platform/qt/Guarded.h"

#include <QDialog>

class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

/// Copies the database, or another one, to a safe place. Modal; closes when the copy is made. What it works
/// with must outlive it.
class frmBackupDatabase : public QDialog
{
    Q_OBJECT

public:
    frmBackupDatabase(const DatabaseBackup::Services &services, QWidget *parent);

private:
    QGroupBox *sourceFrame();
    QGroupBox *targetFrame();
    void layOut();
    void cmdBrowse_Click();
    void cmdSave_Click();
    void cmdHelp_Click();

    Module1 &m_state;
    FailureBox m_failures;
    DatabaseBackup m_backup;

    QLabel *lblpath;
    QPushButton *cmdBrowse;
    QLineEdit *txtName;
    QPushButton *cmdSave;
    QPushButton *cmdCancel;
    QPushButton *cmdHelp;
};
