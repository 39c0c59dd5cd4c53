#pragma once

#include <QList>
#include <QMenu>

#include <functional>

class frmPaint;
class QActionGroup;

/// The menus of the paint editor: a table of captions, shortcuts and handlers, and what of them is enabled or
/// checked.
class PaintMenus
{
public:
    /// `run` calls a command and shows what it throws.
    PaintMenus(frmPaint &window, std::function<void(const std::function<void()> &)> run);

    struct State {
        bool undo = false;
        bool redo = false;
        bool selection = false;
        bool paste = false;
    };
    void setState(const State &state);

    int borderStyle() const; ///< index of the checked item of each group
    int fillStyle() const;
    bool resizesWidth() const;
    bool resizesHeight() const;
    bool clockwise() const;
    int brushFilter() const;

    /// `mnuTFilter`, the list of the filter brush.
    QMenu &filterList() { return *m_filterList; }

private:
    using Command = void (frmPaint::*)();
    QMenu *menu(const QString &caption, QMenu *parent = nullptr);
    QAction *add(QMenu *menu, const QString &name, const QString &caption, const QKeySequence &keys,
                 Command command);
    QAction *add(QMenu *menu, const QString &name, const QString &caption, const QKeySequence &keys,
                 std::function<void()> command);
    QActionGroup *group(QMenu *menu, const QString &name, const QStringList &captions, int checked);
    void buildFile();
    void buildEdit();
    void buildFormat();
    void buildEffect();
    void buildFilterList();

    frmPaint &m_window;
    std::function<void(const std::function<void()> &)> m_run;
    QAction *m_undo = nullptr;
    QAction *m_redo = nullptr;
    QAction *m_paste = nullptr;
    QList<QAction *> m_ofSelection;
    QActionGroup *m_borders = nullptr;
    QActionGroup *m_fills = nullptr;
    QActionGroup *m_sides = nullptr;
    QActionGroup *m_turns = nullptr;
    QActionGroup *m_brushFilters = nullptr;
    QMenu *m_filterList = nullptr;
};
