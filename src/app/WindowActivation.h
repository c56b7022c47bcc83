#pragma once

#include <QString>

class QWidget;

namespace WindowActivation {

// Restores the window if minimised, raises it and asks for keyboard focus.
// On Wayland the compositor grants focus only with a launcher's activation
// token, so the token handed over by a later launch is passed on.
void bringToFront(QWidget *window, const QString &activationToken);

} // namespace WindowActivation
