#pragma once

#include <QString>

#include <span>

/// Profile (INI) files with the semantics of the Windows profile functions GetPrivateProfileString and
/// WritePrivateProfileString: sections and keys are found without regard to letter case; the first of equal
/// sections counts, and the first of equal keys in it; blanks round keys and values are dropped; one pair of
/// quotes round a value is taken off on reading; comments (";"), unknown keys and the order of lines stay
/// when a key is written. A line "[section" without its bracket begins no section.
///
/// A value that reading would shorten (blanks at its ends, quotes round it) is written between quotes, so
/// that it comes back whole. Line ends inside a value become blanks.
///
/// Files are UTF-8 here; lines that are not are read as Latin-1. Writing is atomic and keeps the file's line
/// ends (CR LF for a new one); all lines but the one of the key stay as they are, byte for byte.
namespace ProfileFile
{
/// The value, or `fallback` when file, section or key is missing.
QString read(const QString &path, const QString &section, const QString &key, const QString &fallback);

/// Sets one key, adding file, section and key as needed. Throws RunTimeError when the file cannot be
/// read or written.
void write(const QString &path, const QString &section, const QString &key, const QString &value);

struct Entry {
    QString section;
    QString key;
    QString value;
};
/// As if one key after the other were set, but the file is replaced once: it has all of them or none.
void write(const QString &path, std::span<const Entry> entries);
} // namespace ProfileFile
