#pragma once

#include <QByteArray>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

/// Gives a file or a folder another name of the same file system, unless that name is taken. Returns the
/// errno of the failure, 0 for none.
inline int renameUnlessTaken(const QByteArray &from, const QByteArray &to) noexcept
{
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    // Some file systems do not know this call, and some of those no second name of a file either.
    if (::link(from.constData(), to.constData()) == 0) {
        ::unlink(from.constData());
        return 0;
    }
    struct stat status = {};
    if (::lstat(to.constData(), &status) == 0)
        return EEXIST;
    return ::rename(from.constData(), to.constData()) == 0 ? 0 : errno;
}
