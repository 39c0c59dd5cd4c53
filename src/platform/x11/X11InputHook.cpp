#include "platform/x11/X11InputHook.h"

#include "platform/RunTimeError.h"
#include "platform/x11/TimeStamp.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QScopeGuard>

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace
{
constexpr auto heldBackTime = 20ms;
constexpr auto catchUpLimit = 200ms;
constexpr int notStarted = 91;

std::bitset<256> keysDown(const X11Connection &connection)
{
    std::bitset<256> down;
    const auto keymap = connection.reply(xcb_query_keymap_reply, xcb_query_keymap(connection.get()));
    for (std::size_t key = 0; keymap && key < down.size(); ++key)
        down[key] = (keymap->keys[key / 8] >> (key % 8) & 1) != 0;
    return down;
}

QPoint pointerPosition(const X11Connection &connection)
{
    const auto pointer =
        connection.reply(xcb_query_pointer_reply, xcb_query_pointer(connection.get(), connection.root()));
    return pointer ? QPoint(pointer->root_x, pointer->root_y) : QPoint();
}
} // namespace

X11InputHook::Session::Session(X11InputHook &hook, X11Recorder::WakeUp wakeUp, Handler handlerToCall)
    : handler(std::make_shared<const Handler>(std::move(handlerToCall))),
      recorder(wakeUp, {[&hook](const xcb_key_press_event_t &record) { hook.take(record); },
                        [this] { keyboard.read(recorder.connection()); }}),
      keyboard(recorder.connection()),
      translator(keyboard, [&hook](const InputEvent &event) { hook.enqueue(event); })
{
    translator.begin(pointerPosition(recorder.connection()), keysDown(recorder.connection()));
}

X11InputHook::X11InputHook(X11Recorder::WakeUp wakeUp) : m_wakeUp(wakeUp)
{
    m_heldBackTimer.setSingleShot(true);
    m_heldBackTimer.setTimerType(Qt::PreciseTimer);
    m_heldBackTimer.setInterval(heldBackTime);
    connect(&m_heldBackTimer, &QTimer::timeout, this, &X11InputHook::tellHeldBack);
}

X11InputHook::~X11InputHook() = default;

void X11InputHook::start(Handler handler)
{
    if (running())
        stop();
    m_session = std::make_unique<Session>(*this, m_wakeUp, std::move(handler));
}

void X11InputHook::stop()
{
    if (!running())
        throw RunTimeError(notStarted, QStringLiteral("Mouse and keyboard are not being watched."));
    m_heldBackTimer.stop();
    m_waiting.clear();
    m_dropUpTo.reset();
    m_session.reset();
}

void X11InputHook::take(const xcb_key_press_event_t &record)
{
    m_session->translator.add(record);
    if (m_session->translator.holdsBack())
        m_heldBackTimer.start();
}

void X11InputHook::tellHeldBack()
{
    // The press that makes it a repeat may have arrived while the event loop was busy.
    m_session->recorder.read();
    m_session->translator.passHeldBack();
}

bool X11InputHook::isWanted(std::uint32_t time)
{
    if (m_suspended > 0 || (m_dropAfter && isLater(time, *m_dropAfter)))
        return false;
    if (!m_dropUpTo)
        return true;
    if (!isLater(time, *m_dropUpTo))
        return false;
    m_dropUpTo.reset();
    return true;
}

void X11InputHook::enqueue(const InputEvent &event)
{
    if (!isWanted(event.time))
        return;
    m_waiting.push_back({++m_lastNumber, event});
    postDelivery();
}

void X11InputHook::postDelivery()
{
    if (m_deliveryPosted || m_waiting.empty())
        return;
    m_deliveryPosted = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_deliveryPosted = false;
            if (!m_pausing)
                deliverOne();
        },
        Qt::QueuedConnection);
}

void X11InputHook::deliverOne()
{
    const auto isMove = [](const Waiting &waiting) {
        return waiting.event.kind == InputEvent::Kind::MouseMove;
    };
    while (m_waiting.size() > 1 && isMove(m_waiting[0]) && isMove(m_waiting[1]))
        m_waiting.pop_front();
    if (m_waiting.empty())
        return;
    const InputEvent event = m_waiting.front().event;
    m_waiting.pop_front();
    // Before the handler runs: an event loop of its own gets the next one.
    postDelivery();
    const std::shared_ptr<const Handler> handler = m_session->handler;
    (*handler)(event);
}

void X11InputHook::catchUp(std::uint32_t upTo)
{
    m_session->recorder.catchUp(upTo, QDeadlineTimer(catchUpLimit));
    m_session->translator.passHeldBack();
}

void X11InputHook::drain(std::uint32_t upTo)
{
    if (!running())
        return;
    const auto restore = qScopeGuard([this, before = m_dropAfter] { m_dropAfter = before; });
    if (upTo != 0 && !(m_dropAfter && isLater(upTo, *m_dropAfter)))
        m_dropAfter = upTo;
    catchUp(upTo);
    if (upTo != 0)
        std::erase_if(m_waiting,
                      [upTo](const Waiting &waiting) { return isLater(waiting.event.time, upTo); });

    // Not what comes in while the handler runs.
    const std::uint64_t last = m_lastNumber;
    while (!m_waiting.empty() && m_waiting.front().number <= last) {
        deliverOne();
        letWindowsBePainted();
    }
    postDelivery();
}

/// Handling what waits may take long: meanwhile the program must not look as if it were dead. Nothing new is
/// delivered, and nothing that the user does is handled.
void X11InputHook::letWindowsBePainted()
{
    m_pausing = true;
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers);
    m_pausing = false;
}

void X11InputHook::suspend()
{
    ++m_suspended;
    m_waiting.clear();
}

void X11InputHook::resume(std::uint32_t upTo)
{
    if (m_suspended == 0)
        return;
    if (m_suspended == 1 && running()) {
        if (upTo == 0) {
            catchUp(0);
        } else {
            m_dropUpTo = upTo;
            m_suspended = 0;
            catchUp(upTo);
            return;
        }
    }
    --m_suspended;
}
