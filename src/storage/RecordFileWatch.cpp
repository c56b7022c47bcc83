#include "RecordFileWatch.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QFileSystemWatcher>

namespace {

// Long enough to see a sync tool's or an editor's save through, short
// enough that the change shows at once.
constexpr int settleMs = 200;

} // namespace

RecordFileWatch::RecordFileWatch(QObject *parent)
    : QObject(parent)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &RecordFileWatch::checkDue);
}

void RecordFileWatch::watch(const QStringList &paths)
{
    // Watching needs an event loop; a tool without one only saves.
    if (!QCoreApplication::instance())
        return;
    if (!m_watcher) {
        m_watcher = new QFileSystemWatcher(this);
        connect(m_watcher, &QFileSystemWatcher::fileChanged, this, &RecordFileWatch::somethingChanged);
        connect(m_watcher, &QFileSystemWatcher::directoryChanged, this, &RecordFileWatch::somethingChanged);
    }
    const QStringList watched = m_watcher->files() + m_watcher->directories();
    for (const QString &path : paths) {
        // What cannot be read cannot be watched either (and says so).
        if (!watched.contains(path) && QFileInfo(path).isReadable())
            m_watcher->addPath(path);
    }
}

void RecordFileWatch::checkAgainIn(int ms)
{
    if (!m_timer.isActive() || m_timer.remainingTime() > ms)
        m_timer.start(ms);
}

void RecordFileWatch::somethingChanged()
{
    checkAgainIn(settleMs);
}
