#include "capture/mHotKey.h"
#include "support/FakeHotKeys.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr auto Ctrl = HotKeys::Modifier::Control;
constexpr auto Alt = HotKeys::Modifier::Alt;
constexpr auto Shift = HotKeys::Modifier::Shift;

const std::array<QString, 10> defaults{u"Ctrl-F1"_s,  u"Ctrl-F2"_s, u"Ctrl-F3"_s, u"Ctrl-F5"_s,
                                       u"Ctrl-F6"_s,  u"Ctrl-F7"_s, u"Ctrl-F8"_s, u"Ctrl-F9"_s,
                                       u"Ctrl-F10"_s, u"Ctrl-F11"_s};
} // namespace

TEST(HotKeyText, ReadsModifierAndKey)
{
    struct Case {
        QString text;
        std::optional<mHotKey::Combination> expected;
    };
    using C = mHotKey::Combination;
    for (const Case &each :
         {Case{u"Ctrl-F1"_s, C{Ctrl, 112}}, Case{u"Alt-Z"_s, C{Alt, 90}}, Case{u"Shift-0"_s, C{Shift, 48}},
          Case{u"Ctrl-F16"_s, C{Ctrl, 127}}, Case{u"ctrl-a"_s, C{Ctrl, 65}}, Case{u"Ctrl-9"_s, C{Ctrl, 57}},
          Case{u"Win-F1"_s, {}}, Case{u"Ctrl-F17"_s, {}}, Case{u"Ctrl-F0"_s, {}}, Case{u"Ctrl-"_s, {}},
          Case{u"CtrlF1"_s, {}}, Case{u""_s, {}}, Case{u"Ctrl-Alt-F1"_s, {}}, Case{u"Ctrl-F"_s, C{Ctrl, 70}},
          Case{u"Ctrl-ä"_s, {}}, Case{u"Ctrl-F1x"_s, {}}, Case{u"Ctrl-F01"_s, {}}, Case{u"Ctrl-F+1"_s, {}}}) {
        EXPECT_EQ(mHotKey::parse(each.text), each.expected) << each.text.toStdString();
    }
}

TEST(HotKeyRegistration, DefaultsTakeTheTenIdentifiers)
{
    FakeHotKeys keys;
    mHotKey hotKeys(keys);
    EXPECT_TRUE(hotKeys.setHotKey(defaults));
    ASSERT_EQ(keys.registered.size(), 10U);
    EXPECT_EQ(keys.registered[1], (std::pair(Ctrl, 112)));
    EXPECT_EQ(keys.registered[4], (std::pair(Ctrl, 116))); // Ctrl-F4 is left free
    EXPECT_EQ(keys.registered[10], (std::pair(Ctrl, 122)));

    hotKeys.UnregisterAllHotKeys();
    EXPECT_TRUE(keys.registered.empty());
    hotKeys.UnregisterAllHotKeys(); // nothing left to do
}

TEST(HotKeyRegistration, WhatIsUnknownOrTakenLeavesTheOthersTheirIdentifiers)
{
    FakeHotKeys keys;
    mHotKey hotKeys(keys);
    std::array<QString, 10> names = defaults;
    names[0] = u"Win-F1"_s;
    names[9] = u"Ctrl-F2"_s; // the second action already has it
    EXPECT_TRUE(hotKeys.setHotKey(names));
    EXPECT_EQ(keys.registered.size(), 8U);
    EXPECT_FALSE(keys.registered.contains(1));
    EXPECT_EQ(keys.registered[2], (std::pair(Ctrl, 113)));
    EXPECT_FALSE(keys.registered.contains(10));
    hotKeys.UnregisterAllHotKeys();
    EXPECT_TRUE(keys.registered.empty());
}

TEST(HotKeyRegistration, TellsWhatAnotherProgramHolds)
{
    FakeHotKeys keys;
    mHotKey hotKeys(keys);
    keys.heldByOthers = {{Ctrl, 113}, {Alt, 90}};
    std::array<QString, 10> names = defaults;
    names[8] = u"Alt-Z"_s;
    names[9] = u"Ctrl-F1"_s; // the program itself has it
    EXPECT_TRUE(hotKeys.setHotKey(names));
    EXPECT_EQ(hotKeys.refused(), (std::vector<mHotKey::Combination>{{Ctrl, 113}, {Alt, 90}}));
    hotKeys.UnregisterAllHotKeys();
    EXPECT_TRUE(hotKeys.refused().empty());
}
