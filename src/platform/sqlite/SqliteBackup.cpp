#include "platform/sqlite/SqliteBackup.h"

#include "platform/AtomicFile.h"
#include "platform/FileSystem.h"
#include "platform/linux/ExclusiveRename.h"
#include "platform/linux/SystemError.h"
#include "platform/sqlite/SqliteDatabase.h"
#include "platform/sqlite/SqliteFile.h"
#include "platform/sqlite/SqliteReason.h"

#include <QFile>

#include <sqlite3.h>

using namespace Qt::Literals::StringLiterals;

namespace
{
using Handle = std::unique_ptr<sqlite3, SqliteCloser>;

struct BackupFinisher {
    void operator()(sqlite3_backup *backup) const noexcept { sqlite3_backup_finish(backup); }
};

/// A file beside the target that becomes it in the end; removed if it does not. Its name is one that
/// AtomicFile::removeLeftOvers() knows.
class UnfinishedCopy
{
public:
    explicit UnfinishedCopy(const QString &target) : m_target(target)
    {
        const qsizetype separator = target.lastIndexOf(u'/');
        const QString folder = separator < 0 ? u"."_s : target.left(separator);
        int descriptor = -1;
        do {
            m_path = AtomicFile::temporaryName(folder);
            descriptor =
                ::open(QFile::encodeName(m_path).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        } while (descriptor < 0 && (errno == EEXIST || errno == EINTR));
        if (descriptor < 0)
            fail(errno);
        ::close(descriptor);
    }
    ~UnfinishedCopy()
    {
        if (!m_finished)
            ::unlink(QFile::encodeName(m_path).constData());
    }
    UnfinishedCopy(const UnfinishedCopy &) = delete;
    UnfinishedCopy &operator=(const UnfinishedCopy &) = delete;

    const QString &path() const noexcept { return m_path; }
    const QString &target() const noexcept { return m_target; }

    void finish()
    {
        sync(); // the name must not outlive a power cut that the bytes do not
        if (const int code = renameUnlessTaken(QFile::encodeName(m_path), QFile::encodeName(m_target)))
            fail(code);
        m_finished = true;
        (void)AtomicFile::syncFile(m_target); // for the name; some file systems cannot
    }

    [[noreturn]] void fail(int code) const
    {
        throw systemError(code, u"Cannot write the file \"%1\""_s.arg(m_target));
    }

private:
    void sync() const
    {
        const int descriptor = ::open(QFile::encodeName(m_path).constData(), O_RDONLY | O_CLOEXEC);
        const int code = descriptor < 0 || ::fsync(descriptor) != 0 ? errno : 0;
        if (descriptor >= 0)
            ::close(descriptor);
        if (code != 0)
            fail(code);
    }

    QString m_target;
    QString m_path;
    bool m_finished = false;
};

[[noreturn]] void failToRead(const QString &source, int code, sqlite3 *database)
{
    throw RunTimeError(RunTimeError::DatabaseError, u"Cannot read the database file \"%1\": %2"_s.arg(
                                                        source, SqliteReason::of(code, database)));
}

[[noreturn]] void failToWrite(const QString &target, int code, sqlite3 *database)
{
    throw RunTimeError((code & 0xff) == SQLITE_FULL ? RunTimeError::DiskFull : RunTimeError::DatabaseError,
                       u"Cannot write the file \"%1\": %2"_s.arg(target, SqliteReason::of(code, database)));
}

int open(const QString &path, Handle &handle)
{
    sqlite3 *opened = nullptr;
    const int result = sqlite3_open_v2(path.toUtf8().constData(), &opened, SQLITE_OPEN_READWRITE, nullptr);
    handle.reset(opened);
    return result;
}

int run(const Handle &database, const char *statement)
{
    return sqlite3_exec(database.get(), statement, nullptr, nullptr, nullptr);
}

/// False when the source is no database of SQLite's. To open it in any other way would end the locks that
/// this process holds on it.
bool openSource(const QString &source, std::chrono::milliseconds patience, Handle &handle)
{
    int result = open(source, handle);
    if (result == SQLITE_OK) {
        sqlite3_busy_timeout(handle.get(), static_cast<int>(patience.count()));
        result = run(handle, "pragma schema_version");
    }
    if (result == SQLITE_NOTADB)
        return false;
    if (result != SQLITE_OK)
        failToRead(source, result, handle.get());
    return true;
}

void copyPages(const QString &source, const Handle &from, const UnfinishedCopy &copy)
{
    Handle to;
    int result = open(copy.path(), to);
    // Whatever fails, the whole file goes.
    if (result == SQLITE_OK)
        result = run(to, "pragma journal_mode = off; pragma synchronous = off");
    if (result != SQLITE_OK)
        failToWrite(copy.target(), result, to.get());
    std::unique_ptr<sqlite3_backup, BackupFinisher> backup(
        sqlite3_backup_init(to.get(), "main", from.get(), "main"));
    if (!backup)
        failToWrite(copy.target(), sqlite3_extended_errcode(to.get()), to.get());
    // All pages at once: between two steps others could write, and it would begin again.
    const int step = sqlite3_backup_step(backup.get(), -1);
    result = sqlite3_backup_finish(backup.release());
    const int kind = step & 0xff;
    if (kind == SQLITE_BUSY || kind == SQLITE_CORRUPT || step == SQLITE_IOERR_READ)
        failToRead(source, step, to.get());
    if (step != SQLITE_DONE || result != SQLITE_OK)
        failToWrite(copy.target(), step == SQLITE_DONE ? result : step, to.get());
    // A write-ahead log must lie beside its file, where a read-only medium has no place for it.
    result = run(to, "pragma journal_mode = delete");
    if (result != SQLITE_OK)
        failToWrite(copy.target(), result, to.get());
}
} // namespace

void SqliteBackup::copy(const QString &source, const QString &target, std::chrono::milliseconds patience)
{
    Handle from;
    const bool isDatabase = openSource(source, patience, from);
    UnfinishedCopy copy(target);
    if (isDatabase) {
        copyPages(source, from, copy);
    } else {
        from.reset();
        AtomicFile::copy(source, copy.path());
    }
    copy.finish();
}

void SqliteDatabase::backUp(const QString &source, const QString &target)
{
    SqliteBackup::copy(source, target, m_patience);
}
