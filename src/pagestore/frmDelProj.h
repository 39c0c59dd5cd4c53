#pragma once

#include "pagestore/ProjectDeletion.h"
#include "platform/qt/Guarded.h"

#include <QDialog>

class QComboBox;
class QPushButton;

/// Deletes one project of a list, or all. Modal; what it works with must outlive it.
class frmDelProj : public QDialog
{
    Q_OBJECT

public:
    frmDelProj(const ProjectDeletion::Services &services, QWidget *parent);

private:
    void layOut();
    void fillProjects();
    void cmdDelete_Click();

    FailureBox m_failures;
    ProjectDeletion m_deletion;

    QComboBox *cmbProj;
    QPushButton *cmdDelete;
    QPushButton *cmdDelAll;
    QPushButton *cmdCancel;
    QPushButton *cmdClose;
    QPushButton *cmdHelp;
};
