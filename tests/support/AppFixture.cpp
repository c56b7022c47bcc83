#include "AppFixture.h"

#include <QClipboard>
#include <QDragEnterEvent>
#include <QGuiApplication>
#include <QMimeData>

AppFixture::AppFixture()
{
    app.tintwrightService().setSamplerFactory([this](QObject *parent) -> ColorSampler * {
        sampler = new ManualSampler(parent);
        return sampler;
    });
    app.show();
}

bool AppFixture::drop(const QList<QUrl> &urls)
{
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(150, 200), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window(), &enter);
    if (!enter.isAccepted())
        return false;
    QDropEvent dropped(QPoint(150, 200), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window(), &dropped);
    return dropped.isAccepted();
}

QString clipboardText()
{
    return QGuiApplication::clipboard()->text();
}
