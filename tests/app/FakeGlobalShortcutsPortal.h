#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QStringList>

// A stand-in for xdg-desktop-portal's GlobalShortcuts interface on a
// private bus: answers CreateSession and BindShortcuts on the paths the
// handle tokens name, and sends Activated when the test asks.
class FakeGlobalShortcutsPortal : public QDBusVirtualObject
{
    Q_OBJECT

public:
    static inline const QString sessionPath =
        QStringLiteral("/org/freedesktop/portal/desktop/session/fake/s1");

    explicit FakeGlobalShortcutsPortal(const QDBusConnection &bus);
    ~FakeGlobalShortcutsPortal() override;
    bool registerOnBus();

    // Activated as a portal (or any client on its connection) sends it.
    static void activate(QDBusConnection bus, const QString &session, const QString &id);

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

    // What was bound, and the request paths as the portal derived them.
    QStringList boundIds, boundSessions, requestPaths;

private:
    QDBusConnection m_bus;
};
