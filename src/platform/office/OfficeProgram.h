#pragma once

#include <QString>

#include <chrono>
#include <functional>
#include <stop_token>

/// What LibreOffice makes of a file. The names of filters are LibreOffice's own, the same in every language.
struct OfficeConversion {
    QString inputSuffix;  ///< without the dot
    QString inputFilter;  ///< empty: LibreOffice finds out what the file is
    QString outputSuffix; ///< without the dot
    QString outputFilter; ///< "MS Word 97"; options may follow after a colon
    QString failure = {}; ///< what messages begin with; empty: that the target cannot be written
};

/// LibreOffice, as a program that is started for every conversion and for every window. It gets profiles of
/// our own, so that neither a LibreOffice that the user has open nor the user's settings play a part.
///
/// Conversions and windows have a profile each: a conversion that met a window of the same profile would be
/// done by the window's process, which nobody may end when it takes too long.
///
/// Any thread may use it; it needs no event loop.
class OfficeProgram
{
public:
    static constexpr std::chrono::minutes usualLimit{10};

    /// `profiles` is the folder that the profiles lie in; it is made where it is missing. `program` is the
    /// executable; empty: $SHOTLY_SOFFICE, else "soffice" of the PATH, else of the usual folders. A
    /// conversion may take as long as `limit`.
    explicit OfficeProgram(const QString &profiles, const QString &program = {},
                           std::chrono::milliseconds limit = usualLimit);

    bool installed() const;
    const QString &profiles() const { return m_profiles; }

    /// Converts the file that `makeInput` writes under the path it is given, and puts the result into the
    /// place of `target`, atomically. One conversion runs at a time, also among several processes; the others
    /// wait.
    ///
    /// Throws RunTimeError: CannotCreateObject when LibreOffice is missing, UserInterrupt after a stop
    /// request, which kills it, WordFileNotWritten when it takes too long, dies or makes no file, and
    /// whatever the target or `makeInput` fail with. The target is as it was then.
    void convert(const OfficeConversion &conversion,
                 const std::function<void(const QString &path)> &makeInput, const QString &target,
                 const std::stop_token &stop) const;

    /// Opens a file in a window that outlives this process; one that has it open already comes to the front.
    /// With `rewritten` such a window would show what the file was before, and is left alone.
    ///
    /// Throws RunTimeError: WordFileMissing, CannotCreateObject when there is no LibreOffice or no display,
    /// PathAccess when there is such a window of a file that was rewritten.
    void show(const QString &path, bool rewritten) const;

private:
    QString executable() const; // throws CannotCreateObject

    QString m_profiles;
    QString m_program;
    std::chrono::milliseconds m_limit;
};
