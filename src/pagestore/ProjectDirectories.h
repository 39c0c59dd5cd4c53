#pragma once

#include "pagestore/MovedDocuments.h"
#include "pagestore/PageDatabase.h"
#include "platform/Prompter.h"
#include "state/Module1.h"

/// Operations on the current project's directory, shared by the capture run and the project and document
/// commands.
class ProjectDirectories
{
public:
    ProjectDirectories(Module1 &state, PageDatabase &database, Prompter &prompter);

    /// The test of the commands that need a project: there is a name in the project box, and the current
    /// project is in its list.
    bool existingProject() const;

    /// Takes the project box's text as the current project and looks its directory up. True when the project
    /// is known and its directory exists. A known project whose rows hold no directory has the base
    /// directory and its name. A name that differs from a known one in letter case alone takes the known
    /// spelling (in the project box too).
    bool LocateProjectDirectory();

    /// Opens the viewer on the project's first image, if it has one whose file is there.
    void show1stPic();

    /// Moves files of the project directory into its "oldDocument" folder; `kind` is "HTML", "Word", "bmp"
    /// or "All". False, with a message, when the project directory does not exist. A file is deleted only
    /// after its copy is complete; one that cannot be copied stays where it is, silently.
    bool MoveOldDocuments(const QString &kind);

    /// The same with a way back, and with progress while it takes its time.
    enum class Moving { Done, NoDirectory, Cancelled };
    Moving MoveOldDocuments(const QString &kind, MovedDocuments &moved, Progress &progress);

    /// Where a project directory's previous documents go.
    static QString oldDocumentFolder(const QString &directory);

    /// The directory that the project's rows hold, or the base directory and its name where they hold none.
    /// Empty, with a message, when the project has no rows.
    QString storedDirectory(const QString &project);

private:
    bool directoryIsThere();
    void setAside(const QString &directory, const QString &pattern, bool removing);

    Module1 &m_state;
    PageDatabase &m_database;
    Prompter &m_prompter;
};
