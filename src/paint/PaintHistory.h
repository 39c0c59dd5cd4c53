#pragma once

#include <QImage>

#include <array>

/// The last pictures of the paint editor, in a ring of eleven slots (0 to 10). A push writes the slot after
/// the current one and overwrites the oldest picture once the ring is full, so ten steps can be undone.
/// Pictures share their pixels with the canvas until that is drawn on; a picture brings its size along.
class PaintHistory
{
public:
    static constexpr int slotCount = 11;

    /// SetImageBuffer: a new entry after the current one; what had been undone is gone.
    void push(const QImage &picture);

    /// The picture to be shown: that of the slot before (before 0 comes 10) or after the current one. At the
    /// oldest and the newest nothing moves.
    const QImage &undo();
    const QImage &redo();

    /// ResetImageBuffer: only slot 0 is left, and it holds `picture`.
    void reset(const QImage &picture);

    bool undoEnabled() const { return m_current != m_oldest; }
    bool redoEnabled() const { return m_current != m_newest; }

    /// Of the current slot.
    const QImage &picture() const { return m_slots[static_cast<std::size_t>(m_current)]; }

    int current() const { return m_current; } ///< the slot shown
    int newest() const { return m_newest; }   ///< the slot last pushed
    int oldest() const { return m_oldest; }   ///< moves on when the ring overwrites it

private:
    std::array<QImage, slotCount> m_slots; ///< null where nothing has been pushed yet
    int m_current = 0;
    int m_newest = 0;
    int m_oldest = 0;
};
