#include "platform/ProfileFile.h"

#include "platform/AtomicFile.h"
#include "platform/RunTimeError.h"

#include <QFile>

#include <algorithm>
#include <optional>
#include <unistd.h>
#include <vector>

namespace
{
/// One line of the file as it stands there; the pieces together are the file, byte for byte.
struct Line {
    QByteArray bytes;
    QByteArray end; // "\r\n", "\n", "\r", or nothing in the file's last line
};

/// What a line means. Neither name nor key: a comment, an empty line, or something unknown.
struct Meaning {
    std::optional<QString> section;
    std::optional<QString> key;
    QString beforeValue; // everything up to the value, "=" and blanks included
    std::optional<QString> value;
};

/// A key's place: the line of the key, or else the line after which it belongs.
struct Place {
    std::optional<std::size_t> section;
    std::optional<std::size_t> key;
    std::size_t lastKey = 0;
};

bool isBlank(QChar character)
{
    return character <= u' ';
}

QStringView withoutBlanks(QStringView text)
{
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text;
}

bool isQuoted(QStringView text)
{
    return text.size() >= 2 && text.front() == text.back() && (text.front() == u'"' || text.front() == u'\'');
}

bool sameName(QStringView left, QStringView right)
{
    return left.compare(withoutBlanks(right), Qt::CaseInsensitive) == 0;
}

std::vector<Line> splitLines(const QByteArray &file)
{
    std::vector<Line> lines;
    for (qsizetype start = 0; start < file.size();) {
        const auto *stop = std::find_if(file.cbegin() + start, file.cend(), [](char character) {
            return character == '\n' || character == '\r';
        });
        const qsizetype length = stop - (file.cbegin() + start);
        qsizetype endLength = stop == file.cend() ? 0 : 1;
        if (endLength == 1 && *stop == '\r' && stop + 1 != file.cend() && stop[1] == '\n')
            endLength = 2;
        lines.push_back({file.mid(start, length), file.mid(start + length, endLength)});
        start += length + endLength;
    }
    return lines;
}

Meaning meaningOf(const QByteArray &bytes)
{
    const QString line = bytes.isValidUtf8() ? QString::fromUtf8(bytes) : QString::fromLatin1(bytes);
    const QStringView text = withoutBlanks(line);
    Meaning meaning;
    if (text.isEmpty() || text.front() == u';')
        return meaning;
    if (text.front() == u'[') {
        const qsizetype bracket = text.indexOf(u']');
        if (bracket > 0) {
            meaning.section = withoutBlanks(text.sliced(1, bracket - 1)).toString();
            return meaning;
        }
    }
    const qsizetype equals = line.indexOf(u'=');
    if (equals < 0) {
        meaning.key = text.toString();
        meaning.beforeValue = line + u'=';
        return meaning;
    }
    meaning.key = withoutBlanks(QStringView(line).first(equals)).toString();
    QStringView value = withoutBlanks(QStringView(line).sliced(equals + 1));
    meaning.beforeValue = value.isEmpty() ? line : line.first(value.data() - line.constData());
    if (isQuoted(value))
        value = value.sliced(1, value.size() - 2);
    meaning.value = value.toString();
    return meaning;
}

/// The first section of the name is the only one that counts, and the first key of the name in it.
Place find(const std::vector<Line> &lines, const QString &section, const QString &key)
{
    Place place;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const Meaning meaning = meaningOf(lines[i].bytes);
        if (meaning.section) {
            if (place.section)
                break;
            if (sameName(*meaning.section, section)) {
                place.section = i;
                place.lastKey = i;
            }
        } else if (place.section && meaning.key) {
            place.lastKey = i;
            if (sameName(*meaning.key, key)) {
                place.key = i;
                break;
            }
        }
    }
    return place;
}

/// As it must stand in the file so that reading, which drops blanks and a pair of quotes, gives it back.
QString writtenValue(QString value)
{
    for (QChar &character : value) {
        if (character == u'\r' || character == u'\n' || character.isNull())
            character = u' ';
    }
    if (!value.isEmpty() && (isBlank(value.front()) || isBlank(value.back()) || isQuoted(value)))
        return u'"' + value + u'"';
    return value;
}

std::vector<Line> linesToChange(const QString &path)
{
    QFile file(path);
    if (file.open(QIODevice::ReadOnly)) {
        const QByteArray bytes = file.readAll();
        if (file.error() == QFileDevice::NoError)
            return splitLines(bytes);
    }
    // A file that is there but cannot be read must not be replaced by one with a single key.
    if (::access(QFile::encodeName(path).constData(), F_OK) == 0)
        throw RunTimeError(RunTimeError::PathAccess,
                           QStringLiteral("Cannot read the file \"%1\": %2").arg(path, file.errorString()));
    return {};
}

void setKey(std::vector<Line> &lines, const ProfileFile::Entry &entry)
{
    const QByteArray end =
        lines.empty() || lines.front().end.isEmpty() ? QByteArrayLiteral("\r\n") : lines.front().end;
    const auto insertAfter = [&lines, &end](std::size_t line, const QString &text) {
        if (lines[line].end.isEmpty())
            lines[line].end = end;
        lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(line) + 1, {text.toUtf8(), end});
    };

    const Place place = find(lines, entry.section, entry.key);
    const QString written = writtenValue(entry.value);
    const QString newLine = entry.key + u'=' + written;
    if (place.key) {
        QByteArray &bytes = lines[*place.key].bytes;
        bytes = (meaningOf(bytes).beforeValue + written).toUtf8();
    } else if (place.section) {
        insertAfter(place.lastKey, newLine);
    } else {
        if (!lines.empty() && lines.back().end.isEmpty())
            lines.back().end = end;
        lines.push_back({QStringLiteral("[%1]").arg(entry.section).toUtf8(), end});
        lines.push_back({newLine.toUtf8(), end});
    }
}
} // namespace

QString ProfileFile::read(const QString &path, const QString &section, const QString &key,
                          const QString &fallback)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return fallback;
    const std::vector<Line> lines = splitLines(file.readAll());
    const Place place = find(lines, section, key);
    if (!place.key)
        return fallback;
    return meaningOf(lines[*place.key].bytes).value.value_or(fallback);
}

void ProfileFile::write(const QString &path, const QString &section, const QString &key, const QString &value)
{
    const Entry entry{section, key, value};
    write(path, std::span(&entry, 1));
}

void ProfileFile::write(const QString &path, std::span<const Entry> entries)
{
    std::vector<Line> lines = linesToChange(path);
    for (const Entry &entry : entries)
        setKey(lines, entry);

    std::vector<QByteArrayView> pieces;
    pieces.reserve(lines.size() * 2);
    for (const Line &line : lines) {
        pieces.emplace_back(line.bytes);
        pieces.emplace_back(line.end);
    }
    AtomicFile::write(path, pieces, AtomicFile::Access::OwnerAlone);
}
