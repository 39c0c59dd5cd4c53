#pragma once

#include "platform/Spelling.h"

#include <QStringList>

/// Spelling that replaces "teh" by "the" and remembers what it was asked about.
class FakeSpelling : public Spelling
{
public:
    bool present = true;
    QStringList checked;

    bool installed() const override { return present; }
    QString correct(const QString &text) override
    {
        checked += text;
        return QString(text).replace(QStringLiteral("teh"), QStringLiteral("the"));
    }
};
