#pragma once

#include "StoreListModel.h"
#include "model/ColorItem.h"

class HistoryStorage;
class PaletteStorage;

// The colors of the history (newest first) or of one palette (in its
// order), a row each: the name or hex text to show and speak, the color
// itself as the decoration, and the hex text. Removing a row removes every
// entry with its id: from the history, or from the palette.
class ColorListModel : public StoreListModel
{
    Q_OBJECT

public:
    explicit ColorListModel(HistoryStorage &historyStorage, QObject *parent = nullptr);
    // No rows once the palette is gone.
    ColorListModel(PaletteStorage &paletteStorage, const QUuid &paletteId, QObject *parent = nullptr);

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    // The color of a row.
    std::optional<ColorItem> color(const QModelIndex &index) const;

protected:
    void removeRecord(const QUuid &id) override;

private:
    const QList<ColorItem> &colors() const;
    void refresh();

    HistoryStorage *m_historyStorage = nullptr;
    PaletteStorage *m_paletteStorage = nullptr;
    QUuid m_paletteId;
};
