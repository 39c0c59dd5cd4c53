#pragma once

struct sqlite3;

namespace LikeFunction
{
/// Replaces the LIKE operator of a connection (not LIKE with ESCAPE) by one that takes upper and lower case
/// of every alphabet for equal. "%" stands for any characters, also none, "_" for exactly one. Null with
/// anything is Null. Returns SQLite's result code.
int install(sqlite3 *database) noexcept;
} // namespace LikeFunction
