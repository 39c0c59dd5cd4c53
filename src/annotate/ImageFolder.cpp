#include "annotate/ImageFolder.h"

#include "platform/FileSystem.h"

#include <QCollator>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QStorageInfo>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// Numbers in names count as numbers, letter case decides last.
class NaturalOrder
{
public:
    NaturalOrder()
    {
        m_collator.setNumericMode(true);
        m_collator.setCaseSensitivity(Qt::CaseInsensitive);
    }
    bool operator()(const QString &a, const QString &b) const
    {
        const int order = m_collator.compare(a, b);
        return order != 0 ? order < 0 : a < b;
    }

private:
    QCollator m_collator{QLocale(QLocale::English)};
};

bool isPicture(const QString &name)
{
    // Every pattern is "*" and a suffix.
    static const QStringList suffixes = QString::fromUtf16(ImageFolder::patterns).remove(u'*').split(u';');
    return std::ranges::any_of(
        suffixes, [&](const QString &suffix) { return name.endsWith(suffix, Qt::CaseInsensitive); });
}

/// Volumes that a user has put there: no system folders, no memory file systems.
bool isUserVolume(const QStorageInfo &volume)
{
    static const QStringList networks{u"nfs"_s, u"nfs4"_s, u"cifs"_s, u"smb3"_s, u"fuse.sshfs"_s};
    const QString path = volume.rootPath();
    const bool systemPath = path.startsWith("/boot"_L1) || path.startsWith("/snap"_L1) ||
                            path.startsWith("/etc/"_L1) ||
                            (path.startsWith("/run/"_L1) && !path.startsWith("/run/media/"_L1));
    if (!volume.isValid() || !volume.isReady() || systemPath || !QFileInfo(path).isDir())
        return false;
    return volume.device().startsWith("/dev/") ||
           networks.contains(QString::fromLatin1(volume.fileSystemType()));
}

bool holds(const QString &folder, const QString &path)
{
    return folder == u"/"_s || path == folder || path.startsWith(folder + u'/');
}
} // namespace

std::vector<ImageFolder::Drive> ImageFolder::drives()
{
    std::vector<Drive> list{{u"/"_s, u"/ (File system)"_s},
                            {QDir::homePath(), QDir::homePath() + u" (Home)"_s}};
    for (const QStorageInfo &volume : QStorageInfo::mountedVolumes()) {
        const QString path = volume.rootPath();
        if (!isUserVolume(volume) ||
            std::ranges::any_of(list, [&](const Drive &d) { return d.path == path; }))
            continue;
        const QString name = volume.name();
        list.push_back({path, name.isEmpty() ? path : u"%1 (%2)"_s.arg(path, name)});
    }
    return list;
}

int ImageFolder::driveOf(std::span<const Drive> drives, const QString &path)
{
    int found = -1;
    for (std::size_t i = 0; i < drives.size(); ++i) {
        if (holds(drives[i].path, path) &&
            (found < 0 || drives[i].path.size() > drives[static_cast<std::size_t>(found)].path.size()))
            found = static_cast<int>(i);
    }
    return found;
}

QStringList ImageFolder::files(const QString &folder)
{
    QStringList names;
    for (const QString &name : FileSystem().filesMatching(folder, u"*"_s)) {
        if (!name.startsWith(u'.') && isPicture(name))
            names += name;
    }
    std::ranges::sort(names, NaturalOrder());
    return names;
}

std::vector<ImageFolder::Row> ImageFolder::rows(const QString &folder)
{
    std::vector<Row> list{{u"/"_s, u"/"_s, 0, true}};
    QString path;
    for (const QString &name : folder.split(u'/', Qt::SkipEmptyParts)) {
        path += u'/' + name;
        list.push_back({path, name, list.back().depth + 1, true});
    }
    QStringList inside = QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    std::ranges::sort(inside, NaturalOrder());
    const int depth = list.back().depth + 1;
    for (const QString &name : inside)
        list.push_back({FileSystem::join(folder, name), name, depth, false});
    return list;
}

int ImageFolder::searchListBox(const QStringList &list, const QString &name)
{
    const QString wanted = name.trimmed().toLower();
    const auto found =
        std::ranges::find_if(list, [&](const QString &entry) { return entry.trimmed().toLower() == wanted; });
    return found == list.end() ? -1 : static_cast<int>(found - list.begin());
}

QString ImageFolder::pathOfArgument(const QString &argument)
{
    QString path = argument;
    if (path.startsWith(u'"'))
        path = path.mid(1, path.size() - 2);
    return QDir::cleanPath(QDir::current().absoluteFilePath(path));
}
