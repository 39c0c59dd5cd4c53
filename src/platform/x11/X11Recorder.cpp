#include "platform/x11/X11Recorder.h"

#include "platform/RunTimeError.h"
#include "platform/x11/TimeStamp.h"

#include <xcb/xcbext.h>
#include <xcb/xinput.h>

#include <poll.h>

#include <array>
#include <chrono>
#include <cstring>
#include <utility>

using namespace std::chrono_literals;

namespace
{
constexpr auto wakeUpInterval = 10ms;
constexpr auto quietTime = 20ms;

/// One answer may overtake the records that its own flush has put on their way, and the one after it the
/// writing of those; the third cannot.
constexpr int roundTripsToPresent = 3;

RunTimeError cannotWatch()
{
    return RunTimeError(
        RunTimeError::CannotCreateObject,
        QStringLiteral("This X display does not let programs watch the mouse and the keyboard "
                       "(its RECORD extension is missing or refused)."));
}
} // namespace

X11Recorder::X11Recorder(WakeUp wakeUp, Sink sink) : m_sink(std::move(sink))
{
    createContext();
    const bool rawEvents = wakeUp == WakeUp::RawEvents && selectRawEvents();
    enableContext();
    watchConnections(rawEvents);
}

X11Recorder::~X11Recorder()
{
    xcb_record_disable_context(m_control.get(), m_context);
    xcb_record_free_context(m_control.get(), m_context);
    m_control.flush();
}

void X11Recorder::createContext()
{
    if (!m_control.hasExtension(&xcb_record_id) || !m_data.hasExtension(&xcb_record_id))
        throw cannotWatch();
    m_control.reply(xcb_record_query_version_reply, xcb_record_query_version(m_control.get(), 1, 13));
    m_context = xcb_generate_id(m_control.get());
    const xcb_record_client_spec_t clients = XCB_RECORD_CS_ALL_CLIENTS;
    xcb_record_range_t range{};
    range.device_events = {XCB_KEY_PRESS, XCB_MOTION_NOTIFY};
    if (!m_control.accepted(
            xcb_record_create_context_checked(m_control.get(), m_context, 0, 1, 1, &clients, &range)))
        throw cannotWatch();
}

void X11Recorder::enableContext()
{
    m_enabled = xcb_record_enable_context(m_data.get(), m_context);
    // The first of the replies, which says that recording has begun.
    if (!m_data.reply(xcb_record_enable_context_reply, m_enabled))
        throw cannotWatch();
}

bool X11Recorder::selectRawEvents()
{
    if (!m_control.hasExtension(&xcb_input_id))
        return false;
    // Before 2.1 raw events do not arrive while another client holds a grab.
    const auto version =
        m_control.reply(xcb_input_xi_query_version_reply, xcb_input_xi_query_version(m_control.get(), 2, 2));
    if (!version || version->major_version < 2 || (version->major_version == 2 && version->minor_version < 1))
        return false;
    struct {
        xcb_input_event_mask_t head{XCB_INPUT_DEVICE_ALL_MASTER, 1};
        std::uint32_t bits = XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE |
                             XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS |
                             XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE | XCB_INPUT_XI_EVENT_MASK_RAW_MOTION;
    } mask;
    return m_control.accepted(
        xcb_input_xi_select_events_checked(m_control.get(), m_control.root(), 1, &mask.head));
}

void X11Recorder::watchConnections(bool rawEvents)
{
    m_dataNotifier = std::make_unique<QSocketNotifier>(m_data.fileDescriptor(), QSocketNotifier::Read);
    QObject::connect(m_dataNotifier.get(), &QSocketNotifier::activated, m_dataNotifier.get(),
                     [this] { read(); });
    m_controlNotifier = std::make_unique<QSocketNotifier>(m_control.fileDescriptor(), QSocketNotifier::Read);
    QObject::connect(m_controlNotifier.get(), &QSocketNotifier::activated, m_controlNotifier.get(),
                     [this] { readWakeUps(); });
    if (!rawEvents) {
        QObject::connect(&m_wakeUpTimer, &QTimer::timeout, &m_wakeUpTimer, [this] { requestRecords(); });
        m_wakeUpTimer.start(wakeUpInterval);
    }
}

void X11Recorder::read()
{
    void *raw = nullptr;
    while (xcb_poll_for_reply(m_data.get(), m_enabled.sequence, &raw, nullptr) != 0) {
        const X11Owned<xcb_record_enable_context_reply_t> records(
            static_cast<xcb_record_enable_context_reply_t *>(std::exchange(raw, nullptr)));
        if (!records)
            return giveUp();
        if (records->category != 0) // the begin or the end of recording
            continue;
        const std::uint8_t *bytes = xcb_record_enable_context_data(records.get());
        const int length = xcb_record_enable_context_data_length(records.get());
        constexpr int size = 32;
        for (int offset = 0; offset + size <= length; offset += size) {
            xcb_key_press_event_t event;
            static_assert(sizeof event == size);
            std::memcpy(&event, bytes + offset, sizeof event);
            m_lastTime = event.time;
            m_sink.recorded(event);
        }
    }
}

void X11Recorder::readWakeUps()
{
    bool mappingChanged = false;
    do {
        mappingChanged = false;
        bool awake = false;
        while (const auto event = m_control.pollEvent()) {
            if ((event->response_type & 0x7f) == XCB_MAPPING_NOTIFY)
                mappingChanged = true;
            else
                awake = true;
        }
        if (awake)
            requestRecords();
        // Asks the server, so that further events may lie in the connection afterwards.
        if (mappingChanged)
            m_sink.mappingChanged();
    } while (mappingChanged);
    if (m_control.lost())
        giveUp();
}

void X11Recorder::requestRecords()
{
    xcb_discard_reply(m_control.get(), xcb_get_input_focus_unchecked(m_control.get()).sequence);
    m_control.flush();
    if (m_control.lost())
        giveUp();
}

void X11Recorder::catchUp(std::uint32_t upTo, QDeadlineTimer limit)
{
    for (int trip = 0; trip < roundTripsToPresent; ++trip) {
        if (!roundTrip(upTo, limit))
            return readWakeUps();
    }
    read();
    // A server that hands out later than others; the event at `upTo` has been seen by somebody already.
    QDeadlineTimer quiet(quietTime);
    while (upTo != 0 && !(m_lastTime && !isLater(upTo, *m_lastTime)) &&
           waitReadable(quiet < limit ? quiet : limit)) {
        read();
        readWakeUps();
    }
    readWakeUps();
}

/// False when there is nothing more to wait for.
bool X11Recorder::roundTrip(std::uint32_t upTo, QDeadlineTimer limit)
{
    const unsigned request = xcb_get_input_focus_unchecked(m_control.get()).sequence;
    m_control.flush();
    void *answer = nullptr;
    while (xcb_poll_for_reply(m_control.get(), request, &answer, nullptr) == 0) {
        read();
        if (hasPassed(upTo) || !waitReadable(limit)) {
            xcb_discard_reply(m_control.get(), request);
            return false;
        }
    }
    return X11Owned<void>(answer) != nullptr;
}

bool X11Recorder::waitReadable(QDeadlineTimer limit) const
{
    std::array<pollfd, 2> files{pollfd{m_data.fileDescriptor(), POLLIN, 0},
                                pollfd{m_control.fileDescriptor(), POLLIN, 0}};
    return !m_data.lost() && ::poll(files.data(), files.size(), static_cast<int>(limit.remainingTime())) > 0;
}

bool X11Recorder::hasPassed(std::uint32_t time) const noexcept
{
    return time != 0 && m_lastTime && isLater(*m_lastTime, time);
}

void X11Recorder::giveUp()
{
    // A lost connection is readable for ever.
    m_dataNotifier->setEnabled(false);
    m_controlNotifier->setEnabled(false);
    m_wakeUpTimer.stop();
}
