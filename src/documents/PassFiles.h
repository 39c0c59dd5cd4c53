#pragma once

#include "platform/FileSystem.h"

#include <QByteArray>
#include <QHash>
#include <QStringList>

#include <optional>

/// The files that one generation writes. Unless keep() was called, the destructor leaves the disk as it was:
/// new files go, overwritten ones have their old bytes again.
class WrittenFiles
{
public:
    explicit WrittenFiles(const FileSystem &files);
    ~WrittenFiles();
    WrittenFiles(const WrittenFiles &) = delete;
    WrittenFiles &operator=(const WrittenFiles &) = delete;

    /// To be called before a file is written. Throws RunTimeError when an existing one cannot be read.
    void aboutToWrite(const QString &path);

    void keep() noexcept { m_kept = true; }

private:
    FileSystem m_files;
    QHash<QString, std::optional<QByteArray>> m_before; ///< by path; nothing for a file that was not there
    bool m_kept = false;
};

/// The pages that lie in a project directory when a generation begins, and the way back for those that are
/// moved away by it.
class PreviousPages
{
public:
    /// `directory` is searched now; one that cannot be read has no pages.
    PreviousPages(const FileSystem &files, const QString &directory, const QString &oldDocumentFolder);

    /// Moves the pages back that are no longer in the directory. False when one could not be.
    bool putBack() const;

private:
    FileSystem m_files;
    QString m_directory;
    QString m_oldDocumentFolder;
    QStringList m_names;
};
