#pragma once

#include <QImage>

#include <array>
#include <memory>
#include <vector>

/// The last pictures of the paint editor, in a ring of eleven slots (0 to 10). A push writes the slot after
/// the current one and overwrites the oldest picture once the ring is full, so ten steps can be undone.
/// A picture brings its size along.
///
/// Pictures are kept in tiles, and a tile that a push has not changed is shared with the slot before it:
/// eleven slots cost one picture and what was changed, not eleven pictures.
class PaintHistory
{
public:
    static constexpr int slotCount = 11;

    /// SetImageBuffer: a new entry after the current one; what had been undone is gone. Format_RGB32.
    void push(const QImage &picture);

    /// The picture to be shown: that of the slot before (before 0 comes 10) or after the current one. At the
    /// oldest and the newest nothing moves.
    const QImage &undo();
    const QImage &redo();

    /// ResetImageBuffer: only slot 0 is left, and it holds `picture`.
    void reset(const QImage &picture);

    bool undoEnabled() const { return m_current != m_oldest; }
    bool redoEnabled() const { return m_current != m_newest; }

    /// Of the current slot. Shares its pixels with the canvas until that is drawn on.
    const QImage &picture() const { return m_picture; }

    int current() const { return m_current; } ///< the slot shown
    int newest() const { return m_newest; }   ///< the slot last pushed
    int oldest() const { return m_oldest; }   ///< moves on when the ring overwrites it

    qint64 bytes() const; ///< of all tiles

private:
    static constexpr int tileSide = 128; ///< pixels

    using Tile = std::vector<QRgb>; ///< row by row
    struct Slot {
        QSize size;
        QSize dotsPerMetre;
        std::vector<std::shared_ptr<const Tile>> tiles; ///< row by row, the last ones of a row smaller
    };
    static std::vector<QRect> places(QSize picture);
    Slot cut(const QImage &picture) const;
    const QImage &show(int slot);

    std::array<Slot, slotCount> m_slots; ///< empty where nothing has been pushed yet
    QImage m_picture;
    int m_current = 0;
    int m_newest = 0;
    int m_oldest = 0;
};
