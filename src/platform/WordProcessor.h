#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <stop_token>

/// What a long operation has to do with the one who waits for it. Called in the thread that works.
struct DocumentWork {
    std::stop_token stop;                     ///< ends the operation with RunTimeError::UserInterrupt
    std::function<void(int done)> progressed; ///< so many pictures are finished; may be empty
};

/// A paragraph of a document, or several once a text with line ends was put into it; what is set applies to
/// all of them. Belongs to its document and must not outlive it.
class WordRange
{
public:
    enum { BodyText = 10 }; ///< the outline level of what is no heading

    virtual ~WordRange() = default;

    /// Puts text before what the range holds. CR LF, CR, LF, U+000B, U+2028 and U+2029 begin a new paragraph
    /// each.
    virtual void insertBefore(const QString &text) = 0;

    virtual void setFontName(const QString &name) = 0;
    virtual void setFontSize(int points) = 0;
    /// 0 automatic, 1 black, 2 blue, 3 turquoise, 4 bright green, 5 pink, 6 red, 7 yellow, 8 white, 9 dark
    /// blue, 10 teal, 11 green, 12 violet, 13 dark red, 14 dark yellow, 15 and 16 grey.
    virtual void setFontColorIndex(int index) = 0;
    virtual void setFontBold(bool on) = 0;
    virtual void setFontItalic(bool on) = 0;
    virtual void setUnderline(bool on) = 0;
    /// 0 left, 1 centre, 2 right.
    virtual void setAlignment(int alignment) = 0;
    /// 1 to 9: a heading of that level, but for paragraphs without words; BodyText: none. Changes nothing
    /// that is seen on paper.
    virtual void setOutlineLevel(int level) = 0;

    /// Makes it what the application's insertBreak() and insertAfter() work on.
    virtual void select() = 0;
};

/// An open document.
class WordDocument
{
public:
    virtual ~WordDocument() = default;

    /// A new paragraph at the end.
    virtual std::unique_ptr<WordRange> addParagraph() = 0;

    /// Puts a picture in the place of what the range holds, in its own size at 96 pixels an inch, made
    /// smaller where it would not fit on a page. Throws RunTimeError when the file is no picture; that may
    /// come as late as saveAs().
    virtual void addPicture(const QString &path, const QString &alternativeText, WordRange &range) = 0;

    /// Writes the document atomically. Throws RunTimeError.
    virtual void saveAs(const QString &path, const DocumentWork &work) = 0;

    /// The path under which it was saved or opened; "Document1" and so on before.
    virtual QString fullName() const = 0;
};

/// A running word processor. Its documents stay open as long as it lives. Everything may be called from any
/// thread, by one at a time. Throws RunTimeError where something fails.
class WordApplication
{
public:
    enum { NormalWindow = 0 };
    enum { PageBreak = 7 };

    virtual ~WordApplication() = default;

    virtual void setWindowState(int state) = 0;
    virtual void setHeight(int points) = 0;
    virtual void setWidth(int points) = 0;
    virtual void setVisible(bool visible) = 0;

    /// A new document from a template; it becomes the active one. References stay valid as long as this
    /// object lives.
    virtual WordDocument &addDocument(const QString &templatePath) = 0;
    /// Opens a file, in a window of its own if setVisible() asked for one; it becomes the active document. A
    /// file that is missing is WordFileMissing.
    virtual WordDocument &openDocument(const QString &path) = 0;
    /// How many documents are open.
    virtual int documents() const = 0;

    /// On the selected range: a break in its place.
    virtual void insertBreak(int kind) = 0;
    virtual void insertAfter(const QString &text) = 0;

    virtual QString activePrinter() const = 0;
    virtual void setActivePrinter(const QString &printer) = 0;

    /// Runs a macro on the active document, which must have been saved. WordProcessor::pdfMacro() writes its
    /// PDF next to it, atomically, and wants WordProcessor::pdfPrinter() as the active printer.
    virtual void run(const QString &macro, const DocumentWork &work) = 0;

    /// These pictures are going to be added: they may be prepared meanwhile.
    virtual void expectPictures(const QStringList &paths) = 0;

    /// Shows the document that was saved first in a window of its own, which outlives this object, if
    /// setVisible() asked for one.
    virtual void show() = 0;
};

/// Which word processor there is.
class WordProcessor
{
public:
    static QString pdfMacro() { return QStringLiteral("AdobePDFMaker.AutoExec.ConvertToPDF"); }
    static QString pdfPrinter() { return QStringLiteral("Adobe PDF"); }

    /// Where the PDF of a document goes: ".pdf" in the place of what follows the last dot of its name, or
    /// after a name without a dot.
    static QString pdfPathOf(const QString &documentPath);

    virtual ~WordProcessor() = default;

    virtual bool wordProcessorInstalled() const = 0;

    /// Starts it. Throws RunTimeError number CannotCreateObject when there is none.
    virtual std::unique_ptr<WordApplication> createApplication() = 0;

    /// Whether it converts any Word file, not just those that it has written itself.
    virtual bool canConvertFiles() const = 0;

    /// Device names of the printers.
    virtual QStringList printers() const = 0;
};
