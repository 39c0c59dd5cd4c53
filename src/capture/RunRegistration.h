#pragma once

#include "capture/PointerMarker.h"
#include "capture/RunJournal.h"
#include "pagestore/PageDatabase.h"
#include "platform/Prompter.h"
#include "state/Progress.h"

#include <vector>

/// Makes pages of the snapshots of a run, from its journal: right after Stop, or later when the program did
/// not live to do it. Whatever interrupts it, doing it again does only what is left: a snapshot that does not
/// have the journalled bytes any more is not marked a second time, and a page that is there is not inserted
/// again.
///
/// Each step shows its progress and can be cancelled; events run meanwhile, so that the window answers.
class RunRegistration
{
public:
    struct Services {
        Module1 &state;
        Prompter &prompter;
        PageDatabase &database;
        PointerMarker &marker;
        Progress &progress;
    };

    explicit RunRegistration(const Services &services);

    /// Marks the snapshots, brings their bytes to the disk and inserts the pages in one transaction. When
    /// every snapshot has its page the journal is removed; otherwise it stays, and the user is told that and
    /// why. Fills ShotTable and PageNumberBase from the journal. True when the journal is gone.
    bool perform(RunJournal &journal);

    /// Asks what becomes of a run that was interrupted: its pages are made, or its snapshots are set aside
    /// into the folder "oldDocument". A run whose pages are all there already is not asked about. True when
    /// the journal is gone; throws RunTimeError when the database cannot be read.
    bool offer(RunJournal &journal);

    /// Offers every run in the application folder whose program has gone; while the database cannot be read
    /// they wait. True when there was one.
    ///
    /// With a project only that one's, before it is begun anew: throws RunTimeError then when the database
    /// cannot be read or a run still waits for its pages, as the new one would write over its snapshots.
    bool offerAbandoned(const QString &project = {});

private:
    void fillState(const RunJournal &journal);
    std::vector<ShotEntry> withoutPage(const RunJournal &journal);
    /// How many could not be marked, and why the first one could not.
    std::pair<int, QString> MarkAllShots(const RunJournal &journal);
    /// How many the disk has failed to store.
    int syncFiles(const RunJournal &journal);
    void insertPages(const RunFacts &facts);
    void setAside(RunJournal &journal, const std::vector<ShotEntry> &shots);

    Services m_services;
    bool m_cancelled = false;
};
