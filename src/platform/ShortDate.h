#pragma once

#include <QDate>
#include <QString>

#include <optional>

/// The date texts that the user sees and types: mm/dd/yyyy in every locale, so that a stored day never
/// depends on one.
namespace ShortDate
{
QString toText(QDate date);

/// Reads mm/dd/yyyy, also with one digit for month or day and with two for the year (00 to 29 are 2000 to
/// 2029, the others 19xx). Nothing for any other text and for days that the calendar lacks.
std::optional<QDate> fromText(const QString &text);
} // namespace ShortDate
