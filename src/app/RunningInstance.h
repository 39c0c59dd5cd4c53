#pragma once

#include "platform/Clock.h"
#include "platform/FileDescriptor.h"

#include <QLocalServer>
#include <QStringList>

#include <functional>
#include <optional>

/// One program for one application folder: the first start holds the folder's lock and listens to those that
/// come later on a socket that only its user can reach, in the application folder ("control"; in the user's
/// runtime folder where that path is too long for a socket). Lock and socket die with the program.
///
/// A request is a list of words, UTF-16 in a QDataStream of Qt 6.0; the answer is a text, empty when all went
/// well.
class RunningInstance
{
public:
    using Request = QStringList;
    using Handler = std::function<QString(const Request &)>;

    explicit RunningInstance(const QString &applicationFolder);

    /// Whether this is the first. Where the folder cannot be written, it always is.
    bool isFirst() const { return m_first; }

    /// Requests come to the handler from the event loop; while it lets events run, more may come.
    void listen(Handler handler);

    /// Hands a request to the first one and waits for its answer: at most `limit` milliseconds, or, when that
    /// is negative, however long its user takes over it. Nothing when nobody listens, also not within the
    /// seconds that a start takes while the lock is held.
    static std::optional<QString> send(Clock &clock, const QString &applicationFolder, const Request &request,
                                       int limit);

private:
    void serve(QLocalSocket &caller);

    QString m_folder;
    FileDescriptor m_lock;
    bool m_first;
    QLocalServer m_server;
    Handler m_handler;
};
