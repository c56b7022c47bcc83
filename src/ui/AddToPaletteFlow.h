#pragma once

#include "model/ColorItem.h"

#include <QObject>
#include <QPointer>
#include <QUuid>

#include <functional>
#include <optional>

class AddColorSheet;
class PaletteStorage;
class QWidget;

// Filing a color into a palette, as the Picker and History tabs offer it:
// the add-color sheet names the color and chooses the palette, then a copy
// of the color under that name (same id, components and date) goes into
// the palette. The chosen palette is preselected the next time, for as long
// as the flow (that is, its tab) lives.
class AddToPaletteFlow : public QObject
{
    Q_OBJECT

public:
    // Where the color comes from, read when the user presses "Add"; nothing
    // is filed when it gives nothing.
    using ColorSource = std::function<std::optional<ColorItem>()>;

    AddToPaletteFlow(PaletteStorage &paletteStorage, QWidget *parent);

    // Opens the sheet with the proposed name.
    void open(ColorSource source, const QString &proposedName);
    // The palette the next sheet preselects.
    void rememberPalette(const QUuid &id) { m_rememberedPalette = id; }
    std::optional<QUuid> rememberedPalette() const { return m_rememberedPalette; }
    AddColorSheet *sheet() const;

private:
    PaletteStorage &m_paletteStorage;
    QWidget *m_parent;
    std::optional<QUuid> m_rememberedPalette;
    QPointer<AddColorSheet> m_sheet;
};
