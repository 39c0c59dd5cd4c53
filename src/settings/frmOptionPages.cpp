// The pages of the options dialog, put together from the table of rows.

#include "settings/AppOptions.h"
#include "settings/frmOption.h"

#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QTabWidget>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;
using OptionRows::Box;
using OptionRows::Kind;
using OptionRows::Page;

namespace
{
constexpr int buttonMargin = 8; // beside the caption
constexpr int roles = static_cast<int>(textRoleCount);

QLabel *makeLabel(const QString &text, QWidget *parent, const QString &name = {})
{
    auto *label = new QLabel(text, parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QLabel *makeWrapped(const QString &text, QWidget *parent)
{
    QLabel *label = makeLabel(text, parent);
    label->setWordWrap(true);
    return label;
}

QLabel *makeHeading(const QString &text, QWidget *parent)
{
    QLabel *label = makeWrapped(text, parent);
    QFont bold = label->font();
    bold.setBold(true);
    label->setFont(bold);
    return label;
}

/// A path may be longer than the page is wide.
void frameText(QWidget *widget)
{
    auto *label = static_cast<QLabel *>(widget);
    label->setFrameStyle(static_cast<int>(QFrame::StyledPanel) | static_cast<int>(QFrame::Sunken));
    label->setMargin(4);
    label->setMinimumWidth(120);
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}
} // namespace

void frmOption::buildPages()
{
    for (int i = 0; i < OptionRows::pageCount; ++i) {
        const auto page = static_cast<Page>(i);
        auto *area = new QScrollArea(TabStrip1); // for windows smaller than the pages
        area->setFrameShape(QFrame::NoFrame);
        area->setWidgetResizable(true);
        auto *content = new QWidget(area);
        fillPage(page, content);
        area->setWidget(content);
        TabStrip1->addTab(area, OptionRows::captionOf(page));
    }
    auto *column = new QVBoxLayout(this);
    column->addWidget(TabStrip1, 1);
    addButtons(column);
}

QWidget *frmOption::makeButton(const QString &name, const QString &caption, Handler handler, QWidget *parent)
{
    auto *button = new QPushButton(caption, parent);
    button->setObjectName(name);
    button->setMinimumWidth(button->sizeHint().width() + 2 * buttonMargin);
    connect(button, &QPushButton::clicked, this,
            guarded(m_failures, [this, handler] { (this->*handler)(); }));
    return button;
}

void frmOption::addButtons(QBoxLayout *column)
{
    auto *line = new QHBoxLayout;
    const auto add = [this, line](const QString &name, const QString &caption, Handler handler) {
        QWidget *button = makeButton(name, caption, handler, this);
        // A click leaves the keyboard where it is: no message of a field comes between it and what it is for.
        button->setFocusPolicy(Qt::TabFocus);
        line->addWidget(button);
    };
    add(u"cmdHelp"_s, u"&Help"_s, &frmOption::cmdHelp_Click);
    line->addStretch();
    add(u"cmdReset"_s, u"&Reset to Orignal"_s, &frmOption::cmdReset_Click);
    line->addSpacing(18);
    add(u"cmdSave"_s, u"&Save"_s, &frmOption::cmdSave_Click);
    add(u"cmdCancel"_s, u"&Cancel"_s, &frmOption::cmdCancel_Click);
    column->addLayout(line);
}

void frmOption::fillPage(Page page, QWidget *content)
{
    auto *line = new QHBoxLayout(content);
    line->setSpacing(12);
    std::vector<QVBoxLayout *> columns;
    const auto places = OptionRows::boxes();
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (places[i].page != page)
            continue;
        while (static_cast<int>(columns.size()) <= places[i].column) {
            columns.push_back(new QVBoxLayout);
            columns.back()->setSpacing(10);
            line->addLayout(columns.back(), 1);
        }
        auto *frame = new QFrame(content);
        frame->setFrameShape(QFrame::StyledPanel);
        auto *lines = new QVBoxLayout(frame);
        lines->setContentsMargins(12, 8, 12, 8);
        lines->setSpacing(6);
        if (!places[i].heading.isEmpty())
            lines->addWidget(makeHeading(places[i].heading, frame));
        const bool fills = page == Page::HtmlStyles || page == Page::WordStyles;
        columns[static_cast<std::size_t>(places[i].column)]->addWidget(frame, fills ? 1 : 0);
        fillBox(static_cast<Box>(i), lines);
    }
    for (QVBoxLayout *column : columns)
        column->addStretch(0);
}

std::vector<OptionControl *> frmOption::makeControls(Box box, QWidget *parent)
{
    std::vector<OptionControl *> made;
    for (const OptionRows::Row &row : OptionRows::rows()) {
        if (row.box != box)
            continue;
        made.push_back(new OptionControl(row, parent));
        made.back()->setParent(this);
        m_controls.emplace(row.control, made.back());
    }
    return made;
}

void frmOption::fillBox(Box which, QBoxLayout *lines)
{
    if (which == Box::HotKey)
        return fillHotKeys(lines);
    if (which == Box::HtmlStyles || which == Box::WordStyles)
        return fillStyles(which, lines);
    for (OptionControl *each : makeControls(which, lines->parentWidget())) {
        if (which == Box::Mouse && each->row().kind == Kind::Choice && !fraMouse) {
            fraMouse = new QWidget(lines->parentWidget());
            fraMouse->setObjectName("fraMouse"_L1);
            lines->addWidget(fraMouse);
            lines = new QVBoxLayout(fraMouse);
            lines->setContentsMargins(20, 0, 0, 0);
        }
        if (each->row().caption.isEmpty()) // the heading says what it is for
            each->widget()->setAccessibleName(OptionRows::boxes()[static_cast<std::size_t>(which)].heading);
        addRow(*each, lines);
    }
}

void frmOption::addRow(OptionControl &control, QBoxLayout *lines)
{
    const OptionRows::Row &row = control.row();
    QWidget *parent = lines->parentWidget();
    if (row.kind == Kind::Check) {
        lines->addWidget(control.widget());
    } else if (row.kind == Kind::Choice) {
        if (!row.caption.isEmpty())
            lines->addWidget(makeWrapped(row.caption, parent));
        lines->addWidget(control.widget());
    } else {
        auto *line = new QHBoxLayout;
        if (!row.caption.isEmpty())
            line->addWidget(makeLabel(row.caption, parent));
        line->addWidget(control.widget(), 1);
        addBeside(row.control, line);
        if (row.kind == Kind::Label)
            frameText(control.widget());
        lines->addLayout(line);
    }
    if (!row.note.isEmpty())
        lines->addWidget(makeWrapped(row.note, parent));
}

/// The button that belongs to a control.
void frmOption::addBeside(const QString &control, QBoxLayout *line)
{
    struct Beside {
        QString control;
        QString name;
        QString caption;
        Handler handler;
    };
    static const Beside buttons[] = {
        {u"cmbSpicFpath"_s, u"cmdBrowseS"_s, u"Browse"_s, &frmOption::cmdBrowseS_Click},
        {u"lblBaseDir"_s, u"cmdBrowseM"_s, u"Browse"_s, &frmOption::cmdBrowseM_Click},
        {u"cmbLayout"_s, u"cmdLayout"_s, u"&Show Layout"_s, &frmOption::cmdLayout_Click},
        {u"cmbPaintSoftware"_s, u"cmdPaintTest"_s, u"&Test"_s, &frmOption::cmdPaintTest_Click},
    };
    for (const Beside &button : buttons) {
        if (button.control == control)
            line->addWidget(makeButton(button.name, button.caption, button.handler, line->parentWidget()));
    }
}

void frmOption::fillHotKeys(QBoxLayout *lines)
{
    QWidget *parent = lines->parentWidget();
    lines->addWidget(
        makeWrapped(u"To change the hot key setting, select the action, then select hot key, then "
                    "click Save."_s,
                    parent));
    auto *choice = new QHBoxLayout;
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(18);
    for (OptionControl *each : makeControls(Box::HotKey, parent)) {
        const OptionRows::Row &row = each->row();
        if (row.role < 0) {
            choice->addWidget(makeLabel(row.caption, parent));
            choice->addWidget(each->widget());
            continue;
        }
        grid->addWidget(makeLabel(row.caption, parent, u"lblAction_%1"_s.arg(row.role)), row.role, 0);
        grid->addWidget(each->widget(), row.role, 1);
        grid->addWidget(makeWrapped({}, parent), row.role, 2);
        grid->itemAtPosition(row.role, 2)->widget()->setObjectName(u"lblHotKeyNote_%1"_s.arg(row.role));
    }
    grid->setColumnStretch(2, 1);
    choice->addStretch();
    lines->addLayout(choice);
    lines->addSpacing(8);
    auto *heading = new QHBoxLayout;
    heading->addWidget(makeHeading(u"Current Hot Key Setting"_s, parent), 1);
    heading->addWidget(makeButton(u"Command1"_s, u"Reset to Default"_s, &frmOption::Command1_Click, parent));
    lines->addLayout(heading);
    lines->addLayout(grid);
}

void frmOption::fillStyles(Box box, QBoxLayout *lines)
{
    QWidget *parent = lines->parentWidget();
    const bool isWord = box == Box::WordStyles;
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(10);
    grid->setVerticalSpacing(10);
    const auto captionOf = isWord ? OptionRows::wordRoleCaption : OptionRows::htmlRoleCaption;
    for (int role = 0; role < roles; ++role) {
        grid->addWidget(makeLabel(captionOf(role), parent), role + 1, 0);
        if (!isWord)
            continue;
        auto *font = new QPushButton(u"Font..."_s, parent);
        font->setObjectName(u"cmdWfont_%1"_s.arg(role));
        connect(font, &QPushButton::clicked, this,
                guarded(m_failures, [this, role] { cmdWfont_Click(role); }));
        grid->addWidget(font, role + 1, 1);
    }
    int column = 0;
    int role = -1;
    for (OptionControl *each : makeControls(box, parent)) {
        const OptionRows::Row &row = each->row();
        column = row.role == role ? column + 1 : isWord ? 2 : 1;
        role = row.role;
        if (role == 0 && row.kind != Kind::Check)
            grid->addWidget(makeLabel(row.caption, parent), 0, column);
        each->widget()->setAccessibleName(captionOf(role) + u": "_s + row.caption);
        grid->addWidget(each->widget(), role + 1, column);
    }
    grid->setRowStretch(roles + 1, 1);
    auto *line = new QHBoxLayout;
    line->setSpacing(18);
    line->addLayout(grid);
    line->addWidget(makePreview(box), 1);
    lines->addLayout(line, 1);
}

/// A sheet of paper with a line for each role.
QWidget *frmOption::makePreview(Box box)
{
    const bool isWord = box == Box::WordStyles;
    auto *sheet = new QFrame(this);
    sheet->setObjectName(isWord ? "fraWordPreview"_L1 : "fraHtmlPreview"_L1);
    sheet->setFrameShape(QFrame::StyledPanel);
    sheet->setStyleSheet(u"#%1 { background: white; border: 1px solid #94a3b8; }"_s.arg(sheet->objectName()));
    sheet->setMinimumSize(260, 300);
    sheet->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    auto *column = new QVBoxLayout(sheet);
    const QString samples[] = {u"Title of the page"_s, u"Sub title of the page"_s,
                               u"Body text: what this step is for."_s, u"The first note"_s,
                               u"The second note"_s};
    const QString name = isWord ? u"lblWordPreview_%1"_s : u"lblHtmlPreview_%1"_s;
    for (int role = 0; role < roles; ++role) {
        QLabel *sample = makeLabel(samples[role], sheet, name.arg(role));
        sample->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        column->addWidget(sample);
    }
    column->addStretch();
    return sheet;
}

void frmOption::turnTo(const OptionControl &control)
{
    const auto place = OptionRows::boxes()[static_cast<std::size_t>(control.row().box)];
    TabStrip1->setCurrentIndex(static_cast<int>(place.page));
    control.widget()->setFocus();
}
