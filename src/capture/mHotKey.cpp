#include "capture/mHotKey.h"

#include "platform/RunTimeError.h"
#include "platform/VirtualKeys.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace
{
std::optional<HotKeys::Modifier> modifierOf(const QString &text)
{
    if (text.compare("Ctrl"_L1, Qt::CaseInsensitive) == 0)
        return HotKeys::Modifier::Control;
    if (text.compare("Alt"_L1, Qt::CaseInsensitive) == 0)
        return HotKeys::Modifier::Alt;
    if (text.compare("Shift"_L1, Qt::CaseInsensitive) == 0)
        return HotKeys::Modifier::Shift;
    return std::nullopt;
}

std::optional<int> virtualKeyOf(const QString &text)
{
    const QString key = text.toUpper();
    if (key.size() == 1) {
        const int code = key.front().unicode();
        if ((code >= 'A' && code <= 'Z') || (code >= '0' && code <= '9'))
            return code;
        return std::nullopt;
    }
    const int number = key.mid(1).toInt();
    if (number < 1 || number > 16 || key != u'F' + QString::number(number)) // neither "F01" nor "F+1"
        return std::nullopt;
    return VirtualKey::F1 + number - 1;
}
} // namespace

std::optional<mHotKey::Combination> mHotKey::parse(const QString &text)
{
    const qsizetype dash = text.indexOf(u'-');
    if (dash < 0)
        return std::nullopt;
    const std::optional<HotKeys::Modifier> modifier = modifierOf(text.left(dash));
    const std::optional<int> key = virtualKeyOf(text.mid(dash + 1));
    if (!modifier || !key)
        return std::nullopt;
    return Combination{*modifier, *key};
}

mHotKey::mHotKey(HotKeys &hotKeys) : m_hotKeys(hotKeys) {}

bool mHotKey::setHotKey(const std::array<QString, 10> &names)
{
    try {
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (const std::optional<Combination> combination = parse(names[i]))
                RegisterOneHotKey(*combination, static_cast<int>(i) + 1);
        }
    } catch (const RunTimeError &) {
        return false;
    }
    return true;
}

bool mHotKey::RegisterOneHotKey(const Combination &combination, int id)
{
    m_lastId = std::max(m_lastId, id);
    const bool registered = m_hotKeys.registerKey(id, combination.modifier, combination.virtualKey);
    if (registered)
        m_held.insert_or_assign(id, combination);
    else if (std::ranges::none_of(m_held, [&](const auto &held) { return held.second == combination; }))
        m_refused.push_back(combination);
    return registered;
}

void mHotKey::UnregisterAllHotKeys()
{
    for (int id = 1; id <= m_lastId; ++id)
        m_hotKeys.unregisterKey(id);
    m_lastId = 0;
    m_held.clear();
    m_refused.clear();
}
