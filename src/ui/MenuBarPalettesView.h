#pragma once

#include <QPointer>
#include <QUuid>
#include <QWidget>

#include <optional>

class PaletteStorage;
#include <QDialog>

class QScrollArea;
class TintwrightService;

// The Palettes tab: the list of palettes, or one palette opened in detail.
// Everything shown is rebuilt from the store whenever it changes; the view
// itself keeps only which palette is open. When that palette disappears,
// from here or anywhere else, the list shows again.
class MenuBarPalettesView : public QWidget
{
    Q_OBJECT

public:
    MenuBarPalettesView(PaletteStorage &paletteStorage, TintwrightService &tintwrightService,
                        QWidget *parent = nullptr);

    // The open palette's id; none while the list shows.
    std::optional<QUuid> selectedPaletteId() const;
    void openPalette(const QUuid &id);
    void showList();
    // The "New Palette" prompt, as "plus" and "Create Palette" open it.
    void showNewPalettePrompt();
    QDialog *newPalettePrompt() const { return m_prompt; }

private:
    void rebuild();
    QWidget *buildList();
    QWidget *buildDetail(const struct Palette &palette);
    void restoreFocus(const QString &key, int index);

    PaletteStorage &m_paletteStorage;
    TintwrightService &m_tintwrightService;
    std::optional<QUuid> m_selectedPaletteId;
    QWidget *m_body = nullptr;
    QString m_bodyKey;         // "list" or the open palette's key
    QString m_pendingFocusKey; // where focus goes after an open or a back
    QPointer<QDialog> m_prompt;
};
