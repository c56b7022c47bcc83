#pragma once

#include <QProcess>
#include <QTemporaryDir>

// A dbus-daemon of the test's own, so that nothing reaches the user's
// session bus. It activates no services: a name nobody owns is absent.
class PrivateSessionBus
{
public:
    PrivateSessionBus();
    ~PrivateSessionBus();
    QString address() const { return m_address; }

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
};
