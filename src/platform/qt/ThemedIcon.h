#pragma once

#include <QIcon>
#include <QWidget>

#include <functional>

class QPainter;

/// The icons of the program are drawn for a light ground. Where the palette's window colour is dark, each of
/// their colours is replaced by one that can be seen there. The choice is made whenever an icon is painted,
/// so that the icons follow a change of the desktop's theme.

/// The icon ":/icons/NAME", NAME with its ending ".svg"; a null icon where there is none.
QIcon themedIcon(const QString &name);

/// An icon that `draw` paints, in pixels of `size`, with colours that it asks of themedColour. `name` stands
/// for the picture in the cache: no two pictures share one.
QIcon themedIcon(const QString &name, QSize size, const std::function<void(QPainter &)> &draw);

/// A square of `size` pixels a side, filled with `colour` and with an edge that white and silver need.
QIcon colourSwatch(const QColor &colour, int size);

/// What stands for a colour of the icons on the ground of the present palette; a colour that no icon has
/// stays.
QColor themedColour(QRgb drawn);

/// A red for texts about what is wrong, which can be read on `ground`.
QColor faultColour(const QColor &ground);

/// Shows an icon as large as itself.
class IconPicture : public QWidget
{
public:
    IconPicture(const QIcon &icon, QSize size, QWidget *parent);
    void setIcon(const QIcon &icon);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QIcon m_icon;
};
