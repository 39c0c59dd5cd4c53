#include "platform/qt/SpellingDialog.h"

#include "platform/linux/SpellingSession.h"
#include "platform/qt/Guarded.h"
#include "platform/qt/ThemedIcon.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTextCursor>
#include <QTextEdit>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int contextLines = 3;
constexpr int suggestionLines = 6;
constexpr int widthInCharacters = 50;

QPushButton *makeButton(QWidget *parent, QLatin1StringView name, const QString &text)
{
    auto *button = new QPushButton(text, parent);
    button->setObjectName(name);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}
} // namespace

SpellingDialog::SpellingDialog(SpellingSession &session, FailureBox &failures, QWidget *parent)
    : QDialog(parent), m_session(session), m_failures(failures), txtContext(new QTextEdit(this)),
      txtChangeTo(new QLineEdit(this)), lstSuggestions(new QListWidget(this)),
      cmdChange(makeButton(this, "cmdChange"_L1, u"&Change"_s)),
      cmdChangeAll(makeButton(this, "cmdChangeAll"_L1, u"Change A&ll"_s)),
      cmdIgnore(makeButton(this, "cmdIgnore"_L1, u"&Ignore"_s)),
      cmdIgnoreAll(makeButton(this, "cmdIgnoreAll"_L1, u"I&gnore All"_s)),
      cmdAdd(makeButton(this, "cmdAdd"_L1, u"&Add to Dictionary"_s)),
      cmdCancel(makeButton(this, "cmdCancel"_L1, u"Ca&ncel"_s))
{
    setWindowTitle(u"Spelling"_s);
    txtContext->setObjectName("txtContext"_L1);
    txtContext->setReadOnly(true);
    txtContext->setFocusPolicy(Qt::ClickFocus);
    txtContext->setAccessibleName(u"Not in the dictionary"_s);
    txtChangeTo->setObjectName("txtChangeTo"_L1);
    lstSuggestions->setObjectName("lstSuggestions"_L1);
    cmdChange->setDefault(true);
    layOut();
    connectControls();
    showWord();
    txtChangeTo->setFocus();
}

void SpellingDialog::layOut()
{
    const int line = fontMetrics().lineSpacing();
    txtContext->setFixedHeight(contextLines * line + 16);
    txtContext->setMinimumWidth(widthInCharacters * fontMetrics().averageCharWidth());
    lstSuggestions->setMinimumHeight(suggestionLines * line + 16);

    auto *changeTo = new QLabel(u"Change &to:"_s, this);
    changeTo->setBuddy(txtChangeTo);
    auto *suggestions = new QLabel(u"&Suggestions:"_s, this);
    suggestions->setBuddy(lstSuggestions);

    auto *buttons = new QVBoxLayout;
    for (QPushButton *button : {cmdChange, cmdChangeAll, cmdIgnore, cmdIgnoreAll, cmdAdd})
        buttons->addWidget(button);
    cmdAdd->setMinimumWidth(cmdAdd->sizeHint().width() + 2 * fontMetrics().averageCharWidth());
    buttons->addStretch();
    buttons->addWidget(cmdCancel);

    auto *grid = new QGridLayout(this);
    grid->addWidget(new QLabel(u"Not in the dictionary:"_s, this), 0, 0);
    grid->addWidget(txtContext, 1, 0);
    grid->addWidget(changeTo, 2, 0);
    grid->addWidget(txtChangeTo, 3, 0);
    grid->addWidget(suggestions, 4, 0);
    grid->addWidget(lstSuggestions, 5, 0);
    grid->addLayout(buttons, 1, 1, 5, 1);
    grid->setColumnStretch(0, 1);

    QWidget *previous = txtChangeTo;
    for (QWidget *next : std::initializer_list<QWidget *>{lstSuggestions, cmdChange, cmdChangeAll, cmdIgnore,
                                                          cmdIgnoreAll, cmdAdd, cmdCancel}) {
        setTabOrder(previous, next);
        previous = next;
    }
}

void SpellingDialog::connectControls()
{
    const auto answer = [this](QPushButton *button, void (SpellingDialog::*handler)()) {
        connect(button, &QPushButton::clicked, this,
                guarded(m_failures, [this, handler] { (this->*handler)(); }));
    };
    answer(cmdChange, &SpellingDialog::cmdChange_Click);
    answer(cmdChangeAll, &SpellingDialog::cmdChangeAll_Click);
    answer(cmdIgnore, &SpellingDialog::cmdIgnore_Click);
    answer(cmdIgnoreAll, &SpellingDialog::cmdIgnoreAll_Click);
    answer(cmdAdd, &SpellingDialog::cmdAdd_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(txtChangeTo, &QLineEdit::textChanged, this, [this] { enableChange(); });
    connect(lstSuggestions, &QListWidget::currentTextChanged, txtChangeTo, &QLineEdit::setText);
    // Also when it was the current one before, and something else has been typed since.
    connect(lstSuggestions, &QListWidget::itemClicked, this,
            [this](const QListWidgetItem *item) { txtChangeTo->setText(item->text()); });
    connect(lstSuggestions, &QListWidget::itemDoubleClicked, this, guarded(m_failures, [this] {
                txtChangeTo->setText(lstSuggestions->currentItem()->text());
                cmdChange_Click();
            }));
}

void SpellingDialog::showWord()
{
    showContext();
    const QStringList suggestions = m_session.suggestions();
    {
        const QSignalBlocker blocker(lstSuggestions);
        lstSuggestions->clear();
        lstSuggestions->addItems(suggestions);
        lstSuggestions->setCurrentRow(0);
    }
    txtChangeTo->setText(suggestions.value(0, m_session.word()));
    txtChangeTo->selectAll();
    enableChange();
}

void SpellingDialog::showContext()
{
    const SpellingContext context = m_session.context();
    QTextCharFormat misspelt;
    misspelt.setFontWeight(QFont::Bold);
    misspelt.setForeground(faultColour(txtContext->palette().color(QPalette::Base)));
    txtContext->clear();
    QTextCursor cursor = txtContext->textCursor();
    cursor.insertText(context.before, {});
    cursor.insertText(context.word, misspelt);
    const int wordEnd = cursor.position();
    cursor.insertText(context.after, {});
    cursor.setPosition(wordEnd);
    txtContext->setTextCursor(cursor);
    txtContext->ensureCursorVisible();
}

/// A word is not changed into nothing by mistake.
void SpellingDialog::enableChange()
{
    const bool given = !txtChangeTo->text().isEmpty();
    cmdChange->setEnabled(given);
    cmdChangeAll->setEnabled(given);
}

void SpellingDialog::goOn()
{
    if (m_session.finished())
        accept();
    else
        showWord();
}

void SpellingDialog::cmdChange_Click()
{
    m_session.change(txtChangeTo->text());
    goOn();
}

void SpellingDialog::cmdChangeAll_Click()
{
    m_session.changeAll(txtChangeTo->text());
    goOn();
}

void SpellingDialog::cmdIgnore_Click()
{
    m_session.ignore();
    goOn();
}

void SpellingDialog::cmdIgnoreAll_Click()
{
    m_session.ignoreAll();
    goOn();
}

void SpellingDialog::cmdAdd_Click()
{
    m_session.add();
    goOn();
}
