#pragma once

#include "model/ColorItem.h"
#include "storage/SyncedRecords.h"

#include <QList>
#include <QObject>

// The recently picked colors, newest first, at most maxColors, kept in
// history.json and rewritten after every change. Changes that other
// programs make to the file show at once and are never overwritten.
class HistoryStorage : public QObject
{
    Q_OBJECT

public:
    static constexpr int maxColors = 20;

    // Uses the program's folder in the user's data directory.
    explicit HistoryStorage(QObject *parent = nullptr);
    // Uses the given folder instead (tests, tools).
    explicit HistoryStorage(const QString &folder, QObject *parent = nullptr);

    const QList<ColorItem> &colors() const { return m_colors.records(); }
    QString filePath() const { return m_colors.path(); }

    // Drops near-duplicates of the item (each of red, green and blue closer
    // than 0.01), puts it first, keeps the newest maxColors, saves.
    void addColor(const ColorItem &item);
    // Removes every entry with this id, saves.
    void removeColor(const QUuid &id);
    // Empties the history, saves.
    void clear();

    void loadHistory();
    void saveHistory();

signals:
    void colorsChanged();

private:
    SyncedRecords<ColorItem> m_colors;
};
