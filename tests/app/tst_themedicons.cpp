#include "paint/frmPaintPanels.h"
#include "platform/qt/ThemedIcon.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QPainter>
#include <QTest>
#include <QToolButton>

#include <algorithm>
#include <cmath>
#include <map>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int side = 96; // large, so that edges between two colours count little
constexpr double enough = 3.0;
const QColor light(0xef, 0xef, 0xef);
const QStringList fixedIcons{u"app.svg"_s, u"tray.svg"_s}; // a mark, and one for a ground that nobody knows

/// Relative luminance and contrast as the Web Content Accessibility Guidelines 2.1 define them.
double luminance(QRgb colour)
{
    const auto part = [](int value) {
        const double share = value / 255.0;
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(qRed(colour)) + 0.7152 * part(qGreen(colour)) + 0.0722 * part(qBlue(colour));
}

double contrast(QRgb one, QRgb other)
{
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor ground()
{
    return QApplication::palette().color(QPalette::Window);
}

QImage render(const QIcon &icon, QIcon::Mode mode = QIcon::Normal)
{
    QImage image(side, side, QImage::Format_RGB32);
    image.fill(ground());
    QPainter painter(&image);
    icon.paint(&painter, image.rect(), Qt::AlignCenter, mode);
    return image;
}

/// For each pixel its contrast to the ground.
std::vector<double> contrasts(const QImage &image)
{
    std::vector<double> list;
    list.reserve(static_cast<std::size_t>(image.width()) * static_cast<std::size_t>(image.height()));
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            list.push_back(contrast(image.pixel(x, y), ground().rgb()));
    }
    return list;
}

auto countSeen(const std::vector<double> &list)
{
    return std::ranges::count_if(list, [](double value) { return value >= enough; });
}

double strongest(const QImage &image)
{
    return std::ranges::max(contrasts(image));
}

/// Every icon that the program has, and the pictures on the buttons of the paint editor's panels.
std::map<QString, QIcon> allIcons()
{
    std::map<QString, QIcon> icons;
    for (const QString &name : QDir(u":/icons"_s).entryList()) {
        if (!fixedIcons.contains(name))
            icons[name] = themedIcon(name);
    }
    QWidget parent;
    makeSizePanel({4, 8}, &parent);
    makeFillPanel(&parent);
    makeBrushPanel(&parent);
    for (const QToolButton *button : parent.findChildren<QToolButton *>())
        icons[button->objectName()] = button->icon();
    return icons;
}

class ThemedIconsTest : public ::testing::Test
{
protected:
    QPalette m_before = QApplication::palette();

    ThemedIconsTest() { useGround(light); }
    ~ThemedIconsTest() override { QApplication::setPalette(m_before); }

    static void useGround(const QColor &colour) { QApplication::setPalette(QPalette(colour)); }
};
} // namespace

TEST_F(ThemedIconsTest, WhatIsSeenOfAnIconOnLightGroundIsSeenOnDark)
{
    const auto icons = allIcons();
    EXPECT_GT(icons.size(), 80U);
    for (const auto &[name, icon] : icons) {
        useGround(light);
        const std::vector<double> onLight = contrasts(render(icon));
        const auto seen = countSeen(onLight);
        EXPECT_GT(seen, side * side / 40) << name.toStdString() << " on light ground";
        for (const QRgb dark : {0x191919U, 0x2a2e32U, 0x353535U, 0x3c3f41U}) {
            useGround(QColor(dark));
            const std::vector<double> onDark = contrasts(render(icon));
            qsizetype lost = 0;
            for (std::size_t i = 0; i < onLight.size(); ++i)
                lost += onLight[i] >= enough && onDark[i] < enough ? 1 : 0;
            EXPECT_LT(lost * 20, seen) << name.toStdString() << " on " << std::hex << dark;
        }
    }
    for (const QColor &colour : {light, QColor(0x35, 0x35, 0x35)}) {
        useGround(colour);
        for (const QString &name : fixedIcons)
            EXPECT_GT(countSeen(contrasts(render(QIcon(u":/icons/"_s + name)))), side * side / 20);
    }
}

/// What is drawn upon white paper could not be seen if that stayed white.
TEST_F(ThemedIconsTest, PaperIsNearlyOfTheGroundsColour)
{
    for (const QColor &colour : {QColor(Qt::white), QColor(0x35, 0x35, 0x35)}) {
        useGround(colour);
        const QImage image = render(themedIcon(u"delete.svg"_s));
        EXPECT_LT(contrast(image.pixel(side / 2, side * 14 / 24), colour.rgb()), 1.5); // between two lines
        EXPECT_GT(contrast(image.pixel(side * 10 / 24, side * 14 / 24), colour.rgb()), 7.0); // on one
    }
}

TEST_F(ThemedIconsTest, AChangeOfThePaletteShows)
{
    QWidget window;
    IconPicture picture(themedIcon(u"tool-line.svg"_s), {side, side}, &window);
    QToolButton button(&window);
    button.setIcon(themedIcon(u"close-tab.svg"_s));
    button.setAutoRaise(true);
    button.setIconSize({side, side});
    button.move(side, 0);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    for (const QColor &colour : {light, QColor(0x20, 0x20, 0x20), light}) {
        useGround(colour);
        QCoreApplication::processEvents();
        EXPECT_GE(strongest(picture.grab().toImage()), 7.0) << colour.name().toStdString();
        EXPECT_GE(strongest(button.grab().toImage()), 7.0) << colour.name().toStdString();
    }
}

TEST_F(ThemedIconsTest, DrawnForTheDeviceAndTheStateOfAControl)
{
    useGround(QColor(0x20, 0x20, 0x20));
    const QIcon icon = themedIcon(u"tool-line.svg"_s);
    const QPixmap twice = icon.pixmap(QSize(24, 24), 2.0);
    EXPECT_EQ(twice.devicePixelRatio(), 2.0);
    QImage fine = twice.toImage();
    fine.setDevicePixelRatio(1.0);
    EXPECT_EQ(fine, icon.pixmap(QSize(48, 48), 1.0).toImage()); // drawn in that size, not enlarged

    EXPECT_EQ(render(icon, QIcon::Active), render(icon));
    EXPECT_LT(strongest(render(icon, QIcon::Disabled)), strongest(render(icon)) / 1.5);
    EXPECT_GT(strongest(render(icon, QIcon::Disabled)), 1.2);
    EXPECT_TRUE(themedIcon(u"none.svg"_s).isNull());
}
