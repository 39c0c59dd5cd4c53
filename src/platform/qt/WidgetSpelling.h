#pragma once

#include "platform/linux/SpellingSession.h"
#include "platform/Spelling.h"

class FailureBox;

/// Spelling with the dictionary of this machine and a dialog over the active window. One object serves the
/// whole program run: what the user answers for all texts holds for the calls that follow.
class WidgetSpelling : public Spelling
{
public:
    /// `failures` must outlive this; it shows why a word could not be added.
    explicit WidgetSpelling(FailureBox &failures,
                            HunspellDictionary::Places places = HunspellDictionary::Places::ofThisMachine());

    bool installed() const override { return m_dictionary.installed(); }

    /// No dialog comes up where nothing is misspelt.
    QString correct(const QString &text) override;

    bool cancelled() const override { return m_cancelled; }

private:
    FailureBox &m_failures;
    HunspellDictionary m_dictionary;
    SpellingAnswers m_answers;
    bool m_cancelled = false;
};
