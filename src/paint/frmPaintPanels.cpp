#include "paint/frmPaintPanels.h"

#include "platform/qt/ThemedIcon.h"

#include <QButtonGroup>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QToolButton>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr QSize dotPicture(34, 18);
constexpr QSize rectPicture(42, 20);
constexpr QSize brushPicture(20, 20);
constexpr int cellSize = 15;
constexpr int paletteRows = 2;

/// By columns: dark above light.
constexpr QRgb cellColours[] = {
    0x000000, 0xffffff, 0x404040, 0xc0c0c0, 0x808080, 0xe0e0e0, 0x800000, 0xff0000, 0x804000, 0xff8000,
    0x808000, 0xffff00, 0x408000, 0x80ff00, 0x008000, 0x00ff00, 0x008040, 0x00ff80, 0x008080, 0x00ffff,
    0x004080, 0x0080ff, 0x000080, 0x0000ff, 0x400080, 0x8000ff, 0x800080, 0xff00ff, 0x800040, 0xff0080,
};

QColor ink()
{
    return themedColour(0x334155);
}

QColor inside()
{
    return themedColour(0x3b82f6);
}
} // namespace

ChoicePanel::ChoicePanel(const QString &panelName, const QString &choiceName, QSize picture, int columns,
                         const std::vector<Choice> &choices, QWidget *parent)
    : QFrame(parent), m_group(new QButtonGroup(this))
{
    setObjectName(panelName);
    setFrameShape(StyledPanel);
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(2, 2, 2, 2);
    grid->setSpacing(1);
    int index = 0;
    for (const Choice &choice : choices) {
        auto *button = new QToolButton(this);
        button->setObjectName(u"%1_%2"_s.arg(choiceName).arg(index));
        button->setIcon(themedIcon(button->objectName(), picture, [paint = choice.paint](QPainter &painter) {
            painter.setPen(ink());
            paint(painter);
        }));
        button->setIconSize(picture);
        button->setToolTip(choice.toolTip);
        button->setCheckable(true);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::TabFocus); // a click leaves the keys with the picture
        m_group->addButton(button, index);
        grid->addWidget(button, index / columns, index % columns);
        ++index;
    }
    choose(0);
    connect(m_group, &QButtonGroup::idClicked, this, &ChoicePanel::choiceChanged);
}

int ChoicePanel::chosen() const
{
    return m_group->checkedId();
}

void ChoicePanel::choose(int index)
{
    if (QAbstractButton *button = m_group->button(index))
        button->setChecked(true);
}

ChoicePanel *makeSizePanel(const std::vector<int> &widths, QWidget *parent)
{
    std::vector<ChoicePanel::Choice> choices;
    choices.reserve(widths.size());
    for (const int width : widths) {
        choices.push_back({u"%1 pixel%2"_s.arg(width).arg(width == 1 ? u""_s : u"s"_s), [width](QPainter &p) {
                               p.fillRect(3, (dotPicture.height() - width) / 2, dotPicture.width() - 6, width,
                                          ink());
                           }});
    }
    return new ChoicePanel(u"fraOptDot"_s, u"shpDot"_s, dotPicture, 2, choices, parent);
}

ChoicePanel *makeFillPanel(QWidget *parent)
{
    const QRect box(4, 3, rectPicture.width() - 9, rectPicture.height() - 7);
    return new ChoicePanel(u"fraOptFill"_s, u"shpRect"_s, rectPicture, 1,
                           {{u"Outline only"_s, [box](QPainter &p) { p.drawRect(box); }},
                            {u"Outline and inside"_s,
                             [box](QPainter &p) {
                                 p.setBrush(inside());
                                 p.drawRect(box);
                             }},
                            {u"Inside only"_s, [box](QPainter &p) { p.fillRect(box, inside()); }}},
                           parent);
}

ChoicePanel *makeBrushPanel(QWidget *parent)
{
    const QPoint c(10, 10);
    constexpr int d = 6;
    const auto line = [c](int x1, int y1, int x2, int y2) {
        return [=](QPainter &p) { p.drawLine(c + QPoint(x1, y1), c + QPoint(x2, y2)); };
    };
    const QRect box(c - QPoint(d, d), QSize(2 * d, 2 * d));
    return new ChoicePanel(u"fraBrush"_s, u"imgBrush"_s, brushPicture, 2,
                           {{u"Square"_s, [box](QPainter &p) { p.fillRect(box, ink()); }},
                            {u"Disc"_s,
                             [box](QPainter &p) {
                                 p.setBrush(ink());
                                 p.drawEllipse(box);
                             }},
                            {u"Square outline"_s, [box](QPainter &p) { p.drawRect(box); }},
                            {u"Circle"_s, [box](QPainter &p) { p.drawEllipse(box); }},
                            {u"Plus"_s,
                             [=](QPainter &p) {
                                 line(0, -d, 0, d)(p);
                                 line(-d, 0, d, 0)(p);
                             }},
                            {u"Cross"_s,
                             [=](QPainter &p) {
                                 line(-d, -d, d, d)(p);
                                 line(-d, d, d, -d)(p);
                             }},
                            {u"Rising stroke"_s, line(-d, d, d, -d)},
                            {u"Falling stroke"_s, line(d, d, -d, -d)},
                            {u"Upright stroke"_s, line(0, -d, 0, d)},
                            {u"Level stroke"_s, line(-d, 0, d, 0)}},
                           parent);
}

ColourPanel::ColourPanel(QWidget *parent)
    : QWidget(parent), lblForeColor(new QLabel(this)), lblFillColor(new QLabel(this))
{
    auto *rows = new QHBoxLayout(this);
    rows->setContentsMargins(2, 2, 2, 2);
    rows->setSpacing(8);
    const auto prepare = [this](QLabel *label, const QString &name, const QString &toolTip, int size) {
        label->setObjectName(name);
        label->setToolTip(toolTip);
        label->setFixedSize(size, size);
        label->setAutoFillBackground(true);
        label->setFrameShape(QFrame::Box);
        label->setMouseTracking(true);
        label->installEventFilter(this);
    };
    prepare(lblForeColor, u"lblForeColor"_s, u"Foreground color"_s, 2 * cellSize);
    prepare(lblFillColor, u"lblFillColor"_s, u"Background color"_s, 2 * cellSize);
    for (QLabel *label : {lblForeColor, lblFillColor})
        label->setFocusPolicy(Qt::TabFocus); // where the keys reach every colour, through the dialog
    rows->addWidget(lblForeColor);
    rows->addWidget(lblFillColor);
    auto *grid = new QGridLayout;
    grid->setSpacing(1);
    int index = 0;
    for (const QRgb colour : cellColours) {
        auto *cell = new QLabel(this);
        prepare(cell, u"lblColor_%1"_s.arg(index), QColor(colour).name(), cellSize);
        paintLabel(*cell, QColor(colour));
        grid->addWidget(cell, index % paletteRows, index / paletteRows);
        lblColor.push_back(cell);
        ++index;
    }
    rows->addLayout(grid);
    rows->addStretch();
    setForeground(m_foreground);
    setFill(m_fill);
}

void ColourPanel::paintLabel(QLabel &label, QColor colour)
{
    QPalette look = label.palette();
    look.setColor(QPalette::Window, colour);
    look.setColor(QPalette::WindowText, QColor(0x64, 0x74, 0x8b));
    label.setPalette(look);
}

void ColourPanel::setForeground(QColor colour)
{
    m_foreground = colour;
    paintLabel(*lblForeColor, colour);
    Q_EMIT coloursChanged();
}

void ColourPanel::setFill(QColor colour)
{
    m_fill = colour;
    paintLabel(*lblFillColor, colour);
    Q_EMIT coloursChanged();
}

ColourPanel::Part ColourPanel::partOf(const QObject *label) const
{
    if (label == lblForeColor)
        return Part::Foreground;
    if (label == lblFillColor)
        return Part::Fill;
    return std::ranges::find(lblColor, label) != lblColor.end() ? Part::Palette : Part::None;
}

bool ColourPanel::eventFilter(QObject *watched, QEvent *event)
{
    const Part part = partOf(watched);
    switch (event->type()) {
    case QEvent::Enter:
        Q_EMIT hovered(part);
        break;
    case QEvent::Leave:
        Q_EMIT hovered(Part::None);
        break;
    case QEvent::MouseButtonPress:
        if (part == Part::Palette) {
            const QColor colour = static_cast<QLabel *>(watched)->palette().color(QPalette::Window);
            if (static_cast<QMouseEvent *>(event)->button() == Qt::RightButton)
                setFill(colour);
            else
                setForeground(colour);
        }
        break;
    case QEvent::FocusIn:
    case QEvent::FocusOut:
        static_cast<QLabel *>(watched)->setLineWidth(event->type() == QEvent::FocusIn ? 3 : 1);
        break;
    case QEvent::KeyPress:
        if (const int key = static_cast<QKeyEvent *>(event)->key();
            key == Qt::Key_Space || key == Qt::Key_Return) {
            Q_EMIT customColourWanted(part == Part::Foreground);
            return true;
        }
        break;
    case QEvent::MouseButtonDblClick:
        if (part == Part::Foreground || part == Part::Fill)
            Q_EMIT customColourWanted(part == Part::Foreground);
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}
