#pragma once

#include "platform/ExternalPrograms.h"

#include <QStringList>

/// Remembers what was to be opened.
class FakePrograms : public ExternalPrograms
{
public:
    QStringList opened;
    QStringList painted; ///< program and picture, joined with a blank

    int informed = 0;

    void openWithDesktop(const QString &path) override { opened += path; }
    void paint(const QString &program, const QString &picturePath) override
    {
        painted += program + QLatin1Char(' ') + picturePath;
    }
    void showSystemInformation() override { ++informed; }
};
