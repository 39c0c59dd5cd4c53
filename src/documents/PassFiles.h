#pragma once

#include "platform/FileSystem.h"
#include "state/Progress.h"

#include <QByteArray>
#include <QHash>

#include <optional>

/// The files that one generation writes. Unless keep() was called, the destructor leaves the disk as it was:
/// new files go, overwritten ones have their old bytes again. Used by one thread at a time.
class WrittenFiles
{
public:
    explicit WrittenFiles(const FileSystem &files);
    ~WrittenFiles();
    WrittenFiles(const WrittenFiles &) = delete;
    WrittenFiles &operator=(const WrittenFiles &) = delete;

    /// Writes a whole file atomically. Throws RunTimeError when that fails or an existing one cannot be read.
    void write(const QString &path, QByteArrayView bytes);

    /// What the destructor does, while events run. False when an overwritten file could not be restored.
    bool undo(Progress &progress);

    void keep() noexcept { m_before.clear(); }

private:
    void remember(const QString &path);
    template <typename Done>
    bool restore(Done done);

    FileSystem m_files;
    QHash<QString, std::optional<QByteArray>> m_before; ///< by path; nothing for a file that was not there
};
