#include "capture/RunJournal.h"

#include "platform/AtomicFile.h"
#include "platform/FileSystem.h"
#include "platform/RunTimeError.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int version = 1;
constexpr int factCount = 10;
constexpr int shotFieldsBefore = 2; // number and hash

QByteArray record(const QJsonArray &fields)
{
    return QJsonDocument(fields).toJson(QJsonDocument::Compact);
}

QByteArray factsRecord(const RunFacts &facts)
{
    return record({version, facts.project, facts.snapshotDirectory, facts.pageDirectory, facts.pageNumberBase,
                   facts.bigPicSize, facts.borderColour, facts.insideColour, facts.systemMouseShape,
                   facts.date.toString(Qt::ISODate)});
}

std::optional<RunFacts> readFacts(const QByteArray &line)
{
    const QJsonArray fields = QJsonDocument::fromJson(line).array();
    if (fields.size() != factCount || fields[0].toInt() != version)
        return std::nullopt;
    return RunFacts{
        fields[1].toString(), fields[2].toString(), fields[3].toString(),
        fields[4].toInt(),    fields[5].toInt(),    fields[6].toInt(),
        fields[7].toInt(),    fields[8].toBool(),   QDate::fromString(fields[9].toString(), Qt::ISODate)};
}

QByteArray shotRecord(const RunShot &shot)
{
    QJsonArray fields{shot.number, QString::number(shot.hash, 16)};
    for (const QString &field : shot.entry)
        fields.append(field);
    return record(fields);
}

/// Snapshots are counted from 1 without a gap: no number is above that of the records.
std::optional<RunShot> readShot(const QByteArray &line, qsizetype records)
{
    const QJsonArray fields = QJsonDocument::fromJson(line).array();
    if (fields.size() != shotFieldsBefore + static_cast<int>(shotFieldCount) || fields[0].toInt() < 1 ||
        fields[0].toInt() > records)
        return std::nullopt;
    RunShot shot;
    shot.number = fields[0].toInt();
    shot.hash = fields[1].toString().toULongLong(nullptr, 16);
    for (std::size_t i = 0; i < shotFieldCount; ++i)
        shot.entry[i] = fields[shotFieldsBefore + static_cast<int>(i)].toString();
    return shot;
}
} // namespace

RunJournal::RunJournal(std::unique_ptr<JournalFile> file, RunFacts facts)
    : m_file(std::move(file)), m_facts(std::move(facts))
{
}

std::unique_ptr<RunJournal> RunJournal::begin(const QString &folder, const QDateTime &time,
                                              const RunFacts &facts)
{
    const QString name = u"run-%1.journal"_s.arg(time.toString(u"yyyyMMdd-HHmmss-zzz"_s));
    std::unique_ptr<RunJournal> journal(
        new RunJournal(JournalFile::create(FileSystem::join(folder, name)), facts));
    try {
        journal->m_file->append(factsRecord(facts));
    } catch (const RunTimeError &) {
        journal->remove();
        throw;
    }
    return journal;
}

std::unique_ptr<RunJournal> RunJournal::read(std::unique_ptr<JournalFile> file)
{
    const QList<QByteArray> records = file->records();
    const std::optional<RunFacts> facts = records.isEmpty() ? std::nullopt : readFacts(records.first());
    if (!facts)
        return nullptr;
    std::unique_ptr<RunJournal> journal(new RunJournal(std::move(file), *facts));
    for (const QByteArray &line : records) {
        if (const std::optional<RunShot> shot = readShot(line, records.size()))
            journal->m_shots.push_back(*shot);
    }
    return journal;
}

std::vector<std::unique_ptr<RunJournal>> RunJournal::abandoned(const QString &folder)
{
    std::vector<std::unique_ptr<RunJournal>> journals;
    QStringList names;
    try {
        names = FileSystem().filesMatching(folder, u"run-*.journal"_s);
    } catch (const RunTimeError &) {
        return journals; // no folder, no journals
    }
    if (!names.isEmpty())
        AtomicFile::removeLeftOvers(folder);
    for (const QString &name : std::as_const(names)) {
        std::unique_ptr<JournalFile> file = JournalFile::takeOver(FileSystem::join(folder, name));
        if (!file)
            continue;
        const QString path = file->path();
        const bool empty = file->records().isEmpty();
        std::unique_ptr<RunJournal> journal = read(std::move(file));
        if (journal)
            AtomicFile::removeLeftOvers(journal->facts().snapshotDirectory);
        if (journal && !journal->shots().empty())
            journals.push_back(std::move(journal));
        else if (journal || empty)
            FileSystem().deleteFile(path);
    }
    return journals;
}

void RunJournal::add(const RunShot &shot)
{
    m_file->append(shotRecord(shot));
    m_shots.push_back(shot);
}
