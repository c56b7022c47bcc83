#pragma once

#include "StoreListModel.h"

class PaletteStorage;

// The palettes in stored order, a row each: the name, the number of
// colors and the colors themselves for the card's strip.
class PaletteListModel : public StoreListModel
{
    Q_OBJECT

public:
    explicit PaletteListModel(PaletteStorage &paletteStorage, QObject *parent = nullptr);

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    void refresh();

    const PaletteStorage &m_paletteStorage;
};
