#pragma once

#include "platform/InputHook.h"
#include "platform/qt/Guarded.h"

/// The run-time error box; the hook of a run must not take the click that closes it for one of the user's.
class HookAwareFailureBox : public FailureBox
{
public:
    HookAwareFailureBox(Prompter &prompter, InputHook &hook) : FailureBox(prompter), m_hook(hook) {}

    void show(int number, const QString &description) override
    {
        const bool watching = m_hook.running();
        if (watching)
            m_hook.suspend();
        FailureBox::show(number, description);
        if (watching) // also when the run was stopped meanwhile: the next one must not stay suspended
            m_hook.resume(0);
    }

private:
    InputHook &m_hook;
};
