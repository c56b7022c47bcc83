#pragma once

#include <QString>

// Keeps a copied text on the clipboard after the process that copied it
// has exited. On X11 (and Wayland) the clipboard is only a promise by its
// owner: when the owner exits the text is gone unless a clipboard manager
// took it. A short-lived command therefore hands the text to a detached
// copy of the program that owns the selection until another program takes
// it, as xclip does.
namespace ClipboardHandOff {

// Puts the text on the clipboard, starts the keeper and returns once the
// keeper (or a clipboard manager) owns it, or after a few seconds. On
// Wayland, where a program without a focused window may not own the
// clipboard at all, hands the text to wl-copy (wl-clipboard), the tool
// made for this, and returns at once. False, with why, when nothing could
// take the text.
bool handOff(const QString &text, QString *whyNot = nullptr);

// The keeper's whole life: owns the clipboard with the text until another
// program takes it, or for a day at most. Returns the exit code.
int keep(const QString &text);

} // namespace ClipboardHandOff
