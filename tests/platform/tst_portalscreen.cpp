#include "FileChecks.h"
#include "platform/linux/PortalScreen.h"
#include "platform/linux/ScreenshotPortal.h"
#include "platform/RealPlatform.h"
#include "support/FakeScreen.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <sys/prctl.h>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// A portal on a connection of its own; `act` says what becomes of a call.
class FakePortal : public QDBusVirtualObject
{
public:
    std::function<void(const QDBusMessage &call)> act;
    QVariantMap options;    ///< of the last call
    bool withdrawn = false; ///< the caller has closed its request

    FakePortal()
    {
        EXPECT_TRUE(m_bus.registerVirtualObject(u"/org/freedesktop/portal/desktop"_s, this,
                                                QDBusConnection::SubPath));
        EXPECT_TRUE(m_bus.registerService(u"org.freedesktop.portal.Desktop"_s));
    }
    ~FakePortal() override { end(); }
    void end()
    {
        QDBusConnection::disconnectFromBus(u"portal"_s);
        m_bus = QDBusConnection(QString());
    }

    /// The name of the request that the caller expects.
    QString handleOf(const QDBusMessage &call) const
    {
        return u"/org/freedesktop/portal/desktop/request/%1/%2"_s.arg(
            call.service().mid(1).replace(u'.', u'_'), options.value(u"handle_token"_s).toString());
    }
    void reply(const QDBusMessage &call, const QString &handle)
    {
        m_bus.send(call.createReply(QVariant::fromValue(QDBusObjectPath(handle))));
    }
    void respond(const QDBusMessage &call, const QString &handle, uint code, const QString &uri = {})
    {
        auto signal = QDBusMessage::createTargetedSignal(call.service(), handle,
                                                         u"org.freedesktop.portal.Request"_s, u"Response"_s);
        m_bus.send(signal << code << QVariantMap{{u"uri"_s, uri}});
    }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
    {
        if (message.member() == "Close"_L1) {
            withdrawn = true;
            return true;
        }
        if (message.interface() != "org.freedesktop.portal.Screenshot"_L1 ||
            message.signature() != "sa{sv}"_L1)
            return false;
        options = qdbus_cast<QVariantMap>(message.arguments().at(1));
        message.setDelayedReply(true);
        act(message);
        return true;
    }
    QString introspect(const QString &) const override { return {}; }

private:
    QDBusConnection m_bus =
        QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), u"portal"_s);
};

/// A session bus that knows no service but those of the test.
class PortalScreenTest : public ::testing::Test
{
protected:
    QTemporaryDir m_folder;
    QProcess m_bus;
    QImage m_picture{300, 200, QImage::Format_RGB32};
    QByteArray m_temporaryBefore = qgetenv("TMPDIR");

    void SetUp() override
    {
        // Folder names have nothing to do with one another: temp2 is not inside temp.
        ASSERT_TRUE(QDir(m_folder.path()).mkpath(u"temp/a"_s) && QDir(m_folder.path()).mkpath(u"temp2"_s));
        m_picture.fill(Qt::darkGreen);
        m_picture.setPixel(299, 199, qRgb(1, 2, 3));
        qputenv("TMPDIR", QFile::encodeName(m_folder.filePath(u"temp"_s)));
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_folder.path())); // where no bus of the session is
        startBus();
    }
    void TearDown() override
    {
        m_bus.kill();
        m_bus.waitForFinished();
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        m_temporaryBefore.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", m_temporaryBefore);
    }
    void startBus()
    {
        putFile(m_folder.filePath(u"bus.conf"_s),
                "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><servicedir>" +
                    QFile::encodeName(m_folder.path()) +
                    "</servicedir><policy context='default'><allow send_destination='*'/>"
                    "<allow receive_sender='*'/><allow own='*'/></policy></busconfig>");
        m_bus.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
        m_bus.start(u"dbus-daemon"_s, {u"--nofork"_s, u"--print-address"_s,
                                       u"--config-file="_s + m_folder.filePath(u"bus.conf"_s)});
        while (!m_bus.canReadLine() && m_bus.waitForReadyRead()) {
        }
        const QByteArray address = m_bus.readLine().trimmed();
        ASSERT_FALSE(address.isEmpty()) << m_bus.readAllStandardError().toStdString();
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    }
    QString pictureFile(const QString &name) const
    {
        const QString path = m_folder.filePath(name);
        EXPECT_TRUE(m_picture.save(path, "png"));
        return path;
    }
    /// What the user reads when no picture comes.
    static QString told(std::chrono::milliseconds limit = std::chrono::minutes(1))
    {
        try {
            ScreenshotPortal::takePicture(limit);
        } catch (const RunTimeError &error) {
            return error.description();
        }
        return {};
    }
};
} // namespace

TEST_F(PortalScreenTest, thePictureIsWholeHoweverLargeTheXServerThinksTheScreenIs)
{
    auto display = std::make_unique<FakeScreen>();
    display->picture = QImage(150, 100, QImage::Format_RGB32);
    display->foreground = QRect(0, 0, 10, 10);
    PortalScreen screen(std::move(display));
    FakePortal portal;
    QString path = pictureFile(u"temp/a/ü %23 b.png"_s);
    QString uri = u"file://"_s + m_folder.path() + u"/temp/a/%C3%BC%20%2523%20b.png"_s;
    portal.act = [&](const QDBusMessage &call) {
        portal.reply(call, portal.handleOf(call));
        portal.respond(call, portal.handleOf(call), 0, uri);
    };
    EXPECT_EQ(screen.monitorAt({}), QRect(0, 0, 150, 100));
    EXPECT_TRUE(screen.foregroundWindow().isEmpty());
    EXPECT_EQ(screen.grab(screen.monitorAt({})), m_picture);
    EXPECT_EQ(portal.options.value(u"interactive"_s), QVariant(false));
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_EQ(screen.desktop(), QRect(0, 0, 300, 200));

    path = pictureFile(u"temp2/kept.png"_s);
    uri = u"file://"_s + path;
    EXPECT_EQ(screen.grab(QRect(290, 190, 50, 50)), m_picture.copy(290, 190, 10, 10));
    EXPECT_TRUE(QFile::exists(path));
    portal.options.clear();
    EXPECT_TRUE(screen.grab(QRect(300, 0, 10, 10)).isNull());
    EXPECT_TRUE(portal.options.isEmpty()) << "asked for nothing";
}

TEST_F(PortalScreenTest, theAnswerMayComeBeforeTheReplyAndUnderAnotherName)
{
    FakePortal portal;
    portal.act = [&](const QDBusMessage &call) {
        portal.respond(call, portal.handleOf(call), 0, u"file:///early"_s);
        portal.reply(call, portal.handleOf(call));
    };
    EXPECT_EQ(ScreenshotPortal::takePicture(std::chrono::minutes(1)), u"/early"_s);
    portal.act = [&](const QDBusMessage &call) {
        const QString own = u"/org/freedesktop/portal/desktop/request/7"_s;
        portal.reply(call, own);
        QTimer::singleShot(0, &portal,
                           [&portal, call, own] { portal.respond(call, own, 0, u"file:///own"_s); });
    };
    EXPECT_EQ(ScreenshotPortal::takePicture(std::chrono::minutes(1)), u"/own"_s);
}

TEST_F(PortalScreenTest, WithoutAPictureTheUserReadsWhy)
{
    FakePortal portal;
    const auto answer = [&](uint code, const QString &uri) {
        portal.act = [&portal, code, uri](const QDBusMessage &call) {
            portal.reply(call, portal.handleOf(call));
            portal.respond(call, portal.handleOf(call), code, uri);
        };
        return told();
    };
    EXPECT_EQ(answer(1, {}), u"The snapshot was cancelled."_s);
    EXPECT_TRUE(answer(2, {}).contains("not allowed"_L1));
    EXPECT_TRUE(answer(0, u"https://example.org/a.png"_s).contains("https://example.org/a.png"_L1));
    EXPECT_FALSE(portal.withdrawn);

    portal.act = [&](const QDBusMessage &call) { portal.reply(call, portal.handleOf(call)); };
    EXPECT_TRUE(told(std::chrono::milliseconds(200)).contains("in time"_L1));
    EXPECT_TRUE(QTest::qWaitFor([&] { return portal.withdrawn; }));
    portal.act = [&](const QDBusMessage &call) {
        QDBusConnection(u"portal"_s)
            .send(call.createErrorReply(u"org.freedesktop.portal.Error.NotAllowed"_s, u"No, thanks"_s));
    };
    EXPECT_TRUE(told().contains("No, thanks"_L1));
    portal.act = [&](const QDBusMessage &call) {
        portal.reply(call, portal.handleOf(call));
        QTimer::singleShot(0, &portal, [&portal] { portal.end(); });
    };
    EXPECT_TRUE(told().contains("portal ended"_L1));
}

TEST_F(PortalScreenTest, AWaylandSessionSaysWhatCanBeDoneInIt)
{
    const QByteArray display = qgetenv("DISPLAY");
    qunsetenv("DISPLAY");
    qputenv("WAYLAND_DISPLAY", "wayland-9");
    const Platform platform = makeRealPlatform([] { return QString(); });
    qunsetenv("WAYLAND_DISPLAY");
    const auto saidAtBegin = [&]() -> QString {
        try {
            platform.inputHook->start({});
        } catch (const RunTimeError &error) {
            return error.description();
        }
        return {};
    };
    EXPECT_FALSE(saidAtBegin().contains("Whole Desktop Snapshot"_L1));
    EXPECT_TRUE(saidAtBegin().contains("on Xorg"_L1));
    EXPECT_THROW(platform.screen->grab({}), RunTimeError);
    {
        FakePortal portal;
        EXPECT_TRUE(saidAtBegin().contains("Whole Desktop Snapshot"_L1));
        portal.act = [&](const QDBusMessage &call) {
            portal.respond(call, portal.handleOf(call), 0, u"file://"_s + pictureFile(u"temp/a.png"_s));
        };
        EXPECT_EQ(platform.screen->grab(platform.screen->monitorAt({})), m_picture);
        portal.act = [&](const QDBusMessage &call) {
            portal.reply(call, portal.handleOf(call));
            QTimer::singleShot(0, &portal, [this] { m_bus.kill(); });
        };
        EXPECT_TRUE(told().contains("portal ended"_L1));
        m_bus.waitForFinished();
        EXPECT_FALSE(ScreenshotPortal::isPresent());
    }
    // One that the bus could start, though it will not come up.
    putFile(m_folder.filePath(u"portal.service"_s),
            "[D-BUS Service]\nName=org.freedesktop.portal.Desktop\nExec=/bin/false\n");
    startBus();
    EXPECT_TRUE(saidAtBegin().contains("Whole Desktop Snapshot"_L1));
    EXPECT_FALSE(told().isEmpty());
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    EXPECT_TRUE(told().contains("has no screenshot portal"_L1));
    if (!display.isNull())
        qputenv("DISPLAY", display);
}
