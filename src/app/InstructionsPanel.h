#pragma once

#include <QWidget>

/// What the main window shows while no screen is open: how a guide is made, in four steps.
class InstructionsPanel : public QWidget
{
    Q_OBJECT

public:
    explicit InstructionsPanel(QWidget *parent);
};
