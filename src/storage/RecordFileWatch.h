#pragma once

#include <QObject>
#include <QTimer>

class QFileSystemWatcher;

// Tells when a record file may have changed on disk: watches the file and
// its folder (an atomic replace, this program's own or a sync tool's, swaps
// the file for a new one, which only the folder sees) and gathers a burst
// of events into one look, a moment after the first of them.
class RecordFileWatch : public QObject
{
    Q_OBJECT

public:
    explicit RecordFileWatch(QObject *parent = nullptr);

    // Watches those of the paths that exist and are not watched yet; a file
    // replaced since the last call is watched again.
    void watch(const QStringList &paths);
    // Asks for a look after `ms` even if nothing happens meanwhile.
    void checkAgainIn(int ms);

signals:
    void checkDue();

private:
    void somethingChanged();

    QFileSystemWatcher *m_watcher = nullptr;
    QTimer m_timer;
};
