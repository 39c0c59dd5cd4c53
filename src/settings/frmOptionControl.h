#pragma once

#include "settings/frmOptionRows.h"

#include <QObject>

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QWidget;

/// The control of one row of the table. Its value is the option's text as the options file has it. Tells what
/// the user does with it; what the program puts in is told to nobody.
class OptionControl : public QObject
{
    Q_OBJECT

public:
    /// Makes the widget, as a child of `parent`.
    OptionControl(const OptionRows::Row &row, QWidget *parent);

    const OptionRows::Row &row() const { return m_row; }
    /// What is put into the layout: the control itself, or a box with the option buttons.
    QWidget *widget() const { return m_widget; }

    /// Empty where nothing is chosen.
    QString value() const;
    /// A text that a list lacks is added to it, so that it is not lost. A number that no entry stands for
    /// leaves nothing chosen.
    void show(const QString &value);

    /// The number of the chosen entry, or 1 for a check box that is checked; -1 for none.
    int index() const;
    void choose(int index);

    /// What is shown.
    QString text() const;
    /// A combo box that takes its entries alone.
    bool isList() const;
    /// Any text will do, a blank one too.
    bool isText() const;

Q_SIGNALS:
    void changed();
    /// Something was typed into a list that is none of its entries; it is still shown.
    void typed();
    /// The keyboard went on to another control of the window.
    void left();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void makeChoice(QWidget *parent);
    void makeCombo(QWidget *parent);
    int numberOf(const QString &value) const;
    void lineEdited(const QString &text);

    const OptionRows::Row &m_row;
    QWidget *m_widget = nullptr;
    QCheckBox *m_check = nullptr;
    QButtonGroup *m_choice = nullptr;
    QComboBox *m_combo = nullptr;
    QLineEdit *m_line = nullptr; ///< also the one of the combo box
    QLabel *m_label = nullptr;
};
