#pragma once

#include "platform/FileSystem.h"

#include <QString>

#include <vector>

/// Files that others write during one generation. A file that is in the way waits under another name beside
/// its old one. Unless keep() was called, the destructor leaves the folder as it was; after a kill the old
/// file is still there under its other name.
class ReplacedFiles
{
public:
    explicit ReplacedFiles(const FileSystem &files) : m_files(files) {}
    ~ReplacedFiles() { undo(); }
    ReplacedFiles(const ReplacedFiles &) = delete;
    ReplacedFiles &operator=(const ReplacedFiles &) = delete;

    /// There is no file of this path then, not even one that may only be read; whatever is written there is
    /// the generation's. Throws RunTimeError when the old file cannot be moved.
    void makeRoom(const QString &path);

    /// What the destructor does. False when an old file could not be put back.
    bool undo();

    /// The new files stay and the old ones go, also those of earlier generations that could not be removed or
    /// were killed.
    void keep();

private:
    struct Replaced {
        QString path;
        QString old; ///< where the old file waits; empty: there was none
    };
    FileSystem m_files;
    std::vector<Replaced> m_replaced;
};
