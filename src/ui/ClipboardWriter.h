#pragma once

#include <QString>

// Copying a color text: the clipboard is cleared, then the text is put on it
// as plain text and nothing else.
void copyToClipboard(const QString &text);
