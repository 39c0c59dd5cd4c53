// Statements: whatever is asked, and texts between the words of the program's own statements.

#include "fuzz/Fuzz.h"

#include "pagestore/Statements.h"
#include "platform/RunTimeError.h"
#include "platform/sqlite/SqliteFile.h"
#include "platform/sqlite/SqliteRecordset.h"
#include "platform/sqlite/StatementTranslator.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
std::shared_ptr<SqliteFile> openPages(const QString &name)
{
    const QString path = Fuzz::path(name);
    Fuzz::require(QFile::copy(QStringLiteral(SHOTLY_DELIVERED_DIR "/Shotly.mdb"), path),
                  "there is a database");
    return std::make_shared<SqliteFile>(path, std::chrono::milliseconds(1));
}

/// May be refused, no more; statements that would change the whole process are not prepared.
void prepareAny(const QString &statement)
{
    static const std::shared_ptr<SqliteFile> file = openPages(u"any.mdb"_s);
    try {
        const QString translated = StatementTranslator::translate(statement);
        Fuzz::require(!translated.contains(QChar(0)), "a translated statement holds no character 0");
        StatementTranslator::isOrdered(statement);
        if (!translated.contains(u"pragma"_s, Qt::CaseInsensitive))
            file->prepare(translated);
    } catch (const RunTimeError &) {
    }
}

class Pages
{
public:
    Pages() { m_file->beginTransaction(); }
    ~Pages() { m_file->rollBackTransaction(); }
    Pages(const Pages &) = delete;
    Pages &operator=(const Pages &) = delete;

    void run(const QString &statement) { m_file->run(StatementTranslator::translate(statement)); }
    SqliteRecordset rows(const QString &statement)
    {
        return {m_file, StatementTranslator::translate(statement), SqliteRecordset::Reading::Now};
    }
    QString value(const QString &statement) { return rows(statement).field(0).toString(); }

private:
    inline static const std::shared_ptr<SqliteFile> m_file = openPages(u"pages.mdb"_s);
};
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QList<QByteArray> parts = Fuzz::parts(data, size, 5);
    prepareAny(Fuzz::text(parts[4]));

    const auto stored = [&parts](int index) { return Fuzz::asStored(Fuzz::text(parts[index])); };
    const QString other = u"another"_s;
    Pages pages;
    pages.run(Statements::insertCapturedPage(
        {other, other, u"OK"_s, 1, QDate(2026, 2, 3), other})); // what must stay as it is
    pages.run(
        Statements::insertCapturedPage({Fuzz::text(parts[0]), Fuzz::text(parts[1]), Fuzz::text(parts[2]), 7,
                                        QDate(2026, 3, 21), Fuzz::text(parts[3])}));
    SqliteRecordset row = pages.rows(u"select top 1 * from PageData order by ID desc"_s);
    Fuzz::require(row.field(u"ProjectName"_s).toString() == stored(0), "the project comes back");
    Fuzz::require(row.field(u"ScreenShotFilePath"_s).toString() == stored(1), "the picture comes back");
    Fuzz::require(row.field(u"PageStatus"_s).toString() == stored(2), "the status comes back");
    Fuzz::require(row.field(u"ProjectDirectory"_s).toString() == stored(3), "the folder comes back");
    Fuzz::require(row.field(u"Date"_s).toDate() == QDate(2026, 3, 21), "the date comes back");

    const int same = stored(0).compare(other, Qt::CaseInsensitive) == 0 ? 2 : 1; // as projects are told apart
    Fuzz::require(pages.value(Statements::pageCount(Fuzz::text(parts[0]))).toInt() == same,
                  "the project is found");
    const qint64 id = row.field(u"ID"_s).toLongLong();
    pages.run(Statements::setHtmlPath(id, Fuzz::text(parts[3])));
    Fuzz::require(pages.value(Statements::htmlPath(id)) == stored(3), "a path that was set comes back");
    for (const bool either : {false, true})
        pages.rows(Statements::foundPages(either, Fuzz::text(parts[0]), Fuzz::text(parts[1])));
    // Texts of a database that somebody else has written need not be UTF-8.
    const auto raw = [&parts](int index) {
        return u"cast(x'"_s + QString::fromLatin1(parts[index].toHex()) + u"' as text)"_s;
    };
    pages.value(u"select "_s + raw(0) + u" like "_s + raw(1));
    Fuzz::require(pages.value(u"select "_s + raw(2) + u" like \"%\" || "_s + raw(2)).toInt() == 1,
                  "a text is like itself");
    pages.run(Statements::moveProject(Fuzz::text(parts[0]), Fuzz::text(parts[2])));
    pages.run(Statements::deleteProject(Fuzz::text(parts[0])));
    Fuzz::require(pages.value(Statements::pageCount(other)).toInt() == (same == 2 ? 0 : 1),
                  "only what is named goes");
    return 0;
}
