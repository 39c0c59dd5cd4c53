// The commands of the paint editor's menus.

#include "annotate/PicturePrinting.h"
#include "paint/frmPaint.h"
#include "paint/frmPaintCanvas.h"
#include "paint/frmPaintMenus.h"
#include "paint/frmPaintPanels.h"
#include "paint/frmPaintProgress.h"
#include "paint/mdlEffect.h"
#include "paint/mdlFilter.h"
#include "platform/PrintJob.h"
#include "state/BesideEvents.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QClipboard>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QPainter>
#include <QScopeGuard>
#include <QScrollArea>
#include <QScrollBar>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int invertBrush = 9; ///< its place in the list of the filter brush
constexpr int halfTurn = 180;
} // namespace

void frmPaint::showPic(const QString &path)
{
    show();
    if (isMinimized())
        setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    activateWindow();
    if (path.isEmpty())
        return;
    tools([&] {
        if (m_picture.openFile(path))
            showOpened();
    });
}

void frmPaint::closeEvent(QCloseEvent *event)
{
    bool mayGo = false;
    tools([&] { mayGo = m_picture.queryClose(); });
    if (mayGo) // the window is kept, and has been answered
        m_picture.discardChanges();
    event->setAccepted(mayGo);
}

// ---- files

void frmPaint::mnuNew_Click()
{
    m_picture.New();
}

void frmPaint::mnuOpen_Click()
{
    if (m_picture.Open())
        showOpened();
}

/// From its top left corner, pixel by pixel, with the tool chosen anew.
void frmPaint::showOpened()
{
    m_tools.choose(m_settings.tool);
    updateCursor(false);
    picPaint->setZoom(1);
    fraScroll->horizontalScrollBar()->setValue(0);
    fraScroll->verticalScrollBar()->setValue(0);
}

void frmPaint::mnuSave_Click()
{
    m_picture.Save();
}

void frmPaint::mnuSaveAs_Click()
{
    m_picture.SaveAs();
}

void frmPaint::mnuPrint_Click()
{
    m_picture.finishPending();
    try {
        const std::unique_ptr<PrintJob> job = m_services.prompter.choosePrinter(Question::PrintImage);
        if (!job)
            return;
        PrintPictureToFitPage(job->device(), m_picture.image());
        job->finish();
    } catch (const RunTimeError &error) {
        m_services.prompter.tell(Question::PaintPrintFailed,
                                 {u"Cannot print the picture.\r\n\r\n"_s + error.description(),
                                  m_services.state.AppTitle, Icon::Critical});
    }
}

void frmPaint::mnuExit_Click()
{
    close();
}

// ---- editing

void frmPaint::mnuUndo_Click()
{
    m_picture.undo();
}

void frmPaint::mnuRedo_Click()
{
    m_picture.redo();
}

void frmPaint::mnuCut_Click()
{
    if (m_picture.Cut())
        QGuiApplication::clipboard()->setImage(m_picture.clipboard());
}

void frmPaint::mnuCopy_Click()
{
    m_picture.Copy();
    QGuiApplication::clipboard()->setImage(m_picture.clipboard());
}

void frmPaint::mnuPaste_Click()
{
    QImage pasted = QGuiApplication::clipboard()->image();
    if (pasted.isNull())
        pasted = m_picture.clipboard();
    const QPoint corner = -picPaint->mapFrom(fraScroll->viewport(), QPoint(0, 0));
    const QPoint visible = picPaint->pixelAt(QPointF(-corner.x(), -corner.y()));
    m_tools.choose(DrawingTool::SelectArea);
    optTools->button(static_cast<int>(DrawingTool::SelectArea))->setChecked(true);
    optTools_Click(static_cast<int>(DrawingTool::SelectArea));
    m_picture.Paste(pasted, {std::max(visible.x(), 0), std::max(visible.y(), 0)});
}

void frmPaint::mnuDelete_Click()
{
    m_picture.Delete();
}

void frmPaint::mnuCrop_Click()
{
    m_picture.Crop();
}

void frmPaint::mnuClear_Click()
{
    m_picture.Clear();
}

// ---- format

void frmPaint::askColour(bool foreground)
{
    const auto colour = m_services.prompter.chooseColour(
        Question::PaintColour, foreground ? m_colours->foreground() : m_colours->fill());
    if (!colour)
        return;
    if (foreground)
        m_colours->setForeground(*colour);
    else
        m_colours->setFill(*colour);
}

void frmPaint::mnuForeColor_Click()
{
    askColour(true);
}

void frmPaint::mnuFillColor_Click()
{
    askColour(false);
}

void frmPaint::mnuFont_Click()
{
    const auto font = m_services.prompter.chooseFont(Question::PaintFont, m_settings.font);
    if (!font)
        return;
    m_settings.font = *font;
    picPaint->setTextFont(*font);
}

// ---- effects

void frmPaint::ImageEffect(int kind, double value)
{
    mdlEffect::Parameters parameters;
    parameters.widthFactor = m_widthFactor;
    parameters.heightFactor = m_heightFactor;
    parameters.angle = static_cast<float>(value);
    parameters.counterClockwise = !m_menus->clockwise();
    parameters.background = m_settings.fill.rgb();
    const auto effect = static_cast<mdlEffect::Kind>(kind);
    m_picture.apply(
        [&](const QImage &source) { return mdlEffect::TransformPicture(source, effect, parameters); },
        [&](QSize size) {
            return effect == mdlEffect::Kind::Resize ? mdlEffect::resizedSize(size, parameters) : size;
        });
}

void frmPaint::resizeBy(int percent)
{
    const float factor = static_cast<float>(percent) / 100;
    if (m_menus->resizesWidth())
        m_widthFactor = factor;
    if (m_menus->resizesHeight())
        m_heightFactor = factor;
    ImageEffect(static_cast<int>(mdlEffect::Kind::Resize), factor);
}

/// Half a turn is both flips, one after the other.
void frmPaint::rotateBy(int degrees)
{
    if (degrees != halfTurn)
        return ImageEffect(static_cast<int>(mdlEffect::Kind::Rotate), degrees);
    m_picture.apply([](const QImage &source) {
        using mdlEffect::Kind;
        return mdlEffect::TransformPicture(mdlEffect::TransformPicture(source, Kind::FlipHorizontal, {}),
                                           Kind::FlipVertical, {});
    });
}

void frmPaint::mnuFlipHorizontal_Click()
{
    ImageEffect(static_cast<int>(mdlEffect::Kind::FlipHorizontal), 0);
}

void frmPaint::mnuFlipVertical_Click()
{
    ImageEffect(static_cast<int>(mdlEffect::Kind::FlipVertical), 0);
}

void frmPaint::mnuInvert_Click()
{
    ImageEffect(static_cast<int>(mdlEffect::Kind::Invert), 0);
}

void frmPaint::ApplyFilter(int number)
{
    m_picture.apply([this, number](const QImage &source) { return filtered(source, number); });
}

/// In another thread; what takes its time is shown.
QImage frmPaint::filtered(const QImage &source, int number)
{
    mdlFilter::Random random(m_seeds());
    const mdlFilter::Parameters parameters{m_settings.foreground.rgb(), m_settings.fill.rgb(), &random};
    const auto shownAgain = qScopeGuard([this] { picPaint->showInstead({}); });
    ProgressScope progress(*m_progress, QString(), 100);
    const QImage result = besideEvents(progress, [&](WorkBesideEvents &work) {
        return mdlFilter::ApplyFilter(
            number, source, {}, parameters, [&](int percent, const QImage &partial, int columnsDone) {
                work.done = percent;
                return !work.stop.stop_requested() && m_progress->take(percent, partial, columnsDone == 0);
            });
    });
    return result;
}

void frmPaint::filterSquare(QImage &canvas, const QRect &square) const
{
    if (m_settings.brushFilter == invertBrush) {
        // From the picture as it was before the stroke: squares lie over one another.
        const QRect visible = square & canvas.rect();
        const QImage before = m_picture.history().picture().copy(visible);
        QPainter(&canvas).drawImage(visible.topLeft(),
                                    mdlEffect::TransformPicture(before, mdlEffect::Kind::Invert, {}));
        return;
    }
    mdlFilter::Random random(static_cast<std::uint64_t>(square.left()) << 32 ^
                             static_cast<std::uint64_t>(square.top()));
    mdlFilter::ApplyFilterInPlace(m_settings.brushFilter, canvas,
                                  {square.left(), square.top(), square.right(), square.bottom()},
                                  {m_settings.foreground.rgb(), m_settings.fill.rgb(), &random});
}

// ---- help

void frmPaint::mnuHelp_Click()
{
    m_services.workspace.openHelp(u"paint.htm"_s);
}

void frmPaint::mnuAbout_Click()
{
    m_services.prompter.tell(Question::AboutShotly,
                             {u"Easel, the paint editor of Shotly %1"_s.arg(QStringLiteral(SHOTLY_VERSION)),
                              u"About Easel"_s, Icon::Information});
}
