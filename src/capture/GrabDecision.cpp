#include "capture/GrabDecision.h"

#include "platform/Rounding.h"

namespace
{
constexpr double upperPart = 0.4;
constexpr int lowestStrip = 60;
} // namespace

bool wantsWholeScreen(const GrabSituation &situation)
{
    const int bottom = situation.desktop.y() + situation.desktop.height();
    const int fromBottom = bottom - situation.foreground.y();
    // Single precision, then compared in double: a window exactly at 40 percent counts as upper.
    const auto ratio = static_cast<float>(static_cast<double>(fromBottom) / situation.desktop.height());
    const bool low = static_cast<double>(ratio) <= upperPart || !situation.isWinXPOrLater;
    return !(low && fromBottom >= lowestStrip);
}

bool isReduction(int bigPicSize)
{
    return bigPicSize > 0 && bigPicSize < 100;
}

GrabDecision decideGrab(const GrabSituation &situation)
{
    const bool reduction = isReduction(situation.bigPicSize);
    GrabDecision decision;
    decision.wholeScreenShot = wantsWholeScreen(situation);
    if (situation.foreground.height() == 0) {
        decision.grab = Grab::Screen;
        decision.reduce = reduction;
    } else if (decision.wholeScreenShot) {
        decision.grab = !reduction && situation.displaySwitched ? Grab::ScreenAdjust : Grab::Screen;
        decision.reduce = reduction;
    } else {
        decision.grab = Grab::ActiveWindow;
        decision.reduce = reduction && situation.wideWindow;
    }
    return decision;
}

bool isWideWindow(int windowWidth, int desktopWidth, int bigPicSize)
{
    return windowWidth > Rounding::toInt(desktopWidth * 0.01 * bigPicSize);
}
