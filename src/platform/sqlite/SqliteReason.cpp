#include "platform/sqlite/SqliteReason.h"

#include <sqlite3.h>
#include <system_error>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// The connection's own words, where they are about this failure.
QString messageOf(int code, sqlite3 *database)
{
    const bool known = database != nullptr && (sqlite3_errcode(database) & 0xff) == (code & 0xff);
    return QString::fromUtf8(known ? sqlite3_errmsg(database) : sqlite3_errstr(code));
}
} // namespace

QString SqliteReason::of(int code, sqlite3 *database)
{
    switch (code & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return u"another program has locked it"_s;
    case SQLITE_READONLY:
        return u"it is write-protected"_s;
    case SQLITE_FULL:
        return u"the disk is full"_s;
    case SQLITE_NOTADB:
        return u"it is not a database"_s;
    case SQLITE_CORRUPT:
        return u"it is damaged"_s;
    case SQLITE_CANTOPEN:
    case SQLITE_IOERR:
        if (const int system = database != nullptr ? sqlite3_system_errno(database) : 0)
            return QString::fromStdString(std::generic_category().message(system));
        break;
    default:
        break;
    }
    return messageOf(code, database);
}
