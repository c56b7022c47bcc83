#include "AddToPaletteFlow.h"

#include "AddColorSheet.h"
#include "storage/PaletteStorage.h"

#include <QWidget>

AddToPaletteFlow::AddToPaletteFlow(PaletteStorage &paletteStorage, QWidget *parent)
    : QObject(parent)
    , m_paletteStorage(paletteStorage)
    , m_parent(parent)
{
}

void AddToPaletteFlow::open(ColorSource source, const QString &proposedName)
{
    if (m_sheet)
        m_sheet->close();
    m_sheet = new AddColorSheet(m_paletteStorage, proposedName, m_rememberedPalette, m_parent);
    connect(m_sheet, &AddColorSheet::addRequested, this,
            [this, source = std::move(source)](const QUuid &paletteId, const QString &name) {
                m_rememberedPalette = paletteId;
                if (const std::optional<ColorItem> color = source())
                    m_paletteStorage.addColor(color->renamed(name), paletteId);
            });
    m_sheet->open();
}

AddColorSheet *AddToPaletteFlow::sheet() const
{
    return m_sheet;
}
