#pragma once

#include <QObject>
#include <QString>

class QLocalServer;
class QLocalSocket;

// Keeps one Tintwright per data folder. Two processes writing the same
// palettes.json would each overwrite the other's changes, so a second
// launch hands over to the running one (which raises its window) and quits.
//
// The rendezvous is a local socket in the user's runtime folder whose name
// is derived from the data folder as the file system resolves it (links and
// ".." followed): a folder reached by two paths is still one folder. A
// socket file left behind by a crashed instance refuses connections; it is
// removed and taken over. A short lock file serialises the check-then-listen
// step between launches that start at the same moment.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    enum class Outcome {
        Primary,    // no other instance: this one listens now
        HandedOver, // the running instance acknowledged; exit 0
        NoAnswer,   // one is running but did not answer in time
    };

    explicit SingleInstance(const QString &dataFolder, QObject *parent = nullptr);
    ~SingleInstance() override;

    // Either becomes the listening instance or asks the running one to
    // show itself. Cheap when nothing is running: one failed connect.
    Outcome claimOrHandOver(int answerTimeoutMs = 2000);

    // Full path of the socket this instance uses (tests, diagnostics).
    QString serverName() const { return m_serverName; }

    static QString serverNameFor(const QString &dataFolder);

signals:
    // A later launch asked for the window. The token, when not empty, is
    // the launcher's activation token (XDG_ACTIVATION_TOKEN or
    // DESKTOP_STARTUP_ID) that lets the compositor grant focus.
    void activationRequested(const QString &activationToken);

private:
    Outcome handOver(QLocalSocket &socket, int answerTimeoutMs);
    bool listen();
    void serve(QLocalSocket *client);

    QString m_serverName;
    QLocalServer *m_server = nullptr;
};
