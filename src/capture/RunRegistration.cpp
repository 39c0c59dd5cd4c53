#include "capture/RunRegistration.h"

#include "pagestore/Statements.h"
#include "platform/AtomicFile.h"
#include "platform/RunTimeError.h"
#include "state/BesideEvents.h"

#include <QHash>
#include <QSet>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// A name in `folder` that is free: "sh0001.bmp", else "sh0001-1.bmp" and so on.
QString freePath(const FileSystem &files, const QString &folder, const QString &name)
{
    QString path = FileSystem::join(folder, name);
    const qsizetype dot = name.lastIndexOf(u'.');
    for (int i = 1; files.fileExists(path); ++i)
        path = FileSystem::join(folder, name.left(dot) + u'-' + QString::number(i) + name.mid(dot));
    return path;
}

/// Which snapshots have their page, by one query for each project. Throws RunTimeError when the database does
/// not tell: that must not be taken for a No.
class RegisteredPages
{
public:
    explicit RegisteredPages(PageDatabase &database) : m_database(database) {}

    bool contains(const ShotEntry &shot)
    {
        const QString &project = shot[ShotProjectName];
        if (!m_paths.contains(project))
            m_paths.insert(project, pathsOf(project));
        return m_paths[project].contains(shot[ShotPath]);
    }

private:
    QSet<QString> pathsOf(const QString &project)
    {
        QSet<QString> paths;
        const auto rows = m_database.openRecordset(Statements::imagePaths(project));
        for (; !rows->atEnd(); rows->moveNext())
            paths.insert(rows->field(0).toString());
        return paths;
    }

    PageDatabase &m_database;
    QHash<QString, QSet<QString>> m_paths; ///< by project
};
struct MarkingResult {
    std::vector<std::size_t> drawn; ///< places in the list
    int failures = 0;
    QString reason; ///< of the first failure
    bool cancelled = false;
};

/// One snapshot that cannot be marked does not keep the others from it.
MarkingResult drawMarks(const std::vector<PointerMarks> &marks, const std::vector<RunShot> &shots,
                        WorkBesideEvents &work)
{
    MarkingResult result;
    for (std::size_t i = 0; i < marks.size(); ++i) {
        if (work.stop.stop_requested()) {
            result.cancelled = true;
            break;
        }
        try {
            if (marks[i].draw(shots[i].hash))
                result.drawn.push_back(i);
        } catch (const RunTimeError &error) {
            if (result.failures++ == 0)
                result.reason = error.description();
        }
        ++work.done;
    }
    return result;
}

QString withReason(const QString &text, const QString &reason)
{
    return reason.isEmpty() ? text : text + u"\r\n\r\n"_s + reason;
}
} // namespace

RunRegistration::RunRegistration(const Services &services) : m_services(services) {}

void RunRegistration::fillState(const RunJournal &journal)
{
    Module1 &state = m_services.state;
    state.PageNumberBase = journal.facts().pageNumberBase;
    state.ShotTable.clear();
    for (const RunShot &shot : journal.shots()) {
        const auto number = static_cast<std::size_t>(shot.number);
        if (state.ShotTable.size() <= number)
            state.ShotTable.resize(number + 1);
        state.ShotTable[number] = shot.entry;
    }
}

std::vector<ShotEntry> RunRegistration::withoutPage(const RunJournal &journal)
{
    RegisteredPages registered(m_services.database);
    std::vector<ShotEntry> missing;
    for (const RunShot &shot : journal.shots()) {
        if (!registered.contains(shot.entry))
            missing.push_back(shot.entry);
    }
    return missing;
}

bool RunRegistration::perform(RunJournal &journal)
{
    m_cancelled = false;
    fillState(journal);
    const auto [notMarked, markingFailure] = MarkAllShots(journal);
    const int notOnDisk = m_cancelled ? 0 : syncFiles(journal);
    std::size_t missing = journal.shots().size();
    QString registeringFailure;
    try {
        if (!m_cancelled)
            insertPages(journal.facts());
        missing = withoutPage(journal).size();
    } catch (const RunTimeError &error) {
        registeringFailure = error.description(); // no page that could be relied on
    }
    const QString title = m_services.state.AppTitle;
    if (notMarked > 0)
        m_services.prompter.tell(
            Question::SnapshotsNotMarked,
            {withReason(u"The pointer could not be drawn onto %1 of the snapshots."_s.arg(notMarked),
                        markingFailure),
             title, Icon::Exclamation});
    if (notOnDisk > 0)
        m_services.prompter.tell(
            Question::SnapshotsNotOnDisk,
            {u"The disk has failed to store %1 of the snapshots. Please look at them in\r\n%2\r\nand "
             "take those again that are damaged."_s.arg(notOnDisk)
                 .arg(journal.facts().snapshotDirectory),
             title, Icon::Exclamation});
    if (missing == 0) {
        journal.remove();
        return true;
    }
    m_services.prompter.tell(
        Question::PagesNotRegistered,
        {withReason(u"%1 of %2 snapshots are not pages yet. You will be asked about them "
                    "again after the next capture and when Shotly starts; their files are "
                    "in\r\n%3"_s.arg(missing)
                        .arg(journal.shots().size())
                        .arg(journal.facts().snapshotDirectory),
                    registeringFailure),
         title, Icon::Exclamation});
    return false;
}

std::pair<int, QString> RunRegistration::MarkAllShots(const RunJournal &journal)
{
    const RunFacts &facts = journal.facts();
    const MarkStyle style{facts.bigPicSize, PointerMarker::insideColour(facts.insideColour),
                          PointerMarker::borderColour(facts.borderColour), facts.systemMouseShape};
    ProgressScope progress(m_services.progress, u"Drawing the pointer"_s,
                           static_cast<int>(journal.shots().size()));
    std::vector<PointerMarks> marks;
    for (const RunShot &shot : journal.shots())
        marks.push_back(m_services.marker.marksOf(static_cast<std::size_t>(shot.number), style));
    const MarkingResult result = besideEvents(
        progress, [&](WorkBesideEvents &work) { return drawMarks(marks, journal.shots(), work); });
    for (const std::size_t i : result.drawn)
        m_services.state.ShotTable[static_cast<std::size_t>(journal.shots()[i].number)] = marks[i].entry;
    m_cancelled = result.cancelled;
    return {result.failures, result.reason};
}

/// A page never outlives its picture. The disk may take its time: the program answers meanwhile.
int RunRegistration::syncFiles(const RunJournal &journal)
{
    QStringList paths;
    for (const RunShot &shot : journal.shots())
        paths += shot.entry[ShotPath];
    ProgressScope progress(m_services.progress, u"Bringing the pictures to the disk"_s,
                           static_cast<int>(paths.size()));
    int failures = 0;
    m_cancelled = besideEvents(progress, [&](WorkBesideEvents &work) {
        for (const QString &path : paths) {
            if (work.stop.stop_requested())
                return true;
            if (!AtomicFile::syncFile(path))
                ++failures;
            ++work.done;
        }
        return false;
    });
    return failures;
}

/// All or none. The database may keep the program waiting: the window answers meanwhile.
void RunRegistration::insertPages(const RunFacts &facts)
{
    std::vector<ShotEntry> &shots = m_services.state.ShotTable;
    ProgressScope progress(m_services.progress, u"Registering the pages"_s, 0);
    RegisteredPages registered(m_services.database);
    QStringList statements;
    for (std::size_t i = 1; i < shots.size(); ++i) {
        ShotEntry &shot = shots[i];
        if (shot[ShotPath].isEmpty() || registered.contains(shot))
            continue;
        if (shot[ShotStatus].isEmpty())
            shot[ShotStatus] = u"OK"_s;
        statements += Statements::insertCapturedPage({shot[ShotProjectName], shot[ShotPath], shot[ShotStatus],
                                                      facts.pageNumberBase + static_cast<std::int32_t>(i),
                                                      facts.date, facts.pageDirectory});
    }
    const std::unique_ptr<Connection> connection = m_services.database.connect();
    besideEvents(progress,
                 [&](WorkBesideEvents &work) { return connection->executeTogether(statements, work.stop); });
}

bool RunRegistration::offer(RunJournal &journal)
{
    const std::vector<ShotEntry> missing = withoutPage(journal);
    if (missing.empty()) {
        journal.remove();
        return true;
    }
    const RunFacts &facts = journal.facts();
    const Answer answer = m_services.prompter.ask(
        Question::RegisterAbandonedRun, Buttons::YesNo,
        {u"A capture of the project %1 on %2 was interrupted. It has %3 snapshots that are not pages yet.\r\n"
         "\r\n"
         "Click Yes to make pages of them.\r\n"
         "Click No to set them aside in the folder\r\n%4/oldDocument"_s.arg(
             facts.project, facts.date.toString(u"MM/dd/yyyy"_s), QString::number(missing.size()),
             facts.snapshotDirectory),
         u"Unfinished capture: %1 snapshots"_s.arg(missing.size()), Icon::Question});
    if (answer == Answer::Yes)
        return perform(journal);
    setAside(journal, missing);
    return true;
}

void RunRegistration::setAside(RunJournal &journal, const std::vector<ShotEntry> &shots)
{
    const FileSystem &files = m_services.state.FileSystem;
    const QString folder = FileSystem::join(journal.facts().snapshotDirectory, u"oldDocument"_s);
    files.createFolder(folder);
    for (const ShotEntry &shot : shots) {
        const QString &path = shot[ShotPath];
        if (files.fileExists(path))
            files.moveFile(path, freePath(files, folder, FileSystem::bareName(path)));
    }
    journal.remove();
}

bool RunRegistration::offerAbandoned(const QString &project)
{
    const bool all = project.isEmpty();
    try {
        m_services.database.openRecordset(Statements::pageCount(project));
    } catch (const RunTimeError &) {
        // Whoever fills the project box or has just stopped a run tells why the database cannot be used.
        if (all)
            return false;
        throw;
    }
    bool offered = false;
    for (const std::unique_ptr<RunJournal> &journal :
         RunJournal::abandoned(m_services.state.ApplicationPath)) {
        if (!all && journal->facts().project.compare(project, Qt::CaseInsensitive) != 0)
            continue;
        offered = true;
        if (!offer(*journal) && !all)
            throw RunTimeError(
                RunTimeError::DatabaseError,
                u"An earlier capture of the project %1 still waits for its pages."_s.arg(project));
    }
    return offered;
}
