#include "app/PaintTab.h"

#include "paint/frmPaint.h"

#include <QCloseEvent>
#include <QVBoxLayout>

PaintTab::PaintTab(frmPaint &editor) : m_editor(&editor)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    editor.setParent(this, Qt::Widget);
    column->addWidget(&editor);
    editor.show();
    editor.installEventFilter(this);
    setWindowTitle(editor.windowTitle());
    connect(&editor, &QWidget::windowTitleChanged, this, &QWidget::setWindowTitle);
}

PaintTab::~PaintTab()
{
    if (!m_editor)
        return;
    m_editor->removeEventFilter(this);
    m_editor->setParent(nullptr, Qt::Window);
}

void PaintTab::closeEvent(QCloseEvent *event)
{
    event->setAccepted(!m_editor || m_editor->close());
}

bool PaintTab::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::HideToParent)
        Q_EMIT editorClosed();
    return QWidget::eventFilter(watched, event);
}
