#include "paint/PaintHistory.h"

#include <algorithm>
#include <set>

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

const QRgb *pixels(const QImage &picture, QPoint at)
{
    return reinterpret_cast<const QRgb *>(picture.constScanLine(at.y())) + at.x();
}
} // namespace

std::vector<QRect> PaintHistory::places(QSize picture)
{
    std::vector<QRect> result;
    for (int y = 0; y < picture.height(); y += tileSide) {
        for (int x = 0; x < picture.width(); x += tileSide)
            result.push_back(QRect(x, y, tileSide, tileSide) & QRect(QPoint(0, 0), picture));
    }
    return result;
}

/// In tiles, sharing with the current slot what is the same there.
PaintHistory::Slot PaintHistory::cut(const QImage &picture) const
{
    const Slot &last = m_slots[static_cast<std::size_t>(m_current)];
    const bool comparable = last.size == picture.size();
    Slot slot{picture.size(), QSize(picture.dotsPerMeterX(), picture.dotsPerMeterY()), {}};
    const std::vector<QRect> tilePlaces = places(picture.size());
    slot.tiles.reserve(tilePlaces.size());
    for (std::size_t i = 0; i < tilePlaces.size(); ++i) {
        const QRect &place = tilePlaces[i];
        const auto width = static_cast<std::size_t>(place.width());
        const auto isRow = [&](const QRgb *tile, int row) {
            return std::equal(tile, tile + width, pixels(picture, place.topLeft() + QPoint(0, row)));
        };
        bool same = comparable;
        for (int row = 0; same && row < place.height(); ++row)
            same = isRow(last.tiles[i]->data() + static_cast<std::size_t>(row) * width, row);
        if (same) {
            slot.tiles.push_back(last.tiles[i]);
            continue;
        }
        Tile tile;
        tile.reserve(width * static_cast<std::size_t>(place.height()));
        for (int row = 0; row < place.height(); ++row) {
            const QRgb *source = pixels(picture, place.topLeft() + QPoint(0, row));
            tile.insert(tile.end(), source, source + width);
        }
        slot.tiles.push_back(std::make_shared<const Tile>(std::move(tile)));
    }
    return slot;
}

void PaintHistory::push(const QImage &picture)
{
    Slot slot = cut(picture);
    m_current = after(m_current);
    m_slots[static_cast<std::size_t>(m_current)] = std::move(slot);
    m_picture = picture;
    m_newest = m_current;
    if (m_oldest == m_current)
        m_oldest = after(m_oldest);
}

/// Puts the tiles together again.
const QImage &PaintHistory::show(int slot)
{
    m_current = slot;
    const Slot &shown = m_slots[static_cast<std::size_t>(slot)];
    m_picture = QImage(shown.size, QImage::Format_RGB32);
    m_picture.setDotsPerMeterX(shown.dotsPerMetre.width());
    m_picture.setDotsPerMeterY(shown.dotsPerMetre.height());
    const std::vector<QRect> tilePlaces = places(shown.size);
    for (std::size_t i = 0; i < tilePlaces.size(); ++i) {
        const QRect &place = tilePlaces[i];
        const auto width = static_cast<std::size_t>(place.width());
        const QRgb *source = shown.tiles[i]->data();
        for (int y = place.top(); y <= place.bottom(); ++y, source += width)
            std::copy_n(source, width, reinterpret_cast<QRgb *>(m_picture.scanLine(y)) + place.left());
    }
    return m_picture;
}

const QImage &PaintHistory::undo()
{
    return undoEnabled() ? show(before(m_current)) : m_picture;
}

const QImage &PaintHistory::redo()
{
    return redoEnabled() ? show(after(m_current)) : m_picture;
}

void PaintHistory::reset(const QImage &picture)
{
    m_current = m_newest = m_oldest = 0;
    m_slots.fill(Slot());
    m_slots[0] = cut(picture);
    m_picture = picture;
}

qint64 PaintHistory::bytes() const
{
    std::set<const Tile *> counted;
    std::size_t pixelCount = 0;
    for (const Slot &slot : m_slots) {
        for (const auto &tile : slot.tiles) {
            if (counted.insert(tile.get()).second)
                pixelCount += tile->size();
        }
    }
    return qint64{sizeof(QRgb)} * static_cast<qint64>(pixelCount);
}
