#pragma once

#include <QString>

namespace DataLocation {

// The program's own folder in the user's data directory
// (~/.local/share/Tintwright on Linux).
QString defaultFolder();

// Creates the folder with its parents; a failure is left for the first
// read or write to report.
void ensureFolder(const QString &folder);

} // namespace DataLocation
