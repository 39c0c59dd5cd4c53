#include "platform/office/DocumentContent.h"

#include "platform/Rounding.h"

#include <QLocale>
#include <QPageSize>

#include <algorithm>
#include <array>

PageFormat PageFormat::ofLocale()
{
    constexpr QSize a4(11906, 16838);
    constexpr QSize letter(12240, 15840);
    const bool metric = QLocale().measurementSystem() != QLocale::ImperialUSSystem;
    return {metric ? a4 : letter, 1417}; // 2.5 cm
}

unsigned documentColor(int colorIndex)
{
    static constexpr std::array<unsigned, 17> colors = {
        0x000000, 0x000000, 0x0000ff, 0x00ffff, 0x00ff00, 0xff00ff, 0xff0000, 0xffff00, 0xffffff,
        0x000080, 0x008080, 0x008000, 0x800080, 0x800000, 0x808000, 0x808080, 0xc0c0c0};
    const bool known = colorIndex >= 0 && colorIndex < static_cast<int>(colors.size());
    return known ? colors[static_cast<std::size_t>(colorIndex)] : 0;
}

int fontPoints(const ParagraphLook &look)
{
    return std::clamp(look.fontSize, 1, 1638);
}

QSize fittedPictureSize(QSize pixels, const PageFormat &page)
{
    constexpr int line = 480;
    const QSize own = pixels.expandedTo(QSize(1, 1));
    const QSize room = page.textArea() - QSize(0, line);
    const double factor = std::min({static_cast<double>(Rounding::twipsPerPixel),
                                    static_cast<double>(room.width()) / own.width(),
                                    static_cast<double>(room.height()) / own.height()});
    const auto scaled = [factor](int length) { return std::max(1, static_cast<int>(length * factor)); };
    return {scaled(own.width()), scaled(own.height())};
}
