#pragma once

#include "platform/JournalFile.h"
#include "state/Module1.h"

#include <QDate>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

/// What the marking and registering of a run's snapshots depends on, beside the snapshots.
struct RunFacts {
    QString project;
    QString snapshotDirectory; ///< where the files are
    QString pageDirectory;     ///< the directory that the pages carry
    std::int32_t pageNumberBase = 0;
    int bigPicSize = 100; ///< percent
    int borderColour = 0; ///< values of the options
    int insideColour = 0;
    bool systemMouseShape = false;
    QDate date;

    friend bool operator==(const RunFacts &, const RunFacts &) = default;
};

/// One snapshot of a run.
struct RunShot {
    std::int32_t number = 0; ///< from 1
    ShotEntry entry;         ///< positions unscaled
    std::uint64_t hash = 0;  ///< of the file as it was taken (XXH3, 64 bits)

    friend bool operator==(const RunShot &, const RunShot &) = default;
};

/// The journal of a capture run: a file of the application folder that holds all that is needed to make pages
/// of the snapshots, should the program not live to do it. The first record holds the facts of the run; each
/// snapshot adds one, after its file is in place and before the next event is handled. Locked while the run
/// lives. Records are JSON arrays, one to a line.
class RunJournal
{
public:
    /// Begins a journal; throws RunTimeError when it cannot be written.
    static std::unique_ptr<RunJournal> begin(const QString &folder, const QDateTime &time,
                                             const RunFacts &facts);

    /// The journals of runs whose program has gone, oldest first. Ones without a snapshot are removed on the
    /// way, and files that the programs had not finished writing; one that cannot be read is left alone.
    static std::vector<std::unique_ptr<RunJournal>> abandoned(const QString &folder);

    const RunFacts &facts() const { return m_facts; }
    const std::vector<RunShot> &shots() const { return m_shots; }
    const QString &path() const { return m_file->path(); }

    /// Throws RunTimeError when the record cannot be written; the snapshot does not count then.
    void add(const RunShot &shot);

    /// All pages are registered: the journal goes.
    void remove() { m_file->remove(); }

private:
    RunJournal(std::unique_ptr<JournalFile> file, RunFacts facts);
    static std::unique_ptr<RunJournal> read(std::unique_ptr<JournalFile> file);

    std::unique_ptr<JournalFile> m_file;
    RunFacts m_facts;
    std::vector<RunShot> m_shots;
};
