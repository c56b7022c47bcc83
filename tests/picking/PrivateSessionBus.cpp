#include "PrivateSessionBus.h"

#include <QFile>

PrivateSessionBus::PrivateSessionBus()
{
    const QString configPath = m_folder.filePath(QStringLiteral("session.conf"));
    QFile config(configPath);
    if (!config.open(QIODevice::WriteOnly))
        return;
    config.write(
        QStringLiteral("<busconfig><type>session</type><listen>unix:dir=%1</listen>"
                       "<auth>EXTERNAL</auth><policy context=\"default\">"
                       "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
                       "<allow own=\"*\"/></policy></busconfig>")
            .arg(m_folder.path())
            .toUtf8());
    config.close();
    m_daemon.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--config-file=") + configPath, QStringLiteral("--print-address=1"),
                    QStringLiteral("--nofork")});
    while (m_daemon.waitForReadyRead(5000) && !m_daemon.canReadLine()) { }
    m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
}

PrivateSessionBus::~PrivateSessionBus()
{
    m_daemon.terminate();
    if (!m_daemon.waitForFinished(3000))
        m_daemon.kill();
}
