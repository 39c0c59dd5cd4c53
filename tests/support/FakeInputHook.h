#pragma once

#include "platform/InputHook.h"
#include "platform/RunTimeError.h"

#include <QMetaObject>
#include <QObject>

#include <deque>
#include <vector>

/// A hook that delivers what the test sends, with the order and the dropping of the real one. Tests without
/// an event loop call deliver().
class FakeInputHook : public InputHook
{
public:
    bool failsToStart = false;
    std::vector<std::uint32_t> drained; ///< the stamps that drain() was called with, oldest first
    int suspended = 0;

    /// Something happens on the display. Ignored while nobody watches.
    void send(const InputEvent &event)
    {
        if (!m_handler || suspended > 0)
            return;
        m_waiting.push_back(event);
        QMetaObject::invokeMethod(
            &m_context, [this] { deliverOne(); }, Qt::QueuedConnection);
    }

    /// Runs the handler for everything sent so far.
    void deliver()
    {
        deliverUntil([](const InputEvent &) { return true; });
    }

    void start(Handler handler) override
    {
        if (failsToStart)
            throw RunTimeError(RunTimeError::CannotCreateObject,
                               QStringLiteral("The display cannot be watched."));
        m_handler = std::make_shared<Handler>(std::move(handler));
    }
    void stop() override
    {
        if (!m_handler)
            throw RunTimeError(91, QStringLiteral("Not started."));
        m_waiting.clear();
        m_handler.reset();
    }
    bool running() const override { return m_handler != nullptr; }
    void drain(std::uint32_t upTo) override
    {
        drained.push_back(upTo);
        const auto wanted = [upTo](const InputEvent &event) { return upTo == 0 || !later(event.time, upTo); };
        deliverUntil(wanted);
        std::erase_if(m_waiting, [&wanted](const InputEvent &event) { return !wanted(event); });
    }
    void suspend() override
    {
        ++suspended;
        m_waiting.clear();
    }
    void resume(std::uint32_t) override { suspended = std::max(0, suspended - 1); }

private:
    static bool later(std::uint32_t a, std::uint32_t b) { return static_cast<std::int32_t>(a - b) > 0; }

    template <typename Wanted>
    void deliverUntil(Wanted wanted)
    {
        for (std::size_t left = m_waiting.size(); left > 0 && !m_waiting.empty(); --left) {
            if (!wanted(m_waiting.front()))
                return;
            deliverOne();
        }
    }
    void deliverOne()
    {
        if (m_waiting.empty())
            return;
        const InputEvent event = m_waiting.front();
        m_waiting.pop_front();
        const std::shared_ptr<Handler> handler = m_handler; // it may stop the hook
        (*handler)(event);
    }

    QObject m_context;
    std::shared_ptr<Handler> m_handler;
    std::deque<InputEvent> m_waiting;
};
