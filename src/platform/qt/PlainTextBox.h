#pragma once

#include <QMimeData>
#include <QPlainTextEdit>

/// A box for text of several lines. Qt 6.4's own crashes when somebody pastes from a clipboard that holds
/// nothing at all, as in a fresh session.
class PlainTextBox : public QPlainTextEdit
{
public:
    using QPlainTextEdit::QPlainTextEdit;

protected:
    void insertFromMimeData(const QMimeData *source) override
    {
        if (source && source->hasText())
            QPlainTextEdit::insertFromMimeData(source);
    }
};
