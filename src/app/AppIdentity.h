#pragma once

#include <QString>

namespace AppIdentity {

// Reverse-DNS id shared by the desktop entry, the icon and the metainfo;
// on Wayland it is also the window's app id.
QString applicationId();

// Sets the desktop file name and the window icon (built in, so it is there
// even when run from a build folder), and registers how screen readers see
// the program's own widgets.
void apply();

} // namespace AppIdentity
