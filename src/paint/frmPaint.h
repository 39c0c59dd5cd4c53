#pragma once

#include "paint/PaintPicture.h"
#include "paint/PaintTools.h"
#include "platform/qt/Guarded.h"
#include "state/Workspace.h"

#include <QCursor>
#include <QHash>
#include <QMainWindow>

#include <memory>
#include <random>

class ChoicePanel;
class ColourPanel;
class FilterProgress;
class PaintArea;
class PaintCanvas;
class PaintMenus;
class QButtonGroup;
class QLabel;
class QScrollArea;

/// The paint editor, "Easel": retouches one picture file. There is one for the whole program, made once and
/// shown again. Menus are a table (PaintMenus); what they do to the picture is PaintPicture's, what the mouse
/// does is PaintTools'.
class frmPaint : public QMainWindow
{
    Q_OBJECT

public:
    struct Services {
        Module1 &state;
        Prompter &prompter;
        Workspace &workspace;
    };

    explicit frmPaint(const Services &services);
    ~frmPaint() override;

    /// Shows the window with a picture file, after a question about unsaved changes.
    void showPic(const QString &path);

    // Commands of the menus.
    void mnuNew_Click();
    void mnuOpen_Click();
    void mnuSave_Click();
    void mnuSaveAs_Click();
    void mnuPrint_Click();
    void mnuExit_Click();
    void mnuUndo_Click();
    void mnuRedo_Click();
    void mnuCut_Click();
    void mnuCopy_Click();
    void mnuPaste_Click();
    void mnuDelete_Click();
    void mnuCrop_Click();
    void mnuClear_Click();
    void mnuForeColor_Click();
    void mnuFillColor_Click();
    void mnuFont_Click();
    void mnuFlipHorizontal_Click();
    void mnuFlipVertical_Click();
    void mnuInvert_Click();
    void mnuHelp_Click();
    void mnuAbout_Click();
    void resizeBy(int percent);
    void rotateBy(int degrees);
    void ApplyFilter(int number);
    /// A geometric effect on the selection, or on the whole picture. Kinds: mdlEffect::Kind.
    void ImageEffect(int kind, double value);

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void buildControls();
    void showOpened();
    void pressed(PaintTools::Button button, QPoint at, QPoint global);
    void buildTools();
    void connectCanvas();
    void connectPanels();
    void optTools_Click(int index);
    void askColour(bool foreground);
    void zoomBy(double factor, QPoint around);
    void panTo(QPoint global);
    void tools(const std::function<void()> &gesture);
    void pictureChanged();
    void UpdateStatusBar();
    void showPosition();
    void clipboardChanged();
    QImage filtered(const QImage &source, int number);
    void filterSquare(QImage &canvas, const QRect &square) const;
    void updateCursor(bool grabbing);

    Services m_services;
    FailureBox m_failures;
    PaintSettings m_settings;
    PaintPicture m_picture;
    PaintTools m_tools;
    std::unique_ptr<FilterProgress> m_progress;
    std::minstd_rand m_seeds{std::random_device{}()};
    float m_widthFactor = 1; ///< of the last resize
    float m_heightFactor = 1;
    std::optional<QPoint> m_mouse; ///< pixel of the picture the pointer is on; outside: none
    QPoint m_panned;               ///< global position of the hand while it drags
    bool m_canPaste = false;       ///< another program, or this one, has put a picture onto the clipboard
    /// Pointer shapes by their file. The display keeps each one that is made for as long as the program
    /// lives.
    QHash<QString, QCursor> m_shapes;
    QString m_overText; ///< of what the pointer is over outside the picture

    QScrollArea *fraScroll;
    PaintArea *m_area;
    PaintCanvas *picPaint;
    QWidget *fraTools;
    QButtonGroup *optTools;
    ChoicePanel *fraOptDot;
    ChoicePanel *fraOptFill;
    ChoicePanel *fraBrush;
    ColourPanel *m_colours;
    QLabel *m_statusText;
    QLabel *m_statusPosition;
    std::unique_ptr<PaintMenus> m_menus;
};
