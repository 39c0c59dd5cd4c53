#pragma once

#include "platform/UserSettings.h"

#include <QStringList>

/// The screens that were open when the program ended, kept per user; at the next start those that can be
/// reopened are (option LoadLastWorkingSpace).
namespace WorkingSpace
{
/// Keeps the captions of the open child windows: those that begin with "<" or ">" as they stand, others with
/// "-" behind; the main window's own caption is left out.
void save(UserSettings &settings, const QStringList &captions, const QString &appTitle, const QString &user);

struct Kept {
    QString user;              ///< who saved it, "Administrator" when nobody did
    QStringList pageAddresses; ///< addresses of browser windows, in the order saved
};
Kept load(const UserSettings &settings, const QString &appTitle);
} // namespace WorkingSpace
