#pragma once

#include "pagestore/PageDatabase.h"
#include "pagestore/ProjectDirectories.h"
#include "platform/Clock.h"

#include <functional>

/// Removes projects from the database. Their folders are not deleted but renamed, with "_del_" and the time
/// behind the name. References must outlive it.
///
/// A database that keeps the pages throws RunTimeError; nothing is renamed then. While a capture run is on,
/// its project cannot be deleted.
class ProjectDeletion
{
public:
    struct Services {
        Module1 &state;
        PageDatabase &database;
        ProjectDirectories &directories;
        Prompter &prompter;
        Clock &clock;
    };

    /// `projectsChanged` is called when projects are gone, before their folders are renamed.
    ProjectDeletion(const Services &services, std::function<void()> projectsChanged);

    QStringList projects();

    /// Asks, then deletes one project; an empty name is none.
    void deleteProject(const QString &project);

    /// Asks, then deletes every project and makes a new, empty base directory.
    void deleteAllProjects();

    /// The text of the help button.
    void explain();

private:
    bool confirmed(Question question, const QString &text, Icon icon);
    bool isCaptured(const QString &project);
    [[noreturn]] void failToDelete(const QString &what) const;
    bool setAside(const QString &folder, const QStringList &holding);

    Services m_services;
    std::function<void()> m_projectsChanged;
};
