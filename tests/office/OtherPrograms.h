#pragma once

#include <gtest/gtest.h>

#include <QProcess>
#include <QStringList>

/// What a program prints; its options are separated by spaces, `files` follow them.
inline QByteArray printedBy(const char *command, const QStringList &files)
{
    QStringList arguments = QString::fromLatin1(command).split(u' ');
    QProcess process;
    const QString program = arguments.takeFirst();
    process.start(program, arguments + files);
    constexpr int longest = 120'000;
    EXPECT_TRUE(process.waitForFinished(longest) && process.exitCode() == 0)
        << command << ": " << process.readAllStandardError().constData();
    return process.readAllStandardOutput();
}
