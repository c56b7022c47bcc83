#include "UiTestSupport.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>

SharedObjects::SharedObjects()
    : paletteStorage(folder.path())
    , historyStorage(folder.path())
{
}

QString clipboardText()
{
    return QGuiApplication::clipboard()->text();
}

QStringList shownTexts(const QWidget *root)
{
    QStringList texts;
    for (QLabel *label : root->findChildren<QLabel *>())
        if (label->isVisibleTo(root))
            texts.append(label->text());
    return texts;
}
