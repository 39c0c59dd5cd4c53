#pragma once

#include <QImage>

#include <vector>

/// The ten last pictures of a viewer, in a ring: drawing and loading push, Undo and Redo step. Equal pictures
/// share their pixels, so a slot costs memory only for what was drawn.
///
/// Slot 0 exists from the start, slots 1 to 9 from their first use. Undo never goes below slot 1: what lies
/// there is the first picture that was loaded, or, once the ring has gone round, an old one.
class ImageHistory
{
public:
    static constexpr int slotCount = 10;

    /// SetImageBuffer: a new entry after the current one.
    void push(const QImage &picture);

    /// UndoImage: the picture to be shown. With `stay` no step is made: what was drawn since the last entry
    /// is taken back.
    QImage undo(bool stay);

    /// RedoImage: the picture to be shown.
    QImage redo();

    /// ResetImageBuffer: only slot 0 is left, and it holds `picture`.
    void reset(const QImage &picture);

    /// States of the buttons.
    bool undoEnabled() const { return m_undoEnabled; }
    bool redoEnabled() const { return m_redoEnabled; }
    void setUndoEnabled(bool on) { m_undoEnabled = on; }

    int current() const { return m_current; }
    int newest() const { return m_newest; }
    int oldest() const { return m_oldest; }

private:
    int highest() const { return static_cast<int>(m_slots.size()) - 1; }
    const QImage &shown() const { return m_slots[static_cast<std::size_t>(m_current)]; }

    std::vector<QImage> m_slots = std::vector<QImage>(1);
    int m_current = 0; ///< the slot shown
    int m_newest = 0;  ///< the slot last written
    int m_oldest = 0;  ///< moves on when the ring overwrites it
    bool m_undoEnabled = false;
    bool m_redoEnabled = false;
};
