#include "documents/ReplacedFiles.h"

#include "platform/RunTimeError.h"

#include <QFile>
#include <QFileInfo>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// Beside the file, hidden.
QString waitingName(const QString &path, int number)
{
    const QFileInfo file(path);
    return u"%1/.%2.old%3"_s.arg(file.path(), file.fileName()).arg(number);
}

QString freeWaitingName(const QString &path)
{
    for (int number = 1;; ++number) {
        const QString name = waitingName(path, number);
        if (!QFileInfo::exists(name))
            return name;
    }
}
} // namespace

void ReplacedFiles::makeRoom(const QString &path)
{
    Replaced replaced{path, {}};
    if (m_files.fileExists(path)) {
        replaced.old = freeWaitingName(path);
        m_files.moveFile(path, replaced.old);
    }
    m_replaced.push_back(std::move(replaced));
}

bool ReplacedFiles::undo()
{
    bool complete = true;
    for (const Replaced &replaced : std::exchange(m_replaced, {})) {
        QFile::remove(replaced.path); // what failed to be written is not there
        if (!replaced.old.isEmpty() && !QFile::rename(replaced.old, replaced.path))
            complete = false;
    }
    return complete;
}

void ReplacedFiles::keep()
{
    for (const Replaced &replaced : std::exchange(m_replaced, {})) {
        for (int number = 1; QFileInfo::exists(waitingName(replaced.path, number)); ++number)
            QFile::remove(waitingName(replaced.path, number));
    }
}
