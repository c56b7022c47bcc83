#pragma once

#include "model/Notation.h"
#include "picking/PickResult.h"

#include <QObject>
#include <QString>

#include <functional>

class QSocketNotifier;

// Keeps one Tintwright per data folder. Two processes writing the same
// palettes.json would each overwrite the other's changes, so a later start
// hands over to the running one (which raises its window, or picks for a
// command) and quits.
//
// The rendezvous is a local socket in the user's runtime folder whose name
// is derived from the data folder as the file system resolves it (links and
// ".." followed): a folder reached by two paths is still one folder. A
// socket file left behind by a crashed instance refuses connections; it is
// removed and taken over. A short lock file serialises the check-then-listen
// step between launches that start at the same moment. Requests and answers
// travel as QDataStream values over a Unix-domain socket (Linux and macOS;
// QLocalSocket, which would also serve Windows, brings in a library that
// costs about 1.4 MiB of resident memory at every start).
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    enum class Outcome {
        Primary,    // no other instance: this one listens now
        HandedOver, // the running instance answered
        NoAnswer,   // one is running but did not answer (in time, or sensibly)
    };

    // A running instance's answer to a command's pick.
    struct PickReply
    {
        bool busy = false; // a pick was already running there; nothing was picked
        PickResult result;
    };
    using PickAnswer = std::function<void(const PickReply &reply)>;

    explicit SingleInstance(const QString &dataFolder, QObject *parent = nullptr);
    ~SingleInstance() override;

    // Either becomes the listening instance or asks the running one to
    // show itself. Cheap when nothing is running: one failed connect.
    Outcome claimOrHandOver(int answerTimeoutMs = 2000);
    // Either becomes the listening instance or asks the running one to pick
    // a color and waits, however long the user takes, for its reply.
    Outcome claimOrAskToPick(Notation notation, bool copy, PickReply *reply);

    // Stops listening, so that a later launch becomes the instance.
    void close();

    // Full path of the socket this instance uses (tests, diagnostics).
    QString serverName() const { return m_serverName; }

    static QString serverNameFor(const QString &dataFolder);

signals:
    // A later launch asked for the window. The token, when not empty, is
    // the launcher's activation token (XDG_ACTIVATION_TOKEN or
    // DESKTOP_STARTUP_ID) that lets the compositor grant focus.
    void activationRequested(const QString &activationToken);
    // A command asked for a pick; answer() sends the reply back (and does
    // nothing once the command has gone).
    void pickRequested(Notation notation, bool copy, const SingleInstance::PickAnswer &answer);

private:
    // Asks the running instance through `ask` when there is one.
    Outcome claim(const std::function<bool(int socket)> &ask);
    bool listen();
    void serve(int client);

    QString m_serverName;
    int m_listening = -1;
    QSocketNotifier *m_notifier = nullptr;
};
