#pragma once

#include <QRect>

/// What a snapshot of a run grabs, and whether it is reduced: a pure function of rectangles and options.

struct GrabSituation {
    QRect desktop;    ///< the monitor of the snapshot, physical pixels
    QRect foreground; ///< the active window with its frame; empty when there is none
    bool isWinXPOrLater = false;
    int bigPicSize = 100;         ///< percent; below 100 reduction is on
    bool wideWindow = false;      ///< as the last grab of an active window left it
    bool displaySwitched = false; ///< the display was switched to 800x600
};

enum class Grab { Screen, ScreenAdjust, ActiveWindow };

struct GrabDecision {
    bool wholeScreenShot = false; ///< by the place of the window's top edge alone
    Grab grab = Grab::Screen;
    bool reduce = false; ///< scale to bigPicSize percent before saving
};

/// True when the window's top edge asks for the whole screen: less than 60 pixels above the desktop's bottom
/// or, on XP-or-later systems, in the upper 60 percent of the desktop.
bool wantsWholeScreen(const GrabSituation &situation);

/// Is reduction on: a percentage below 100? Zero and less are no size that a picture could have.
bool isReduction(int bigPicSize);

GrabDecision decideGrab(const GrabSituation &situation);

/// Is a window of this width wide: wider than `bigPicSize` percent of the desktop (rounded, halves to even)?
bool isWideWindow(int windowWidth, int desktopWidth, int bigPicSize);
