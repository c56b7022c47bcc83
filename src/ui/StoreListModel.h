#pragma once

#include <QAbstractListModel>
#include <QList>
#include <QUuid>

#include <algorithm>

// A list of stored records for a view, read from its store on every call:
// the model keeps nothing of the records but their ids in row order, which
// is what turns the store's one "changed" signal into the rows a view must
// remove, insert or repaint, so that it keeps its current row and scroll.
// Removing rows, like every other change, goes to the store; the rows
// follow when the store says it changed.
class StoreListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        IdRole = Qt::UserRole + 1, // QUuid
        HexRole,                   // "#RRGGBB" of a color
        CountRole,                 // a palette's number of colors, as the card shows it
        StripRole,                 // a palette's colors, QList<QColor>
    };

    int rowCount(const QModelIndex &parent = {}) const override;
    // The row of the first record with this id; invalid when there is none.
    QModelIndex indexOf(const QUuid &id) const;
    bool removeRows(int row, int count, const QModelIndex &parent = {}) override;

protected:
    using QAbstractListModel::QAbstractListModel;

    // Call whenever the store has changed, with the ids it now holds.
    void sync(const QList<QUuid> &ids);
    // The record a row shows, found by the row's id (the n-th of that id
    // where one is listed more than once), so that a view asking while the
    // rows are still being moved sees what the row stood for; null once it
    // is gone from the store.
    template<typename Record>
    const Record *recordAt(const QList<Record> &records, const QModelIndex &index) const
    {
        if (!index.isValid() || index.row() >= m_ids.size())
            return nullptr;
        const QUuid &id = m_ids[index.row()];
        qsizetype nth = std::count(m_ids.cbegin(), m_ids.cbegin() + index.row(), id);
        for (const Record &record : records) {
            if (record.id == id && nth-- == 0)
                return &record;
        }
        return nullptr;
    }
    // Removes the record from the store.
    virtual void removeRecord(const QUuid &id) = 0;

private:
    QList<QUuid> m_ids;
};
