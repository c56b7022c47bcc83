#pragma once

#include <QDBusConnection>
#include <QObject>

#include <functional>
#include <optional>

class QThread;

// Whether the desktop's portal can be reached on a bus: its name has an
// owner, or the bus can start it on demand. Asked once, without waiting,
// and kept for the session, so that a pick where no portal is installed
// never waits for a call to time out; a portal that appears later is
// noticed as it registers.
class PortalAvailability : public QObject
{
    Q_OBJECT

public:
    enum class Answer { Unknown, Present, Absent };

    // Starts asking at once. Connecting to the bus (which may mean
    // starting one) happens on a thread of its own: nothing waits for it.
    explicit PortalAvailability(std::function<QDBusConnection()> connectToBus, QObject *parent = nullptr);
    ~PortalAvailability() override;

    Answer answer() const { return m_answer; }
    // The bus asked; connected once the answer is known.
    QDBusConnection bus() const;

signals:
    // Once, when the answer first becomes known.
    void answered(bool present);

private:
    void ask();
    void askActivatable();
    void settle(Answer answer);

    QThread *m_connecting = nullptr;
    std::optional<QDBusConnection> m_bus;
    Answer m_answer = Answer::Unknown;
};
