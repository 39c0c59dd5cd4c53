#include "annotate/frmText.h"

#include "platform/qt/PlainTextBox.h"
#include "platform/Spelling.h"
#include "state/Workspace.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QShortcut>
#include <QTextCursor>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int widthInCharacters = 60;
constexpr int visibleLines = 8;
} // namespace

frmText::frmText(const Services &services, QWidget *parent)
    : QDialog(parent), m_services(services), m_failures(services.prompter), text1(new PlainTextBox(this)),
      cmdOK(new QPushButton(u"&OK"_s, this)), cmdCancel(new QPushButton(u"&Cancel"_s, this)),
      cmdChkSpell(new QPushButton(u"&Spell Check"_s, this)), cmdHelp(new QPushButton(u"&Help"_s, this))
{
    setObjectName("frmText"_L1);
    setWindowTitle(u"Add Text Message on Image"_s);
    text1->setObjectName("text1"_L1);
    text1->setAccessibleName(u"Text message"_s);
    text1->setTabChangesFocus(true);
    cmdOK->setObjectName("cmdOK"_L1);
    cmdOK->setToolTip(u"Take this text and choose its place on the picture (Ctrl+Return)"_s);
    cmdOK->setDefault(true);
    cmdCancel->setObjectName("cmdCancel"_L1);
    cmdChkSpell->setObjectName("cmdChkSpell"_L1);
    cmdHelp->setObjectName("cmdHelp"_L1);
    layOut();
    connectControls();
    Form_Load();
}

void frmText::layOut()
{
    text1->setMinimumSize(widthInCharacters * text1->fontMetrics().averageCharWidth(),
                          visibleLines * text1->fontMetrics().lineSpacing());
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdChkSpell);
    buttons->addWidget(cmdHelp);
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto *column = new QVBoxLayout(this);
    column->addWidget(text1, 1);
    column->addLayout(buttons);
    QWidget *previous = text1;
    for (QPushButton *next : {cmdOK, cmdCancel, cmdChkSpell, cmdHelp}) {
        setTabOrder(previous, next);
        previous = next;
    }
}

void frmText::connectControls()
{
    connect(cmdOK, &QPushButton::clicked, this, guarded(m_failures, [this] { cmdOK_Click(); }));
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(cmdChkSpell, &QPushButton::clicked, this, guarded(m_failures, [this] { cmdChkSpell_Click(); }));
    connect(cmdHelp, &QPushButton::clicked, this,
            guarded(m_failures, [this] { m_services.workspace.openHelp(u"notes.htm"_s); }));
    auto *help = new QShortcut(Qt::Key_F1, this);
    connect(help, &QShortcut::activated, cmdHelp, &QPushButton::click);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto *finished = new QShortcut(Qt::CTRL | key, text1, nullptr, nullptr, Qt::WidgetShortcut);
        connect(finished, &QShortcut::activated, this, guarded(m_failures, [this] { cmdOK_Click(); }));
    }
}

void frmText::Form_Load()
{
    Module1 &state = m_services.state;
    if (!state.TextRetry)
        return;
    state.TextRetry = false;
    text1->setPlainText(state.TextMessage);
    text1->moveCursor(QTextCursor::End);
    state.TextMessage.clear();
}

QString frmText::text() const
{
    return text1->toPlainText().replace(u'\n', u"\r\n"_s);
}

void frmText::cmdOK_Click()
{
    m_services.state.TextMessage = text();
    accept();
}

void frmText::reject()
{
    m_services.state.TextMessage.clear();
    QDialog::reject();
}

/// Unlike a text that is set, this can be undone.
void frmText::replaceText(const QString &text)
{
    QTextCursor cursor(text1->document());
    cursor.select(QTextCursor::Document);
    cursor.insertText(text);
}

void frmText::cmdChkSpell_Click()
{
    Module1 &state = m_services.state;
    state.WordInstalled = m_services.spelling.installed();
    if (!state.WordInstalled) {
        m_services.prompter.tell(Question::SpellingNotInstalled,
                                 {u"The Spell Check function is based on Microsoft Office.\r\n"
                                  "Because Microsoft Office is not installed on this PC,\r\n"
                                  "spell check can not be done."_s,
                                  state.AppTitle});
        return;
    }
    const QString message = text();
    if (!message.isEmpty()) {
        state.SpellCheckText = m_services.spelling.correct(message);
        if (m_services.spelling.cancelled())
            return;
        if (state.SpellCheckText != message)
            replaceText(state.SpellCheckText);
    }
    m_services.prompter.tell(Question::SpellingCompleted,
                             {u"Spell Check Completed"_s, u"Spell Checker"_s, Icon::Information});
}
