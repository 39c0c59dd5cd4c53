#include "paint/CursorFile.h"

#include <QFile>
#include <QPixmap>
#include <QtEndian>

namespace
{
constexpr qint64 headerSize = 22; // the directory's header and its first entry
constexpr int typeAt = 2;
constexpr int hotSpotAt = 10;
constexpr quint16 cursorType = 2;
} // namespace

QCursor CursorFile::load(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return Qt::CrossCursor;
    const QByteArray bytes = file.readAll();
    QPixmap picture;
    if (bytes.size() < headerSize || qFromLittleEndian<quint16>(bytes.constData() + typeAt) != cursorType ||
        !picture.loadFromData(bytes, "cur"))
        return Qt::CrossCursor;
    const QPoint hotSpot(qFromLittleEndian<quint16>(bytes.constData() + hotSpotAt),
                         qFromLittleEndian<quint16>(bytes.constData() + hotSpotAt + 2));
    // The display refuses a shape that does not hold its hot spot, and shows none.
    if (!picture.rect().contains(hotSpot))
        return Qt::CrossCursor;
    return QCursor(picture, hotSpot.x(), hotSpot.y());
}
