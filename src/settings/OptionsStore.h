#pragma once

#include "settings/AppOptions.h"

#include <QString>

#include <functional>
#include <optional>
#include <span>
#include <variant>

/// The options file: one table of all keys, and what reads and writes them.
///
/// options.ini is a profile file with the sections "Options" and "HotKeys". Integers are stored as decimal
/// text, booleans as "True" or "False" (letter case ignored on reading, numbers accepted), texts as they
/// stand.
namespace OptionsStore
{
/// Where a key's value lives in AppOptions.
using Field = std::variant<std::int16_t *, bool *, QString *>;

/// One key of the options file.
struct Row {
    QString section;
    QString key;
    std::function<Field(AppOptions &)> field;
    QString fallback;             ///< value when the key is missing, in the file's form
    std::optional<QString> reset; ///< factory value; nothing for keys that a reset leaves alone
};

/// Every key, in the order in which they are read.
std::span<const Row> rows();

/// The row of a key. There must be one.
const Row &row(const QString &key);

/// Sets a field from its text in the file. A text that is no number where one is expected (16 bits, halves
/// rounded to even), or no boolean, takes the row's fallback.
void assign(AppOptions &options, const Row &row, const QString &text);

/// The field's value in the file's form.
QString textOf(const AppOptions &options, const Row &row);

/// The value of a key, cut at 255 characters; `fallback` when file, section or key is missing.
QString ReadIniValue(const QString &file, const QString &section, const QString &key,
                     const QString &fallback);

/// Writes one key; carriage returns and line feeds become blanks. Failures are ignored: a setting that could
/// not be kept holds until the program ends.
void WriteIniValue(const QString &file, const QString &section, const QString &key, const QString &value);

/// Reads every key of the table. A missing file gives the fallbacks.
AppOptions LoadOptions(const QString &file);

/// Writes every key but the project's name, which commands write on their own. The file is replaced as a
/// whole: a kill leaves the old or the new one. Throws RunTimeError when it cannot be read or written.
void SaveOptions(const QString &file, const AppOptions &options);

/// Sets `options` to the factory values and writes those; keys without one stay as they are. Throws like
/// SaveOptions(), with `options` changed already.
void ResetOptions(const QString &file, AppOptions &options);

// Single keys that commands write on their own.
void writeProjectName(const QString &file, const QString &name);
void writeBaseDirectory(const QString &file, const QString &directory);
} // namespace OptionsStore
