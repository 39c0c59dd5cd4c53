#pragma once

#include "contract/XTestUser.h"
#include "platform/x11/X11Recorder.h"

#include <QTest>

#include <gtest/gtest.h>

/// `user` presses a key and lets it go when the display has repeated it three times.
inline void holdKey(XTestUser &user, xcb_keysym_t symbol)
{
    int presses = 0;
    const xcb_keycode_t key = user.keyOf(symbol);
    const auto count = [&](const xcb_key_press_event_t &event) {
        presses += event.response_type == XCB_KEY_PRESS && event.detail == key ? 1 : 0;
    };
    const X11Recorder recorder(X11Recorder::WakeUp::Timer, {count, [] {}});
    user.pressKey(symbol);
    EXPECT_TRUE(QTest::qWaitFor([&] { return presses >= 4; }));
    user.releaseKey(symbol);
}
