#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusObjectPath>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

// The color as the portal sends it: (ddd).
struct PortalColor
{
    double red = 0.0, green = 0.0, blue = 0.0;
};
Q_DECLARE_METATYPE(PortalColor)

// A stand-in for xdg-desktop-portal's Screenshot interface on a test's
// bus, answering PickColor the way the test asks it to.
class FakeScreenshotPortal : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Screenshot")

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

    FakeScreenshotPortal(const QDBusConnection &bus, Mode mode, PortalColor color = {});
    ~FakeScreenshotPortal() override;
    bool registerOnBus();
    // Sends a Response as the portal would, on any path.
    void respond(const QString &path, uint response, const QVariantMap &results);
    static QVariantMap colorResults(PortalColor color);

    QStringList tokens, predictedPaths, returnedHandles;
    int answerDelay = 20; // milliseconds

signals:
    void pickColorCalled();

public slots:
    QDBusObjectPath PickColor(const QString &parentWindow, const QVariantMap &options);

private:
    QDBusConnection m_bus;
    Mode m_mode;
    PortalColor m_color;
};
