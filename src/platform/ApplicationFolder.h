#pragma once

#include <QString>

/// The folder that holds the program's fixed files (database, options, sound, pictures), and the folder
/// that new projects go into unless the user says otherwise.
///
/// The application folder is, first that applies: $SHOTLY_HOME; the program's own folder when it holds
/// Shotly.mdb and can be written; $XDG_DATA_HOME/shotly. The first and the last are filled from the
/// installed data folder with whatever of it is missing; what the user has left as it was delivered is
/// renewed after an upgrade.
namespace ApplicationFolder
{
/// Without a trailing separator. Creates and fills the folder where that is due; throws RunTimeError when
/// that fails. `programFolder` is the folder of the running program.
QString locate(const QString &programFolder);

/// "Shotly" in the user's home folder.
QString defaultBaseDirectory();
} // namespace ApplicationFolder
