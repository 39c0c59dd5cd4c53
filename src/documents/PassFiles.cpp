#include "documents/PassFiles.h"

#include "platform/AtomicFile.h"
#include "platform/RunTimeError.h"
#include "state/BesideEvents.h"

#include <QFile>

using namespace Qt::Literals::StringLiterals;

WrittenFiles::WrittenFiles(const FileSystem &files) : m_files(files) {}

WrittenFiles::~WrittenFiles()
{
    restore([] {});
}

void WrittenFiles::write(const QString &path, QByteArrayView bytes)
{
    if (!m_before.contains(path))
        remember(path);
    AtomicFile::write(path, bytes);
}

void WrittenFiles::remember(const QString &path)
{
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

/// The new ones first: a full disk has room again for the old ones then.
template <typename Done>
bool WrittenFiles::restore(Done done)
{
    for (auto file = m_before.cbegin(); file != m_before.cend(); ++file) {
        if (file.value())
            continue;
        QFile::remove(file.key()); // the file whose writing failed is not there
        done();
    }
    bool complete = true;
    for (auto file = m_before.cbegin(); file != m_before.cend(); ++file) {
        if (!file.value())
            continue;
        try {
            m_files.writeFile(file.key(), *file.value());
        } catch (const RunTimeError &) {
            complete = false;
        }
        done();
    }
    m_before.clear();
    return complete;
}

bool WrittenFiles::undo(Progress &progress)
{
    ProgressScope scope(progress, u"Removing the new pages"_s, static_cast<int>(m_before.size()));
    return besideEvents(scope, [this](WorkBesideEvents &work) { return restore([&work] { ++work.done; }); });
}
