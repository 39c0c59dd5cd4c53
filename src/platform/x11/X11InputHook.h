#pragma once

#include "platform/InputHook.h"
#include "platform/x11/X11EventTranslator.h"
#include "platform/x11/X11Recorder.h"

#include <QObject>
#include <QTimer>

#include <deque>
#include <memory>
#include <optional>

/// The input hook of an X11 session. Not for a Wayland session, where it would see only what goes to X
/// programs and miss the rest without a word.
///
/// The handler must not throw when the event loop delivers; what it throws while drain() delivers reaches
/// the caller of drain().
class X11InputHook : public QObject, public InputHook
{
public:
    /// `wakeUp` is for displays and tests without raw input events.
    explicit X11InputHook(X11Recorder::WakeUp wakeUp = X11Recorder::WakeUp::RawEvents);
    ~X11InputHook() override;

    void start(Handler handler) override;
    void stop() override;
    bool running() const override { return m_session != nullptr; }
    void drain(std::uint32_t upTo) override;
    void suspend() override;
    void resume(std::uint32_t upTo) override;

private:
    /// What lives from start() to stop(). The handler is shared because it may stop the hook.
    struct Session {
        Session(X11InputHook &hook, X11Recorder::WakeUp wakeUp, Handler handler);

        std::shared_ptr<const Handler> handler;
        X11Recorder recorder;
        X11Keyboard keyboard;
        X11EventTranslator translator;
    };
    struct Waiting {
        std::uint64_t number = 0;
        InputEvent event;
    };

    void take(const xcb_key_press_event_t &record);
    void tellHeldBack();
    void enqueue(const InputEvent &event);
    bool isWanted(std::uint32_t time);
    void postDelivery();
    void deliverOne();
    void catchUp(std::uint32_t upTo);
    void letWindowsBePainted();

    X11Recorder::WakeUp m_wakeUp;
    std::unique_ptr<Session> m_session;
    std::deque<Waiting> m_waiting; ///< not yet delivered, oldest first
    std::uint64_t m_lastNumber = 0;
    QTimer m_heldBackTimer;
    bool m_deliveryPosted = false;
    bool m_pausing = false; ///< between two deliveries of drain()
    int m_suspended = 0;
    std::optional<std::uint32_t> m_dropUpTo;  ///< set by resume()
    std::optional<std::uint32_t> m_dropAfter; ///< set while draining
};
