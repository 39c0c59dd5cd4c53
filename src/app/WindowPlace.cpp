#include "app/WindowPlace.h"

#include "platform/Rounding.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int twips = Rounding::twipsPerPixel;
constexpr QSize aroundChild(180, 1740);     // what the main window has beside a child window, twips
constexpr QSize smallestChild(10700, 6100); // twips
constexpr int defaultCorner = 1000;         // twips
constexpr QSize frame(8, 40);               // pixels that a window manager puts around a window, about
const QString section = u"Settings"_s;

int number(const UserSettings &settings, const QString &key, int fallback)
{
    bool isNumber = false;
    const int value = settings.value(section, key).toInt(&isNumber);
    return isNumber ? value : fallback;
}
} // namespace

namespace WindowPlace
{
QSize smallestMainWindow()
{
    const QSize inTwips = smallestChild + aroundChild;
    return {(inTwips.width() + twips - 1) / twips, (inTwips.height() + twips - 1) / twips};
}

QSize childSize(QSize mainWindow)
{
    return (mainWindow * twips - aroundChild).expandedTo(smallestChild);
}

QRect load(const UserSettings &settings, QSize childTwips, const QRect &available)
{
    QRect place(number(settings, u"MainLeft"_s, defaultCorner) / twips,
                number(settings, u"MainTop"_s, defaultCorner) / twips,
                number(settings, u"MainWidth"_s, childTwips.width()) / twips,
                number(settings, u"MainHeight"_s, childTwips.height()) / twips);
    place.setSize(place.size().expandedTo(smallestMainWindow()));
    if (available.isEmpty())
        return place;
    // Not larger than the desktop, and wholly on it, with its frame: the display may have become smaller.
    const QSize usable = available.size() - frame;
    place.setSize(place.size().boundedTo(usable).expandedTo(smallestMainWindow()));
    const QSize room = usable - place.size();
    const int left = std::clamp(place.x(), available.x(), available.x() + std::max(room.width(), 0));
    const int top = std::clamp(place.y(), available.y(), available.y() + std::max(room.height(), 0));
    place.moveTo(left, top);
    return place;
}

void save(UserSettings &settings, const QRect &place)
{
    settings.setValue(section, u"MainLeft"_s, QString::number(place.x() * twips));
    settings.setValue(section, u"MainTop"_s, QString::number(place.y() * twips));
    settings.setValue(section, u"MainWidth"_s, QString::number(place.width() * twips));
    settings.setValue(section, u"MainHeight"_s, QString::number(place.height() * twips));
}
} // namespace WindowPlace
