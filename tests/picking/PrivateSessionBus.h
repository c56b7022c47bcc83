#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

// A dbus-daemon of the test's own, so that nothing reaches the user's
// session bus. Its configuration activates no services: a name nobody
// registered is simply absent.
class PrivateSessionBus
{
public:
    PrivateSessionBus();
    ~PrivateSessionBus();

    bool isRunning() const { return !m_address.isEmpty(); }
    QString address() const { return m_address; }

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
};
