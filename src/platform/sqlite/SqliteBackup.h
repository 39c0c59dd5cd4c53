#pragma once

#include <QString>

#include <chrono>

/// Copies of database files through SQLite's own backup, which sees the file as it is at one moment.
namespace SqliteBackup
{
/// See Database::backUp(). A lock of somebody else is waited for as long as `patience`. Meanwhile others can
/// read the source, and write to it, but not end a transaction: they wait.
void copy(const QString &source, const QString &target, std::chrono::milliseconds patience);
} // namespace SqliteBackup
