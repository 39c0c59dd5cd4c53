#pragma once

#include "platform/office/DocumentBackend.h"
#include "platform/WordProcessor.h"

#include <list>

/// The application object of the layer: keeps documents as lists of paragraphs and leaves writing, converting
/// and showing them to a backend.
///
/// A page break ends the line that it stands in: the paragraph with the break is not part of the document,
/// the one after it begins a page.
class OfficeApplication : public WordApplication
{
public:
    explicit OfficeApplication(std::unique_ptr<DocumentBackend> backend);
    ~OfficeApplication() override;

    void setWindowState(int) override {}
    void setHeight(int) override {}
    void setWidth(int) override {}
    void setVisible(bool visible) override { m_visible = visible; }

    WordDocument &addDocument(const QString &templatePath) override;
    WordDocument &openDocument(const QString &path) override;
    int documents() const override;

    void insertBreak(int kind) override;
    void insertAfter(const QString &text) override;

    QString activePrinter() const override { return m_printer; }
    void setActivePrinter(const QString &printer) override { m_printer = printer; }
    void run(const QString &macro, const DocumentWork &work) override;

    void expectPictures(const QStringList &paths) override;
    void show() override;

private:
    struct Paragraph {
        DocumentParagraph content;
        bool isBreak = false;
    };
    using Paragraphs = std::list<Paragraph>; ///< its elements stay where they are

    /// Some paragraphs of a document, one after the other; the last one included.
    struct Part {
        Paragraphs *paragraphs = nullptr;
        Paragraphs::iterator first;
        Paragraphs::iterator last;
        void insertBefore(const QString &text);
    };
    class Range;
    class Document;

    Document &active();

    std::unique_ptr<DocumentBackend> m_backend;
    DocumentPictures m_pictures;
    std::list<Document> m_documents;
    Part m_selection;
    QString m_printer;
    QString m_firstSaved;
    bool m_visible = false;
};
