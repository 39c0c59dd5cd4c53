#include "app/ProjectOutput.h"

#include "app/ConsolePrompter.h"
#include "pagestore/Statements.h"
#include "platform/RunTimeError.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// The folder in which everything happens; it must be there before a hidden one can be made in it.
QString made(const Module1 &state, const QString &folder)
{
    state.FileSystem.createFolder(folder);
    return folder;
}
} // namespace

ProjectOutput::ProjectOutput(Module1 &state, Database &database, const QString &project,
                             const QString &folder, bool withPictures)
    : m_state(state), m_database(database), m_folder(made(state, folder)), m_withPictures(withPictures),
      m_work(FileSystem::join(folder, u".shotly-XXXXXX"_s)), m_databasePath(state.DatabasePath),
      m_connectionString(state.ConnectionString)
{
    if (!m_work.isValid())
        throw RunTimeError(RunTimeError::PermissionDenied,
                           u"Cannot write into the folder \"%1\": %2"_s.arg(folder, m_work.errorString()));
    m_pages = m_work.filePath(u"pages"_s);
    m_state.FileSystem.createFolder(m_pages);
    const QString copy = m_work.filePath(u"Shotly.mdb"_s);
    m_database.backUp(m_databasePath, copy);
    m_state.DatabasePath = copy;
    m_state.ConnectionString = QString(m_connectionString).replace(m_databasePath, copy);
    try {
        copyPictures(project);
    } catch (...) {
        m_state.DatabasePath = m_databasePath;
        m_state.ConnectionString = m_connectionString;
        throw;
    }
}

ProjectOutput::~ProjectOutput()
{
    m_state.DatabasePath = m_databasePath;
    m_state.ConnectionString = m_connectionString;
    // It holds copies of the user's work: to leave it there silently is not what was asked for.
    if (!m_work.remove())
        ConsolePrompter::complain(u"Cannot delete the folder \"%1\""_s.arg(m_work.path()));
}

void ProjectOutput::copyPictures(const QString &project)
{
    const std::unique_ptr<Connection> connection = m_database.open(m_state.ConnectionString);
    QStringList changes(Statements::moveProject(project, m_pages));
    const std::unique_ptr<Recordset> rows = connection->openRecordset(Statements::htmlDocumentPages(project));
    for (; m_withPictures && !rows->atEnd(); rows->moveNext()) {
        const QString picture = rows->field(u"ScreenShotFilePath"_s).toString().trimmed();
        if (picture.isEmpty())
            continue;
        const QString name = unusedName(FileSystem::bareName(picture));
        const QString copy = FileSystem::join(m_pages, name);
        if (m_state.FileSystem.fileExists(picture))
            m_state.FileSystem.copyFile(picture, copy);
        m_pictures += name;
        changes += Statements::setImagePath(rows->field(u"ID"_s).toLongLong(), copy);
    }
    connection->executeTogether(changes, {});
}

/// Pictures of different folders may have the same name, and pages are called after their pictures.
QString ProjectOutput::unusedName(const QString &name) const
{
    const QFileInfo parts(name);
    const auto taken = [this](const QString &base) {
        return std::ranges::any_of(m_pictures, [&base](const QString &other) {
            return QFileInfo(other).completeBaseName().compare(base, Qt::CaseInsensitive) == 0;
        });
    };
    QString base = parts.completeBaseName();
    for (int number = 2; taken(base); ++number)
        base = u"%1-%2"_s.arg(parts.completeBaseName()).arg(number);
    return parts.suffix().isEmpty() ? base : base + u'.' + parts.suffix();
}

void ProjectOutput::deliver()
{
    QStringList names = QDir(m_pages).entryList(QDir::Files | QDir::Hidden);
    // The page that leads to all others comes when they are there.
    std::stable_partition(names.begin(), names.end(),
                          [](const QString &name) { return name != "index.htm"_L1; });
    for (const QString &name : names)
        m_state.FileSystem.moveFile(FileSystem::join(m_pages, name), FileSystem::join(m_folder, name));
}
