#include "platform/office/DocumentTemplate.h"

#include "platform/AtomicFile.h"
#include "platform/FileSystem.h"
#include "platform/InputFile.h"
#include "platform/RunTimeError.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace
{
enum class Kind { CompoundFile, Zip, Xml, None };

constexpr const char *wordTemplateFilter = "MS Word 97 Vorlage";

[[noreturn]] void refuse(const QString &path, const QString &reason,
                         int number = RunTimeError::WordFileNotWritten)
{
    throw RunTimeError(number, u"\"%1\" is not a document template: %2"_s.arg(path, reason));
}

/// By the first bytes: a compound file ([MS-CFB] 2.2), an archive, or XML.
Kind kindOf(const QString &path)
{
    if (!QFileInfo(path).isFile())
        refuse(path, u"there is no such file"_s, RunTimeError::WordFileMissing);
    QByteArray begin(512, '\0');
    InputFile file(path);
    begin.truncate(file.read(begin.data(), begin.size()));
    if (begin.isEmpty())
        refuse(path, u"it is empty"_s);
    if (begin.startsWith("\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1"))
        return Kind::CompoundFile;
    if (begin.startsWith("PK\x03\x04"))
        return Kind::Zip;
    if (begin.startsWith("\xef\xbb\xbf"))
        begin.remove(0, 3);
    return begin.trimmed().startsWith('<') ? Kind::Xml : Kind::None;
}

Kind checkedKindOf(const QString &path)
{
    const Kind kind = kindOf(path);
    if (kind == Kind::None)
        refuse(path, u"it is neither one of Word nor of OpenDocument"_s);
    return kind;
}

QByteArray contentsOf(const QString &path)
{
    InputFile file(path);
    QByteArray bytes(file.size(), '\0');
    bytes.truncate(file.read(bytes.data(), bytes.size()));
    return bytes;
}

/// Where the converted template is kept. The name begins with the path's hash, so that older versions of the
/// same file are found.
class Cache
{
public:
    Cache(const QString &path, const OfficeProgram &office)
        : m_folder(office.profiles() + u"/templates"_s),
          m_prefix(QString::fromLatin1(
              QCryptographicHash::hash(QFileInfo(path).absoluteFilePath().toUtf8(), QCryptographicHash::Sha1)
                  .toHex()))
    {
        const QFileInfo info(path);
        m_name =
            u"%1-%2-%3.fodt"_s.arg(m_prefix).arg(info.size()).arg(info.lastModified().toMSecsSinceEpoch());
    }

    QString file() const { return FileSystem::join(m_folder, m_name); }

    /// Makes room for file().
    void prepare() const
    {
        FileSystem().createFolder(m_folder);
        const QStringList old = QDir(m_folder).entryList({m_prefix + u"-*"_s}, QDir::Files);
        for (const QString &name : old)
            QFile::remove(FileSystem::join(m_folder, name));
    }

private:
    QString m_folder;
    QString m_prefix;
    QString m_name;
};
} // namespace

void DocumentTemplate::check(const QString &path)
{
    (void)checkedKindOf(path);
}

bool DocumentTemplate::isDelivered(const QString &path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    return file.open(QIODevice::ReadOnly) && hash.addData(&file) &&
           hash.result().toHex() == SHOTLY_TEMPLATE_SHA256;
}

OdtSkeleton DocumentTemplate::read(const QString &path, const OfficeProgram &office,
                                   const std::stop_token &stop)
{
    const Kind kind = checkedKindOf(path);
    if (kind == Kind::Xml) {
        if (const auto skeleton = OdtSkeleton::read(contentsOf(path)))
            return *skeleton;
        refuse(path, u"it is no text document in Flat ODT"_s);
    }
    const Cache cache(path, office);
    if (QFileInfo::exists(cache.file())) {
        if (const auto skeleton = OdtSkeleton::read(contentsOf(cache.file())))
            return *skeleton;
    }
    cache.prepare();
    // Without the filter a damaged compound file would be read as a text.
    const QString filter = kind == Kind::CompoundFile ? QString::fromLatin1(wordTemplateFilter) : QString();
    office.convert(
        {u"dot"_s, filter, u"fodt"_s, u"OpenDocument Text Flat XML"_s,
         u"Cannot read the document template \"%1\""_s.arg(path)},
        [&path](const QString &copy) { AtomicFile::copy(path, copy); }, cache.file(), stop);
    if (const auto skeleton = OdtSkeleton::read(contentsOf(cache.file())))
        return *skeleton;
    refuse(path, u"it holds no text document"_s);
}
