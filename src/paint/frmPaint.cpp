#include "paint/frmPaint.h"

#include "paint/CursorFile.h"
#include "paint/frmPaintCanvas.h"
#include "paint/frmPaintMenus.h"
#include "paint/frmPaintPanels.h"
#include "paint/frmPaintProgress.h"
#include "platform/qt/ThemedIcon.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QClipboard>
#include <QGridLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMimeData>
#include <QScopeGuard>
#include <QScrollArea>
#include <QScrollBar>
#include <QStatusBar>
#include <QToolButton>
#include <QVBoxLayout>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr QSize firstWindow(900, 680);
constexpr double zoomStep = 1.25;
constexpr int toolColumns = 2;

/// Files of the icons, by tool.
constexpr const char16_t *toolIcons[paintToolCount] = {
    u"select-area", u"pick-color", u"eraser",       u"fill",  u"pencil",    u"line",
    u"rectangle",   u"ellipse",    u"text",         u"arrow", u"air-brush", u"rounded-rectangle",
    u"polygon",     u"curve",      u"filter-brush", u"zoom",  u"brush",     u"hand"};
} // namespace

frmPaint::frmPaint(const Services &services)
    : m_services(services), m_failures(services.prompter),
      m_picture({services.state, services.prompter, m_settings}),
      m_tools({m_settings, m_picture, [this] { return static_cast<std::uint32_t>(m_seeds()); },
               [this](QImage &canvas, const QRect &square) { filterSquare(canvas, square); },
               [this] { return picPaint->textBox().toPlainText(); },
               [this] {
                   const QColor fill = m_settings.fill; // the panel tells both at each change
                   m_colours->setForeground(m_settings.foreground);
                   m_colours->setFill(fill);
               }}),
      m_progress(
          std::make_unique<FilterProgress>([this](int percent, bool retrieving, const QImage &partial) {
              m_statusText->setText(retrieving ? PaintTexts::retrieving(percent)
                                               : PaintTexts::filtering(percent));
              if (!partial.isNull())
                  picPaint->showInstead(partial);
          })),
      fraScroll(new QScrollArea(this)), m_area(new PaintArea(nullptr)),
      picPaint(new PaintCanvas(m_picture, m_tools, m_area)), fraTools(new QWidget(this)),
      optTools(new QButtonGroup(this)),
      fraOptDot(makeSizePanel({PaintSettings::sizes.begin(), PaintSettings::sizes.end()}, fraTools)),
      fraOptFill(makeFillPanel(fraTools)), fraBrush(makeBrushPanel(fraTools)),
      m_colours(new ColourPanel(this)), m_statusText(new QLabel(this)), m_statusPosition(new QLabel(this)),
      m_menus(std::make_unique<PaintMenus>(*this,
                                           [this](const std::function<void()> &command) { tools(command); }))
{
    setObjectName("frmPaint"_L1);
    buildTools();
    buildControls();
    connectCanvas();
    connectPanels();
    QFont textFont = picPaint->textBox().font();
    textFont.setFamilies(
        {u"MS Sans Serif"_s, textFont.family()}); // the second where the first is not installed
    picPaint->setTextFont(textFont);
    m_settings.font = textFont;
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, &frmPaint::clipboardChanged);
    clipboardChanged();
    picPaint->setTextColours(m_settings.foreground, m_settings.fill);
    optTools_Click(static_cast<int>(DrawingTool::Pencil));
    optTools->button(static_cast<int>(DrawingTool::Pencil))->setChecked(true);
    pictureChanged();
    picPaint->setFocus();
}

frmPaint::~frmPaint() = default;

void frmPaint::buildTools()
{
    fraTools->setObjectName("fraTools"_L1);
    auto *column = new QVBoxLayout(fraTools);
    column->setContentsMargins(4, 4, 4, 4);
    column->setSpacing(6);
    auto *grid = new QGridLayout;
    grid->setSpacing(1);
    for (const PaintToolRow &row : paintToolTable()) {
        const int index = static_cast<int>(row.tool);
        auto *button = new QToolButton(fraTools);
        button->setObjectName(u"optTools_%1"_s.arg(index));
        button->setIcon(themedIcon(u"tool-%1.svg"_s.arg(QString::fromUtf16(toolIcons[index]))));
        button->setIconSize({22, 22});
        button->setToolTip(QString::fromUtf16(row.caption));
        button->setCheckable(true);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::TabFocus); // a click leaves the keys with the picture
        optTools->addButton(button, index);
        grid->addWidget(button, index / toolColumns, index % toolColumns);
    }
    column->addLayout(grid);
    for (QWidget *panel : {static_cast<QWidget *>(fraOptDot), static_cast<QWidget *>(fraOptFill),
                           static_cast<QWidget *>(fraBrush)})
        column->addWidget(panel);
    column->addStretch();
    fraTools->setFixedWidth(92);
}

void frmPaint::buildControls()
{
    m_area->setCanvas(picPaint);
    fraScroll->setObjectName("fraScroll"_L1);
    fraScroll->setWidget(m_area);
    fraScroll->setBackgroundRole(QPalette::Mid);
    fraScroll->setFocusPolicy(Qt::NoFocus);
    fraScroll->horizontalScrollBar()->setObjectName("hscPaint"_L1);
    fraScroll->verticalScrollBar()->setObjectName("vscPaint"_L1);
    auto *centre = new QWidget(this);
    auto *grid = new QGridLayout(centre);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(2);
    grid->addWidget(fraTools, 0, 0);
    grid->addWidget(fraScroll, 0, 1);
    grid->addWidget(m_colours, 1, 0, 1, 2);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(0, 1);
    setCentralWidget(centre);
    m_statusText->setObjectName("statusText"_L1);
    m_statusText->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_statusPosition->setObjectName("statusPosition"_L1);
    m_statusPosition->setMinimumWidth(150);
    statusBar()->addWidget(m_statusText, 1);
    statusBar()->addPermanentWidget(m_statusPosition);
    resize(firstWindow);
}

void frmPaint::connectCanvas()
{
    using Button = PaintTools::Button;
    using Modifiers = PaintTools::Modifiers;
    connect(picPaint, &PaintCanvas::pressed, this,
            [this](Button button, QPoint at, Modifiers modifiers, QPoint global) {
                pressed(button, at, global);
                tools([&] { m_tools.press(button, at, modifiers); });
            });
    connect(picPaint, &PaintCanvas::moved, this, [this](QPoint at, Modifiers modifiers, QPoint global) {
        m_mouse = at;
        if (m_settings.tool == DrawingTool::Hand)
            panTo(global);
        tools([&] { m_tools.move(at, modifiers); });
    });
    connect(picPaint, &PaintCanvas::released, this, [this](Button button, QPoint at, Modifiers modifiers) {
        if (m_settings.tool == DrawingTool::Hand)
            updateCursor(false);
        tools([&] {
            m_tools.release(button, at, modifiers);
            if (m_settings.tool == DrawingTool::Zoom && button == Button::Left)
                zoomBy(modifiers.ctrl ? 1 / zoomStep : zoomStep, at);
        });
    });
    connect(picPaint, &PaintCanvas::doubleClicked, this,
            [this](Button button, QPoint at, Modifiers modifiers, QPoint global) {
                pressed(button, at, global);
                tools([&] { m_tools.doubleClick(button, at, modifiers); });
            });
    connect(picPaint, &PaintCanvas::left, this, [this] {
        m_mouse.reset();
        showPosition();
    });
    connect(picPaint, &PaintCanvas::zoomWanted, this,
            [this](int steps, QPoint at) { tools([&] { zoomBy(std::pow(zoomStep, steps), at); }); });
    connect(picPaint, &PaintCanvas::textBoxMoved, this,
            [this] { fraScroll->ensureWidgetVisible(&picPaint->textBox(), 0, 0); });
    connect(picPaint, &PaintCanvas::textFinished, this, [this] { tools([this] { m_tools.enter(); }); });
    connect(picPaint, &PaintCanvas::textDropped, this, [this] { tools([this] { m_tools.escape(); }); });
    connect(m_area, &PaintArea::resizing, this, [this](QSize size) {
        m_statusPosition->setText(u"%1x%2"_s.arg(size.width()).arg(size.height()));
    });
    connect(m_area, &PaintArea::resizeWanted, this,
            [this](QSize size) { tools([&] { m_picture.resizeCanvas(size); }); });
}

void frmPaint::connectPanels()
{
    connect(optTools, &QButtonGroup::idClicked, this, &frmPaint::optTools_Click);
    connect(fraOptDot, &ChoicePanel::choiceChanged, this,
            [this](int index) { m_settings.sizeIndex = index; });
    connect(fraOptFill, &ChoicePanel::choiceChanged, this,
            [this](int index) { m_settings.fillMode = static_cast<FillMode>(index); });
    connect(fraBrush, &ChoicePanel::choiceChanged, this,
            [this](int index) { m_settings.brushShape = static_cast<BrushShape>(index); });
    connect(m_colours, &ColourPanel::coloursChanged, this, [this] {
        m_settings.foreground = m_colours->foreground();
        m_settings.fill = m_colours->fill();
        picPaint->setTextColours(m_settings.foreground, m_settings.fill);
    });
    connect(m_colours, &ColourPanel::customColourWanted, this,
            [this](bool foreground) { tools([&] { askColour(foreground); }); });
    connect(m_colours, &ColourPanel::hovered, this, [this](ColourPanel::Part part) {
        const char16_t *const texts[] = {u"", PaintTexts::overPalette, PaintTexts::overForeColor,
                                         PaintTexts::overFillColor};
        m_overText = QString::fromUtf16(texts[static_cast<int>(part)]);
        UpdateStatusBar();
    });
}

void frmPaint::pressed(PaintTools::Button button, QPoint at, QPoint global)
{
    m_mouse = at;
    if (m_settings.tool != DrawingTool::Hand || button != PaintTools::Button::Left)
        return;
    m_panned = global;
    updateCursor(true);
}

/// Everything that is done to the picture goes through here, and nothing while a filter runs on it.
void frmPaint::tools(const std::function<void()> &gesture)
{
    if (m_progress->active())
        return;
    const auto done = qScopeGuard([this] { pictureChanged(); });
    runGuarded(m_failures, gesture);
}

void frmPaint::optTools_Click(int index)
{
    const auto tool = static_cast<DrawingTool>(index);
    const PaintToolRow &row = rowOf(tool);
    tools([this, tool] { m_tools.choose(tool); });
    fraOptDot->setVisible(row.sizes);
    fraOptFill->setVisible(row.fills);
    fraBrush->setVisible(row.brushes);
    updateCursor(false);
    if (tool == DrawingTool::FilterBrush && isVisible())
        m_menus->filterList().popup(optTools->button(index)->mapToGlobal(QPoint(30, 0)));
}

void frmPaint::updateCursor(bool grabbing)
{
    const QString file = grabbing && m_settings.tool == DrawingTool::Hand
                             ? QString::fromUtf16(PaintTexts::grabbingCursor)
                             : QString::fromUtf16(rowOf(m_settings.tool).cursor);
    if (file.isEmpty()) {
        picPaint->unsetCursor();
        return;
    }
    auto shape = m_shapes.find(file);
    if (shape == m_shapes.end()) {
        const QString folder = FileSystem::join(m_services.state.ApplicationPath, u"Cursors"_s);
        shape = m_shapes.insert(file, CursorFile::load(FileSystem::join(folder, file)));
    }
    picPaint->setCursor(*shape);
}

/// The pixel under the pointer stays there.
void frmPaint::zoomBy(double factor, QPoint around)
{
    const double before = picPaint->zoom();
    picPaint->setZoom(before * factor);
    const QPointF moved = QPointF(around) * (picPaint->zoom() - before) / devicePixelRatioF();
    QScrollBar *across = fraScroll->horizontalScrollBar();
    QScrollBar *down = fraScroll->verticalScrollBar();
    across->setValue(across->value() + static_cast<int>(moved.x()));
    down->setValue(down->value() + static_cast<int>(moved.y()));
}

void frmPaint::panTo(QPoint global)
{
    if (!(QGuiApplication::mouseButtons() & Qt::LeftButton))
        return;
    const QPoint way = global - m_panned;
    m_panned = global;
    QScrollBar *across = fraScroll->horizontalScrollBar();
    QScrollBar *down = fraScroll->verticalScrollBar();
    across->setValue(across->value() - way.x());
    down->setValue(down->value() - way.y());
}

void frmPaint::pictureChanged()
{
    m_settings.borderStyle = static_cast<BorderStyle>(m_menus->borderStyle());
    m_settings.fillStyle = static_cast<FillStyle>(m_menus->fillStyle());
    m_settings.brushFilter = m_menus->brushFilter();
    setWindowTitle(m_picture.title());
    picPaint->pictureChanged();
    m_menus->setState({m_picture.undoEnabled(), m_picture.redoEnabled(), m_picture.selection().exists(),
                       m_canPaste || !m_picture.clipboard().isNull()});
    UpdateStatusBar();
    showPosition();
}

void frmPaint::clipboardChanged()
{
    const QMimeData *content = QGuiApplication::clipboard()->mimeData();
    m_canPaste = content && content->hasImage();
    pictureChanged();
}

void frmPaint::UpdateStatusBar()
{
    m_statusText->setText(m_overText.isEmpty() ? m_tools.statusText() : m_overText);
}

void frmPaint::showPosition()
{
    const QString size = m_tools.sizeText();
    const QString position = m_mouse ? PaintTools::positionText(*m_mouse) : QString();
    m_statusPosition->setText(size.isEmpty() ? position : position + u"   "_s + size);
}

void frmPaint::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return tools([this] { m_tools.enter(); });
    case Qt::Key_Escape:
        return tools([this] { m_tools.escape(); });
    default:
        return QMainWindow::keyPressEvent(event);
    }
}
