#include "pagestore/frmPageData1Box.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSignalBlocker>

#include <algorithm>

BoundBox::BoundBox(int index, QWidget *widget, QObject *parent)
    : QObject(parent), m_index(index), m_widget(widget), m_line(qobject_cast<QLineEdit *>(widget)),
      m_lines(qobject_cast<QPlainTextEdit *>(widget)), m_locked(field().keys == PageField::Keys::None)
{
    widget->installEventFilter(this);
    if (m_line)
        connect(m_line, &QLineEdit::textEdited, this, &BoundBox::edited);
    else
        connect(m_lines, &QPlainTextEdit::textChanged, this, &BoundBox::edited);
}

QString BoundBox::text() const
{
    // Lines of a stored text end with CR LF, from which documents make their line breaks.
    return m_line ? m_line->text() : m_lines->toPlainText().replace(u'\n', QStringLiteral("\r\n"));
}

void BoundBox::show(const QString &text)
{
    const QSignalBlocker quiet(m_widget);
    if (m_line) {
        m_line->setText(text);
        m_line->setCursorPosition(0);
    } else {
        m_lines->setPlainText(text);
    }
}

void BoundBox::enter(const QString &text)
{
    show(text);
    Q_EMIT edited();
}

void BoundBox::setEditable(bool editable)
{
    const bool readOnly = m_locked || !editable;
    if (m_line)
        m_line->setReadOnly(readOnly);
    else
        m_lines->setReadOnly(readOnly);
}

bool BoundBox::swallows(int key, const QString &text)
{
    const PageField::Keys keys = field().keys;
    if (keys == PageField::Keys::Digits && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
        QWidget *next = m_widget->nextInFocusChain();
        while (next != m_widget &&
               !(next->focusPolicy() & Qt::TabFocus && next->isVisible() && next->isEnabled()))
            next = next->nextInFocusChain();
        next->setFocus(Qt::TabFocusReason);
        return true;
    }
    if (m_locked || std::all_of(text.begin(), text.end(),
                                [keys](QChar character) { return PageFields::accepts(keys, character); }))
        return false;
    if (keys == PageField::Keys::Digits)
        Q_EMIT characterRefused();
    return true;
}

bool BoundBox::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        // Shortcuts type nothing.
        return !(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) &&
               swallows(key->key(), key->text());
    }
    if (event->type() == QEvent::FocusOut) {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        const bool inside = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
                            reason == Qt::MouseFocusReason || reason == Qt::ShortcutFocusReason;
        if (inside)
            QMetaObject::invokeMethod(this, &BoundBox::left, Qt::QueuedConnection); // a box may open then
    }
    return QObject::eventFilter(watched, event);
}
