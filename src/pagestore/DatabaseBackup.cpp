#include "pagestore/DatabaseBackup.h"

#include "platform/RunTimeError.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace
{
const char16_t *const databaseFiles = u"Database Files (*.mdb)|*.mdb";
}

DatabaseBackup::DatabaseBackup(const Services &services) : m_services(services) {}

QString DatabaseBackup::firstSource()
{
    const Module1 &state = m_services.state;
    const QString path = FileSystem::join(state.ApplicationPath, u"Shotly.mdb"_s);
    if (!state.FileSystem.fileExists(path))
        m_services.prompter.tell(
            Question::BackupSourceMissing,
            {u"Database %1\r\n does not exist, please select another one."_s.arg(path), state.AppTitle});
    return path;
}

std::optional<QString> DatabaseBackup::chooseSource(const QString &name)
{
    return m_services.prompter.openFile(
        Question::ChooseBackupSource,
        {u"Open"_s, m_services.state.ApplicationPath, name, QString::fromUtf16(databaseFiles)});
}

bool DatabaseBackup::save(const QString &source, const QString &name)
{
    const FileSystem &files = m_services.state.FileSystem;
    Prompter &prompter = m_services.prompter;
    if (name.trimmed().isEmpty()) {
        prompter.tell(Question::BackupNameMissing,
                      {u"Please enter a file name. The best file name \r\n"
                       "should combine the database name with today's date, such as Shotly_03212003."_s,
                       m_services.state.AppTitle});
        return false;
    }
    const std::optional<QString> target =
        prompter.saveFile(Question::ChooseBackupTarget, {u"Save As"_s, QDir::homePath(), name.trimmed(),
                                                         QString::fromUtf16(databaseFiles)});
    if (!target || target->isEmpty())
        return false;
    if (!files.fileExists(source)) {
        prompter.tell(Question::BackupSourceMissing,
                      {source + u" does not exist, please select another database."_s, u"File Exists"_s,
                       Icon::Exclamation});
        return false;
    }
    // A link that leads nowhere is in the way as well.
    if (QFileInfo::exists(*target) || QFileInfo(*target).isSymLink()) {
        prompter.tell(Question::BackupTargetExists,
                      {*target + u" is an existing file, please enter another file name."_s, u"File Exists"_s,
                       Icon::Exclamation});
        return false;
    }
    return copied(source, *target);
}

bool DatabaseBackup::copied(const QString &source, const QString &target)
{
    try {
        m_services.database.backUp(source, target);
    } catch (const RunTimeError &error) {
        m_services.prompter.tell(
            Question::BackupFailed,
            {u"Unable to copy the selected file to \r\n%1\r\n\r\n%2"_s.arg(target, error.description()),
             u"File Copy Failed"_s, Icon::Exclamation});
        return false;
    }
    m_services.prompter.tell(Question::BackupDone, {u"The file you selected copied to \r\n%1\r\n"
                                                    "But, remember, the best way to backup is copy\r\n"
                                                    "the file to a CD or DVD."_s.arg(target),
                                                    u"File Copy Done"_s});
    return true;
}
