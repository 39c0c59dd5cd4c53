#include "platform/linux/ScreenshotPortal.h"

#include "platform/RunTimeError.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QEventLoop>
#include <QFileInfo>
#include <QHash>
#include <QTimer>
#include <QUrl>
#include <QUuid>
#include <QVariantMap>

#include <climits>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace
{
const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString desktopPath = u"/org/freedesktop/portal/desktop"_s;
const QString requestInterface = u"org.freedesktop.portal.Request"_s;

/// Nobody can guess it, so that nobody else can answer.
QString uniqueWord()
{
    return u"shotly_"_s + QUuid::createUuid().toString(QUuid::Id128);
}

/// Empty without a session bus: the library would try to start one.
QString busAddress()
{
    const QString given = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (!given.isEmpty())
        return given;
    const QString socket = qEnvironmentVariable("XDG_RUNTIME_DIR") + u"/bus"_s;
    return QFileInfo::exists(socket) ? u"unix:path="_s + socket : QString();
}

/// Not the connection that Qt shares: that one is never made again once it has failed.
class OwnConnection
{
public:
    OwnConnection() : m_name(uniqueWord()), m_bus(connect(m_name)) {}
    ~OwnConnection() { QDBusConnection::disconnectFromBus(m_name); }
    OwnConnection(const OwnConnection &) = delete;
    OwnConnection &operator=(const OwnConnection &) = delete;

    const QDBusConnection &bus() const { return m_bus; }

private:
    static QDBusConnection connect(const QString &name)
    {
        const QString address = busAddress();
        return address.isEmpty() ? QDBusConnection(name) : QDBusConnection::connectToBus(address, name);
    }

    QString m_name;
    QDBusConnection m_bus;
};

bool has(const QDBusConnection &bus)
{
    if (!bus.isConnected())
        return false;
    QDBusConnectionInterface &names = *bus.interface();
    return names.isServiceRegistered(service) || names.activatableServiceNames().value().contains(service);
}

RunTimeError noPortal()
{
    return {RunTimeError::CannotCreateObject,
            u"This is a Wayland session, and its desktop offers programs no way to take a picture of the "
            "screen (it has no screenshot portal).\r\n\r\nTo take snapshots, log out and log in again to a "
            "session that uses X11 (login screens often call it \"on Xorg\")."_s};
}

RunTimeError refused(const QString &reason = {})
{
    QString text = u"The desktop did not take the snapshot. Perhaps Shotly is not allowed to: look for "
                   "\"Screenshots\" among the permissions in the system settings, under Privacy or "
                   "Applications, and try again."_s;
    if (!reason.isEmpty())
        text += u"\r\n\r\n"_s + reason;
    return {RunTimeError::PermissionDenied, text};
}

RunTimeError cancelled()
{
    return {RunTimeError::PermissionDenied, u"The snapshot was cancelled."_s};
}

RunTimeError vanished()
{
    return {RunTimeError::CannotCreateObject,
            u"The desktop's screenshot portal ended before it had taken the snapshot. Please try again."_s};
}

RunTimeError tooLate()
{
    return {RunTimeError::CannotCreateObject,
            u"The desktop did not answer in time, and the snapshot was given up. Please try again; if the "
            "desktop asks for permission, its question must be answered first."_s};
}

RunTimeError failureOfCall(const QDBusError &error)
{
    switch (error.type()) {
    case QDBusError::ServiceUnknown:
    case QDBusError::UnknownInterface:
    case QDBusError::UnknownMethod:
    case QDBusError::UnknownObject:
        return noPortal();
    case QDBusError::NoReply:
    case QDBusError::Disconnected:
        return vanished();
    default:
        return refused(error.message());
    }
}

/// One picture that the portal was asked for.
class PictureRequest : public QObject
{
    Q_OBJECT

public:
    explicit PictureRequest(const QDBusConnection &bus)
        : m_bus(bus), m_watcher(service, bus, QDBusServiceWatcher::WatchForUnregistration)
    {
        connect(&m_watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] { fail(vanished()); });
        m_bus.connect({}, u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s,
                      u"Disconnected"_s, this, SLOT(busEnded()));
    }

    QString wait(std::chrono::milliseconds limit)
    {
        send();
        QTimer::singleShot(limit, this, [this] { fail(tooLate()); });
        if (!done())
            m_loop.exec();
        if (!m_path.isEmpty())
            return m_path;
        if (!m_answered)
            m_bus.send(QDBusMessage::createMethodCall(service, m_handle, requestInterface, u"Close"_s));
        throw m_failure.value_or(cancelled()); // without one the program is ending
    }

private Q_SLOTS:
    void response(const QDBusMessage &message)
    {
        if (message.signature() == "ua{sv}"_L1)
            m_responses.insert(message.path(), message.arguments());
        takeResponse();
    }

    void busEnded() { fail(vanished()); }

private:
    bool done() const { return m_failure || !m_path.isEmpty(); }

    void fail(const RunTimeError &failure)
    {
        if (!done())
            m_failure = failure;
        m_loop.quit();
    }

    /// If it has come.
    void takeResponse()
    {
        const QVariantList answer = m_responses.value(m_handle);
        if (answer.isEmpty() || done())
            return;
        m_answered = true;
        const uint code = answer[0].toUInt();
        if (code != 0)
            return fail(code == 1 ? cancelled() : refused());
        const QUrl url(qdbus_cast<QVariantMap>(answer[1]).value(u"uri"_s).toString(), QUrl::StrictMode);
        if (!url.isLocalFile())
            return fail(refused(u"It gave no file but \"%1\"."_s.arg(url.toString())));
        m_path = url.toLocalFile();
        m_loop.quit();
    }

    void send()
    {
        const QString token = uniqueWord();
        const QString sender = m_bus.baseService().mid(1).replace(u'.', u'_');
        m_handle = u"%1/request/%2/%3"_s.arg(desktopPath, sender, token);
        // Before the call, which may be answered before it returns, and for every handle: portals before
        // version 0.9 choose their own, which is known too late.
        m_bus.connect({}, {}, requestInterface, u"Response"_s, this, SLOT(response(QDBusMessage)));
        QDBusMessage call = QDBusMessage::createMethodCall(
            service, desktopPath, u"org.freedesktop.portal.Screenshot"_s, u"Screenshot"_s);
        call << QString() << QVariantMap{{u"handle_token"_s, token}, {u"interactive"_s, false}};
        // The time limit is wait()'s: a portal may ask the user before the call returns.
        auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call, INT_MAX), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, &PictureRequest::called);
    }

    void called(QDBusPendingCallWatcher *watcher)
    {
        const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
        if (reply.isError())
            return fail(failureOfCall(reply.error()));
        m_handle = reply.value().path();
        takeResponse();
    }

    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
    QEventLoop m_loop;
    QString m_handle;
    QHash<QString, QVariantList> m_responses; ///< by handle, those to others included
    bool m_answered = false;
    QString m_path;
    std::optional<RunTimeError> m_failure;
};
} // namespace

bool ScreenshotPortal::isPresent()
{
    return has(OwnConnection().bus());
}

QString ScreenshotPortal::takePicture(std::chrono::milliseconds limit)
{
    const OwnConnection connection;
    if (!has(connection.bus()))
        throw noPortal();
    return PictureRequest(connection.bus()).wait(limit);
}

#include "ScreenshotPortal.moc"
