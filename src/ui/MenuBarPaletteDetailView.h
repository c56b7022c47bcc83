#pragma once

#include "model/Palette.h"

#include <QWidget>

class PaletteColorRow;
class PaletteStorage;
class StyledButton;

// An open palette: "Back", its name, and its colors (or a note that it has
// none). Built for one state of the palette; the tab rebuilds it when the
// store changes.
class MenuBarPaletteDetailView : public QWidget
{
    Q_OBJECT

public:
    MenuBarPaletteDetailView(const Palette &palette, PaletteStorage &paletteStorage, QWidget *parent = nullptr);

    QUuid paletteId() const { return m_paletteId; }
    StyledButton *backButton() const { return m_backButton; }
    // In the palette's order; empty when it has no colors.
    QList<PaletteColorRow *> colorRows() const { return m_colorRows; }

signals:
    void backRequested();

private:
    QUuid m_paletteId;
    StyledButton *m_backButton;
    QList<PaletteColorRow *> m_colorRows;
};
