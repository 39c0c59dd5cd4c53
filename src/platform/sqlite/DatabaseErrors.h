#pragma once

/// Numbers of database failures that are not those of RunTimeError, as callers know them from the statement
/// dialect's own engine.
namespace DatabaseErrors
{
inline constexpr int noCurrentRow = 3021;        ///< before the first row, after the last one, or no row
inline constexpr int notNow = 3219;              ///< not while a change is pending
inline constexpr int noSuchField = 3265;         ///< a recordset has no column of that name or position
inline constexpr int syntaxError = -2147217900;  ///< also whatever else is wrong with a statement
inline constexpr int noSuchColumn = -2147217904; ///< a name that is no column, or a parameter without value
inline constexpr int noSuchTable = -2147217865;  ///< the file is a database, but a different one
inline constexpr int valueRefused = -2147217887; ///< a value that does not suit its column
inline constexpr int rowChanged = -2147217864;   ///< changed or deleted by somebody else since it was read
inline constexpr int constraintFailed = -2147217873; ///< a row that the table refuses
} // namespace DatabaseErrors
