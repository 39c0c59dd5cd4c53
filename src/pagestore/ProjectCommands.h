#pragma once

#include "pagestore/PageDatabase.h"
#include "pagestore/ProjectDirectories.h"
#include "platform/Clock.h"
#include "platform/ExternalPrograms.h"
#include "state/Workspace.h"

/// The commands of the main window that work on the current project's pages. References must outlive it.
class ProjectCommands
{
public:
    struct Services {
        Module1 &state;
        PageDatabase &database;
        ProjectDirectories &directories;
        Prompter &prompter;
        Workspace &workspace;
        ExternalPrograms &programs;
        Clock &clock;
    };

    explicit ProjectCommands(const Services &services);

    // Open the page editor or the page list on the project; each says what is missing.
    void editPages();
    void editAllPages();
    void addTextPage();
    void listPages();

    /// Copies image files that the user picks, one after the other, into the project, as its last pages.
    void copyImages();

    /// Shows the project's first image in the viewer, or the current image in the external paint program.
    void openImages();

private:
    void openEditor(bool &order);
    bool existingProject(Question question, const QString &what);
    bool copyImage(const QString &folder, int number);
    void openInViewer();

    Services m_services;
};
