#pragma once

#include <QString>

#include <exception>

/// A failure that carries its reason to the person.
///
/// The platform layer throws it where a service of the machine fails; core functions throw it with a
/// description that names the file and the reason. Callers that can go on catch it close by; what nobody
/// catches ends up in the error box of the command that was running (see app/guarded.h).
class RunTimeError : public std::exception
{
public:
    /// Numbers of failures that several places raise or test for.
    enum Number : int {
        UserInterrupt = 18,    ///< the user stopped what was under way
        InvalidUseOfNull = 94, ///< a column that holds no value was read as text
        FileNotFound = 53,
        DiskFull = 61,
        PermissionDenied = 70,
        PathAccess = 75, ///< a path exists but cannot be read or written
        PathNotFound = 76,
        CannotCreateObject = 429,   ///< a program or component that is needed is not installed
        InvalidPicture = 481,       ///< a file that is no picture
        PrinterError = 482,         ///< nothing could be printed
        WordFileMissing = 4198,     ///< the word processor was asked to open a file that is not there
        WordFileNotWritten = 5155,  ///< a document or PDF could not be made
        DatabaseError = -2147467259 ///< the database cannot be opened, is locked or is damaged
    };

    RunTimeError(int number, const QString &description)
        : m_number(number), m_description(description), m_utf8(description.toUtf8())
    {
    }

    int number() const noexcept { return m_number; }
    const QString &description() const noexcept { return m_description; }
    const char *what() const noexcept override { return m_utf8.constData(); }

private:
    int m_number;
    QString m_description;
    QByteArray m_utf8;
};
