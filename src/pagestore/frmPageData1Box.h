#pragma once

#include "pagestore/PageFields.h"

#include <QObject>

class QLineEdit;
class QPlainTextEdit;
class QWidget;

/// A text box of the page editor, of one line or of many, that is bound to a column. Tells what the user does
/// with it; what the program puts in is told to nobody.
class BoundBox : public QObject
{
    Q_OBJECT

public:
    /// `widget` is a QLineEdit or a QPlainTextEdit.
    BoundBox(int index, QWidget *widget, QObject *parent);

    int index() const { return m_index; }
    const PageField &field() const { return PageFields::field(m_index); }
    QWidget *widget() const { return m_widget; }

    QString text() const;
    /// Without a signal; the cursor goes to the start.
    void show(const QString &text);
    /// As if the user had typed it.
    void enter(const QString &text);

    /// Locked boxes stay locked.
    void setEditable(bool editable);

Q_SIGNALS:
    void edited();
    /// A key that the box does not take.
    void characterRefused();
    /// The keyboard went on to another box of the window.
    void left();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool swallows(int key, const QString &text);

    int m_index;
    QWidget *m_widget;
    QLineEdit *m_line;
    QPlainTextEdit *m_lines;
    bool m_locked;
};
