#pragma once

#include "platform/RunTimeError.h"

#include <QString>

#include <cerrno>
#include <system_error>

/// The error for a system call that failed with `code` (a value of errno). `what` is the beginning of a
/// sentence that names the file, without a full stop: `Cannot write the file "/a/b"`.
inline RunTimeError systemError(int code, const QString &what)
{
    const QString text =
        what + QStringLiteral(": ") + QString::fromStdString(std::generic_category().message(code));
    switch (code) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return {RunTimeError::DiskFull, text};
    case EACCES:
    case EPERM:
    case EROFS:
        return {RunTimeError::PermissionDenied, text};
    case ENOENT:
    case ENOTDIR:
        return {RunTimeError::PathNotFound, text};
    default:
        return {RunTimeError::PathAccess, text};
    }
}
