#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QStringList>
#include <QVariantMap>

// A stand-in for xdg-desktop-portal on the session bus, which the test
// runs in a bus of its own (support/session-bus.sh: a name nobody owns is
// absent). Serves Screenshot.PickColor, Screenshot.Screenshot and
// GlobalShortcuts, answering as the test asks, and records what it was asked.
class FakePortal : public QDBusVirtualObject
{
    Q_OBJECT

public:
    enum class Mode {
        Color,            // response 0 with the color
        Cancel,           // response 1
        ErrorResponse,    // response 2
        ErrorReply,       // the call itself fails
        MismatchedHandle, // an old portal: its own handle, answer there
        NoColor,          // response 0 without a color
        Silent,           // never answers
        Vanish,           // leaves the bus after replying
    };
    static inline const QString sessionPath =
        QStringLiteral("/org/freedesktop/portal/desktop/session/fake/s1");
    static inline const QString objectPath = QStringLiteral("/org/freedesktop/portal/desktop");
    static inline const QString serviceName = QStringLiteral("org.freedesktop.portal.Desktop");

    // On its own connection, unless given the one to use.
    explicit FakePortal(const QDBusConnection &bus = connect())
        : portalBus(bus)
    {
    }
    ~FakePortal() override;

    // A fresh connection to the bus, under a name of its own.
    static QDBusConnection connect();
    // Takes the portal's name on its own connection.
    bool registerOnBus();

    // A Response as the portal sends it, on any path, from any connection.
    static void respond(QDBusConnection from, const QString &path, uint response, const QVariantMap &results);
    static QVariantMap colorResults(double red, double green, double blue);
    // Activated as the portal (or any client) sends it.
    static void activate(QDBusConnection from, const QString &session, const QString &id);

    Mode mode = Mode::Color;
    double color[3] = {0.2, 0.4, 0.8};
    int answerDelay = 20; // milliseconds
    // Screenshot: the picture it answers with; none, and it has no such method.
    QString screenshotFile;
    // PickColor: tokens, the request paths they make known, the handles
    // returned. GlobalShortcuts: what was bound, in which session.
    QStringList tokens, predictedPaths, returnedHandles, boundIds, boundSessions;
    QDBusConnection portalBus{QString()};

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

signals:
    void pickColorCalled();
};
