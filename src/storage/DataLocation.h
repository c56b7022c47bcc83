#pragma once

#include <QString>

namespace DataLocation {

// The program's own folder in the user's data directory
// (~/.local/share/Tintwright on Linux).
QString defaultFolder();

// The folder as the file system resolves it, links and ".." followed, so
// that every path to one folder gives one name. The folder may not exist
// yet: its nearest existing parent is resolved, the rest taken as written.
QString resolvedFolder(const QString &folder);

// What this computer keeps about a data folder and shares with no one
// (the version of each file it last read there): under the user's state
// folder (~/.local/state/Tintwright), one folder per data folder, so that
// a sync tool never copies it.
QString stateFolder(const QString &dataFolder);

} // namespace DataLocation
