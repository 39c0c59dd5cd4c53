#include "platform/FileSystem.h"

#include "platform/AtomicFile.h"
#include "platform/linux/ExclusiveRename.h"
#include "platform/linux/SystemError.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <unistd.h>

namespace
{
using FoldedText = QList<uint>;

FoldedText folded(const QString &text)
{
    FoldedText codes = text.toUcs4();
    for (uint &code : codes)
        code = QChar::toCaseFolded(code);
    return codes;
}

/// "*" stands for any characters, also none, "?" for exactly one; every other character for itself.
bool matches(const FoldedText &name, const FoldedText &pattern)
{
    qsizetype inName = 0;
    qsizetype inPattern = 0;
    qsizetype lastStar = -1;
    qsizetype starCovers = 0;
    while (inName < name.size()) {
        if (inPattern < pattern.size() && pattern[inPattern] == U'*') {
            lastStar = inPattern++;
            starCovers = inName;
        } else if (inPattern < pattern.size() &&
                   (pattern[inPattern] == U'?' || pattern[inPattern] == name[inName])) {
            ++inPattern;
            ++inName;
        } else if (lastStar >= 0) {
            inPattern = lastStar + 1;
            inName = ++starCovers;
        } else {
            return false;
        }
    }
    return std::all_of(pattern.begin() + inPattern, pattern.end(), [](uint code) { return code == U'*'; });
}

std::filesystem::path nativePath(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

RunTimeError missingFileOr(int code, const QString &what)
{
    const RunTimeError error = systemError(code, what);
    return code == ENOENT ? RunTimeError(RunTimeError::FileNotFound, error.description()) : error;
}
} // namespace

bool FileSystem::folderExists(const QString &path) const
{
    return QFileInfo(path).isDir();
}

bool FileSystem::fileExists(const QString &path) const
{
    return QFileInfo(path).isFile();
}

void FileSystem::createFolder(const QString &path) const
{
    std::error_code error;
    std::filesystem::create_directories(nativePath(path), error);
    if (error)
        throw systemError(error.value(), QStringLiteral("Cannot create the folder \"%1\"").arg(path));
}

QStringList FileSystem::filesMatching(const QString &folder, const QString &pattern) const
{
    const FoldedText wanted = folded(pattern == QStringLiteral("*.*") ? QStringLiteral("*") : pattern);
    QStringList names;
    std::error_code error;
    std::filesystem::directory_iterator entry(nativePath(folder), error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        std::error_code noFile;
        if (!entry->is_regular_file(noFile))
            continue;
        const QString name = QFile::decodeName(entry->path().filename().c_str());
        if (matches(folded(name), wanted))
            names.append(name);
    }
    if (error)
        throw systemError(error.value(), QStringLiteral("Cannot read the folder \"%1\"").arg(folder));
    std::sort(names.begin(), names.end(), [](const QString &left, const QString &right) {
        const int order = left.compare(right, Qt::CaseInsensitive);
        return order != 0 ? order < 0 : left < right;
    });
    return names;
}

void FileSystem::copyFile(const QString &source, const QString &target) const
{
    AtomicFile::copy(source, target);
}

void FileSystem::moveFile(const QString &source, const QString &target) const
{
    if (std::rename(QFile::encodeName(source).constData(), QFile::encodeName(target).constData()) == 0)
        return;
    if (errno != EXDEV)
        throw missingFileOr(errno,
                            QStringLiteral("Cannot move the file \"%1\" to \"%2\"").arg(source, target));
    AtomicFile::copy(source, target);
    deleteFile(source);
}

void FileSystem::renameFolder(const QString &from, const QString &to) const
{
    const int code =
        folderExists(from) ? renameUnlessTaken(QFile::encodeName(from), QFile::encodeName(to)) : ENOENT;
    if (code != 0)
        throw systemError(code, QStringLiteral("Cannot rename the folder \"%1\" to \"%2\"").arg(from, to));
}

void FileSystem::deleteFile(const QString &path) const
{
    if (::unlink(QFile::encodeName(path).constData()) != 0)
        throw missingFileOr(errno, QStringLiteral("Cannot delete the file \"%1\"").arg(path));
}

void FileSystem::writeFile(const QString &path, const QByteArray &bytes) const
{
    AtomicFile::write(path, bytes);
}

QString FileSystem::join(const QString &folder, const QString &name)
{
    const bool separated = folder.isEmpty() || folder.endsWith(u'/');
    return separated ? folder + name : folder + u'/' + name;
}

QString FileSystem::bareName(const QString &path)
{
    return path.mid(path.lastIndexOf(u'/') + 1);
}
