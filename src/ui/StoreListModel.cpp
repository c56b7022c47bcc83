#include "StoreListModel.h"

int StoreListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_ids.size());
}

QModelIndex StoreListModel::indexOf(const QUuid &id) const
{
    const qsizetype row = m_ids.indexOf(id);
    return row < 0 ? QModelIndex() : index(int(row));
}

bool StoreListModel::removeRows(int row, int count, const QModelIndex &parent)
{
    if (parent.isValid() || row < 0 || count <= 0 || row + count > m_ids.size())
        return false;
    // Each by its id: the rows move as the store tells of each removal.
    for (const QUuid &id : m_ids.mid(row, count))
        removeRecord(id);
    return true;
}

void StoreListModel::sync(const QList<QUuid> &ids)
{
    // Rows before and after the change keep their identity; what lies
    // between is removed and inserted. One add, remove or clear is one such
    // block, so a view keeps its current row wherever it survives.
    qsizetype head = 0;
    while (head < ids.size() && head < m_ids.size() && ids[head] == m_ids[head])
        ++head;
    qsizetype tail = 0;
    while (tail < ids.size() - head && tail < m_ids.size() - head
           && ids[ids.size() - 1 - tail] == m_ids[m_ids.size() - 1 - tail])
        ++tail;
    const qsizetype removed = m_ids.size() - head - tail;
    const qsizetype inserted = ids.size() - head - tail;
    if (removed > 0) {
        beginRemoveRows({}, int(head), int(head + removed - 1));
        m_ids.remove(head, removed);
        endRemoveRows();
    }
    if (inserted > 0) {
        beginInsertRows({}, int(head), int(head + inserted - 1));
        m_ids = ids;
        endInsertRows();
    }
    // A kept row may show something new (a palette's colors, a new name).
    if (!m_ids.isEmpty())
        emit dataChanged(index(0), index(int(m_ids.size()) - 1));
}
