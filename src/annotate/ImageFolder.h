#pragma once

#include <QString>
#include <QStringList>

#include <span>
#include <vector>

/// What the viewer's lists show: drives, folders and picture files. Paths are absolute and clean.
namespace ImageFolder
{
/// Patterns of the file list, joined with ";".
inline constexpr const char16_t *patterns = u"*.bmp;*.jpg;*.gif;*.ico;*.jpe;*.jpeg;*.cur;*.wmf;*.emf";

struct Drive {
    QString path;
    QString label; ///< how the list names it
};

/// The root, the home folder and the mounted volumes of disks and networks.
std::vector<Drive> drives();
/// The drive of the list that `path` lies on: the one with the longest path that holds it; -1 when none.
int driveOf(std::span<const Drive> drives, const QString &path);

/// The picture files of a folder: names in natural order ("shot2" before "shot10"), hidden files left out.
/// Throws RunTimeError when the folder cannot be read.
QStringList files(const QString &folder);

/// One row of the folder list.
struct Row {
    QString path;
    QString name;
    int depth; ///< 0 for the root
    bool open; ///< the shown folder, or one that it lies in
};
/// The folders that `folder` lies in, itself, and the folders in it, in natural order. Folders that cannot
/// be read have none.
std::vector<Row> rows(const QString &folder);

/// The index of the first entry whose trimmed text equals the trimmed `name`, letter case ignored; -1 when
/// none does.
int searchListBox(const QStringList &list, const QString &name);

/// The path that was given on the command line, in double quotes or not; it may be relative to the current
/// directory.
QString pathOfArgument(const QString &argument);
} // namespace ImageFolder
