#pragma once

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QString>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// What the programs for libFuzzer share.
namespace Fuzz
{
/// Ends the program, which makes the input a finding.
inline void require(bool condition, const char *what)
{
    if (condition)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

inline QByteArray bytesOf(const std::uint8_t *data, std::size_t size)
{
    return {reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)};
}

/// The parts of an input: 0xff, which no UTF-8 holds, ends each but the last. There are always `count`.
inline QList<QByteArray> parts(const std::uint8_t *data, std::size_t size, qsizetype count)
{
    QByteArray rest = bytesOf(data, size);
    QList<QByteArray> list;
    while (list.size() < count - 1) {
        const qsizetype end = rest.indexOf('\xff');
        list += end < 0 ? rest : rest.first(end);
        rest = end < 0 ? QByteArray() : rest.sliced(end + 1);
    }
    return list += rest;
}

/// Any text: UTF-8, in which U+E000 and U+E001 stand for the halves of a surrogate pair.
inline QString text(const QByteArray &bytes)
{
    return QString::fromUtf8(bytes)
        .replace(QChar(0xe000), QChar(0xd834))
        .replace(QChar(0xe001), QChar(0xdd1e));
}

/// What is left of a text in UTF-8: halves of pairs are not.
inline QString asStored(const QString &text)
{
    return QString::fromUtf8(text.toUtf8());
}

/// A folder of the process, below TMPDIR.
inline QString path(const QString &name)
{
    static const QTemporaryDir folder;
    require(folder.isValid(), "there is a temporary folder");
    return folder.filePath(name);
}

inline void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(), "an input can be written");
}

inline QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
} // namespace Fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);
