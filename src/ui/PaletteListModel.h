#pragma once

#include "StoreListModel.h"

class PaletteStorage;

// The palettes in stored order, a row each: the name, the number of
// colors and the colors themselves for the card's strip. Editing a row's
// name renames the palette; removing a row deletes it.
class PaletteListModel : public StoreListModel
{
    Q_OBJECT

public:
    explicit PaletteListModel(PaletteStorage &paletteStorage, QObject *parent = nullptr);

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

protected:
    void removeRecord(const QUuid &id) override;

private:
    void refresh();

    PaletteStorage &m_paletteStorage;
};
