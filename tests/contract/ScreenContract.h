#pragma once

#include "platform/Screen.h"

#include <gtest/gtest.h>

/// What every screen must do. `Rig` has one and shows things on it:
///   Screen &screen();
///   void showAtLowerRightCorner(const QImage &picture);   alpha bytes as they are in the picture
///   void setMonitors(const QRect &first, const QRect &second);
template <typename Rig>
class ScreenContract : public testing::Test
{
protected:
    Rig rig;
    Screen &screen = rig.screen();
};

TYPED_TEST_SUITE_P(ScreenContract);

TYPED_TEST_P(ScreenContract, GrabsAreClippedOpaqueAndOwnTheirPixels)
{
    QImage corner(2, 2, QImage::Format_ARGB32);
    corner.setPixel(0, 0, 0x00112233);
    corner.setPixel(1, 0, 0x80445566);
    corner.setPixel(0, 1, 0xff778899);
    corner.setPixel(1, 1, 0x7faabbcc);
    this->rig.showAtLowerRightCorner(corner);

    const QRect desktop = this->screen.desktop();
    const QRect across(desktop.right() - 1, desktop.bottom() - 1, 50, 40);
    const QImage grabbed = this->screen.grab(across);
    corner.fill(Qt::white);
    this->rig.showAtLowerRightCorner(corner);
    const QImage later = this->screen.grab(across);

    ASSERT_EQ(grabbed.size(), QSize(2, 2));
    EXPECT_EQ(grabbed.format(), QImage::Format_RGB32);
    const auto bytes = [&grabbed](int x, int y) {
        return reinterpret_cast<const quint32 *>(grabbed.constScanLine(y))[x];
    };
    EXPECT_EQ(bytes(0, 0), 0xff112233U);
    EXPECT_EQ(bytes(1, 0), 0xff445566U);
    EXPECT_EQ(bytes(0, 1), 0xff778899U);
    EXPECT_EQ(bytes(1, 1), 0xffaabbccU);
    EXPECT_EQ(later.pixel(0, 0), 0xffffffffU);

    EXPECT_EQ(this->screen.grab(desktop.adjusted(-5, -5, 5, 5)).size(), desktop.size());
    EXPECT_TRUE(this->screen.grab(desktop.translated(desktop.width(), 0)).isNull());
    EXPECT_TRUE(this->screen.grab(QRect()).isNull());
}

TYPED_TEST_P(ScreenContract, MonitorIsTheOneThatHoldsThePointOrTheNearest)
{
    const QRect left(0, 0, 400, 600);
    const QRect right(400, 200, 300, 300);
    this->rig.setMonitors(left, right);
    EXPECT_EQ(this->screen.monitorAt({399, 599}), left);
    EXPECT_EQ(this->screen.monitorAt({400, 200}), right);
    EXPECT_EQ(this->screen.monitorAt({600, 190}), right) << "10 above the right one, 201 beside the left one";
    EXPECT_EQ(this->screen.monitorAt({420, 100}), left) << "21 beside the left one, 100 above the right one";
    EXPECT_EQ(this->screen.monitorAt({-50, -50}), left);
}

TYPED_TEST_P(ScreenContract, NoActiveWindowIsAnEmptyRectangle)
{
    EXPECT_EQ(this->screen.foregroundWindow(), QRect());
}

REGISTER_TYPED_TEST_SUITE_P(ScreenContract, GrabsAreClippedOpaqueAndOwnTheirPixels,
                            MonitorIsTheOneThatHoldsThePointOrTheNearest, NoActiveWindowIsAnEmptyRectangle);
