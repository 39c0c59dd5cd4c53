#pragma once

#include <QString>

namespace StatementTranslator
{
/// The statement in SQLite's words. Outside text the following is changed, everything else stays:
///
/// - "text" (a quote inside is written twice) becomes 'text',
/// - #mm/dd/yyyy# and #mm-dd-yyyy# become 'yyyy-mm-dd',
/// - [name] becomes "name", always an identifier,
/// - a leading "select top n" becomes "limit n" at the end, in the order of ID where the statement itself
///   asks for no order at its outermost level.
///
/// Throws RunTimeError (DatabaseErrors::syntaxError) for text, a name or a date without end, a date that the
/// calendar lacks, and a character 0 outside text.
QString translate(const QString &statement);

/// Does the statement ask for an order at its outermost level?
bool isOrdered(const QString &statement);
} // namespace StatementTranslator
