#include "PrivateSessionBus.h"

#include <QDeadlineTimer>
#include <QFile>

PrivateSessionBus::PrivateSessionBus()
{
    if (!m_folder.isValid())
        return;
    const QString configPath = m_folder.filePath(QStringLiteral("session.conf"));
    QFile config(configPath);
    if (!config.open(QIODevice::WriteOnly))
        return;
    config.write(
        QStringLiteral(R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir=%1</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)")
            .arg(m_folder.path())
            .toUtf8());
    config.close();

    m_daemon.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--config-file=") + configPath, QStringLiteral("--print-address=1"),
                    QStringLiteral("--nofork")});
    if (!m_daemon.waitForStarted(5000))
        return;
    const QDeadlineTimer deadline(5000);
    while (m_daemon.state() == QProcess::Running && !m_daemon.canReadLine() && !deadline.hasExpired())
        m_daemon.waitForReadyRead(int(deadline.remainingTime()));
    m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
}

PrivateSessionBus::~PrivateSessionBus()
{
    if (m_daemon.state() != QProcess::NotRunning) {
        m_daemon.terminate();
        if (!m_daemon.waitForFinished(3000))
            m_daemon.kill();
        m_daemon.waitForFinished(1000);
    }
}
