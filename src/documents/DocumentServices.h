#pragma once

#include "pagestore/ProjectDirectories.h"
#include "platform/ExternalPrograms.h"
#include "platform/WordProcessor.h"
#include "state/Progress.h"
#include "state/Workspace.h"

/// What the generation of documents works with; references must outlive it.
struct DocumentServices {
    Module1 &state;
    PageDatabase &database;
    ProjectDirectories &directories;
    Prompter &prompter;
    Workspace &workspace;
    Progress &progress;
    WordProcessor &wordProcessor;
    ExternalPrograms &programs;
    bool attended = true; ///< somebody sees what is shown
};
