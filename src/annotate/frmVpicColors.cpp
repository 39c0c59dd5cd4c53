#include "annotate/frmVpicColors.h"

#include "annotate/Drawing.h"

#include <QActionGroup>
#include <QPainter>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int swatchSize = 16;

QIcon swatch(QColor colour)
{
    QPixmap picture(swatchSize, swatchSize);
    picture.fill(colour);
    QPainter painter(&picture);
    painter.setPen(QColor(0x64, 0x74, 0x8b)); // white and silver need an edge
    painter.drawRect(0, 0, swatchSize - 1, swatchSize - 1);
    return QIcon(picture);
}
} // namespace

ColorBar::ColorBar(QWidget *parent) : QToolBar(parent)
{
    setObjectName("tlbcolor"_L1);
    setIconSize({swatchSize, swatchSize});
    ShowColorTlb();
}

/// The key of a button is "t" and the colour's value.
void ColorBar::ShowColorTlb()
{
    auto *group = new QActionGroup(this);
    for (const Drawing::Colour &colour : Drawing::palette()) {
        const std::uint32_t value = Drawing::value(colour);
        QAction *made = addAction(swatch(Drawing::fromValue(value)), QString::fromUtf16(colour.name));
        made->setObjectName(u't' + QString::number(value));
        made->setCheckable(true);
        made->setChecked(value == 0);
        group->addAction(made);
    }
    connect(group, &QActionGroup::triggered, this,
            [this](const QAction *chosen) { Q_EMIT colourChosen(chosen->objectName().mid(1).toUInt()); });
}
