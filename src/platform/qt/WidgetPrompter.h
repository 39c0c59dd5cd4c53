#pragma once

#include "platform/Prompter.h"

class QWidget;

/// Asks with the desktop's message boxes and file dialogs. The only place that names them.
///
/// Boxes belong to the active window of the program; while its windows are minimised or hidden they stand
/// alone and stay on top, so that nobody waits for a box that cannot be seen.
class WidgetPrompter : public Prompter
{
public:
    void tell(Question which, const PromptText &prompt) override;
    Answer ask(Question which, Buttons buttons, const PromptText &prompt) override;
    std::optional<QString> input(Question which, const PromptText &prompt, const QString &proposal) override;
    std::optional<QString> openFile(Question which, const FilePrompt &prompt) override;
    std::optional<QString> saveFile(Question which, const FilePrompt &prompt) override;
    std::optional<QString> pickFolder(Question which, const QString &title, const QString &start) override;
    std::unique_ptr<PrintJob> choosePrinter(Question which) override;
    std::optional<QColor> chooseColour(Question which, QColor present) override;
    std::optional<QFont> chooseFont(Question which, const QFont &present) override;

    /// Name filters in Qt's form: "Image Files (*.bmp)|*.bmp" becomes "Image Files (*.bmp)".
    static QStringList nameFilters(const QString &filter);
};
