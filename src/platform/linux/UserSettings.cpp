#include "platform/UserSettings.h"

#include <QSettings>
#include <QStandardPaths>

namespace
{
QString storedName(const QString &section, const QString &key)
{
    return section + u'/' + key;
}
} // namespace

UserSettings::UserSettings(const QString &path) : m_path(path)
{
    if (m_path.isEmpty())
        m_path = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                 QStringLiteral("/shotly/settings.ini");
}

QString UserSettings::value(const QString &section, const QString &key, const QString &fallback) const
{
    return QSettings(m_path, QSettings::IniFormat).value(storedName(section, key), fallback).toString();
}

bool UserSettings::setValue(const QString &section, const QString &key, const QString &value)
{
    QSettings settings(m_path, QSettings::IniFormat);
    settings.setValue(storedName(section, key), value);
    settings.sync();
    return settings.status() == QSettings::NoError;
}
