#pragma once

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QObject>
#include <QString>
#include <QVariantMap>

// The "pick a color" shortcut, registered with the desktop through the
// GlobalShortcuts portal where there is one (the desktop lets the user
// confirm or change the keys). Where there is none nothing is registered
// and nothing is said: the user can bind a key to the command line instead.
class GlobalPickShortcut : public QObject
{
    Q_OBJECT

public:
    static inline const QString shortcutId = QStringLiteral("pick-color");

    explicit GlobalPickShortcut(const QDBusConnection &bus, QObject *parent = nullptr);
    ~GlobalPickShortcut() override;

    // Asks the bus once: creates the session and binds the shortcut.
    void start();

signals:
    void activated();

private slots:
    void handleActivated(const QDBusObjectPath &session, const QString &id, qulonglong timestamp,
                         const QVariantMap &options);

private:
    void sessionCreated(uint response, const QVariantMap &results);
    void bindShortcut();

    QDBusConnection m_bus;
    QString m_sessionHandle;
};
