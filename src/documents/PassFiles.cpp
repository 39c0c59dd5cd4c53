#include "documents/PassFiles.h"

#include "platform/RunTimeError.h"

#include <QFile>

using namespace Qt::Literals::StringLiterals;

WrittenFiles::WrittenFiles(const FileSystem &files) : m_files(files) {}

WrittenFiles::~WrittenFiles()
{
    if (m_kept)
        return;
    for (auto file = m_before.cbegin(); file != m_before.cend(); ++file) {
        try {
            if (file.value())
                m_files.writeFile(file.key(), *file.value());
            else
                m_files.deleteFile(file.key());
        } catch (const RunTimeError &) {
            continue; // among them the file whose writing failed: it is not there
        }
    }
}

void WrittenFiles::aboutToWrite(const QString &path)
{
    if (m_before.contains(path))
        return;
    if (!m_files.fileExists(path)) {
        m_before.insert(path, std::nullopt);
        return;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw RunTimeError(RunTimeError::PathAccess,
                           u"Cannot read the file \"%1\": %2"_s.arg(path, file.errorString()));
    m_before.insert(path, file.readAll());
}

PreviousPages::PreviousPages(const FileSystem &files, const QString &directory,
                             const QString &oldDocumentFolder)
    : m_files(files), m_directory(directory), m_oldDocumentFolder(oldDocumentFolder)
{
    try {
        m_names = m_files.filesMatching(directory, u"*.htm"_s);
    } catch (const RunTimeError &) {
        m_names.clear();
    }
}

bool PreviousPages::putBack() const
{
    bool complete = true;
    for (const QString &name : m_names) {
        const QString path = FileSystem::join(m_directory, name);
        // One that could not be moved away is newer than its namesake in the folder.
        if (m_files.fileExists(path))
            continue;
        try {
            m_files.moveFile(FileSystem::join(m_oldDocumentFolder, name), path);
        } catch (const RunTimeError &) {
            complete = false;
        }
    }
    return complete;
}
