#pragma once

#include "platform/PrintJob.h"
#include "platform/Prompter.h"

/// Stands for a user who is not there: messages go unread and every question is cancelled.
class UnattendedPrompter : public Prompter
{
public:
    void tell(Question, const PromptText &) override {}
    Answer ask(Question, Buttons, const PromptText &) override { return Answer::Cancel; }
    std::optional<QString> input(Question, const PromptText &, const QString &) override { return {}; }
    std::optional<QString> openFile(Question, const FilePrompt &) override { return {}; }
    std::optional<QString> saveFile(Question, const FilePrompt &) override { return {}; }
    std::optional<QString> pickFolder(Question, const QString &, const QString &) override { return {}; }
    std::unique_ptr<PrintJob> choosePrinter(Question) override { return nullptr; }
    std::optional<QColor> chooseColour(Question, QColor) override { return {}; }
    std::optional<QFont> chooseFont(Question, const QFont &) override { return {}; }
};
