#include "contract/HotKeysContract.h"
#include "contract/InputHookContract.h"
#include "contract/ScreenContract.h"
#include "support/FakeHotKeys.h"
#include "support/FakeInputHook.h"
#include "support/FakeScreen.h"

#include <QPainter>

namespace
{
struct FakeHookRig {
    FakeInputHook fake;
    std::uint32_t time = 0xfffffff8; // so that the stamps wrap on the way

    InputHook &hook() { return fake; }
    std::uint32_t click(int x)
    {
        time += 2;
        fake.send({InputEvent::Kind::MouseDown, 0, 1, 0, QPoint(x, 100), time});
        fake.send({InputEvent::Kind::MouseUp, 0, 1, 0, QPoint(x, 100), time});
        return time + 1;
    }
};

struct FakeHotKeysRig {
    FakeHotKeys fake;

    static FakeHotKeys::Combination controlF(int number)
    {
        return {HotKeys::Modifier::Control, VirtualKey::F1 + number - 1};
    }
    FakeHotKeysRig() { fake.missingKeys.insert(5); }
    HotKeys &hotKeys() { return fake; }
    void pressControlF(int number)
    {
        for (const auto &[id, combination] : fake.registered) {
            if (combination == controlF(number))
                fake.press(id);
        }
    }
    void otherProgramTakesControlF(int number) { fake.heldByOthers.insert(controlF(number)); }
};

struct FakeScreenRig {
    FakeScreen fake;

    FakeScreenRig() { fake.picture = QImage(800, 600, QImage::Format_ARGB32); }
    Screen &screen() { return fake; }
    void showAtLowerRightCorner(const QImage &picture)
    {
        QPainter painter(&fake.picture);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawImage(fake.picture.rect().bottomRight() - picture.rect().bottomRight(), picture);
    }
    void setMonitors(const QRect &first, const QRect &second) { fake.monitors = {first, second}; }
};
} // namespace

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, InputHookContract, FakeHookRig);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, HotKeysContract, FakeHotKeysRig);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, ScreenContract, FakeScreenRig);
