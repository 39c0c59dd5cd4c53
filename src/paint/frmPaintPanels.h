#pragma once

#include <QFrame>

#include <functional>
#include <vector>

class QButtonGroup;
class QLabel;
class QToolButton;

/// A panel of pictures of which one is chosen. The buttons are named NAME_0, NAME_1, ...
class ChoicePanel : public QFrame
{
    Q_OBJECT

public:
    struct Choice {
        QString toolTip;
        std::function<void(QPainter &)> paint; ///< on `picture` units
    };
    ChoicePanel(const QString &panelName, const QString &choiceName, QSize picture, int columns,
                const std::vector<Choice> &choices, QWidget *parent);

    int chosen() const;
    void choose(int index);

Q_SIGNALS:
    void choiceChanged(int index);

private:
    QButtonGroup *m_group;
};

/// `fraOptDot`: eight widths. Pixels.
ChoicePanel *makeSizePanel(const std::vector<int> &widths, QWidget *parent);
/// `fraOptFill`: outline only, outline and inside, inside only.
ChoicePanel *makeFillPanel(QWidget *parent);
/// `fraBrush`: ten shapes of the brush.
ChoicePanel *makeBrushPanel(QWidget *parent);

/// The colours: cells of the palette, and the two that are drawn with. A click on a cell sets the foreground
/// colour, a right-click the fill colour; a double-click on one of the two asks for any colour.
class ColourPanel : public QWidget
{
    Q_OBJECT

public:
    explicit ColourPanel(QWidget *parent);

    QColor foreground() const { return m_foreground; }
    QColor fill() const { return m_fill; }
    void setForeground(QColor colour);
    void setFill(QColor colour);

    /// What the pointer is over, for the status line.
    enum class Part { None, Palette, Foreground, Fill };

Q_SIGNALS:
    void coloursChanged();
    void customColourWanted(bool foreground);
    void hovered(ColourPanel::Part part);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    Part partOf(const QObject *label) const;
    void paintLabel(QLabel &label, QColor colour);

    QColor m_foreground = Qt::black;
    QColor m_fill = Qt::white;
    QLabel *lblForeColor;
    QLabel *lblFillColor;
    std::vector<QLabel *> lblColor;
};
