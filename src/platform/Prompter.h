#pragma once

#include "platform/Question.h"

#include <QColor>
#include <QFont>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

class PrintJob;

enum class Answer {
    Ok,
    Yes,
    No,
    Cancel ///< also what closing the box or Escape means, where the box has a Cancel button or only OK
};

enum class Buttons {
    YesNo, ///< closing the box is No
    YesNoCancel
};

enum class Icon { None, Information, Question, Exclamation, Critical };

/// A message or question in a modal box. Lines of `text` are joined with CR LF.
struct PromptText {
    QString text;
    QString title = QStringLiteral("Shotly");
    Icon icon = Icon::None;
};

struct FilePrompt {
    QString title;
    QString directory;
    QString fileName;
    QString filter; ///< "Image Files (*.bmp)|*.bmp": pairs of label and patterns, patterns joined with ";"
    bool askOverwrite = false;
};

/// The only way to talk to the user in mid-action; passed by reference to whoever asks.
class Prompter
{
public:
    virtual ~Prompter() = default;

    /// Shows a message with an OK button and returns when it is closed, however.
    virtual void tell(Question which, const PromptText &prompt) = 0;

    /// Asks; closing the box is the safe answer: Cancel if there is such a button, else No.
    virtual Answer ask(Question which, Buttons buttons, const PromptText &prompt) = 0;

    /// Asks for a line of text. Nothing when the user cancels; an empty line is an answer.
    virtual std::optional<QString> input(Question which, const PromptText &prompt,
                                         const QString &proposal) = 0;

    /// Asks for files and folders; absolute paths, nothing when the user cancels.
    virtual std::optional<QString> openFile(Question which, const FilePrompt &prompt) = 0;
    virtual std::optional<QString> saveFile(Question which, const FilePrompt &prompt) = 0;
    virtual std::optional<QString> pickFolder(Question which, const QString &title, const QString &start) = 0;

    /// Lets the user choose a printer, copies and orientation; null when he cancels. Throws RunTimeError
    /// when there is nothing to print with.
    virtual std::unique_ptr<PrintJob> choosePrinter(Question which) = 0;

    /// Lets the user choose a colour or a font; nothing when he cancels.
    virtual std::optional<QColor> chooseColour(Question which, QColor present) = 0;
    virtual std::optional<QFont> chooseFont(Question which, const QFont &present) = 0;
};
