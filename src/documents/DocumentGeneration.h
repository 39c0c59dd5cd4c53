#pragma once

#include "documents/DocumentServices.h"
#include "documents/HtmlPageWriter.h"
#include "documents/PassFiles.h"
#include "documents/ReplacedFiles.h"

#include <functional>
#include <memory>

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

    /// All finished pages of the project as documents of the word processor, in one or each in its own, and
    /// as PDF if the options say so. Result and failures as those of GenerateHtmlDocuments, for files.
    bool GenerateWordDocuments(const QString &project);

    /// Moves the previous pages away, writes new ones, reports, and shows the contents page. The previous
    /// pages come back when the user gives up or something fails, which is told.
    void GenerateHtmlOutput();
    void GenerateWordOutput();

private:
    enum class Outcome { Finished, NoPages, GivenUp };
    Outcome writeHtmlDocuments(const QString &project, WrittenFiles &written);
    Outcome writeWordDocuments(const QString &project, ReplacedFiles &replaced);
    std::unique_ptr<Recordset> readPages(const QString &query);

    /// One kind of documents: how its files are called, and how they are written.
    struct Kind {
        QString moved; ///< what MoveOldDocuments() calls it
        QString title;
        QString none; ///< "no HTML pages were written"
        std::function<Outcome()> write;
        std::function<bool()> undo;
        std::function<void()> keep;
    };
    bool replaceDocuments(const Kind &kind);
    bool replaceHtmlDocuments();
    bool replaceWordDocuments();
    void tellFailure(const QString &kind, const QString &reason, bool previousAreBack);
    void tellCreated();
    void showWord();

    DocumentServices m_services;
    std::unique_ptr<WordApplication> m_word; ///< while documents are generated
    int m_pagesWritten = 0;
    int m_documentsWritten = 0;
    bool m_running = false;
};
