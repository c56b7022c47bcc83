#pragma once

#include <QPointer>
#include <QWidget>

class AddToPaletteFlow;
class ColorDisplayView;
class PaletteStorage;
class QLabel;
class QPushButton;
class TextPromptDialog;
class TintwrightService;

// The Picker tab: the picked color large and in four notations, the "Pick
// Color" button, and the way to file the color into a palette, making the
// first palette on the spot. Reads the picked color from the service each
// time; keeps no copy. (That every finished pick goes into the history is
// the application's business, not this tab's.)
class PickerTab : public QWidget
{
    Q_OBJECT

public:
    PickerTab(TintwrightService &tintwrightService, PaletteStorage &paletteStorage,
              QWidget *parent = nullptr);

    // "Pick Color".
    void pickColor();
    // "Add to Palette".
    void showAddSheet();
    // "Create one".
    void showNewPalettePrompt();
    // The prompt's "Create" with the typed name.
    void createPalette(const QString &name);

    AddToPaletteFlow &addToPalette() const { return *m_addToPalette; }
    TextPromptDialog *newPalettePrompt() const;

private:
    void showPickedColor();
    void refresh();

    TintwrightService &m_tintwrightService;
    PaletteStorage &m_paletteStorage;
    AddToPaletteFlow *m_addToPalette;
    QPointer<TextPromptDialog> m_prompt;

    QString m_unavailableReason; // of the last pick, while nothing could show
    QWidget *m_preview;
    QPushButton *m_pickButton;
    QLabel *m_pickUnavailable;
    ColorDisplayView *m_colorDisplay;
    QWidget *m_noPalettesRow;
    QPushButton *m_addToPaletteButton;
};
