#pragma once

#include <QString>

struct sqlite3;

namespace SqliteReason
{
/// Why SQLite has failed, for the end of a message: "the disk is full".
/// `code` is a result code, plain or extended; `database` is the connection it came from, or null where there
/// was no memory for one.
QString of(int code, sqlite3 *database);
} // namespace SqliteReason
