#include "annotate/frmVpicColors.h"

#include "annotate/Drawing.h"
#include "platform/qt/ThemedIcon.h"

#include <QActionGroup>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int swatchSize = 16;
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
        QAction *made =
            addAction(colourSwatch(Drawing::fromValue(value), swatchSize), QString::fromUtf16(colour.name));
        made->setObjectName(u't' + QString::number(value));
        made->setCheckable(true);
        made->setChecked(value == 0);
        group->addAction(made);
    }
    connect(group, &QActionGroup::triggered, this,
            [this](const QAction *chosen) { Q_EMIT colourChosen(chosen->objectName().mid(1).toUInt()); });
}
