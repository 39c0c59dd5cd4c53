#include "contract/PrivateDisplay.h"
#include "contract/XTestUser.h"
#include "platform/RunTimeError.h"
#include "platform/VirtualKeys.h"
#include "platform/x11/X11InputHook.h"

#include <QAbstractEventDispatcher>
#include <QDeadlineTimer>
#include <QTest>

#include <X11/keysym.h>

#include <gtest/gtest.h>

#include <ostream>
#include <vector>

namespace
{
using Kind = InputEvent::Kind;

/// An input event without its stamp.
struct Seen {
    Kind kind;
    int keyCode = 0;
    int button = 0;
    int shift = 0;
    QPoint position{100, 100};

    bool operator==(const Seen &) const = default;
    friend std::ostream &operator<<(std::ostream &out, const Seen &seen)
    {
        return out << "kind " << static_cast<int>(seen.kind) << " key " << seen.keyCode << " button "
                   << seen.button << " shift " << seen.shift << " at " << seen.position.x() << ','
                   << seen.position.y();
    }
};

Seen withoutStamp(const InputEvent &event)
{
    return {event.kind, event.keyCode, event.button, event.shift, event.position};
}

struct X11InputHookTest : testing::Test {
    XTestUser user;
    X11InputHook hook;
    std::vector<Seen> seen; ///< all but moves

    X11InputHookTest() { user.moveTo({100, 100}); }
    void start()
    {
        hook.start([this](const InputEvent &event) {
            if (event.kind != Kind::MouseMove)
                seen.push_back(withoutStamp(event));
        });
    }
    void typeAndExpect(xcb_keysym_t symbol, const Seen &press, const Seen &release)
    {
        seen.clear();
        user.type(symbol);
        hook.drain(0);
        EXPECT_EQ(seen, (std::vector<Seen>{press, release}));
    }
};
} // namespace

TEST_F(X11InputHookTest, NumbersButtonsAndIgnoresTheWheel)
{
    start();
    for (int button = 1; button <= 9; ++button)
        user.pressButton(button);
    for (int button = 1; button <= 9; ++button)
        user.releaseButton(button);
    hook.drain(0);
    const std::vector<Seen> expected{
        {Kind::MouseDown, 0, 1},  {Kind::MouseDown, 0, 4}, {Kind::MouseDown, 0, 2}, {Kind::MouseDown, 0, 8},
        {Kind::MouseDown, 0, 16}, {Kind::MouseUp, 0, 1},   {Kind::MouseUp, 0, 4},   {Kind::MouseUp, 0, 2},
        {Kind::MouseUp, 0, 8},    {Kind::MouseUp, 0, 16}};
    EXPECT_EQ(seen, expected);
}

TEST_F(X11InputHookTest, PositionIsThatOfTheEventHoweverFastTheNextOneComes)
{
    start();
    user.moveTo({200, 250});
    user.pressButton(1);
    user.moveTo({400, 250});
    user.releaseButton(1);
    user.type(XK_Tab);
    user.moveTo({1000, 800});
    hook.drain(0);
    const std::vector<Seen> expected{{Kind::MouseDown, 0, 1, 0, {200, 250}},
                                     {Kind::MouseUp, 0, 1, 0, {400, 250}},
                                     {Kind::KeyDown, VirtualKey::Tab, 0, 0, {400, 250}},
                                     {Kind::KeyUp, VirtualKey::Tab, 0, 0, {400, 250}}};
    EXPECT_EQ(seen, expected);
}

TEST_F(X11InputHookTest, NumbersKeysAndTellsModifiers)
{
    user.pressKey(XK_Control_L); // held before the hook begins
    start();
    user.click(1);
    hook.drain(0);
    EXPECT_EQ(seen.back(), (Seen{Kind::MouseUp, 0, 1, InputEvent::CtrlKey}));
    user.releaseKey(XK_Control_L);
    hook.drain(0);

    typeAndExpect(XK_Escape, {Kind::KeyDown, 27}, {Kind::KeyUp, 27});
    typeAndExpect(XK_KP_Enter, {Kind::KeyDown, 13}, {Kind::KeyUp, 13});
    typeAndExpect(XK_q, {Kind::KeyDown, 'Q'}, {Kind::KeyUp, 'Q'});
    typeAndExpect(XK_7, {Kind::KeyDown, '7'}, {Kind::KeyUp, '7'});
    typeAndExpect(XK_F12, {Kind::KeyDown, 123}, {Kind::KeyUp, 123});
    typeAndExpect(XK_comma, {Kind::KeyDown, 0}, {Kind::KeyUp, 0});
    user.pressKey(XK_Shift_R);
    hook.drain(0);
    typeAndExpect(XK_Tab, {Kind::KeyDown, 9, 0, InputEvent::ShiftKey},
                  {Kind::KeyUp, 9, 0, InputEvent::ShiftKey});
    user.releaseKey(XK_Shift_R);
    user.pressKey(XK_Alt_L);
    hook.drain(0);
    typeAndExpect(XK_F9, {Kind::SystemKeyDown, 120, 0, InputEvent::AltKey},
                  {Kind::KeyUp, 120, 0, InputEvent::AltKey});
    user.releaseKey(XK_Alt_L);
    hook.drain(0);
    typeAndExpect(XK_F9, {Kind::KeyDown, 120}, {Kind::KeyUp, 120});
}

TEST_F(X11InputHookTest, SeesWhatAnotherProgramHasGrabbed)
{
    start();
    const X11Connection other;
    const auto pointer = other.reply(
        xcb_grab_pointer_reply, xcb_grab_pointer(other.get(), 0, other.root(), 0, XCB_GRAB_MODE_ASYNC,
                                                 XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME));
    const auto keyboard =
        other.reply(xcb_grab_keyboard_reply, xcb_grab_keyboard(other.get(), 0, other.root(), XCB_CURRENT_TIME,
                                                               XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    ASSERT_TRUE(pointer && keyboard && pointer->status == 0 && keyboard->status == 0);
    user.click(3);
    user.type(XK_Return);
    EXPECT_TRUE(QTest::qWaitFor([this] { return seen.size() == 4; }));
    const std::vector<Seen> expected{
        {Kind::MouseDown, 0, 2}, {Kind::MouseUp, 0, 2}, {Kind::KeyDown, 13}, {Kind::KeyUp, 13}};
    EXPECT_EQ(seen, expected);
}

TEST_F(X11InputHookTest, DrainLetsTheProgramBreatheButDeliversOneAtATime)
{
    int breaths = 0, inHandler = 0;
    std::vector<int> breathsSeen;
    QTimer ticker;
    QObject::connect(&ticker, &QTimer::timeout, [&breaths] { ++breaths; });
    ticker.start(0);
    hook.start([&](const InputEvent &event) {
        EXPECT_EQ(++inHandler, 1);
        if (event.kind == Kind::MouseUp)
            breathsSeen.push_back(breaths);
        --inHandler;
    });
    for (int i = 0; i < 3; ++i)
        user.click(1);
    QCoreApplication::processEvents(); // the first is on its way when Stop comes
    hook.drain(0);
    ASSERT_EQ(breathsSeen.size(), 3U);
    EXPECT_LT(breathsSeen[0], breathsSeen[1]);
    EXPECT_LT(breathsSeen[1], breathsSeen[2]);
}

TEST_F(X11InputHookTest, DrainEndsWhileAnotherProgramHasGrabbedTheServer)
{
    start();
    user.click(1);
    const X11Connection other;
    EXPECT_TRUE(other.accepted(xcb_grab_server_checked(other.get())));
    hook.drain(0);
    EXPECT_TRUE(other.accepted(xcb_ungrab_server_checked(other.get())));
    hook.drain(0);
    EXPECT_EQ(seen, (std::vector<Seen>{{Kind::MouseDown, 0, 1}, {Kind::MouseUp, 0, 1}}));
}

TEST_F(X11InputHookTest, RepeatsRecordedAsReleaseAndPressAreDropped)
{
    const X11Keyboard keyboard(user.connection());
    X11EventTranslator translator(keyboard,
                                  [this](const InputEvent &event) { seen.push_back(withoutStamp(event)); });
    translator.begin({100, 100}, {});
    const auto record = [&](std::uint8_t type, std::uint32_t time) {
        xcb_key_press_event_t event{};
        event.response_type = type;
        event.detail = user.keyOf(XK_Tab);
        event.time = time;
        translator.add(event);
    };
    record(XCB_KEY_PRESS, 0xfffffff0);
    for (std::uint32_t time : {0xfffffffeU, 30U, 60U}) {
        record(XCB_KEY_RELEASE, time);
        record(XCB_KEY_PRESS, time + 2);
    }
    record(XCB_KEY_RELEASE, 90);
    record(XCB_KEY_PRESS, 140); // typed anew
    EXPECT_EQ(seen, (std::vector<Seen>{{Kind::KeyDown, 9}, {Kind::KeyUp, 9}, {Kind::KeyDown, 9}}));
}

TEST_F(X11InputHookTest, FollowsAChangeOfTheKeyboardLayout)
{
    start();
    const xcb_keycode_t key = user.keyOf(XK_q);
    const auto setSymbol = [&](xcb_keysym_t symbol) {
        xcb_change_keyboard_mapping(user.connection().get(), 1, key, 1, &symbol);
        user.finish();
    };
    setSymbol(XK_Return);
    user.pressKey(XK_a); // also shows that the hook has read the change before it
    user.releaseKey(XK_a);
    EXPECT_TRUE(QTest::qWaitFor([this] { return seen.size() == 2; }));
    typeAndExpect(XK_Return, {Kind::KeyDown, 13}, {Kind::KeyUp, 13});
    setSymbol(XK_q);
}

TEST(X11InputHookPromptness, AsksTheServerForWhatItKeeps)
{
    for (const auto wakeUp : {X11Recorder::WakeUp::RawEvents, X11Recorder::WakeUp::Timer}) {
        const PrivateDisplay nothingElseOnIt({});
        XTestUser user;
        X11InputHook hook(wakeUp);
        int releases = 0;
        hook.start([&releases](const InputEvent &event) { releases += event.kind == Kind::MouseUp ? 1 : 0; });
        user.waits = false;
        constexpr int limit = 2000; // left alone, the server keeps records for longer
        user.click(1);
        EXPECT_TRUE(QTest::qWaitFor([&] { return releases == 1; }, limit));
        for (int expected : {2, 3}) { // a request of the event loop may still serve the first of them
            user.click(1);
            const QDeadlineTimer soon(limit);
            while (releases < expected && !soon.hasExpired())
                hook.drain(0);
            EXPECT_EQ(releases, expected);
        }
    }
}

TEST(X11InputHookFailures, NoRecordExtensionOrNoDisplayIsAnErrorAtTheStart)
{
    X11InputHook hook;
    const auto start = [&hook] { hook.start([](const InputEvent &) {}); };
    {
        PrivateDisplay display({QStringLiteral("-extension"), QStringLiteral("RECORD")});
        EXPECT_THROW(start(), RunTimeError);
        display.end();
        EXPECT_THROW(start(), RunTimeError);
    }
    EXPECT_FALSE(hook.running());
    EXPECT_NO_THROW(start());
}

TEST(X11InputHookFailures, DisplayThatGoesAwayLeavesTheEventLoopIdle)
{
    PrivateDisplay display({});
    X11InputHook hook;
    hook.start([](const InputEvent &) {});
    display.end();
    const auto isIdle = [] {
        return !QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents);
    };
    EXPECT_TRUE(QTest::qWaitFor(isIdle));
    hook.drain(0);
    hook.suspend();
    hook.resume(1);
    EXPECT_NO_THROW(hook.stop());
}
