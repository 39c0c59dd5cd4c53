#include "app/ConsolePrompter.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
QByteArray oneLine(const QString &text)
{
    return text.simplified().toLocal8Bit();
}
} // namespace

void ConsolePrompter::complain(const QString &text)
{
    std::fprintf(stderr, "shotly: %s\n", oneLine(text).constData());
}

void ConsolePrompter::tell(Question which, const PromptText &prompt)
{
    if (which == Question::CloseWordFirst || which == Question::HtmlPagesCreated)
        return;
    m_complained = true;
    complain(prompt.text);
}

void ConsoleWorkspace::showStatus(const QString &text)
{
    if (!text.isEmpty())
        std::printf("%s\n", oneLine(text).constData());
}
