#include "ClipboardWriter.h"

#include <QClipboard>
#include <QGuiApplication>

void copyToClipboard(const QString &text)
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    clipboard->setText(text, QClipboard::Clipboard);
}
