#pragma once

#include "platform/HotKeys.h"

#include <QMetaObject>
#include <QObject>

#include <map>
#include <set>
#include <utility>

/// Hot keys that a test presses.
class FakeHotKeys : public HotKeys
{
public:
    using Combination = std::pair<Modifier, int>;

    std::set<Combination> heldByOthers; ///< registering one of these is refused
    std::set<int> missingKeys;          ///< virtual keys that this keyboard lacks
    std::map<int, Combination> registered;

    void setHandler(Handler handler) override { m_handler = std::move(handler); }
    bool registerKey(int id, Modifier modifier, int virtualKey) override
    {
        const Combination wanted(modifier, virtualKey);
        for (const auto &[takenId, taken] : registered) {
            if (takenId == id || taken == wanted)
                return false;
        }
        if (heldByOthers.contains(wanted) || missingKeys.contains(virtualKey))
            return false;
        registered.emplace(id, wanted);
        return true;
    }
    void unregisterKey(int id) override { registered.erase(id); }

    /// The user presses the combination of `id`; the handler runs from the event loop.
    void press(int id, std::uint32_t time = 1)
    {
        QMetaObject::invokeMethod(
            &m_context,
            [this, id, time] {
                if (m_handler && registered.contains(id))
                    m_handler(id, time);
            },
            Qt::QueuedConnection);
    }

private:
    QObject m_context;
    Handler m_handler;
};
