#pragma once

#include "platform/RunTimeError.h"

#include <QFile>

#include <gtest/gtest.h>

#include <unistd.h>

/// All bytes of a file.
inline QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
}

inline void putFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    file.write(bytes);
}

/// The number of the RunTimeError that `action` throws; 0 when it throws none.
template <typename Action>
int errorOf(Action action)
{
    try {
        action();
    } catch (const RunTimeError &error) {
        return error.number();
    }
    return 0;
}

/// Permissions mean nothing to root: while it lives, the process is somebody else, who owns `folder`.
class OrdinaryUser
{
public:
    explicit OrdinaryUser(const QString &folder)
    {
        EXPECT_TRUE(!m_root || ::chown(QFile::encodeName(folder).constData(), nobody, nobody) == 0);
        EXPECT_TRUE(!m_root || ::setresuid(nobody, nobody, 0) == 0);
    }
    ~OrdinaryUser() { EXPECT_TRUE(!m_root || ::setresuid(0, 0, 0) == 0); }

private:
    static constexpr uid_t nobody = 65534;
    bool m_root = ::geteuid() == 0;
};
