#pragma once

#include <QToolBar>

#include <cstdint>

/// `tlbcolor`: sixteen swatches, one of them pressed, black at first.
class ColorBar : public QToolBar
{
    Q_OBJECT

public:
    explicit ColorBar(QWidget *parent);

Q_SIGNALS:
    /// As Drawing::value() counts it.
    void colourChosen(std::uint32_t value);

private:
    void ShowColorTlb();
};
