#pragma once

#include "annotate/AnnotationTools.h"

#include <QWidget>

/// `Picture1`, the canvas of a viewer: the picture at its natural size, one pixel of it on one of the
/// screen, with a border of one unit around. Tells what the mouse does on the picture, in twips of it.
class PictureCanvas : public QWidget
{
    Q_OBJECT

public:
    static constexpr int border = 1;

    PictureCanvas(const ViewerPicture &picture, const AnnotationTools &tools, QWidget *parent);

    /// The picture is another one, perhaps of another size.
    void pictureChanged();
    /// The rubber band has moved.
    void bandChanged();

Q_SIGNALS:
    void pressed(AnnotationTools::Button button, QPoint at);
    void dragged(QPoint at); ///< the left button is held
    void released(AnnotationTools::Button button, QPoint at);
    void cancelled(); ///< Escape

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QPoint twipsOf(const QMouseEvent &event) const;
    QRect bandRect() const;

    const ViewerPicture &m_picture;
    const AnnotationTools &m_tools;
    QRect m_paintedBand; ///< in widget units
};
