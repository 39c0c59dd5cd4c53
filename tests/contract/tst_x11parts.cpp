#include "contract/HotKeysContract.h"
#include "contract/InputHookContract.h"
#include "contract/ScreenContract.h"
#include "contract/XTestUser.h"
#include "platform/x11/X11HotKeys.h"
#include "platform/x11/X11InputHook.h"
#include "platform/x11/X11Screen.h"

#include <QProcess>

#include <X11/keysym.h>

#include <array>

namespace
{
template <X11Recorder::WakeUp wakeUp>
struct X11HookRig {
    XTestUser user;
    X11InputHook real{wakeUp};

    InputHook &hook() { return real; }
    std::uint32_t click(int x)
    {
        user.moveTo(QPoint(x, 100));
        user.click(1);
        return user.stamp();
    }
};

struct X11HotKeysRig {
    XTestUser user;
    X11Connection otherProgram;
    X11HotKeys real;

    HotKeys &hotKeys() { return real; }
    void pressControlF(int number)
    {
        user.pressKey(XK_Control_L);
        user.type(XK_F1 + static_cast<xcb_keysym_t>(number - 1));
        user.releaseKey(XK_Control_L);
        user.stamp();
    }
    void otherProgramTakesControlF(int number)
    {
        const xcb_keycode_t key = user.keyOf(XK_F1 + static_cast<xcb_keysym_t>(number - 1));
        EXPECT_TRUE(otherProgram.accepted(xcb_grab_key_checked(otherProgram.get(), 1, otherProgram.root(),
                                                               XCB_MOD_MASK_CONTROL, key, XCB_GRAB_MODE_ASYNC,
                                                               XCB_GRAB_MODE_ASYNC)));
    }
};

/// Shows pictures in a window with alpha bytes of its own.
class X11ScreenRig
{
public:
    ~X11ScreenRig()
    {
        for (const QString &name : m_monitors)
            EXPECT_TRUE(xrandr({QStringLiteral("--delmonitor"), name}));
    }

    Screen &screen() { return m_screen; }

    void showAtLowerRightCorner(const QImage &picture)
    {
        xcb_connection_t *c = m_connection.get();
        const auto width = static_cast<std::uint16_t>(picture.width());
        const auto height = static_cast<std::uint16_t>(picture.height());
        const xcb_screen_t &root = m_connection.screen();
        const xcb_visualid_t visual = visualWithAlpha();
        const xcb_colormap_t colours = xcb_generate_id(c);
        xcb_create_colormap(c, XCB_COLORMAP_ALLOC_NONE, colours, root.root, visual);
        const xcb_window_t window = xcb_generate_id(c);
        const std::array<std::uint32_t, 4> values{0, 0, 1, colours};
        xcb_create_window(c, 32, window, root.root, static_cast<std::int16_t>(root.width_in_pixels - width),
                          static_cast<std::int16_t>(root.height_in_pixels - height), width, height, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
                          XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT |
                              XCB_CW_COLORMAP,
                          values.data());
        xcb_map_window(c, window);
        const xcb_gcontext_t context = xcb_generate_id(c);
        xcb_create_gc(c, context, window, 0, nullptr);
        EXPECT_TRUE(m_connection.accepted(
            xcb_put_image_checked(c, XCB_IMAGE_FORMAT_Z_PIXMAP, window, context, width, height, 0, 0, 0, 32,
                                  static_cast<std::uint32_t>(picture.sizeInBytes()), picture.constBits())));
    }

    void setMonitors(const QRect &first, const QRect &second)
    {
        // The first takes the display's only output away from the monitor that is there by itself.
        addMonitor(QStringLiteral("first"), first, QStringLiteral("screen"));
        addMonitor(QStringLiteral("second"), second, QStringLiteral("none"));
    }

private:
    xcb_visualid_t visualWithAlpha() const
    {
        auto depth = xcb_screen_allowed_depths_iterator(&m_connection.screen());
        while (depth.rem > 1 && depth.data->depth != 32)
            xcb_depth_next(&depth);
        return xcb_depth_visuals_iterator(depth.data).data->visual_id;
    }

    static bool xrandr(const QStringList &arguments)
    {
        return QProcess::execute(QStringLiteral("xrandr"), arguments) == 0;
    }

    void addMonitor(const QString &name, const QRect &area, const QString &output)
    {
        const QString place = QStringLiteral("%1/100x%2/100+%3+%4")
                                  .arg(area.width())
                                  .arg(area.height())
                                  .arg(area.x())
                                  .arg(area.y());
        ASSERT_TRUE(xrandr({QStringLiteral("--setmonitor"), name, place, output}));
        m_monitors += name;
    }

    X11Connection m_connection;
    X11Screen m_screen;
    QStringList m_monitors;
};
} // namespace

INSTANTIATE_TYPED_TEST_SUITE_P(X11, InputHookContract, X11HookRig<X11Recorder::WakeUp::RawEvents>);
INSTANTIATE_TYPED_TEST_SUITE_P(X11WithoutRawEvents, InputHookContract,
                               X11HookRig<X11Recorder::WakeUp::Timer>);
INSTANTIATE_TYPED_TEST_SUITE_P(X11, HotKeysContract, X11HotKeysRig);
INSTANTIATE_TYPED_TEST_SUITE_P(X11, ScreenContract, X11ScreenRig);
