#pragma once

#include <QPointer>
#include <QUuid>
#include <QWidget>

#include <optional>

#include "AddColorSheet.h"
class ColorDisplayView;
class HistoryStorage;
class PaletteStorage;
class PickedColorPreview;
class QLabel;
class StyledButton;
#include "TextPromptDialog.h"
class TintwrightService;

// The Picker tab: the picked color large and in four notations, the "Pick
// Color" button (each finished pick goes into the history) and the way to
// file the color into a palette, making the first palette on the spot.
// Reads the picked color from the service each time; keeps no copy.
class MenuBarPickerView : public QWidget
{
    Q_OBJECT

public:
    MenuBarPickerView(TintwrightService &tintwrightService, PaletteStorage &paletteStorage,
                      HistoryStorage &historyStorage, QWidget *parent = nullptr);

    // "Pick Color": starts a pick; when it ends with a color, that color
    // goes first in the history.
    void pickColor();
    // "Add to Palette".
    void showAddSheet();
    // "Create one".
    void showNewPalettePrompt();
    // The prompt's "Create" with the typed name.
    void createPalette(const QString &newPaletteName);

    AddColorSheet *addSheet() const { return m_addSheet; }
    TextPromptDialog *newPalettePrompt() const { return m_prompt; }
    QString colorName() const { return m_colorName; }
    std::optional<QUuid> preselectedPaletteId() const { return m_preselectedPaletteId; }

private:
    void refreshColor();
    void refreshPaletteRow();
    void fileColor(const QUuid &paletteId, const QString &name);

    TintwrightService &m_tintwrightService;
    PaletteStorage &m_paletteStorage;
    HistoryStorage &m_historyStorage;

    // View-local state, discarded with the view.
    QString m_colorName;
    std::optional<QUuid> m_preselectedPaletteId;
    QPointer<AddColorSheet> m_addSheet;
    QPointer<TextPromptDialog> m_prompt;

    PickedColorPreview *m_preview;
    StyledButton *m_pickButton;
    ColorDisplayView *m_colorDisplay = nullptr;
    QWidget *m_noPalettesRow;
    StyledButton *m_addToPaletteButton;
    class QVBoxLayout *m_layout;
};
