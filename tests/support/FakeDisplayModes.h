#pragma once

#include "platform/DisplayModes.h"

#include <vector>

/// A display that changes as it is told.
class FakeDisplayModes : public DisplayModes
{
public:
    QSize size{1920, 1080};
    std::vector<QSize> modes{{1920, 1080}, {800, 600}};
    Change answer = Change::Done; ///< anything else leaves the size as it is
    std::vector<QSize> changes;

    QSize desktopSize() const override { return size; }
    bool offers(QSize wanted) const override
    {
        for (const QSize &mode : modes) {
            if (mode == wanted)
                return true;
        }
        return false;
    }
    Change change(QSize wanted) override
    {
        changes.push_back(wanted);
        if (answer == Change::Done)
            size = wanted;
        return answer;
    }
};
