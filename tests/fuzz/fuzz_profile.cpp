// Profile files: section, key, value, and whatever the file holds.

#include "fuzz/Fuzz.h"

#include "platform/ProfileFile.h"
#include "settings/OptionsStore.h"

#include <map>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// A name as the program uses them: nothing that means something in such a file.
QString name(const QByteArray &bytes, const QString &otherwise)
{
    QString kept;
    for (const QChar character : Fuzz::asStored(Fuzz::text(bytes)))
        if (character > u' ' && !u"[]=;\ufeff"_s.contains(character))
            kept += character;
    return kept.isEmpty() ? otherwise : kept;
}

using Name = std::pair<QString, QString>;

/// The file's sections and keys, roughly: names that are none do no harm.
std::map<Name, QString> valuesOf(const QString &path, const QByteArray &file)
{
    constexpr std::size_t enough = 12;
    std::map<Name, QString> values;
    QString section;
    for (const QByteArray &bytes : QByteArray(file).replace('\r', '\n').split('\n')) {
        const QString line =
            (bytes.isValidUtf8() ? QString::fromUtf8(bytes) : QString::fromLatin1(bytes)).trimmed();
        if (line.startsWith(u'['))
            section = line.mid(1).section(u']', 0, 0).trimmed();
        else if (values.size() < enough)
            values.try_emplace({section, line.section(u'=', 0, 0).trimmed()});
    }
    for (auto &[name, value] : values)
        value = ProfileFile::read(path, name.first, name.second, u"<missing>"_s);
    return values;
}

/// Names are found without regard to letter case and to blanks around them, which all controls are.
bool same(const Name &left, const Name &right)
{
    const auto bare = [](QString name) {
        while (!name.isEmpty() && name.back() <= u' ')
            name.chop(1);
        while (!name.isEmpty() && name.front() <= u' ')
            name.remove(0, 1);
        return name;
    };
    return bare(left.first).compare(bare(right.first), Qt::CaseInsensitive) == 0 &&
           bare(left.second).compare(bare(right.second), Qt::CaseInsensitive) == 0;
}

/// A value as the file can hold it.
QString stored(const QString &value)
{
    QString text = Fuzz::asStored(value);
    for (const char16_t mark : {u'\r', u'\n', u'\0'})
        text.replace(mark, u' ');
    return text;
}

/// All bytes of lines other than the one that was set are there, in their order.
void requireLinesKept(const QByteArray &before, const QByteArray &after)
{
    const auto lines = [](QByteArray file) { return file.replace('\r', '\n').split('\n'); };
    const QList<QByteArray> old = lines(before);
    const QList<QByteArray> now = lines(after);
    qsizetype first = 0;
    while (first < old.size() && first < now.size() && old[first] == now[first])
        ++first;
    qsizetype last = 0;
    while (last < old.size() - first && last < now.size() - first &&
           old[old.size() - 1 - last] == now[now.size() - 1 - last])
        ++last;
    Fuzz::require(old.size() - first - last <= 1, "at most one line has changed");
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QList<QByteArray> parts = Fuzz::parts(data, size, 4);
    const Name written(name(parts[0], u"Options"_s), name(parts[1], u"Key"_s));
    const QString value = Fuzz::text(parts[2]);
    const QString path = Fuzz::path(u"options.ini"_s);
    Fuzz::write(path, parts[3]);

    const std::map<Name, QString> before = valuesOf(path, parts[3]);
    ProfileFile::write(path, written.first, written.second, value);
    const QString expected = stored(value);
    Fuzz::require(ProfileFile::read(path, written.first, written.second, u"<missing>"_s) == expected,
                  "a value comes back");
    for (const auto &[name, old] : before)
        Fuzz::require(same(name, written) ||
                          ProfileFile::read(path, name.first, name.second, u"<missing>"_s) == old,
                      "another key is untouched");
    requireLinesKept(parts[3], Fuzz::read(path));

    if (size % 8 != 0)
        return 0; // what follows are many reads
    const AppOptions options = OptionsStore::LoadOptions(path);
    OptionsStore::SaveOptions(path, options);
    const AppOptions again = OptionsStore::LoadOptions(path);
    for (const OptionsStore::Row &row : OptionsStore::rows())
        Fuzz::require(stored(OptionsStore::textOf(again, row)) == stored(OptionsStore::textOf(options, row)),
                      "options that were read are written");
    return 0;
}
