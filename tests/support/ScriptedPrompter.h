#pragma once

#include "platform/PrintJob.h"
#include "platform/Prompter.h"
#include "platform/RunTimeError.h"

#include <gtest/gtest.h>

#include <QPdfWriter>

#include <deque>
#include <functional>
#include <vector>

/// A user who follows a script: every question and message must be expected, in order. An unexpected, a
/// wrong or an unasked one fails the test.
class ScriptedPrompter : public Prompter
{
public:
    struct Asked {
        Question which;
        QString text;
        QString title;
        Icon icon = Icon::None;
        QString proposal; ///< proposed text of an input, or file name of a file prompt
        QString directory;
    };
    std::vector<Asked> asked; ///< everything that was asked or told, oldest first

    void expectTell(Question which) { m_script.push_back({which, Kind::Tell, Answer::Ok, {}, {}}); }
    void expectAsk(Question which, Answer answer) { m_script.push_back({which, Kind::Ask, answer, {}, {}}); }
    /// No answer means that the user cancels.
    void expectInput(Question which, std::optional<QString> answer)
    {
        m_script.push_back({which, Kind::Input, Answer::Ok, std::move(answer), {}});
    }
    /// Any of the file and folder prompts.
    void expectFile(Question which, std::optional<QString> answer)
    {
        m_script.push_back({which, Kind::File, Answer::Ok, std::move(answer), {}});
    }
    /// Runs while the box of the expectation added last is open.
    void whileOpen(std::function<void()> action) { m_script.back().action = std::move(action); }

    ~ScriptedPrompter() override
    {
        for (const Expected &expected : m_script)
            ADD_FAILURE() << "never asked: question " << static_cast<int>(expected.which);
    }

    void tell(Question which, const PromptText &prompt) override
    {
        next(Kind::Tell, {which, prompt.text, prompt.title, prompt.icon, {}, {}});
    }
    Answer ask(Question which, Buttons buttons, const PromptText &prompt) override
    {
        const Answer answer = next(Kind::Ask, {which, prompt.text, prompt.title, prompt.icon, {}, {}}).answer;
        if (answer == Answer::Cancel && buttons == Buttons::YesNo)
            ADD_FAILURE() << "a box with Yes and No has no Cancel";
        return answer;
    }
    std::optional<QString> input(Question which, const PromptText &prompt, const QString &proposal) override
    {
        return next(Kind::Input, {which, prompt.text, prompt.title, prompt.icon, proposal, {}}).text;
    }
    std::optional<QString> openFile(Question which, const FilePrompt &prompt) override
    {
        return next(Kind::File,
                    {which, prompt.filter, prompt.title, Icon::None, prompt.fileName, prompt.directory})
            .text;
    }
    std::optional<QString> saveFile(Question which, const FilePrompt &prompt) override
    {
        return next(Kind::File,
                    {which, prompt.filter, prompt.title, Icon::None, prompt.fileName, prompt.directory})
            .text;
    }
    std::optional<QString> pickFolder(Question which, const QString &title, const QString &start) override
    {
        return next(Kind::File, {which, {}, title, Icon::None, {}, start}).text;
    }
    /// Prints into the file that is answered to the question; without an answer the user cancels.
    std::unique_ptr<PrintJob> choosePrinter(Question which) override
    {
        const std::optional<QString> path = next(Kind::File, {which, {}, {}, Icon::None, {}, {}}).text;
        return path ? std::make_unique<PdfJob>(*path, printOrientation) : nullptr;
    }
    /// The text of an answer is a colour's or a font's name.
    void expectColour(Question which, std::optional<QString> answer) { expectFile(which, std::move(answer)); }
    std::optional<QColor> chooseColour(Question which, QColor present) override
    {
        const auto answer = next(Kind::File, {which, present.name(), {}, Icon::None, {}, {}}).text;
        return answer ? std::optional(QColor(*answer)) : std::nullopt;
    }
    std::optional<QFont> chooseFont(Question which, const QFont &present) override
    {
        const auto answer = next(Kind::File, {which, present.toString(), {}, Icon::None, {}, {}}).text;
        QFont font;
        return answer && font.fromString(*answer) ? std::optional(font) : std::nullopt;
    }
    QPageLayout::Orientation printOrientation = QPageLayout::Portrait; ///< what the user chooses

private:
    /// An empty path is a printer that does not work.
    class PdfJob : public PrintJob
    {
    public:
        PdfJob(const QString &path, QPageLayout::Orientation orientation)
            : m_works(!path.isEmpty()), m_writer(path)
        {
            m_writer.setPageSize(QPageSize(QPageSize::A4));
            m_writer.setPageOrientation(orientation);
        }
        QPagedPaintDevice &device() override { return m_writer; }
        void finish() override
        {
            if (!m_works)
                throw RunTimeError(RunTimeError::PrinterError, QStringLiteral("no paper"));
        }

    private:
        bool m_works;
        QPdfWriter m_writer;
    };

    enum class Kind { Tell, Ask, Input, File };
    struct Expected {
        Question which;
        Kind kind;
        Answer answer = Answer::Cancel;
        std::optional<QString> text;
        std::function<void()> action;
    };

    Expected next(Kind kind, const Asked &what)
    {
        asked.push_back(what);
        if (m_script.empty()) {
            ADD_FAILURE() << "unexpected: " << what.text.toStdString();
            return {what.which, kind, Answer::No, {}, {}};
        }
        Expected expected = m_script.front();
        m_script.pop_front();
        EXPECT_EQ(static_cast<int>(expected.which), static_cast<int>(what.which)) << what.text.toStdString();
        EXPECT_EQ(expected.kind, kind) << what.text.toStdString();
        if (expected.action)
            expected.action();
        return expected;
    }

    std::deque<Expected> m_script;
};
