#pragma once

#include "state/Workspace.h"

/// A main window that remembers what it was asked for.
class FakeWorkspace : public Workspace
{
public:
    QString text;      ///< of the project box
    QStringList names; ///< of its list
    QStringList calls; ///< "viewer" ("viewer first", "viewer current"), "contents", "help multi.htm",
                       ///< "minimise", ... in order
    bool busy = false;
    int busyChanges = 0;
    QString status; ///< the text of the status line

    QString projectText() const override { return text; }
    QStringList projectNames() const override { return names; }
    void setProjectText(const QString &name) override { text = name; }
    void addProjectName(const QString &name) override { names.append(name); }
    void removeProjectName(const QString &name) override { names.removeOne(name); }
    void openViewer(ViewerSelection select) override
    {
        calls.append(select == ViewerSelection::FirstFile      ? QStringLiteral("viewer first")
                     : select == ViewerSelection::CurrentImage ? QStringLiteral("viewer current")
                                                               : QStringLiteral("viewer"));
    }
    void openPaintTab() override { calls.append(QStringLiteral("paint tab")); }
    void openPaintEditor(const QString &path) override { calls.append(QStringLiteral("paint ") + path); }
    void openContentsPage() override { calls.append(QStringLiteral("contents")); }
    void openPageEditor(const QString &caption) override
    {
        calls.append(QStringLiteral("editor ") + caption);
    }
    void openPageList(const QString &caption) override { calls.append(QStringLiteral("list ") + caption); }
    void deleteTab(int id) override { calls.append(QStringLiteral("deleteTab %1").arg(id)); }
    void openHelp(const QString &topic) override { calls.append(QStringLiteral("help ") + topic); }
    void setBusyPointer(bool on) override
    {
        busyChanges += on != busy ? 1 : 0;
        busy = on;
    }
    void endAtOnce() override { calls.append(QStringLiteral("end")); }
    void minimise() override { calls.append(QStringLiteral("minimise")); }
    void restoreNormal() override { calls.append(QStringLiteral("restore")); }
    void closeWebSearchTab() override { calls.append(QStringLiteral("closeWebSearch")); }
    void refreshPageViews() override { calls.append(QStringLiteral("refresh")); }
    void showStatus(const QString &line) override { status = line; }
};
