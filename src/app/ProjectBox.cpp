#include "app/ProjectBox.h"

#include "capture/CaptureRun.h"

#include <QKeyEvent>
#include <QLineEdit>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int longestName = 50;
}

ProjectBox::ProjectBox(QWidget *parent) : QComboBox(parent)
{
    setObjectName("cmbProj"_L1);
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    setMaxVisibleItems(20);
    setToolTip(u"Enter a New Project Name or Select One from the List"_s);
    setAccessibleName(u"Multi-Snapshot Project"_s);
    setMinimumWidth(220);
    lineEdit()->setMaxLength(longestName);
    lineEdit()->setPlaceholderText(u"Project name"_s);
    lineEdit()->installEventFilter(this);
    setCompleter(nullptr); // what is typed is the name; nothing may be added to it

    connect(lineEdit(), &QLineEdit::textEdited, this, &ProjectBox::dropForbidden);
    connect(this, &QComboBox::activated, this, [this] {
        const QString name = currentText().trimmed();
        if (!name.isEmpty())
            Q_EMIT projectSelected(name);
    });
}

QStringList ProjectBox::names() const
{
    QStringList list;
    for (int i = 0; i < count(); ++i)
        list += itemText(i);
    return list;
}

void ProjectBox::setNames(const QStringList &names)
{
    const QString text = currentText();
    clear();
    addItems(names);
    setCurrentText(text);
}

bool ProjectBox::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != lineEdit() || event->type() != QEvent::KeyPress)
        return QComboBox::eventFilter(watched, event);
    const auto *key = static_cast<QKeyEvent *>(event);
    if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
        focusNextChild();
        return true;
    }
    const QString text = key->text();
    const bool command = key->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    if (command || text.isEmpty() || !text.front().isPrint() || CaptureRun::isProjectName(text))
        return QComboBox::eventFilter(watched, event);
    Q_EMIT characterRefused();
    return true;
}

/// Pasted, dropped and composed text does not come as single keys.
void ProjectBox::dropForbidden(const QString &text)
{
    QString allowed;
    for (const QChar character : text) {
        if (CaptureRun::isProjectName(QString(character)))
            allowed += character;
    }
    if (allowed == text)
        return;
    lineEdit()->setText(allowed);
    Q_EMIT characterRefused();
}
