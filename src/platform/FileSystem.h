#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// Folders and files by path. The separator is "/". Patterns ("*.bmp") match file names of one folder
/// without regard to letter case; "*.*" and "*" match every name, also one without a dot. Failures throw
/// RunTimeError with the number of the platform's own (RunTimeError::Number) and a text that names the path.
///
/// A class without state: it exists so that the program-wide state can hand out one.
class FileSystem
{
public:
    bool folderExists(const QString &path) const;
    bool fileExists(const QString &path) const;

    /// Creates one folder; its parents too where they are missing. An existing folder is fine.
    void createFolder(const QString &path) const;

    /// Names (without folder) of the files that match, sorted by name without regard to letter case; hidden
    /// files too, folders not. A folder that is not there is a failure.
    QStringList filesMatching(const QString &folder, const QString &pattern) const;

    /// Copies one file, overwriting the target as a whole or not at all; times and permissions are not
    /// kept.
    void copyFile(const QString &source, const QString &target) const;
    /// Overwrites likewise; across file systems it is a copy and a deletion.
    void moveFile(const QString &source, const QString &target) const;
    /// Within one file system; nothing is ever copied. A new name that is taken is a failure.
    void renameFolder(const QString &from, const QString &to) const;
    /// A file that is not there is a failure.
    void deleteFile(const QString &path) const;

    /// Writes a whole file atomically.
    void writeFile(const QString &path, const QByteArray &bytes) const;

    /// Joins with one separator between.
    static QString join(const QString &folder, const QString &name);
    /// What follows the last separator.
    static QString bareName(const QString &path);
};
