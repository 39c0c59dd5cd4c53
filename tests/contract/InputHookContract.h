#pragma once

#include "platform/InputHook.h"
#include "platform/RunTimeError.h"

#include <QEventLoop>
#include <QTest>

#include <gtest/gtest.h>

#include <vector>

/// What every input hook must do. `Rig` has a hook and a user:
///   InputHook &hook();
///   std::uint32_t click(int x);   presses and releases the left button at (x, 100) and returns a stamp that
///                                 lies between this and the next click; it is not delivered yet.
template <typename Rig>
class InputHookContract : public testing::Test
{
protected:
    Rig rig;
    InputHook &hook = rig.hook();
    std::vector<int> seen; ///< x of each release delivered

    /// `then` runs after each release has been noted.
    void start(const std::function<void()> &then = [] {})
    {
        hook.start([this, then](const InputEvent &event) {
            if (event.kind != InputEvent::Kind::MouseUp)
                return;
            seen.push_back(event.position.x());
            then();
        });
    }
    void runUntilSeen(int x)
    {
        EXPECT_TRUE(QTest::qWaitFor([&] { return !seen.empty() && seen.back() == x; })) << x;
    }
};

using Clicks = std::vector<int>;

TYPED_TEST_SUITE_P(InputHookContract);

TYPED_TEST_P(InputHookContract, DeliversInOrderAndOnlyThroughTheEventLoop)
{
    this->start();
    for (int x : {10, 20, 30})
        this->rig.click(x);
    EXPECT_EQ(this->seen, Clicks{});
    this->runUntilSeen(30);
    EXPECT_EQ(this->seen, (Clicks{10, 20, 30}));
}

TYPED_TEST_P(InputHookContract, DrainDeliversUpToTheStampAndDropsTheRest)
{
    this->start();
    this->rig.click(10);
    const auto second = this->rig.click(20);
    this->rig.click(30);
    this->hook.drain(second);
    EXPECT_EQ(this->seen, (Clicks{10, 20}));

    this->rig.click(40);
    this->hook.drain(0);
    EXPECT_EQ(this->seen, (Clicks{10, 20, 40}));
    this->rig.click(50);
    this->runUntilSeen(50);
    EXPECT_EQ(this->seen, (Clicks{10, 20, 40, 50}));
}

TYPED_TEST_P(InputHookContract, HandlerMayDrain)
{
    std::uint32_t second = 0;
    this->start([&] { this->hook.drain(second); });
    this->rig.click(10);
    second = this->rig.click(20);
    this->rig.click(30);
    this->runUntilSeen(20);
    this->rig.click(40);
    second = 0;
    this->runUntilSeen(40);
    EXPECT_EQ(this->seen, (Clicks{10, 20, 40}));
}

TYPED_TEST_P(InputHookContract, EventLoopOfAHandlerGetsTheNextEvents)
{
    Clicks finished;
    this->start([&] {
        const int x = this->seen.back();
        if (x == 10)
            this->runUntilSeen(30);
        finished.push_back(x);
    });
    for (int x : {10, 20, 30})
        this->rig.click(x);
    EXPECT_TRUE(QTest::qWaitFor([&] { return finished.size() == 3; }));
    EXPECT_EQ(this->seen, (Clicks{10, 20, 30}));
    EXPECT_EQ(finished, (Clicks{20, 30, 10}));
}

TYPED_TEST_P(InputHookContract, HandlerMayStopAndStartAgain)
{
    this->start([&] { this->hook.stop(); });
    this->rig.click(10);
    this->rig.click(20);
    this->runUntilSeen(10);
    EXPECT_FALSE(this->hook.running());
    EXPECT_THROW(this->hook.stop(), RunTimeError);

    this->start([&] { this->hook.stop(); });
    EXPECT_TRUE(this->hook.running());
    this->rig.click(30);
    this->rig.click(40);
    this->hook.drain(0);
    EXPECT_EQ(this->seen, (Clicks{10, 30}));
}

TYPED_TEST_P(InputHookContract, DropsWhatHappensWhileSuspended)
{
    this->start([&] {
        if (this->seen.back() == 10)
            this->hook.suspend();
    });
    this->rig.click(10);
    this->rig.click(20); // waits to be delivered when the box opens
    this->runUntilSeen(10);
    this->hook.suspend();
    this->hook.resume(this->rig.click(30));
    this->rig.click(40);
    this->hook.resume(this->rig.click(50));
    this->rig.click(60);
    this->runUntilSeen(60);

    this->hook.suspend();
    this->rig.click(70);
    this->hook.resume(0);
    this->hook.resume(0); // one too many changes nothing
    this->rig.click(80);
    this->runUntilSeen(80);
    EXPECT_EQ(this->seen, (Clicks{10, 60, 80}));

    // Stopped while suspended: what resumes afterwards does so for the next start.
    this->hook.suspend();
    this->hook.stop();
    this->hook.resume(0);
    this->start();
    this->rig.click(90);
    this->runUntilSeen(90);
}

REGISTER_TYPED_TEST_SUITE_P(InputHookContract, DeliversInOrderAndOnlyThroughTheEventLoop,
                            DrainDeliversUpToTheStampAndDropsTheRest, HandlerMayDrain,
                            EventLoopOfAHandlerGetsTheNextEvents, HandlerMayStopAndStartAgain,
                            DropsWhatHappensWhileSuspended);
