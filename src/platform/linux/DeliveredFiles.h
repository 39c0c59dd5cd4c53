#pragma once

#include <QString>

/// The fixed files that the program brings along (help, cursors, sound, document template, an empty database)
/// and the user's copies of them.
///
/// The file delivered.list in the user's folder says what was copied there last: after a line with the state
/// of the installed folder, one line for each file, the hash of its bytes (ByteHash, 16 hexadecimal digits),
/// a space and its path. By it a copy that is as it was delivered is told from a file that the user has
/// changed or put there himself.
namespace DeliveredFiles
{
/// Brings the user's `folder` up to date with `installed`: what is missing is copied, throwing RunTimeError
/// where that fails. A copy that the user has left as it was becomes the installed file where the two differ;
/// should that fail, it stays until the next time. Everything else stays: files of the user's own, links,
/// files that a folder without a list has already, and always the database and the options.
void renew(const QString &folder, const QString &installed);
} // namespace DeliveredFiles
