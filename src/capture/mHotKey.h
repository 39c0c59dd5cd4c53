#pragma once

#include "platform/HotKeys.h"

#include <QString>

#include <array>
#include <map>
#include <optional>
#include <vector>

/// The ten system-wide hot keys: how their texts read, and their registration.
class mHotKey
{
public:
    /// Actions by identifier; the hot key at index i of AppOptions::HotKeyNames has identifier i + 1.
    enum Id : int {
        RegionShot = 1,
        ActiveWindowShot,
        DesktopShot,
        BeginCapture,
        StopCapture,
        PageList,
        GenerateDocuments,
        ViewIndexPage,
        ViewWordOrPdf,
        UsePainterTool
    };

    struct Combination {
        HotKeys::Modifier modifier;
        int virtualKey;
        friend bool operator==(const Combination &, const Combination &) = default;
    };

    /// Reads "Ctrl-F1": modifier Ctrl, Alt or Shift, then after the first "-" a key A to Z, 0 to 9 or F1 to
    /// F16. Letter case does not count. Nothing when either is unknown.
    static std::optional<Combination> parse(const QString &text);

    explicit mHotKey(HotKeys &hotKeys);

    /// Registers the hot keys that can be read; a combination that another program holds is not available,
    /// which refused() tells. False only when the registration itself fails.
    bool setHotKey(const std::array<QString, 10> &names);

    bool RegisterOneHotKey(const Combination &combination, int id);
    void UnregisterAllHotKeys();

    /// Whether the hot key with this identifier works.
    bool holds(int id) const { return m_held.contains(id); }

    /// The combinations that another program holds, or that this keyboard lacks, as it turned out when they
    /// were registered. One that two actions share is not among them.
    const std::vector<Combination> &refused() const { return m_refused; }

private:
    HotKeys &m_hotKeys;
    int m_lastId = 0;                  ///< highest identifier handed out
    std::map<int, Combination> m_held; ///< by identifier
    std::vector<Combination> m_refused;
};
