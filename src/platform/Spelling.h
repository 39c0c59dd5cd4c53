#pragma once

#include <QString>

/// The spelling of texts, corrected together with the user.
class Spelling
{
public:
    virtual ~Spelling() = default;

    /// Is there a dictionary, of whatever language? Looked up anew each time until the first text is checked.
    virtual bool installed() const = 0;

    /// Asks about each misspelt word and returns the text as the user wants it; as it was when he cancels,
    /// when nothing is misspelt and when there is no dictionary. What he answers for all occurrences of a
    /// word holds for the texts that follow, too. Returns only when the user has finished; events are handled
    /// meanwhile.
    virtual QString correct(const QString &text) = 0;

    /// Has the user broken the last correct() off?
    virtual bool cancelled() const = 0;
};
