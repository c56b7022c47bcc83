#include "UiTestSupport.h"

#include <QClipboard>
#include <QGuiApplication>

SharedObjects::SharedObjects()
    : paletteStorage(folder.path())
    , historyStorage(folder.path())
{
}

QString clipboardText()
{
    return QGuiApplication::clipboard()->text();
}
