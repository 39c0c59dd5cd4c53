#pragma once

#include "capture/RegionSelection.h"

#include <QImage>
#include <QWidget>

#include <optional>

class QMouseEvent;
class QPainter;

/// The frozen desktop on a window that covers the whole of it, on all monitors and above everything. The user
/// draws a region on it with the left button; a click or Escape cancels, and so does a box of the program,
/// which must not be covered.
///
/// One pixel of the picture is one physical pixel of the screen, whatever Qt's scale.
class frmRegion : public QWidget
{
    Q_OBJECT

public:
    /// `desktop` begins at the desktop's top left corner; device pixel ratio 1.
    explicit frmRegion(const QImage &desktop);

    void showOverDesktop();

    /// What the user drew, physical pixels; nothing when he cancelled. Known when unloaded() is sent.
    std::optional<QRect> region() const { return m_region; }

Q_SIGNALS:
    /// Sent once, from the event loop, after the window has hidden itself.
    void unloaded();

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void coverDesktop();
    void unload(std::optional<QRect> region);
    QPoint desktopPosition(const QMouseEvent &event) const;
    QRect labelPlace() const;
    QRegion bandPixels() const;
    void updatePixels(const QRegion &pixels);
    void paintLabel(QPainter &painter) const;

    QImage m_desktop;
    QPoint m_corner; ///< where the window's top left corner is on the desktop
    RegionSelection shRect;
    std::optional<QRect> m_region;
    bool m_unloading = false;
};
