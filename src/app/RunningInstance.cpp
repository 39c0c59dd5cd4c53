#include "app/RunningInstance.h"

#include "platform/ByteHash.h"
#include "platform/FileSystem.h"

#include <QDataStream>
#include <QElapsedTimer>
#include <QFile>
#include <QLocalSocket>
#include <QPointer>
#include <QStandardPaths>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/un.h>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int startLimit = 10'000; // milliseconds that a program may take from its lock to its socket
constexpr int betweenTries = 50;   // milliseconds
constexpr auto format = QDataStream::Qt_6_0;

QString socketPath(const QString &folder)
{
    const QString path = FileSystem::join(folder, u"control"_s);
    // Qt makes the socket under a longer name in a folder of its own first.
    constexpr std::size_t reserve = 24;
    if (static_cast<std::size_t>(QFile::encodeName(path).size()) + reserve < sizeof(sockaddr_un::sun_path))
        return path;
    ByteHash hash;
    hash.add(folder.toUtf8());
    const QString name = u"shotly-%1"_s.arg(hash.value(), 16, 16, QChar(u'0'));
    return FileSystem::join(QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation), name);
}

FileDescriptor openLock(const QString &folder)
{
    const QByteArray path = QFile::encodeName(FileSystem::join(folder, u"instance.lock"_s));
    return FileDescriptor(::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
}

bool take(const FileDescriptor &lock)
{
    return !lock.open() || ::flock(lock.number(), LOCK_EX | LOCK_NB) == 0;
}
} // namespace

RunningInstance::RunningInstance(const QString &applicationFolder)
    : m_folder(applicationFolder), m_lock(openLock(applicationFolder)), m_first(take(m_lock))
{
}

void RunningInstance::listen(Handler handler)
{
    m_handler = std::move(handler);
    const QString path = socketPath(m_folder);
    QLocalServer::removeServer(path); // of one that was killed: the lock is ours
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(&m_server, &QLocalServer::newConnection, &m_server, [this] {
        while (QLocalSocket *caller = m_server.nextPendingConnection()) {
            QObject::connect(caller, &QLocalSocket::disconnected, caller, &QObject::deleteLater);
            QObject::connect(caller, &QLocalSocket::readyRead, caller, [this, caller] { serve(*caller); });
            serve(*caller);
        }
    });
    m_server.listen(path); // without it the program is as good, but for later starts
}

void RunningInstance::serve(QLocalSocket &caller)
{
    QDataStream stream(&caller);
    stream.setVersion(format);
    stream.startTransaction();
    Request request;
    stream >> request;
    if (!stream.commitTransaction() || request.isEmpty())
        return;
    // The handler may take its time, and the caller may go meanwhile.
    const QPointer<QLocalSocket> there(&caller);
    const QString answer = m_handler(request);
    if (!there)
        return;
    stream << answer;
    caller.flush();
    caller.disconnectFromServer();
}

std::optional<QString> RunningInstance::send(Clock &clock, const QString &applicationFolder,
                                             const Request &request, int limit)
{
    QLocalSocket socket;
    QElapsedTimer waited;
    waited.start();
    for (;;) {
        socket.connectToServer(socketPath(applicationFolder));
        if (socket.waitForConnected(-1))
            break;
        const FileDescriptor lock = openLock(applicationFolder);
        if (take(lock) || waited.elapsed() > startLimit)
            return std::nullopt;
        clock.sleep(betweenTries);
    }
    QDataStream stream(&socket);
    stream.setVersion(format);
    stream << request;
    socket.flush();
    QString answer;
    do {
        stream.startTransaction();
        stream >> answer;
        if (stream.commitTransaction())
            return answer;
    } while (socket.waitForReadyRead(limit));
    return socket.state() == QLocalSocket::ConnectedState ? u"Shotly runs already, but does not answer."_s
                                                          : u"Shotly has ended."_s;
}
