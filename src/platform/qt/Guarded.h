#pragma once

#include "platform/Prompter.h"
#include "platform/RunTimeError.h"

#include <QString>

#include <exception>
#include <utility>

/// Where a failure ends that nobody caught: the run-time error box. The command that failed is abandoned, the
/// program goes on. Nothing is ever thrown through Qt's event loop.
class FailureBox
{
public:
    explicit FailureBox(Prompter &prompter) : m_prompter(prompter) {}
    virtual ~FailureBox() = default;

    virtual void show(int number, const QString &description)
    {
        m_prompter.tell(Question::CommandFailed,
                        {QStringLiteral("Run-time error '%1':\r\n\r\n%2").arg(number).arg(description),
                         QStringLiteral("Shotly"), Icon::Critical});
    }

private:
    Prompter &m_prompter;
};

/// Runs `function`; what it throws is shown in `box`.
template <typename Function>
void runGuarded(FailureBox &box, Function &&function)
{
    try {
        std::forward<Function>(function)();
    } catch (const RunTimeError &error) {
        box.show(error.number(), error.description());
    } catch (const std::bad_alloc &) {
        box.show(7, QStringLiteral("Out of memory"));
    } catch (const std::exception &error) {
        box.show(51, QString::fromUtf8(error.what()));
    }
}

/// A slot that may fail: connect(x, &X::y, this, guarded(box, [this] { ... })).
template <typename Function>
auto guarded(FailureBox &box, Function function)
{
    return [&box, slot = std::move(function)]() mutable { runGuarded(box, slot); };
}
