#include "paint/frmPaintMenus.h"

#include "paint/frmPaint.h"
#include "paint/mdlFilter.h"

#include <QActionGroup>
#include <QMenuBar>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// As the menu of filters names them, and the list of the filter brush, whose index is the number.
struct FilterRow {
    int number;
    const char16_t *menu;
    const char16_t *brush;
};
constexpr int noFilter = 9;
constexpr FilterRow filterRows[] = {
    {mdlFilter::BlackAndWhite, u"&Black && White", u"&Black && White"},
    {mdlFilter::Blur, u"B&lur", u"B&lur"},
    {mdlFilter::Brightness, u"B&rightness", u"&Light"},
    {mdlFilter::Crease, u"&Crease", u"&Crease"},
    {mdlFilter::Darkness, u"&Darkness", u"&Dirty"},
    {mdlFilter::Diffuse, u"Di&ffuse", u"Di&ffuse"},
    {mdlFilter::Emboss, u"&Emboss", u"&Emboss"},
    {mdlFilter::GrayBlackAndWhite, u"Gra&y Black && White", u"Gra&y Black && White"},
    {mdlFilter::Grayscale, u"&Grayscale", u"&Grayscale"},
    {noFilter, u"&Invert Colors", u"&Invert Colors"},
    {mdlFilter::ReplaceColors, u"&Replace Colors", u"&Replace Color"},
    {mdlFilter::Sharpen, u"&Sharpen", u"&Sharpen"},
    {mdlFilter::Snow, u"S&now", u"S&now"},
    {mdlFilter::Wave, u"&Wave", u"&Wave"},
};
constexpr int resizePercents[] = {25, 50, 75, 125, 150, 175, 200};
constexpr int firstBrushFilter = mdlFilter::Brightness;

int checkedIndex(const QActionGroup &group)
{
    return static_cast<int>(group.actions().indexOf(group.checkedAction()));
}
} // namespace

PaintMenus::PaintMenus(frmPaint &window, std::function<void(const std::function<void()> &)> run)
    : m_window(window), m_run(std::move(run))
{
    buildFile();
    buildEdit();
    buildFormat();
    buildEffect();
    QMenu *help = menu(u"&Help"_s);
    add(help, u"mnuHelp"_s, u"&Help"_s, QKeySequence::HelpContents, &frmPaint::mnuHelp_Click);
    add(help, u"mnuAbout"_s, u"&About..."_s, {}, &frmPaint::mnuAbout_Click);
    buildFilterList();
}

QMenu *PaintMenus::menu(const QString &caption, QMenu *parent)
{
    return parent ? parent->addMenu(caption) : m_window.menuBar()->addMenu(caption);
}

QAction *PaintMenus::add(QMenu *menu, const QString &name, const QString &caption, const QKeySequence &keys,
                         Command command)
{
    return add(menu, name, caption, keys, [this, command] { (m_window.*command)(); });
}

QAction *PaintMenus::add(QMenu *menu, const QString &name, const QString &caption, const QKeySequence &keys,
                         std::function<void()> command)
{
    QAction *action = menu->addAction(caption);
    action->setObjectName(name);
    action->setShortcut(keys);
    action->setMenuRole(QAction::NoRole);
    QObject::connect(action, &QAction::triggered, &m_window,
                     [this, command = std::move(command)] { m_run(command); });
    return action;
}

QActionGroup *PaintMenus::group(QMenu *menu, const QString &name, const QStringList &captions, int checked)
{
    auto *made = new QActionGroup(&m_window);
    for (qsizetype i = 0; i < captions.size(); ++i) {
        QAction *action = made->addAction(captions[i]);
        action->setObjectName(u"%1_%2"_s.arg(name).arg(i));
        action->setCheckable(true);
        action->setChecked(i == checked);
        menu->addAction(action);
    }
    QObject::connect(made, &QActionGroup::triggered, &m_window, [this] { m_run([] {}); });
    return made;
}

void PaintMenus::buildFile()
{
    QMenu *file = menu(u"&File"_s);
    add(file, u"mnuNew"_s, u"&New"_s, QKeySequence::New, &frmPaint::mnuNew_Click);
    add(file, u"mnuOpen"_s, u"&Open"_s, QKeySequence::Open, &frmPaint::mnuOpen_Click);
    add(file, u"mnuSave"_s, u"&Save"_s, QKeySequence::Save, &frmPaint::mnuSave_Click);
    add(file, u"mnuSaveAs"_s, u"Save &As..."_s, {}, &frmPaint::mnuSaveAs_Click);
    file->addSeparator();
    add(file, u"mnuPrint"_s, u"&Print"_s, QKeySequence::Print, &frmPaint::mnuPrint_Click);
    file->addSeparator();
    add(file, u"mnuExit"_s, u"&Exit"_s, {}, &frmPaint::mnuExit_Click);
}

void PaintMenus::buildEdit()
{
    QMenu *edit = menu(u"&Edit"_s);
    m_undo = add(edit, u"mnuUndo"_s, u"&Undo"_s, QKeySequence(u"Ctrl+Z"_s), &frmPaint::mnuUndo_Click);
    m_redo = add(edit, u"mnuRedo"_s, u"&Redo"_s, QKeySequence(u"Ctrl+Y"_s), &frmPaint::mnuRedo_Click);
    edit->addSeparator();
    QAction *cut = add(edit, u"mnuCut"_s, u"Cu&t"_s, QKeySequence::Cut, &frmPaint::mnuCut_Click);
    add(edit, u"mnuCopy"_s, u"&Copy"_s, QKeySequence::Copy, &frmPaint::mnuCopy_Click);
    m_paste = add(edit, u"mnuPaste"_s, u"&Paste"_s, QKeySequence::Paste, &frmPaint::mnuPaste_Click);
    QAction *remove =
        add(edit, u"mnuDelete"_s, u"&Delete"_s, QKeySequence::Delete, &frmPaint::mnuDelete_Click);
    QAction *crop = add(edit, u"mnuCrop"_s, u"C&rop"_s, {}, &frmPaint::mnuCrop_Click);
    m_ofSelection = {cut, remove, crop};
}

void PaintMenus::buildFormat()
{
    QMenu *format = menu(u"F&ormat"_s);
    m_borders = group(menu(u"&Border Style"_s, format), u"mnuBorder"_s,
                      {u"&Solid"_s, u"&Dash"_s, u"D&ot"_s, u"D&ashDot"_s, u"Da&shDotDot"_s}, 0);
    m_fills = group(menu(u"Fi&ll Style"_s, format), u"mnuFill"_s,
                    {u"&Solid"_s, u"&Transparent"_s, u"&Horizontal Line"_s, u"&Vertical Line"_s,
                     u"&Downward Diagonal"_s, u"&Upward Diagonal"_s, u"&Cross"_s, u"Diagona&l Cross"_s},
                    0);
    format->addSeparator();
    add(format, u"mnuForeColor"_s, u"F&oreground Color..."_s, {}, &frmPaint::mnuForeColor_Click);
    add(format, u"mnuFillColor"_s, u"Fi&ll Color..."_s, {}, &frmPaint::mnuFillColor_Click);
    add(format, u"mnuFont"_s, u"&Font..."_s, {}, &frmPaint::mnuFont_Click);
}

void PaintMenus::buildEffect()
{
    QMenu *effect = menu(u"Effe&ct"_s);
    QMenu *size = menu(u"Re&size"_s, effect);
    for (const int percent : resizePercents)
        add(size, u"mnuResize_%1"_s.arg(percent), u"%1%"_s.arg(percent), {},
            [this, percent] { m_window.resizeBy(percent); });
    size->addSeparator();
    m_sides = group(size, u"mnuResizeSide"_s, {u"&Both"_s, u"&Width"_s, u"&Height"_s}, 0);
    QMenu *flip = menu(u"&Flip"_s, effect);
    add(flip, u"mnuFlipHorizontal"_s, u"&Horizontal"_s, {}, &frmPaint::mnuFlipHorizontal_Click);
    add(flip, u"mnuFlipVertical"_s, u"&Vertical"_s, {}, &frmPaint::mnuFlipVertical_Click);
    QMenu *rotate = menu(u"&Rotate"_s, effect);
    constexpr int turn = 45;
    for (int degrees = turn; degrees < 360; degrees += turn)
        add(rotate, u"mnuRotate_%1"_s.arg(degrees), u"By %1"_s.arg(degrees), {},
            [this, degrees] { m_window.rotateBy(degrees); });
    rotate->addSeparator();
    m_turns = group(rotate, u"mnuRotateWay"_s, {u"&Clockwise"_s, u"&Anti-Clockwise"_s}, 0);
    add(effect, u"mnuClear"_s, u"&Clear"_s, {}, &frmPaint::mnuClear_Click);
    QMenu *filter = menu(u"&Filte&r"_s, effect);
    for (const FilterRow &row : filterRows) {
        if (row.number != noFilter)
            add(filter, u"mnuFilter_%1"_s.arg(row.number), QString::fromUtf16(row.menu), {},
                [this, number = row.number] { m_window.ApplyFilter(number); });
    }
    add(filter, u"mnuInvert"_s, u"&Invert Colors"_s, {}, &frmPaint::mnuInvert_Click);
}

void PaintMenus::buildFilterList()
{
    m_filterList = new QMenu(u"&TFilter"_s, &m_window);
    m_filterList->setObjectName("mnuTFilter"_L1);
    QStringList captions;
    for (const FilterRow &row : filterRows)
        captions += QString::fromUtf16(row.brush);
    m_brushFilters = group(m_filterList, u"mnuFilterTools"_s, captions, firstBrushFilter);
}

void PaintMenus::setState(const State &state)
{
    m_undo->setEnabled(state.undo);
    m_redo->setEnabled(state.redo);
    m_paste->setEnabled(state.paste);
    for (QAction *action : std::as_const(m_ofSelection))
        action->setEnabled(state.selection);
}

int PaintMenus::borderStyle() const
{
    return checkedIndex(*m_borders);
}

int PaintMenus::fillStyle() const
{
    return checkedIndex(*m_fills);
}

bool PaintMenus::resizesWidth() const
{
    return checkedIndex(*m_sides) != 2;
}

bool PaintMenus::resizesHeight() const
{
    return checkedIndex(*m_sides) != 1;
}

bool PaintMenus::clockwise() const
{
    return checkedIndex(*m_turns) == 0;
}

int PaintMenus::brushFilter() const
{
    return checkedIndex(*m_brushFilters);
}
