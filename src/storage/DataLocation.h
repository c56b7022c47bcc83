#pragma once

#include <QString>

namespace DataLocation {

// The program's own folder in the user's data directory
// (~/.local/share/Tintwright on Linux).
QString defaultFolder();

} // namespace DataLocation
