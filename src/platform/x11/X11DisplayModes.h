#pragma once

#include "platform/DisplayModes.h"
#include "platform/x11/X11Connection.h"

/// Through RandR 1.3: the output that is primary, else the first that shows something.
class X11DisplayModes : public DisplayModes
{
public:
    QSize desktopSize() const override;
    bool offers(QSize size) const override;
    Change change(QSize size) override;

private:
    X11Connection m_connection;
};
