#pragma once

#include <QByteArray>
#include <QString>

#include <span>

/// Writing whole files so that a kill at any moment leaves the old or the new one, never half a one: the
/// bytes go into a temporary file of the same folder, which then takes the name. Nothing waits for the disk;
/// callers that must outlast a power cut call syncFile() afterwards.
///
/// A replaced file keeps its permissions; a link stays, and what it leads to is replaced. A file that the
/// user may not write, a folder or a device under the name is refused.
namespace AtomicFile
{
/// Replaces or creates `path` with the pieces one after the other. Throws RunTimeError naming the file and
/// the reason; nothing is left behind then.
void write(const QString &path, std::span<const QByteArrayView> pieces);
void write(const QString &path, QByteArrayView bytes);

/// Replaces or creates `target` with the bytes of the file `source`. Throws like write(); a source that is
/// missing or cannot be read leaves the target as it was.
void copy(const QString &source, const QString &target);

/// Deletes the temporary files in `folder` whose writers were killed; whatever fails is left for another
/// time.
void removeLeftOvers(const QString &folder);

/// Waits until the file's bytes and its name are on the disk. False when that failed.
bool syncFile(const QString &path) noexcept;
} // namespace AtomicFile
