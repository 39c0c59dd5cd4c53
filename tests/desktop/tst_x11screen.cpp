#include "contract/PrivateDisplay.h"
#include "contract/XTestUser.h"
#include "platform/RunTimeError.h"
#include "platform/x11/X11Screen.h"

#include <xcb/randr.h>

#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <optional>
#include <vector>

namespace
{
constexpr QRgb red = 0xffff0000;

/// A red window, active by the time the constructor has returned.
struct RedWindow : QWidget {
    RedWindow()
    {
        setStyleSheet(QStringLiteral("background: #ff0000"));
        setGeometry(150, 120, 300, 200);
        show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(this));
    }
};

bool becomes(const X11Screen &screen, const QRect &foreground)
{
    return QTest::qWaitFor([&] { return screen.foregroundWindow() == foreground; });
}

xcb_window_t makeWindow(const X11Connection &connection, xcb_window_t parent, const QRect &place, int border)
{
    const xcb_window_t window = xcb_generate_id(connection.get());
    xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, window, parent,
                      static_cast<std::int16_t>(place.x()), static_cast<std::int16_t>(place.y()),
                      static_cast<std::uint16_t>(place.width()), static_cast<std::uint16_t>(place.height()),
                      static_cast<std::uint16_t>(border), XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      0, nullptr);
    EXPECT_TRUE(connection.accepted(xcb_map_window_checked(connection.get(), window)));
    return window;
}

void setProperty(const X11Connection &connection, xcb_window_t window, const char *name, xcb_atom_t type,
                 const std::vector<std::uint32_t> &values)
{
    EXPECT_TRUE(connection.accepted(
        xcb_change_property_checked(connection.get(), XCB_PROP_MODE_REPLACE, window, connection.atom(name),
                                    type, 32, static_cast<std::uint32_t>(values.size()), values.data())));
}

void setRootSize(const X11Connection &connection, std::uint16_t width, std::uint16_t height)
{
    xcb_connection_t *c = connection.get();
    const auto resources = connection.reply(xcb_randr_get_screen_resources_reply,
                                            xcb_randr_get_screen_resources(c, connection.root()));
    ASSERT_TRUE(resources);
    // The server refuses a size that a controller's picture does not fit into.
    for (int i = 0; i < resources->num_crtcs; ++i)
        connection.reply(xcb_randr_set_crtc_config_reply,
                         xcb_randr_set_crtc_config(c,
                                                   xcb_randr_get_screen_resources_crtcs(resources.get())[i],
                                                   0, resources->config_timestamp, 0, 0, XCB_NONE,
                                                   XCB_RANDR_ROTATION_ROTATE_0, 0, nullptr));
    EXPECT_TRUE(connection.accepted(
        xcb_randr_set_screen_size_checked(c, connection.root(), width, height, 100, 100)));
}

/// Fills the root window and returns what a grab of its middle shows.
std::optional<QRgb> colourShown(const X11Connection &connection, X11Screen &screen, std::uint32_t colour)
{
    xcb_change_window_attributes(connection.get(), connection.root(), XCB_CW_BACK_PIXEL, &colour);
    EXPECT_TRUE(
        connection.accepted(xcb_clear_area_checked(connection.get(), 0, connection.root(), 0, 0, 0, 0)));
    const QImage picture = screen.grab({300, 200, 10, 10});
    return picture.isNull() ? std::nullopt : std::optional<QRgb>(picture.pixel(9, 9));
}
} // namespace

TEST(X11ScreenTest, ForegroundIsTheActiveWindowWithItsFrame)
{
    const X11Screen screen;
    {
        RedWindow window;
        const QRect frame = window.frameGeometry();
        EXPECT_GT(frame.height(), 200) << "this window manager draws a title";
        EXPECT_TRUE(becomes(screen, frame));
        window.move(-40, 300); // partly off the screen
        EXPECT_TRUE(QTest::qWaitFor([&] { return window.frameGeometry().left() == -40; }));
        EXPECT_TRUE(becomes(screen, window.frameGeometry()));
        window.showMaximized();
        EXPECT_TRUE(becomes(screen, screen.desktop()));
    }
    EXPECT_TRUE(becomes(screen, QRect()));
}

TEST(X11ScreenTest, ForegroundWithOtherKindsOfFramesAndShadows)
{
    const PrivateDisplay display({});
    const X11Screen screen;
    const X11Connection connection;
    const xcb_window_t frame = makeWindow(connection, connection.root(), {10, 20, 100, 80}, 2);
    const xcb_window_t window = makeWindow(connection, frame, {20, 30, 60, 40}, 0);
    setProperty(connection, connection.root(), "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW, {window});
    EXPECT_EQ(screen.foregroundWindow(), QRect(10, 20, 104, 84)) << "the border counts";
    setProperty(connection, window, "_NET_FRAME_EXTENTS", XCB_ATOM_CARDINAL,
                {1, 2, 3, 4}); // left, right, top
    EXPECT_EQ(screen.foregroundWindow(), QRect(31, 49, 63, 47)) << "the rest of the frame cannot be seen";
    setProperty(connection, window, "_NET_FRAME_EXTENTS", XCB_ATOM_CARDINAL, {0, 0, 0, 0});
    setProperty(connection, window, "_GTK_FRAME_EXTENTS", XCB_ATOM_CARDINAL, {5, 6, 7, 8});
    EXPECT_EQ(screen.foregroundWindow(), QRect(37, 59, 49, 25)) << "a shadow is not the window";

    EXPECT_TRUE(connection.accepted(xcb_unmap_window_checked(connection.get(), frame)));
    EXPECT_EQ(screen.foregroundWindow(), QRect());
    xcb_map_window(connection.get(), frame);
    EXPECT_TRUE(connection.accepted(xcb_destroy_window_checked(connection.get(), window)));
    EXPECT_EQ(screen.foregroundWindow(), QRect()) << "it has gone, but the property stays";
}

TEST(X11ScreenTest, PointerAndItsShape)
{
    XTestUser user;
    const X11Screen screen;
    user.moveTo({321, 234});
    EXPECT_EQ(screen.pointerPosition(), QPoint(321, 234));

    xcb_connection_t *c = user.connection().get();
    const xcb_pixmap_t bits = xcb_generate_id(c);
    const xcb_gcontext_t context = xcb_generate_id(c);
    const xcb_cursor_t cursor = xcb_generate_id(c);
    const std::array<std::uint32_t, 2> set{1, 1};
    const xcb_rectangle_t all{0, 0, 16, 16};
    xcb_create_pixmap(c, 1, bits, user.pad(), 16, 16);
    xcb_create_gc(c, context, bits, XCB_GC_FOREGROUND | XCB_GC_BACKGROUND, set.data());
    xcb_poly_fill_rectangle(c, bits, context, 1, &all);
    xcb_create_cursor(c, cursor, bits, bits, 0, 0xffff, 0, 0, 0, 0, 3, 5); // green
    xcb_change_window_attributes(c, user.pad(), XCB_CW_CURSOR, &cursor);
    user.finish();

    const CursorShape shape = screen.cursorShape();
    ASSERT_FALSE(shape.image.isNull());
    EXPECT_EQ(shape.image.format(), QImage::Format_ARGB32_Premultiplied);
    EXPECT_EQ(shape.hotSpot, QPoint(3, 5));
    EXPECT_EQ(shape.image.pixel(shape.hotSpot), qRgba(0, 255, 0, 255));
}

TEST(X11ScreenTest, MinimisedWindowIsNoLongerToBeSeen)
{
    X11Screen screen;
    const QImage before = screen.grab(screen.desktop());
    RedWindow window;
    EXPECT_TRUE(QTest::qWaitFor([&] { return screen.grab({250, 250, 1, 1}).pixel(0, 0) == red; }));
    window.showMinimized();
    screen.waitUntilMinimised(static_cast<std::uint32_t>(window.winId()), 20000);
    EXPECT_TRUE(screen.grab(screen.desktop()) == before) << "nor is the way it goes";
    EXPECT_EQ(screen.foregroundWindow(), QRect());
}

TEST(X11ScreenTest, WaitsForASlowWindowManagerButNotForAWindowThatIsNotShown)
{
    const PrivateDisplay display({});
    X11Screen screen;
    const X11Connection connection;
    const xcb_window_t window = makeWindow(connection, connection.root(), {0, 0, 9, 9}, 0);
    QProcess manager;
    manager.start(QStringLiteral("xdotool"), {QStringLiteral("sleep"), QStringLiteral("0.5"),
                                              QStringLiteral("windowunmap"), QString::number(window)});
    screen.waitUntilMinimised(window, INT_MAX);
    EXPECT_TRUE(X11Windows(connection).isAway(window));
    EXPECT_TRUE(manager.waitForFinished());

    screen.waitUntilMinimised(window, INT_MAX);
    screen.waitUntilMinimised(window + 1, INT_MAX); // no such window
    EXPECT_EQ(screen.foregroundWindow(), QRect());
}

TEST(X11ScreenTest, GrabsFollowTheSizeOfTheDesktop)
{
    const PrivateDisplay display({});
    const X11Connection connection;
    X11Screen screen;
    setRootSize(connection, 320, 200);
    EXPECT_EQ(screen.grab({0, 0, 5000, 5000}).size(), QSize(320, 200));
    setRootSize(connection, 640, 480);
    EXPECT_EQ(screen.grab({0, 0, 5000, 5000}).size(), QSize(640, 480));
}

TEST(X11ScreenTest, DoesWithoutEachExtension)
{
    for (const char *extension : {"MIT-SHM", "RANDR", "XFIXES"}) {
        SCOPED_TRACE(extension);
        const PrivateDisplay display({QStringLiteral("-extension"), QString::fromLatin1(extension)});
        const X11Connection connection;
        X11Screen screen;
        EXPECT_EQ(colourShown(connection, screen, 0x123456), qRgb(0x12, 0x34, 0x56));
        EXPECT_EQ(screen.monitorAt({10, 10}), QRect(0, 0, 640, 480));
        EXPECT_EQ(screen.cursorShape().image.isNull(), qstrcmp(extension, "XFIXES") == 0);
    }
}

TEST(X11ScreenTest, DisplayThatCannotBeUsed)
{
    {
        const PrivateDisplay shallow(
            {QStringLiteral("-screen"), QStringLiteral("0"), QStringLiteral("640x480x16")});
        const X11Connection connection;
        X11Screen screen;
        EXPECT_EQ(colourShown(connection, screen, 0xffff), std::nullopt);
    }
    PrivateDisplay display({});
    X11Screen orphan;
    display.end();
    EXPECT_TRUE(orphan.grab({0, 0, 10, 10}).isNull());
    EXPECT_EQ(orphan.monitorAt({0, 0}), QRect());
    EXPECT_THROW(X11Screen{}, RunTimeError);
}
