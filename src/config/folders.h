#pragma once

#include <QString>
#include <QtGlobal>

#include <atomic>

namespace kivo {

// Where the program keeps things. All need a QCoreApplication and no organisation name: the settings folder
// is found one level above the platform's folder for this very program. Paths have forward slashes and no
// slash at the end. With a portable folder (portable_folder.h) all of them lie in it.

// Not 0: the settings folder or a default file had to be made in this run. Start-up takes it as a sign of a
// first run and clears it once the first frame has been sent.
extern std::atomic<quint8> configFolderCreated;

// "<roaming application data>/Kivo Tool" (Linux: "~/.local/share/Kivo Tool"; portable: "settings"), made when
// missing, which sets configFolderCreated. Where it cannot be made the path is given all the same, and one
// log line tells.
QString SettingsFolder();

// "<profile>/Kivo Tool", in the user's own folder (portable: "working"); made when missing. Where it cannot
// be made: the user's folder itself (portable: the portable folder), and one log line tells.
QString WorkingFolder();

// The same folders, empty where there is none yet: for whoever only looks.
QString ExistingSettingsFolder();
QString ExistingWorkingFolder();

// SettingsFolder() followed by "/Config.ini".
QString ConfigFilePath();

}  // namespace kivo
