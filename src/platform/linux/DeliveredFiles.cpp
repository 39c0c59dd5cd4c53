#include "platform/linux/DeliveredFiles.h"

#include "platform/AtomicFile.h"
#include "platform/ByteHash.h"
#include "platform/FileSystem.h"
#include "platform/InputFile.h"
#include "platform/RunTimeError.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMap>

#include <algorithm>
#include <optional>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace
{
const QString listName = u"delivered.list"_s;
constexpr int hashDigits = 16;

/// What the user works with is his, even while nothing is in it.
bool isTheUsers(const QString &name)
{
    return name == "Shotly.mdb"_L1 || name.endsWith(".ini"_L1);
}

QByteArray hexadecimal(const ByteHash &hash)
{
    return QByteArray::number(quint64{hash.value()}, 16).rightJustified(hashDigits, '0');
}

QByteArray hashOf(const QString &path)
{
    InputFile file(path);
    ByteHash hash;
    QByteArray piece(65536, Qt::Uninitialized);
    while (const qsizetype count = file.read(piece.data(), piece.size()))
        hash.add(QByteArrayView(piece).first(count));
    return hexadecimal(hash);
}

/// An installed file, by its path below the folder.
struct Delivered {
    QString name;
    QString path;
    qint64 size;
    qint64 changed; ///< milliseconds since 1970
};

/// Sorted by name.
std::vector<Delivered> filesOf(const QString &installed)
{
    std::vector<Delivered> found;
    const QDir folder(installed);
    QDirIterator files(installed, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        files.next();
        const QFileInfo info = files.fileInfo();
        const QString name = folder.relativeFilePath(info.filePath());
        if (name != listName)
            found.push_back({name, info.filePath(), info.size(), info.lastModified().toMSecsSinceEpoch()});
    }
    std::ranges::sort(found, {}, &Delivered::name);
    return found;
}

/// Changes with every installation that brings other files, without reading them.
QByteArray stateOf(const std::vector<Delivered> &files)
{
    ByteHash state;
    state.add(SHOTLY_VERSION);
    for (const Delivered &file : files)
        state.add(u"\n%1 %2 %3"_s.arg(file.name).arg(file.size).arg(file.changed).toUtf8());
    return hexadecimal(state);
}

/// What was delivered last. Lines that make no sense are left out: their files count as the user's then.
class DeliveryList
{
public:
    explicit DeliveryList(const QString &folder) : m_path(FileSystem::join(folder, listName))
    {
        QByteArrayList lines;
        try {
            lines = InputFile(m_path).readAll().split('\n');
        } catch (const RunTimeError &) {
            return; // there is none yet
        }
        m_state = lines.takeFirst();
        for (const QByteArray &line : lines) {
            if (line.size() > hashDigits + 1 && line[hashDigits] == ' ')
                m_hashes.insert(QString::fromUtf8(line.sliced(hashDigits + 1)), line.first(hashDigits));
        }
    }

    bool isAbout(const QByteArray &state) const { return m_state == state; }
    QByteArray hash(const QString &name) const { return m_hashes.value(name); }
    void set(const QString &name, const QByteArray &hash) { m_hashes.insert(name, hash); }

    void write(const QByteArray &state) const
    {
        QByteArray bytes = state + '\n';
        for (auto line = m_hashes.begin(); line != m_hashes.end(); ++line)
            bytes += line.value() + ' ' + line.key().toUtf8() + '\n';
        AtomicFile::write(m_path, bytes);
    }

private:
    QString m_path;
    QByteArray m_state;
    QMap<QString, QByteArray> m_hashes;
};

/// The hash of what of `file` has been delivered to `target` then; none where the file there is not ours.
std::optional<QByteArray> deliver(const Delivered &file, const QString &target, const QByteArray &before)
{
    const FileSystem files;
    if (!QFileInfo::exists(target)) {
        files.createFolder(QFileInfo(target).path());
        files.copyFile(file.path, target);
        if (isTheUsers(file.name)) // and nobody else's
            QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner);
        return hashOf(target);
    }
    if (isTheUsers(file.name) || QFileInfo(target).isSymLink())
        return std::nullopt;
    const QByteArray there = hashOf(target);
    if (there == hashOf(file.path))
        return there;
    if (there != before)
        return std::nullopt;
    files.copyFile(file.path, target);
    return hashOf(target); // an installation may be under way
}
} // namespace

void DeliveredFiles::renew(const QString &folder, const QString &installed)
{
    if (!QFileInfo::exists(folder)) {
        FileSystem().createFolder(folder);
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    const std::vector<Delivered> files = filesOf(installed);
    DeliveryList list(folder);
    const QByteArray state = stateOf(files);
    const bool changed = !list.isAbout(state);
    bool copied = false;
    bool all = true;
    for (const Delivered &file : files) {
        const QString target = FileSystem::join(folder, file.name);
        const bool missing = !QFileInfo::exists(target);
        if (!missing && !changed)
            continue;
        try {
            if (const auto hash = deliver(file, target, list.hash(file.name)))
                list.set(file.name, *hash);
            copied |= missing;
        } catch (const RunTimeError &) {
            if (missing)
                throw;
            all = false; // the older one will do for now
        }
    }
    if (!changed && !copied)
        return;
    try {
        list.write(all ? state : QByteArray());
    } catch (const RunTimeError &) {
        // A folder that cannot be written is complete all the same.
    }
}
