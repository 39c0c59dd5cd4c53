#include "app/frmAbout.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSysInfo>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int iconSize = 64;
constexpr int licenceLines = 8;
} // namespace

QString frmAbout::versionText()
{
    return u"Version %1\nBuild %2 (%3, Qt %4)"_s.arg(
        QStringLiteral(SHOTLY_VERSION), QStringLiteral(SHOTLY_BUILD), QSysInfo::buildCpuArchitecture(),
        QString::fromLatin1(qVersion()));
}

QStringList frmAbout::libraries()
{
    return {
        u"Qt %1: GNU Lesser General Public License 3"_s.arg(QString::fromLatin1(qVersion())),
        u"Qt WebEngine with Chromium, where it is installed: LGPL 3, BSD and others"_s,
        u"SQLite: in the public domain"_s,
        u"XCB: MIT"_s,
        u"ALSA library: LGPL 2.1"_s,
        u"Hunspell: LGPL 2.1, GPL 2 or MPL 1.1"_s,
        u"QPDF: Apache License 2.0"_s,
        u"libdeflate: MIT"_s,
        u"xxHash: BSD, 2 clauses"_s,
    };
}

frmAbout::frmAbout(ExternalPrograms &programs, Prompter &prompter, QWidget *parent)
    : QDialog(parent), m_failures(prompter)
{
    setObjectName("frmAbout"_L1);
    setWindowTitle(u"About Shotly"_s);

    auto *picture = new QLabel(this);
    picture->setPixmap(QIcon(u":/icons/app.svg"_s).pixmap(QSize(iconSize, iconSize), devicePixelRatioF()));
    auto *name = new QLabel(u"Shotly"_s, this);
    QFont large = name->font();
    large.setPointSizeF(large.pointSizeF() * 2);
    large.setBold(true);
    name->setFont(large);
    auto *purpose = new QLabel(u"Turns a demonstration on screen into a step-by-step document."_s, this);
    auto *version = new QLabel(versionText(), this);
    version->setObjectName("lblVersion"_L1);
    version->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto *texts = new QVBoxLayout;
    for (QLabel *label : {name, purpose, version})
        texts->addWidget(label);
    auto *head = new QHBoxLayout;
    head->setSpacing(16);
    head->addWidget(picture, 0, Qt::AlignTop);
    head->addLayout(texts, 1);

    auto *licences = new QPlainTextEdit(libraries().join(u'\n'), this);
    licences->setObjectName("txtLicences"_L1);
    licences->setReadOnly(true);
    licences->setTabChangesFocus(true);
    licences->setMinimumHeight(licences->fontMetrics().lineSpacing() * licenceLines);
    auto *caption = new QLabel(u"&Libraries that it uses, and their licences:"_s, this);
    caption->setBuddy(licences);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    QPushButton *information = buttons->addButton(u"&System Info..."_s, QDialogButtonBox::ActionRole);
    information->setObjectName("cmdSysInfo"_L1);
    information->setToolTip(u"Start the desktop's program that describes this computer."_s);
    information->setAutoDefault(false);
    buttons->button(QDialogButtonBox::Ok)->setFocus();
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(information, &QPushButton::clicked, this,
            guarded(m_failures, [&programs] { programs.showSystemInformation(); }));

    auto *column = new QVBoxLayout(this);
    column->setSpacing(10);
    column->addLayout(head);
    column->addWidget(caption);
    column->addWidget(licences, 1);
    column->addWidget(buttons);
}
