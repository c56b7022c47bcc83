#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariantMap>

class QDBusPendingCallWatcher;

// One call to a desktop portal method that answers through a Request
// object. The Response is subscribed before the call, under a fresh token
// nobody can guess, and bound to the portal's name so that no other client
// can answer in its place; a portal that names the request itself (before
// version 0.9) is followed to the path it returns. Reports once, then
// deletes itself.
class PortalRequest : public QObject
{
    Q_OBJECT

public:
    static inline const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
    static inline const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");

    // call: a method call to the portal whose options (the last argument, an
    // a{sv}) get the handle_token.
    PortalRequest(const QDBusConnection &bus, QDBusMessage call, QObject *parent = nullptr);
    ~PortalRequest() override;

    void start();

    // A fresh token of 128 random bits, also for session handles.
    static QString newToken();
    // The request path the portal will use for a token on this bus.
    static QString requestPath(const QDBusConnection &bus, const QString &token);

signals:
    void responded(uint response, const QVariantMap &results);
    // The call failed (no portal, no such interface) or cannot be heard.
    void failed(const QString &reason);

private slots:
    void handleResponse(uint response, const QVariantMap &results);

private:
    void handleReply(QDBusPendingCallWatcher *watcher);
    bool subscribe(const QString &path);
    void unsubscribe();
    void finish();

    QDBusConnection m_bus;
    QDBusMessage m_call;
    QString m_subscribedPath;
    bool m_finished = false;
};
