#pragma once

#include <QDialog>

class FailureBox;
class QLineEdit;
class QListWidget;
class QPushButton;
class QTextEdit;
class SpellingSession;

/// Asks about the misspelt words of one text, one after the other. It is accepted once the session has
/// finished, and rejected when the user has had enough; what then becomes of the text is the caller's matter.
///
/// The buttons take the focus from the keyboard only: whoever works with the mouse keeps typing in
/// txtChangeTo, and Return stays Change.
class SpellingDialog : public QDialog
{
    Q_OBJECT

public:
    /// `session` must not have finished. It and `failures`, which shows what could not be done, must outlive
    /// the dialog.
    SpellingDialog(SpellingSession &session, FailureBox &failures, QWidget *parent = nullptr);

private:
    void layOut();
    void connectControls();
    void showWord();
    void showContext();
    void enableChange();
    void goOn();

    void cmdChange_Click();
    void cmdChangeAll_Click();
    void cmdIgnore_Click();
    void cmdIgnoreAll_Click();
    void cmdAdd_Click();

    SpellingSession &m_session;
    FailureBox &m_failures;
    QTextEdit *txtContext;
    QLineEdit *txtChangeTo;
    QListWidget *lstSuggestions;
    QPushButton *cmdChange;
    QPushButton *cmdChangeAll;
    QPushButton *cmdIgnore;
    QPushButton *cmdIgnoreAll;
    QPushButton *cmdAdd;
    QPushButton *cmdCancel;
};
