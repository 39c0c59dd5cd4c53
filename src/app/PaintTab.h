#pragma once

#include <QPointer>
#include <QWidget>

class frmPaint;

/// Shows the paint editor, which is a window of its own elsewhere, in a tab. The editor is only lent: it has
/// its question about unsaved changes when the tab is closed, and outlives it.
class PaintTab : public QWidget
{
    Q_OBJECT

public:
    explicit PaintTab(frmPaint &editor);
    ~PaintTab() override;

Q_SIGNALS:
    void editorClosed(); ///< by its own menu

protected:
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QPointer<frmPaint> m_editor;
};
