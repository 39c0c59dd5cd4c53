#include "pagestore/frmBackupDatabase.h"

#include "state/Workspace.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

frmBackupDatabase::frmBackupDatabase(const DatabaseBackup::Services &services, QWidget *parent)
    : QDialog(parent), m_state(services.state), m_failures(services.prompter), m_backup(services),
      lblpath(new QLabel(this)), cmdBrowse(new QPushButton(u"&Browse"_s, this)), txtName(new QLineEdit(this)),
      cmdSave(new QPushButton(u"&Select a Location and Save It"_s, this)),
      cmdCancel(new QPushButton(u"&Cancel"_s, this)), cmdHelp(new QPushButton(u"&Help"_s, this))
{
    setObjectName("frmBackupDatabase"_L1);
    setWindowTitle(u"Shotly: Backup a Database"_s);
    setMinimumWidth(560);
    lblpath->setObjectName("lblpath"_L1);
    lblpath->setText(m_backup.firstSource());
    cmdBrowse->setObjectName("cmdBrowse"_L1);
    cmdBrowse->setToolTip(u"Select a file."_s);
    txtName->setObjectName("txtName"_L1);
    cmdSave->setObjectName("cmdSave"_L1);
    cmdSave->setToolTip(u"Select a dirctory to save this new database."_s);
    cmdSave->setDefault(true);
    cmdCancel->setObjectName("cmdCancel"_L1);
    cmdCancel->setToolTip(u"Cancel and close the window"_s);
    cmdHelp->setObjectName("cmdHelp"_L1);
    layOut();

    connect(cmdBrowse, &QPushButton::clicked, this, guarded(m_failures, [this] { cmdBrowse_Click(); }));
    connect(cmdSave, &QPushButton::clicked, this, guarded(m_failures, [this] { cmdSave_Click(); }));
    connect(cmdHelp, &QPushButton::clicked, this, guarded(m_failures, [this] { cmdHelp_Click(); }));
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

QGroupBox *frmBackupDatabase::sourceFrame()
{
    auto *frame = new QGroupBox(u"Step 1: Select a Database"_s, this);
    lblpath->setFrameStyle(static_cast<int>(QFrame::StyledPanel) | static_cast<int>(QFrame::Sunken));
    lblpath->setTextFormat(Qt::PlainText);
    lblpath->setMargin(4);
    lblpath->setWordWrap(true);
    auto *row = new QHBoxLayout(frame);
    row->addWidget(lblpath, 1);
    row->addWidget(cmdBrowse);
    return frame;
}

QGroupBox *frmBackupDatabase::targetFrame()
{
    auto *frame = new QGroupBox(u"Step 2: Save It to a Different Location"_s, this);
    auto *label = new QLabel(u"Name (see below):"_s, frame);
    label->setBuddy(txtName);
    auto *hint =
        new QLabel(u"If you're going to back up Shotly, and today is 03/15/2003, you may want to name it "
                   "Shotly_03152003, so you know which database it is and when the back up was done."_s,
                   frame);
    hint->setWordWrap(true);
    auto *best =
        new QLabel(u"The best way to backup your database is to copy the file to a CD/DVD."_s, frame);
    best->setWordWrap(true);
    auto *row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(txtName, 1);
    row->addWidget(cmdSave);
    auto *column = new QVBoxLayout(frame);
    column->addLayout(row);
    column->addWidget(hint);
    column->addWidget(best);
    return frame;
}

void frmBackupDatabase::layOut()
{
    auto *ends = new QHBoxLayout;
    ends->addWidget(cmdHelp);
    ends->addStretch();
    ends->addWidget(cmdCancel);
    auto *column = new QVBoxLayout(this);
    column->setSpacing(12);
    column->addWidget(sourceFrame());
    column->addWidget(targetFrame());
    column->addStretch();
    column->addLayout(ends);
    setTabOrder(cmdBrowse, txtName);
    setTabOrder(txtName, cmdSave);
    setTabOrder(cmdSave, cmdHelp);
    setTabOrder(cmdHelp, cmdCancel);
    txtName->setFocus();
}

void frmBackupDatabase::cmdBrowse_Click()
{
    const std::optional<QString> path = m_backup.chooseSource(txtName->text());
    if (!path)
        return;
    lblpath->setText(*path);
    // A longer path takes more lines; the window grows rather than cut them off.
    layout()->activate();
    resize(width(), std::max(height(), heightForWidth(width())));
}

void frmBackupDatabase::cmdSave_Click()
{
    if (m_backup.save(lblpath->text(), txtName->text()))
        accept();
}

void frmBackupDatabase::cmdHelp_Click()
{
    m_state.MainWindow->openHelp(u"backupDB.htm"_s);
}
