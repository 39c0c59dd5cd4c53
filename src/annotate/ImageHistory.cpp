#include "annotate/ImageHistory.h"

namespace
{
int following(int slot)
{
    return slot < ImageHistory::slotCount - 1 ? slot + 1 : 0;
}
} // namespace

void ImageHistory::push(const QImage &picture)
{
    const QImage entry = picture == shown() ? shown() : picture;
    m_current = following(m_current);
    if (m_current > highest())
        m_slots.resize(static_cast<std::size_t>(m_current) + 1);
    m_slots[static_cast<std::size_t>(m_current)] = entry;
    m_newest = m_current;
    if (m_oldest == m_current)
        m_oldest = following(m_oldest);
    m_redoEnabled = false;
}

QImage ImageHistory::undo(bool stay)
{
    if (!stay && m_current > 1) {
        --m_current;
        if (m_current == 1)
            m_undoEnabled = false;
    }
    if (m_current == m_oldest)
        m_undoEnabled = false;
    m_redoEnabled = true;
    return shown();
}

QImage ImageHistory::redo()
{
    if (m_current < highest()) {
        ++m_current;
        if (m_current == highest())
            m_redoEnabled = false;
    }
    m_undoEnabled = true;
    if (m_current == m_newest)
        m_redoEnabled = false;
    return shown();
}

void ImageHistory::reset(const QImage &picture)
{
    m_current = m_newest = m_oldest = 0;
    m_slots.assign(1, picture);
    m_undoEnabled = m_redoEnabled = false;
}
