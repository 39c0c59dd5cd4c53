#pragma once

#include <QString>

/// The spelling of texts, corrected together with the user.
class Spelling
{
public:
    virtual ~Spelling() = default;

    /// Is there a dictionary?
    virtual bool installed() const = 0;

    /// Asks about each misspelt word and returns the text as the user wants it; as it was when he cancels.
    virtual QString correct(const QString &text) = 0;
};
