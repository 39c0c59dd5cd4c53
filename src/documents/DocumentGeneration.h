#pragma once

#include "documents/HtmlPageWriter.h"
#include "documents/PassFiles.h"
#include "pagestore/ProjectDirectories.h"
#include "state/Progress.h"
#include "state/Workspace.h"

/// Documents for a word processor. Whoever can write them hands an implementation over.
class WordDocuments
{
public:
    virtual ~WordDocuments() = default;

    /// Is there a word processor?
    virtual bool available() const = 0;

    /// All finished pages of the project. True at the end of a run.
    virtual bool GenerateWordDocuments(const QString &project) = 0;
};

/// What the generation of documents works with; references must outlive it.
struct DocumentServices {
    Module1 &state;
    PageDatabase &database;
    ProjectDirectories &directories;
    Prompter &prompter;
    Workspace &workspace;
    Progress &progress;
    WordDocuments *wordDocuments = nullptr; ///< none: as on a machine without a word processor
};

/// Turns the current project into its final documents.
///
/// What takes its time shows progress and lets events run; the user's own reach nothing but the progress.
class DocumentGeneration
{
public:
    explicit DocumentGeneration(const DocumentServices &services);

    /// The generate command: checks the project, then writes what the option FinalDocumentFormat says. Asked
    /// for again while it lets events run, it does nothing.
    void CreateDocuments();

    /// All finished pages of the project and a contents page with one numbered link each. True when the pass
    /// ran to its end; false when there are no such pages, the user gave up naming the contents page or
    /// cancelled. Throws RunTimeError when a file or the database fails. Unless it ran to its end, every file
    /// and every row is as it was before.
    bool GenerateHtmlDocuments(const QString &project);

    /// Moves the previous pages away, writes new ones, reports, and shows the contents page. The previous
    /// pages come back when the user gives up or something fails, which is told.
    void GenerateHtmlOutput();
    void GenerateWordOutput();

private:
    enum class HtmlOutcome { Finished, NoPages, GivenUp };
    HtmlOutcome writeHtmlDocuments(const QString &project, WrittenFiles &written);
    std::unique_ptr<Recordset> readPages(const QString &project);
    bool replaceHtmlDocuments();
    void tellFailure(const QString &reason, bool previousAreBack);
    void tellCreated();

    DocumentServices m_services;
    int m_pagesWritten = 0;
    bool m_running = false;
};
