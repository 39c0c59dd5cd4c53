#pragma once

#include "platform/HotKeys.h"
#include "platform/VirtualKeys.h"

#include <QTest>

#include <gtest/gtest.h>

#include <vector>

/// What all hot keys must do. `Rig` has them and a user:
///   HotKeys &hotKeys();
///   void pressControlF(int number);                 Ctrl with that function key, down and up
///   void otherProgramTakesControlF(int number);
template <typename Rig>
class HotKeysContract : public testing::Test
{
protected:
    Rig rig;
    HotKeys &keys = rig.hotKeys();
    std::vector<int> fired;

    HotKeysContract()
    {
        keys.setHandler([this](int id, std::uint32_t) { fired.push_back(id); });
    }
    bool registerControlF(int id, int number)
    {
        return keys.registerKey(id, HotKeys::Modifier::Control, VirtualKey::F1 + number - 1);
    }
    void runUntilFired(std::size_t count)
    {
        EXPECT_TRUE(QTest::qWaitFor([&] { return fired.size() >= count; }));
    }
};

TYPED_TEST_SUITE_P(HotKeysContract);

TYPED_TEST_P(HotKeysContract, FiresThroughTheEventLoopUntilGivenBack)
{
    ASSERT_TRUE(this->registerControlF(7, 5));
    ASSERT_TRUE(this->registerControlF(8, 6));
    this->rig.pressControlF(6);
    this->rig.pressControlF(5);
    EXPECT_TRUE(this->fired.empty());
    this->runUntilFired(2);

    this->keys.unregisterKey(7);
    this->keys.unregisterKey(99);
    this->rig.pressControlF(5);
    this->rig.pressControlF(6);
    this->runUntilFired(3);
    EXPECT_EQ(this->fired, (std::vector<int>{8, 7, 8}));
    EXPECT_TRUE(this->registerControlF(7, 5)) << "given back, it is free again";
}

TYPED_TEST_P(HotKeysContract, RefusesWhatIsTakenAndKeepsNothing)
{
    this->rig.otherProgramTakesControlF(5);
    EXPECT_FALSE(this->registerControlF(1, 5));
    EXPECT_TRUE(this->registerControlF(1, 6)) << "the number is still free";
    EXPECT_FALSE(this->registerControlF(1, 7)) << "the number is taken";
    EXPECT_FALSE(this->registerControlF(2, 6)) << "the combination is taken";
    EXPECT_FALSE(this->keys.registerKey(3, HotKeys::Modifier::Control, 5)) << "no key has this code";
    EXPECT_TRUE(this->registerControlF(2, 7));
    this->rig.pressControlF(6);
    this->runUntilFired(1);
    EXPECT_EQ(this->fired, std::vector<int>{1});
}

REGISTER_TYPED_TEST_SUITE_P(HotKeysContract, FiresThroughTheEventLoopUntilGivenBack,
                            RefusesWhatIsTakenAndKeepsNothing);
