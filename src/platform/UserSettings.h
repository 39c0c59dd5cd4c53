#pragma once

#include <QString>

/// The per-user store of the program: a value by application, section and key, kept in one INI file of the
/// user's configuration folder.
class UserSettings
{
public:
    /// `path` is the INI file; empty means the user's own (XDG_CONFIG_HOME/shotly/settings.ini).
    explicit UserSettings(const QString &path = {});

    QString value(const QString &section, const QString &key, const QString &fallback = {}) const;
    /// A file that cannot be written stays as it is. False then; most callers can do without the value.
    bool setValue(const QString &section, const QString &key, const QString &value);

    const QString &path() const { return m_path; }

private:
    QString m_path;
};
