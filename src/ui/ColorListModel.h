#pragma once

#include "StoreListModel.h"
#include "model/ColorItem.h"

class HistoryStorage;
class PaletteStorage;

// The colors of the history (newest first) or of one palette (in its
// order), a row each: the name or hex text to show and speak, the color
// itself as the decoration, and the hex text.
class ColorListModel : public StoreListModel
{
    Q_OBJECT

public:
    explicit ColorListModel(HistoryStorage &historyStorage, QObject *parent = nullptr);
    // No rows once the palette is gone.
    ColorListModel(PaletteStorage &paletteStorage, const QUuid &paletteId, QObject *parent = nullptr);

    // The palette whose colors are listed; null for the history.
    QUuid paletteId() const { return m_paletteId; }

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    const QList<ColorItem> &colors() const;
    void refresh();

    const HistoryStorage *m_historyStorage = nullptr;
    const PaletteStorage *m_paletteStorage = nullptr;
    QUuid m_paletteId;
};
