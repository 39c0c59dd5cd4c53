#include "contract/HeldKey.h"
#include "contract/PrivateDisplay.h"
#include "platform/RunTimeError.h"
#include "platform/VirtualKeys.h"
#include "platform/x11/X11HotKeys.h"

#include <QTest>

#include <X11/keysym.h>

#include <gtest/gtest.h>

#include <vector>

namespace
{
using Modifier = HotKeys::Modifier;
constexpr int f5 = VirtualKey::F1 + 4;

struct X11HotKeysTest : testing::Test {
    XTestUser user;
    X11HotKeys keys;
    std::vector<int> fired;

    X11HotKeysTest()
    {
        keys.setHandler([this](int id, std::uint32_t) { fired.push_back(id); });
    }
    void typeWith(xcb_keysym_t modifier, xcb_keysym_t symbol)
    {
        for (int i = 0; i < 3; ++i)
            user.stamp(); // presses less than three milliseconds apart are repeats
        user.pressKey(modifier);
        user.type(symbol);
        user.releaseKey(modifier);
    }
    bool firesExactly(const std::vector<int> &expected)
    {
        return QTest::qWaitFor([&] { return fired.size() >= expected.size(); }) && fired == expected;
    }
    bool isFree(std::uint16_t modifiers) const
    {
        const X11Connection other;
        return other.accepted(xcb_grab_key_checked(other.get(), 1, other.root(), modifiers, user.keyOf(XK_F5),
                                                   XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
};
} // namespace

TEST_F(X11HotKeysTest, FiresWhateverTheLocksAndForItsOwnModifierOnly)
{
    ASSERT_TRUE(keys.registerKey(1, Modifier::Control, f5));
    ASSERT_TRUE(keys.registerKey(2, Modifier::Alt, f5));
    ASSERT_TRUE(keys.registerKey(3, Modifier::Shift, f5));
    for (int lock : {XK_Caps_Lock, XK_Num_Lock, XK_Caps_Lock, XK_Num_Lock}) {
        user.type(static_cast<xcb_keysym_t>(lock)); // CapsLock, both, NumLock, none
        user.type(XK_F5);
        user.pressKey(XK_Shift_L);
        typeWith(XK_Control_L, XK_F5);
        user.releaseKey(XK_Shift_L);
        fired.clear();
        typeWith(XK_Control_L, XK_F5);
        typeWith(XK_Alt_L, XK_F5);
        typeWith(XK_Shift_L, XK_F5);
        EXPECT_TRUE(firesExactly({1, 2, 3})) << lock << testing::PrintToString(fired);
    }
}

TEST_F(X11HotKeysTest, HeldKeyFiresOnce)
{
    ASSERT_TRUE(keys.registerKey(1, Modifier::Control, f5));
    ASSERT_TRUE(keys.registerKey(2, Modifier::Control, VirtualKey::F1));
    user.pressKey(XK_Control_L);
    holdKey(user, XK_F5);
    user.stamp();
    user.type(XK_F1);
    user.releaseKey(XK_Control_L);
    EXPECT_TRUE(firesExactly({1, 2})) << testing::PrintToString(fired);
}

TEST_F(X11HotKeysTest, OneVariantHeldByAnotherProgramRefusesAllOfThem)
{
    const X11Keyboard keyboard(user.connection());
    ASSERT_NE(keyboard.lockMask(), XCB_MOD_MASK_LOCK) << "NumLock has a modifier of its own";
    {
        const X11Connection other;
        const auto mask = static_cast<std::uint16_t>(XCB_MOD_MASK_CONTROL | keyboard.lockMask());
        ASSERT_TRUE(other.accepted(xcb_grab_key_checked(other.get(), 1, other.root(), mask, user.keyOf(XK_F5),
                                                        XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
        EXPECT_FALSE(keys.registerKey(1, Modifier::Control, f5));
        EXPECT_TRUE(isFree(XCB_MOD_MASK_CONTROL));
    }
    EXPECT_TRUE(QTest::qWaitFor([this] { return keys.registerKey(1, Modifier::Control, f5); }));
    EXPECT_FALSE(isFree(XCB_MOD_MASK_CONTROL));
    keys.unregisterKey(1);
    EXPECT_TRUE(QTest::qWaitFor([this] { return isFree(XCB_MOD_MASK_CONTROL); }));
}

TEST_F(X11HotKeysTest, FollowsItsKeyThroughAChangeOfTheKeyboardLayout)
{
    ASSERT_TRUE(keys.registerKey(1, Modifier::Control, f5));
    const xcb_keycode_t letter = user.keyOf(XK_q);
    const auto setSymbol = [&](xcb_keysym_t symbol) {
        xcb_change_keyboard_mapping(user.connection().get(), 1, letter, 1, &symbol);
        user.finish();
    };
    setSymbol(XK_F5);
    EXPECT_TRUE(QTest::qWaitFor([&] {
        typeWith(XK_Control_L, XK_F5); // the letter's key: it has the lower code
        return !fired.empty();
    }));
    setSymbol(XK_q);
}

TEST(X11HotKeysFailures, DisplayThatIsNotThereOrGoesAway)
{
    PrivateDisplay display({});
    X11HotKeys keys;
    display.end();
    EXPECT_FALSE(keys.registerKey(1, Modifier::Control, f5));
    EXPECT_THROW(X11HotKeys{}, RunTimeError);
}
