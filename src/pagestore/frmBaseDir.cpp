#include "pagestore/frmBaseDir.h"

#include "platform/ApplicationFolder.h"
#include "settings/OptionsStore.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

frmBaseDir::frmBaseDir(Module1 &state, Prompter &prompter)
    : m_state(state), m_prompter(prompter), m_failures(prompter), lblBaseDir(new QLabel(this)),
      cmdBrowse(new QPushButton(u"&Browse"_s, this))
{
    setObjectName("frmBaseDir"_L1);
    setWindowTitle(u"Select Base Directory"_s);
    setMinimumWidth(520);

    lblBaseDir->setObjectName("lblBaseDir"_L1);
    lblBaseDir->setText(m_state.AppOptions.BaseDirectory);
    lblBaseDir->setToolTip(
        u"You cannot type in the path, please click 'Browse' button to select a directory"_s);
    lblBaseDir->setFrameStyle(static_cast<int>(QFrame::StyledPanel) | static_cast<int>(QFrame::Sunken));
    lblBaseDir->setTextFormat(Qt::PlainText);
    lblBaseDir->setMargin(4);
    cmdBrowse->setObjectName("cmdBrowse"_L1);
    cmdBrowse->setToolTip(u"Select a directory"_s);
    cmdBrowse->setDefault(true);

    auto *explanation = new QLabel(
        u"Please select a directory as base director. All your Shotly projects will based on the base "
        "directory. For example, if base directory is %1, and if you have a project named as myProjOne, then "
        "your project myProjOne will reside at %1/myProjOne. All files of the project will store at "
        "%1/myProjOne."_s.arg(ApplicationFolder::defaultBaseDirectory()),
        this);
    explanation->setWordWrap(true);

    auto *row = new QHBoxLayout;
    row->addWidget(new QLabel(u"Base Directory:"_s, this));
    row->addWidget(lblBaseDir, 1);
    row->addWidget(cmdBrowse);
    auto *column = new QVBoxLayout(this);
    column->setSpacing(12);
    column->addWidget(explanation);
    column->addLayout(row);

    connect(cmdBrowse, &QPushButton::clicked, this, guarded(m_failures, [this] { cmdBrowse_Click(); }));
}

void frmBaseDir::cmdBrowse_Click()
{
    const std::optional<QString> folder =
        m_prompter.pickFolder(Question::ChooseBaseDirectory, u"Select a Folder"_s, {});
    if (!folder)
        return;
    lblBaseDir->setText(*folder);
    m_state.AppOptions.BaseDirectory = *folder;
    if (!m_state.FileSystem.folderExists(*folder)) {
        m_prompter.tell(
            Question::BaseDirectoryNotExisting,
            {*folder + u"\r\nis not exist. Please select an existing directory."_s, m_state.AppTitle});
        return;
    }
    OptionsStore::writeBaseDirectory(m_state.OptionsFilePath, *folder);
    accept();
}
