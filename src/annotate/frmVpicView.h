#pragma once

#include <QWidget>

class QFrame;
class QScrollBar;

/// The visible part of a viewer's canvas, with scroll bars where the canvas is larger. Lies right of the
/// file list and under the toolbars.
class PictureView : public QWidget
{
    Q_OBJECT

public:
    explicit PictureView(QWidget *parent);

    /// The canvas becomes a child of the viewport; set once.
    void setCanvas(QWidget *canvas);
    /// The canvas or the space around it has changed. `fileListWidth` is 0 while the list is hidden.
    void arrange(int fileListWidth);
    /// Back to the top left corner.
    void scrollHome();

    QWidget *viewport() const { return picResize; }

protected:
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void HScroll1_Change();
    void VScroll1_Change();
    void placeLines();

    QWidget *picResize;
    QWidget *Picture1 = nullptr;
    QScrollBar *HScroll1;
    QScrollBar *VScroll1;
    QFrame *Line1;
    QFrame *Line2;
    int m_fileListWidth = 0;
};
