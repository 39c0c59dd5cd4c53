#include "pagestore/frmDelProj.h"

#include "platform/ApplicationFolder.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

frmDelProj::frmDelProj(const ProjectDeletion::Services &services, QWidget *parent)
    : QDialog(parent), m_failures(services.prompter), m_deletion(services, [this] { fillProjects(); }),
      cmbProj(new QComboBox(this)), cmdDelete(new QPushButton(u"&Delete"_s, this)),
      cmdDelAll(new QPushButton(u"Delete &All Projects"_s, this)),
      cmdCancel(new QPushButton(u"&Cancel"_s, this)), cmdClose(new QPushButton(u"Clo&se"_s, this)),
      cmdHelp(new QPushButton(u"&Help"_s, this))
{
    setObjectName("frmDelProj"_L1);
    setWindowTitle(u"Shotly"_s);
    setMinimumWidth(560);
    cmbProj->setObjectName("cmbProj"_L1);
    cmbProj->setToolTip(u"Do not type in, select a project from the list."_s);
    cmbProj->setAccessibleName(u"Project"_s);
    cmdDelete->setObjectName("cmdDelete"_L1);
    cmdDelete->setToolTip(u"Delete the selected project from the database"_s);
    cmdDelAll->setObjectName("cmdDelAll"_L1);
    cmdDelAll->setToolTip(cmdDelete->toolTip());
    cmdCancel->setObjectName("cmdCancel"_L1);
    cmdClose->setObjectName("cmdClose"_L1);
    cmdClose->setToolTip(u"Close this window"_s);
    cmdHelp->setObjectName("cmdHelp"_L1);
    // Return must not delete by accident.
    cmdClose->setDefault(true);
    layOut();

    connect(cmdDelete, &QPushButton::clicked, this, guarded(m_failures, [this] { cmdDelete_Click(); }));
    connect(cmdDelAll, &QPushButton::clicked, this,
            guarded(m_failures, [this] { m_deletion.deleteAllProjects(); }));
    connect(cmdHelp, &QPushButton::clicked, this, guarded(m_failures, [this] { m_deletion.explain(); }));
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::reject);
    fillProjects();
}

void frmDelProj::layOut()
{
    auto *instruction = new QLabel(
        u"To delete a project, select a project from the list, then click the 'Delete' button."_s, this);
    instruction->setWordWrap(true);
    const QString example = FileSystem::join(ApplicationFolder::defaultBaseDirectory(), u"oracleUpgrade3"_s);
    auto *renaming = new QLabel(
        u"No file is deleted: the project's file directory is renamed to its old name followed by _del_ and "
        "the time. For example, %1 may become %1_del_Mar21134302. If you delete all projects, the base "
        "directory is renamed, then created again."_s.arg(example),
        this);
    renaming->setWordWrap(true);
    renaming->setTextFormat(Qt::PlainText);

    auto *choice = new QHBoxLayout;
    choice->addWidget(cmbProj, 1);
    choice->addWidget(cmdDelete);
    choice->addWidget(cmdDelAll);
    auto *ends = new QHBoxLayout;
    ends->addWidget(cmdHelp);
    ends->addStretch();
    ends->addWidget(cmdCancel);
    ends->addWidget(cmdClose);
    auto *column = new QVBoxLayout(this);
    column->setSpacing(12);
    column->addWidget(instruction);
    column->addLayout(choice);
    column->addWidget(renaming);
    column->addStretch();
    column->addLayout(ends);
    const QWidget *const order[] = {cmbProj, cmdDelete, cmdDelAll, cmdHelp, cmdCancel, cmdClose};
    for (std::size_t i = 0; i + 1 < std::size(order); ++i)
        setTabOrder(const_cast<QWidget *>(order[i]), const_cast<QWidget *>(order[i + 1]));
    cmbProj->setFocus();
}

/// A project that is still there stays selected.
void frmDelProj::fillProjects()
{
    const QString selected = cmbProj->currentText();
    cmbProj->clear();
    cmbProj->addItems(m_deletion.projects());
    cmbProj->setCurrentIndex(cmbProj->findText(selected, Qt::MatchExactly | Qt::MatchCaseSensitive));
}

void frmDelProj::cmdDelete_Click()
{
    m_deletion.deleteProject(cmbProj->currentText().trimmed());
}
