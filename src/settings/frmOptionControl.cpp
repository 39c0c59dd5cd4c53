#include "settings/frmOptionControl.h"

#include "platform/qt/ThemedIcon.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFocusEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

using namespace Qt::Literals::StringLiterals;
using OptionRows::Kind;

namespace
{
constexpr int longestText = 255;   // longer values are cut when the file is read
constexpr int widestCaption = 420; // pixels
constexpr int widestList = 330;
constexpr int swatchSize = 14;

QString shownPart(const QString &entry)
{
    return entry.section(u'|', 0, 0);
}

QString storedPart(const QString &entry)
{
    return entry.section(u'|', -1);
}

/// Buttons break no lines by themselves.
QString inLines(const QString &text, const QFontMetrics &metrics)
{
    QString lines;
    QString line;
    for (const QString &word : text.split(u' ')) {
        if (!line.isEmpty() && metrics.horizontalAdvance(line + u' ' + word) > widestCaption) {
            lines += line + u'\n';
            line.clear();
        }
        line += line.isEmpty() ? word : u' ' + word;
    }
    return lines + line;
}
} // namespace

OptionControl::OptionControl(const OptionRows::Row &row, QWidget *parent) : QObject(parent), m_row(row)
{
    switch (row.kind) {
    case Kind::Check:
        m_widget = m_check = new QCheckBox(parent);
        m_check->setText(inLines(row.caption, m_check->fontMetrics()));
        connect(m_check, &QCheckBox::clicked, this, &OptionControl::changed);
        break;
    case Kind::Choice:
        makeChoice(parent);
        break;
    case Kind::List:
    case Kind::Words:
    case Kind::Place:
        makeCombo(parent);
        break;
    case Kind::Text:
        m_widget = m_line = new QLineEdit(parent);
        m_line->setMaxLength(longestText);
        connect(m_line, &QLineEdit::textEdited, this, &OptionControl::changed);
        break;
    case Kind::Label:
        m_widget = m_label = new QLabel(parent);
        m_label->setTextFormat(Qt::PlainText);
        break;
    }
    m_widget->setObjectName(row.control);
    m_widget->setAccessibleName(row.caption);
    m_widget->installEventFilter(this); // a combo box has the focus for its line
}

void OptionControl::makeChoice(QWidget *parent)
{
    m_widget = new QWidget(parent);
    auto *line = new QHBoxLayout(m_widget);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(18);
    m_choice = new QButtonGroup(this);
    for (int i = 0; i < static_cast<int>(m_row.entries.size()); ++i) {
        auto *button = new QRadioButton(m_row.entries[i], m_widget);
        button->setObjectName(u"%1_%2"_s.arg(m_row.control).arg(i));
        if (m_row.colour)
            button->setIcon(colourSwatch(m_row.colour(i), swatchSize));
        m_choice->addButton(button, i);
        line->addWidget(button);
    }
    line->addStretch();
    connect(m_choice, &QButtonGroup::idClicked, this, &OptionControl::changed);
}

void OptionControl::makeCombo(QWidget *parent)
{
    m_widget = m_combo = new QComboBox(parent);
    m_combo->setEditable(true);
    m_combo->setInsertPolicy(QComboBox::NoInsert);
    m_combo->setCompleter(nullptr);
    for (int i = 0; i < static_cast<int>(m_row.entries.size()); ++i) {
        m_combo->addItem(shownPart(m_row.entries[i]), storedPart(m_row.entries[i]));
        if (m_row.colour)
            m_combo->setItemIcon(i, colourSwatch(m_row.colour(i), swatchSize));
    }
    m_line = m_combo->lineEdit();
    m_line->setMaxLength(longestText);
    if (m_row.role >= 0) // a foreign text must not widen the grid
        m_combo->setMaximumWidth(widestList);
    connect(m_combo, &QComboBox::activated, this, &OptionControl::changed);
    connect(m_line, &QLineEdit::textEdited, this, &OptionControl::lineEdited);
}

void OptionControl::lineEdited(const QString &text)
{
    if (m_row.kind == Kind::Place) {
        Q_EMIT changed();
        return;
    }
    const int entry = m_combo->findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (entry < 0) {
        Q_EMIT typed();
        return;
    }
    m_combo->setCurrentIndex(entry);
    Q_EMIT changed();
}

int OptionControl::numberOf(const QString &value) const
{
    // Booleans are stored as words.
    return value.compare("True"_L1, Qt::CaseInsensitive) == 0 ? 1 : value.toInt();
}

int OptionControl::index() const
{
    if (m_check)
        return m_check->isChecked() ? 1 : 0;
    return m_choice ? m_choice->checkedId() : m_combo ? m_combo->currentIndex() : -1;
}

void OptionControl::choose(int index)
{
    if (m_check) {
        m_check->setChecked(index == 1);
    } else if (m_choice) {
        if (QAbstractButton *button = m_choice->button(index))
            button->setChecked(true);
    } else {
        m_combo->setCurrentIndex(index);
        m_combo->setEditText(m_combo->itemText(index));
        m_line->setCursorPosition(0);
    }
}

QString OptionControl::text() const
{
    return m_label ? m_label->text() : m_line ? m_line->text() : QString();
}

bool OptionControl::isList() const
{
    return m_row.kind == Kind::List || m_row.kind == Kind::Words;
}

bool OptionControl::isText() const
{
    return m_row.kind == Kind::Place || m_row.kind == Kind::Text || m_row.kind == Kind::Label;
}

QString OptionControl::value() const
{
    if (isText())
        return text();
    if (m_row.kind == Kind::Words)
        return m_combo->currentData().toString();
    return index() < 0 ? QString() : QString::number(m_row.numbers.first + m_row.numbers.step * index());
}

void OptionControl::show(const QString &value)
{
    switch (m_row.kind) {
    case Kind::Words: {
        int entry = m_combo->findData(value, Qt::UserRole, Qt::MatchExactly | Qt::MatchCaseSensitive);
        if (entry < 0 && !value.trimmed().isEmpty()) {
            m_combo->addItem(value, value);
            entry = m_combo->count() - 1;
        }
        choose(entry < 0 ? m_row.numbers.otherwise : entry);
        break;
    }
    case Kind::Place:
        m_combo->setEditText(value);
        break;
    case Kind::Text:
        m_line->setText(value);
        m_line->setCursorPosition(0);
        break;
    case Kind::Label:
        m_label->setText(value);
        m_label->setToolTip(value);
        break;
    default: {
        const auto &[first, step, otherwise] = m_row.numbers;
        const int distance = numberOf(value) - first;
        const int entry = distance / step;
        const qsizetype entries = m_check ? 2 : m_row.entries.size();
        choose(distance % step == 0 && entry >= 0 && entry < entries ? entry : otherwise);
        break;
    }
    }
}

bool OptionControl::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusOut) {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        const bool inside = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
                            reason == Qt::MouseFocusReason || reason == Qt::ShortcutFocusReason;
        if (inside)
            QMetaObject::invokeMethod(this, &OptionControl::left,
                                      Qt::QueuedConnection); // a box may open then
    }
    if (event->type() == QEvent::Wheel && m_combo && !m_combo->hasFocus()) {
        event->ignore(); // it scrolls the page, whatever list it passes
        return true;
    }
    return QObject::eventFilter(watched, event);
}
