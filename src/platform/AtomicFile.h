#pragma once

#include "platform/FileDescriptor.h"

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
/// Who may read a file that was not there before.
enum class Access {
    AsTheUserCreates, ///< all that the user's mask allows
    OwnerAlone
};

/// A file of a temporary name that takes its place only when everything has been written to it; destroyed
/// before, it leaves nothing behind. Every function throws like write().
class Replacement
{
public:
    explicit Replacement(const QString &path, Access access = Access::AsTheUserCreates);
    ~Replacement();
    Replacement(const Replacement &) = delete;
    Replacement &operator=(const Replacement &) = delete;

    /// Tells how many bytes are going to be written, neither more nor fewer: large new files are written
    /// faster then.
    void expect(qint64 size) noexcept;

    void append(std::span<const QByteArrayView> pieces);
    void append(QByteArrayView bytes);
    void takeTheName();

private:
    int create();
    int openTemporary(unsigned mode);
    [[noreturn]] void fail(int code) const;

    QString m_path;
    Access m_access;
    QByteArray m_target;
    QByteArray m_temporary;
    bool m_replaces = false;
    FileDescriptor m_descriptor; ///< set by create(), after the others
};

/// Replaces or creates `path` with the pieces one after the other. Throws RunTimeError naming the file and
/// the reason; nothing is left behind then.
void write(const QString &path, std::span<const QByteArrayView> pieces,
           Access access = Access::AsTheUserCreates);
void write(const QString &path, QByteArrayView bytes);

/// Replaces or creates `target` with the bytes of the file `source`. Throws like write(); a source that is
/// missing or cannot be read leaves the target as it was.
void copy(const QString &source, const QString &target);

/// A name in `folder` (without a trailing separator) for a temporary file, which nobody can foresee and
/// removeLeftOvers() knows.
QString temporaryName(const QString &folder);

/// Deletes the temporary files in `folder` whose writers were killed; whatever fails is left for another
/// time.
void removeLeftOvers(const QString &folder);

/// Waits until the file's bytes and its name are on the disk. False when the disk says that it could not
/// store them; what it cannot be asked about counts as stored.
bool syncFile(const QString &path) noexcept;
} // namespace AtomicFile
