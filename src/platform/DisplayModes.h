#pragma once

#include <QSize>

/// The size of the desktop, and changing it. Sizes are physical pixels. With several monitors it is the
/// primary one that changes.
class DisplayModes
{
public:
    virtual ~DisplayModes() = default;

    /// Of the primary monitor; empty when there is no display.
    virtual QSize desktopSize() const = 0;

    /// The display has a mode of this size.
    virtual bool offers(QSize size) const = 0;

    /// A changed mode outlives the program.
    enum class Change { Done, NeedsRestart, Refused };
    virtual Change change(QSize size) = 0;
};
