#include "annotate/frmVpicView.h"

#include <QFrame>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int nearTheBeginning = 5; // a bar below this value shows the picture from its edge on
constexpr int lineOfScrolling = 20;

QScrollBar *bar(Qt::Orientation orientation, const char *name, QWidget *parent)
{
    auto *made = new QScrollBar(orientation, parent);
    made->setObjectName(QLatin1StringView(name));
    made->setSingleStep(lineOfScrolling);
    made->hide();
    return made;
}

QFrame *line(QFrame::Shape shape, const char *name, QWidget *parent)
{
    auto *made = new QFrame(parent);
    made->setObjectName(QLatin1StringView(name));
    made->setFrameShape(shape);
    made->setFrameShadow(QFrame::Plain);
    made->setForegroundRole(QPalette::Mid);
    return made;
}
} // namespace

PictureView::PictureView(QWidget *parent)
    : QWidget(parent), picResize(new QWidget(this)), HScroll1(bar(Qt::Horizontal, "HScroll1", this)),
      VScroll1(bar(Qt::Vertical, "VScroll1", this)), Line1(line(QFrame::HLine, "Line1", this)),
      Line2(line(QFrame::VLine, "Line2", this))
{
    picResize->setObjectName("picResize"_L1);
    picResize->setAutoFillBackground(true);
    picResize->setBackgroundRole(QPalette::Midlight);
    connect(HScroll1, &QScrollBar::valueChanged, this, &PictureView::HScroll1_Change);
    connect(VScroll1, &QScrollBar::valueChanged, this, &PictureView::VScroll1_Change);
}

void PictureView::setCanvas(QWidget *canvas)
{
    Picture1 = canvas;
}

void PictureView::arrange(int fileListWidth)
{
    m_fileListWidth = fileListWidth;
    if (!Picture1)
        return;
    const int thickness = std::max(HScroll1->sizeHint().height(), VScroll1->sizeHint().width());
    const QSize area(std::max(width() - thickness, 0), std::max(height() - thickness, 0));
    picResize->setGeometry(QRect(QPoint(0, 0), area));
    HScroll1->setGeometry(0, area.height(), area.width(), thickness);
    VScroll1->setGeometry(area.width(), 0, thickness, area.height());
    Line1->setGeometry(0, area.height(), area.width(), 1);
    Line2->setGeometry(area.width(), 0, 1, area.height());

    HScroll1->setPageStep(area.width());
    VScroll1->setPageStep(area.height());
    HScroll1->setMaximum(std::max(Picture1->width() - area.width(), 0));
    VScroll1->setMaximum(std::max(Picture1->height() - area.height(), 0));
    HScroll1->setVisible(HScroll1->maximum() > 0);
    VScroll1->setVisible(VScroll1->maximum() > 0);
    HScroll1_Change();
    VScroll1_Change();
}

void PictureView::scrollHome()
{
    HScroll1->setValue(0);
    VScroll1->setValue(0);
}

void PictureView::HScroll1_Change()
{
    const int value = HScroll1->value();
    Picture1->move(value < nearTheBeginning ? 1 : -value - m_fileListWidth, Picture1->y());
    placeLines();
}

void PictureView::VScroll1_Change()
{
    const int value = VScroll1->value();
    Picture1->move(Picture1->x(), value < nearTheBeginning ? 0 : -value);
}

/// They close the frame where no bar does.
void PictureView::placeLines()
{
    Line1->setVisible(Picture1->width() < picResize->width());
    Line2->setVisible(Picture1->height() < picResize->height());
}

void PictureView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    arrange(m_fileListWidth);
}

void PictureView::wheelEvent(QWheelEvent *event)
{
    const bool sideways = event->modifiers() & Qt::ShiftModifier || !VScroll1->isVisible();
    QScrollBar *scrolled = sideways ? HScroll1 : VScroll1;
    QPoint turned = event->angleDelta();
    if (turned.y() == 0)
        scrolled = HScroll1;
    const int delta = turned.y() != 0 ? turned.y() : turned.x();
    constexpr int oneNotch = 120;
    scrolled->setValue(scrolled->value() - delta * 3 * lineOfScrolling / oneNotch);
    event->accept();
}
