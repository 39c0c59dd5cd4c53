#pragma once

#include "platform/UnattendedPrompter.h"
#include "state/Progress.h"
#include "state/Workspace.h"

#include <atomic>
#include <cstdio>

/// Stands for the user where there is nobody to ask: messages go to standard error, and what has to be
/// answered is answered so that the documents of a project are written anew.
class ConsolePrompter : public UnattendedPrompter
{
public:
    /// Writes "shotly: text" to standard error, lines joined.
    static void complain(const QString &text);

    /// A message that tells of more than what is going to happen.
    bool complained() const { return m_complained; }

    void tell(Question which, const PromptText &prompt) override;
    Answer ask(Question, Buttons, const PromptText &) override { return Answer::Yes; }

private:
    bool m_complained = false;
};

/// A workspace without windows, on one project. What would stand in the status line is printed.
class ConsoleWorkspace : public Workspace
{
public:
    ConsoleWorkspace(QString project, QStringList projects)
        : m_project(std::move(project)), m_projects(std::move(projects))
    {
    }

    QString projectText() const override { return m_project; }
    QStringList projectNames() const override { return m_projects; }
    void setProjectText(const QString &name) override { m_project = name; }
    void addProjectName(const QString &) override {}
    void removeProjectName(const QString &) override {}
    void openViewer(ViewerSelection) override {}
    void openPaintEditor(const QString &) override {}
    void openPaintTab() override {}
    void openContentsPage() override {}
    void openPageEditor(const QString &) override {}
    void openPageList(const QString &) override {}
    void deleteTab(int) override {}
    void openHelp(const QString &) override {}
    void setBusyPointer(bool) override {}
    void endAtOnce() override {}
    void minimise() override {}
    void restoreNormal() override {}
    void closeWebSearchTab() override {}
    void refreshPageViews() override {}
    void showStatus(const QString &text) override;

private:
    QString m_project;
    QStringList m_projects;
};

/// Work goes on until the program is told to stop.
class ConsoleProgress : public Progress
{
public:
    explicit ConsoleProgress(const std::atomic<bool> &interrupted) : m_interrupted(interrupted) {}

    void begin(const QString &, int) override {}
    bool step(int) override { return !m_interrupted; }
    void end() override {}

private:
    const std::atomic<bool> &m_interrupted;
};
