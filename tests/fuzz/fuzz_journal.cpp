// Journals of capture runs: any bytes, and the bytes of a real one up to where they were cut off.

#include "fuzz/Fuzz.h"

#include "capture/RunJournal.h"

#include <QDir>

using namespace Qt::Literals::StringLiterals;

namespace
{
QString emptyFolder(const QString &name)
{
    const QString path = Fuzz::path(name);
    QDir(path).removeRecursively();
    Fuzz::require(QDir().mkpath(path), "there is a folder");
    return path;
}

/// A snapshot is one whole line of the file; the others count for nothing.
void readAny(const QByteArray &bytes)
{
    const QString folder = emptyFolder(u"any"_s);
    const QString path = folder + u"/run-20260203-040506-007.journal"_s;
    Fuzz::write(path, bytes);
    const auto journals = RunJournal::abandoned(folder);
    Fuzz::require(journals.size() <= 1, "a file is one journal");
    const qsizetype records = bytes.count('\n');
    if (journals.empty()) {
        // What cannot be read is left alone; without a record there is nothing that could be lost.
        Fuzz::require(QFile::exists(path) || records == 0 || bytes.trimmed().startsWith('['),
                      "no journal is lost");
        return;
    }
    const std::vector<RunShot> &shots = journals.front()->shots();
    Fuzz::require(static_cast<qsizetype>(shots.size()) <= records, "a snapshot is a whole line");
    for (const RunShot &shot : shots)
        Fuzz::require(shot.number >= 1 && shot.number <= records, "numbers are counted");
    Fuzz::require(Fuzz::read(path) == bytes, "reading changes nothing");
}

/// A run of snapshots whose fields are these texts, cut off somewhere.
void readCutOff(const QList<QByteArray> &texts, std::size_t place)
{
    const auto text = [&texts](qsizetype index) {
        return Fuzz::asStored(Fuzz::text(texts[index % texts.size()]));
    };
    RunFacts facts;
    facts.project = text(0);
    facts.pageDirectory = text(1);
    facts.date = QDate(2026, 2, 3);
    std::vector<RunShot> shots;
    const QString folder = emptyFolder(u"cut"_s);
    QString path;
    {
        const auto journal = RunJournal::begin(folder, QDateTime(facts.date, QTime(4, 5)), facts);
        path = journal->path();
        for (std::int32_t number = 1; number <= 3; ++number) {
            RunShot shot{number, {}, 0xfedcba9876543210U + static_cast<std::uint64_t>(number)};
            for (std::size_t field = 0; field < shotFieldCount; ++field)
                shot.entry[field] = text(static_cast<qsizetype>(field) + number);
            journal->add(shot);
            shots.push_back(shot);
        }
    }
    const QByteArray whole = Fuzz::read(path);
    Fuzz::require(whole.count('\n') == 4, "a record is a line");
    const QByteArray left =
        whole.first(static_cast<qsizetype>(place % (static_cast<std::size_t>(whole.size()) + 1)));
    Fuzz::write(path, left);
    const qsizetype records = left.count('\n');
    const auto journals = RunJournal::abandoned(folder);
    Fuzz::require(journals.size() == (records > 1 ? 1U : 0U), "what has a snapshot is a journal");
    if (journals.empty())
        return;
    shots.resize(static_cast<std::size_t>(records - 1));
    Fuzz::require(journals.front()->shots() == shots, "whole snapshots come back, and no others");
    Fuzz::require(journals.front()->facts() == facts, "the facts come back");
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    readAny(Fuzz::bytesOf(data, size));
    readCutOff(Fuzz::parts(data, size, 4), size * 31);
    return 0;
}
