#pragma once

#include <QProcess>
#include <QStringList>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/prctl.h>

/// An X server of the test's own, to which new connections go while this lives. Qt stays on its display.
class PrivateDisplay
{
public:
    explicit PrivateDisplay(const QStringList &arguments) : m_before(qgetenv("DISPLAY"))
    {
        m_server.setProcessChannelMode(QProcess::SeparateChannels);
        // It goes with a test that is killed, too.
        m_server.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
        m_server.start(QStringLiteral("Xvfb"),
                       QStringList{QStringLiteral("-displayfd"), QStringLiteral("1"),
                                   QStringLiteral("-noreset"), QStringLiteral("-screen"), QStringLiteral("0"),
                                   QStringLiteral("640x480x24")} +
                           arguments);
        while (!m_server.canReadLine() && m_server.waitForReadyRead(limit)) {
        }
        const QByteArray number = m_server.readLine().trimmed();
        EXPECT_FALSE(number.isEmpty()) << m_server.readAllStandardError().toStdString();
        qputenv("DISPLAY", ':' + number);
    }
    ~PrivateDisplay()
    {
        qputenv("DISPLAY", m_before);
        end();
    }

    void end()
    {
        m_server.kill();
        m_server.waitForFinished(limit);
    }

private:
    static constexpr int limit = 30000;
    QByteArray m_before;
    QProcess m_server;
};
