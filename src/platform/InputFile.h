#pragma once

#include "platform/FileDescriptor.h"

#include <QByteArray>
#include <QString>

/// A file that is read in pieces, one after the other, without a buffer in between.
class InputFile
{
public:
    /// Throws RunTimeError naming the file and the reason: FileNotFound when there is none.
    explicit InputFile(const QString &path);

    qint64 size() const noexcept { return m_size; } ///< when it was opened

    /// Reads the next `count` bytes, fewer only at the end of the file, and returns how many. Throws
    /// RunTimeError.
    qsizetype read(char *target, qsizetype count);

    /// What is there of the next `count` bytes, which may be less when the file is a pipe; 0 at its end.
    qsizetype readSome(char *target, qsizetype count);

    /// The whole file from its beginning, as far as it was there when it was opened. Throws RunTimeError.
    QByteArray readAll();

    /// The next piece begins at `offset`.
    void seek(qint64 offset);

    /// The open file, for somebody else to close. Nothing can be read here any more.
    FileDescriptor takeDescriptor() noexcept { return std::move(m_descriptor); }

private:
    [[noreturn]] void fail(int code) const;

    QString m_path;
    FileDescriptor m_descriptor;
    qint64 m_size = 0;
};
