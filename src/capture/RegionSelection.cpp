#include "capture/RegionSelection.h"

#include <algorithm>
#include <cstdlib>

using namespace Qt::Literals::StringLiterals;

namespace
{
int besidePointer(int pointer, int length, int distance, int first, int end)
{
    int place = pointer + distance;
    if (place + length > end)
        place = pointer - distance - length;
    return std::max(place, first);
}
} // namespace

void RegionSelection::press(QPoint position)
{
    m_dragging = true;
    m_start = m_current = position;
    m_rectangle = {};
}

void RegionSelection::move(QPoint position)
{
    if (!m_dragging)
        return;
    m_current = position;
    const QPoint corner(std::min(m_start.x(), m_current.x()), std::min(m_start.y(), m_current.y()));
    const QSize size(std::abs(m_current.x() - m_start.x()), std::abs(m_current.y() - m_start.y()));
    m_rectangle = QRect(corner, size) & m_desktop;
}

QString RegionSelection::sizeText() const
{
    return u"%1 x %2"_s.arg(m_rectangle.width()).arg(m_rectangle.height());
}

QRect RegionSelection::labelPlace(QSize label, int distance) const
{
    const int x = besidePointer(m_current.x(), label.width(), distance, m_desktop.x(),
                                m_desktop.x() + m_desktop.width());
    const int y = besidePointer(m_current.y(), label.height(), distance, m_desktop.y(),
                                m_desktop.y() + m_desktop.height());
    return {QPoint(x, y), label};
}
