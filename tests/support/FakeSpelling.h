#pragma once

#include "platform/Spelling.h"

#include <QStringList>

/// Spelling that replaces "teh" by "the" and remembers what it was asked about.
class FakeSpelling : public Spelling
{
public:
    bool present = true;
    QStringList checked;
    QString cancelAt; ///< the text at which the user breaks off

    bool installed() const override { return present; }
    QString correct(const QString &text) override
    {
        checked += text;
        if (cancelled())
            return text;
        return QString(text).replace(QStringLiteral("teh"), QStringLiteral("the"));
    }
    bool cancelled() const override { return !checked.isEmpty() && checked.last() == cancelAt; }
};
