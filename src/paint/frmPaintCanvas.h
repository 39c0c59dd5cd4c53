#pragma once

#include "paint/PaintTools.h"

#include <QPlainTextEdit>
#include <QWidget>

#include <optional>

/// `picPaint`: the picture of the paint editor, its floating selection and the tools' overlay, zoomed. Every
/// pixel of the picture is a square of the same size from a zoom of 1 on. Tells what the mouse does, in
/// pixels of the picture; lies in the editor's scrolled area with the handles that resize the picture.
class PaintCanvas : public QWidget
{
    Q_OBJECT

public:
    PaintCanvas(const PaintPicture &picture, const PaintTools &tools, QWidget *parent);

    double zoom() const { return m_zoom; }
    /// Within what can be shown.
    void setZoom(double zoom);
    /// The picture, the selection or the overlay has changed; perhaps the size.
    void pictureChanged();
    /// Shown instead of the picture while a filter works on it; null: the picture again.
    void showInstead(const QImage &picture);

    /// `txtText`, where a text is typed: beside the canvas in its parent, over the picture, which it may
    /// reach out of, with letters as large as they will be drawn.
    QPlainTextEdit &textBox() { return *txtText; }
    void setTextFont(const QFont &font);
    void setTextColours(QColor letters, QColor ground);
    /// What canvas and text box take of the parent.
    QSize extent() const;

    QPoint pixelAt(QPointF position) const;
    QSize pictureSize() const { return m_picture.image().size(); }

Q_SIGNALS:
    void pressed(PaintTools::Button button, QPoint at, PaintTools::Modifiers modifiers, QPoint global);
    void moved(QPoint at, PaintTools::Modifiers modifiers, QPoint global);
    void released(PaintTools::Button button, QPoint at, PaintTools::Modifiers modifiers);
    void doubleClicked(PaintTools::Button button, QPoint at, PaintTools::Modifiers modifiers, QPoint global);
    void left();
    void zoomWanted(int steps, QPoint at); ///< with CTRL and the wheel; below 0: smaller
    void sizeChanged();                    ///< of the canvas, or of extent()
    void textBoxMoved();                   ///< or shown, or resized
    void textFinished();                   ///< ENTER or a double-click in the text box
    void textDropped();                    ///< Escape there

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    double scale() const; ///< pixels of the picture to units of the widget
    void placeTextBox();
    void fitTextBox();
    bool moveTextBox(QPoint place);

    const PaintPicture &m_picture;
    const PaintTools &m_tools;
    QPlainTextEdit *txtText;
    std::optional<QPoint> m_shownTextPlace;
    QFont m_textFont;
    QSize m_extent;
    QImage m_instead;
    int m_wheel = 0; ///< turned since the last step, in eighths of a degree
    double m_zoom = 1;
};

/// The area around the canvas that is scrolled, with the three handles `picPaintResize` at the canvas's right
/// and lower edges.
class PaintArea : public QWidget
{
    Q_OBJECT

public:
    explicit PaintArea(QWidget *parent);
    /// The canvas becomes a child; set once.
    void setCanvas(PaintCanvas *canvas);
    void AdjustPaintResizeBox();

Q_SIGNALS:
    void resizeWanted(QSize size); ///< of the picture, pixels
    void resizing(QSize size);     ///< while a handle is dragged

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QSize draggedSize(const QWidget *handle, QPoint global) const;

    PaintCanvas *m_canvas = nullptr;
    std::array<QWidget *, 3> picPaintResize{};
    bool m_drags = false;
    QPoint m_grabbed; ///< where the handle was taken, global
    QSize m_before;
};
