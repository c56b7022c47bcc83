#pragma once

#include <QString>

namespace AppIdentity {

// Reverse-DNS id shared by the desktop entry, the icon and the metainfo;
// on Wayland it is also the window's app id.
QString applicationId();

// Sets the desktop file name and the window icon (the installed theme
// icon, or the copy built into the program when run from a build folder),
// and registers how screen readers see the program's own widgets.
void apply();

} // namespace AppIdentity
