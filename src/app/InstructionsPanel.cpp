#include "app/InstructionsPanel.h"

#include "platform/qt/ThemedIcon.h"

#include <QFrame>
#include <QGridLayout>
#include <QLabel>

using namespace Qt::Literals::StringLiterals;

namespace
{
struct Step {
    const char *icon;
    const char16_t *title;
    const char16_t *text;
};

constexpr Step steps[] = {
    {"start-capture.svg", u"Begin Capture Screens",
     u"Type a new project name into the pink box, or select one, and click Begin. Then work as usual: every "
     u"mouse click takes a snapshot."},
    {"stop-capture.svg", u"Stop Capture Screens",
     u"Click Stop on the small bar in the corner of the screen. Every snapshot becomes a page that shows "
     u"where "
     u"you clicked."},
    {"page-list.svg", u"Add Notes, Title to Each Page",
     u"Say in a few words what each step is for. Pages that you do not need can be left out."},
    {"generate.svg", u"Generate Final Documentation",
     u"Get a guide with one page for each step and a page of contents, ready to hand around."},
};

QLabel *makeNumber(int number, QWidget *parent)
{
    auto *label = new QLabel(QString::number(number), parent);
    label->setObjectName("stepNumber"_L1);
    label->setAlignment(Qt::AlignCenter);
    label->setFixedSize(34, 34);
    return label;
}
} // namespace

InstructionsPanel::InstructionsPanel(QWidget *parent) : QWidget(parent)
{
    auto *card = new QFrame(this);
    card->setObjectName("instructionsCard"_L1);
    card->setMaximumWidth(760);
    auto *headline = new QLabel(u"As easy as 1-2-3-4 !  See instructions below:"_s, card);
    headline->setObjectName("instructionsHeadline"_L1);
    headline->setWordWrap(true);

    auto *grid = new QGridLayout(card);
    grid->setContentsMargins(28, 22, 28, 22);
    grid->setHorizontalSpacing(16);
    grid->setVerticalSpacing(14);
    grid->addWidget(headline, 0, 0, 1, 3);
    int row = 1;
    for (const Step &step : steps) {
        auto *picture = new IconPicture(themedIcon(QLatin1StringView(step.icon)), {32, 32}, card);
        auto *text = new QLabel(
            u"<b>%1</b><br>%2"_s.arg(QString::fromUtf16(step.title), QString::fromUtf16(step.text)), card);
        text->setWordWrap(true);
        grid->addWidget(makeNumber(row, card), row, 0, Qt::AlignTop);
        grid->addWidget(picture, row, 1, Qt::AlignTop);
        grid->addWidget(text, row, 2);
        ++row;
    }
    grid->setColumnStretch(2, 1);

    auto *outer = new QGridLayout(this);
    outer->addWidget(card, 1, 1);
    outer->setRowStretch(0, 1);
    outer->setRowStretch(2, 2);
    outer->setColumnStretch(0, 1);
    outer->setColumnStretch(1, 8);
    outer->setColumnStretch(2, 1);
}
