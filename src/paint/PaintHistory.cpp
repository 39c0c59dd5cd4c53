#include "paint/PaintHistory.h"

namespace
{
int after(int slot)
{
    return slot < PaintHistory::slotCount - 1 ? slot + 1 : 0;
}

int before(int slot)
{
    return slot >= 1 ? slot - 1 : PaintHistory::slotCount - 1;
}
} // namespace

void PaintHistory::push(const QImage &picture)
{
    m_current = after(m_current);
    m_slots[static_cast<std::size_t>(m_current)] = picture;
    m_newest = m_current;
    if (m_oldest == m_current)
        m_oldest = after(m_oldest);
}

const QImage &PaintHistory::undo()
{
    if (undoEnabled())
        m_current = before(m_current);
    return picture();
}

const QImage &PaintHistory::redo()
{
    if (redoEnabled())
        m_current = after(m_current);
    return picture();
}

void PaintHistory::reset(const QImage &picture)
{
    m_current = m_newest = m_oldest = 0;
    m_slots.fill(QImage());
    m_slots[0] = picture;
}
