#pragma once

#include "model/ColorItem.h"

#include <QList>
#include <QPointer>
#include <QUuid>
#include <QWidget>

#include <optional>

#include "AddColorSheet.h"
class HistoryColorRow;
class HistoryStorage;
class PaletteStorage;
class QScrollArea;
class StyledButton;
class TintwrightService;

// The History tab: "Recent Colors" with "Clear", then either the empty
// state or the stored colors newest first, a swatch column beside a column
// of hex rows kept level line by line. Everything shown is rebuilt from the
// store when it changes.
class HistoryView : public QWidget
{
    Q_OBJECT

public:
    HistoryView(HistoryStorage &historyStorage, TintwrightService &tintwrightService,
                PaletteStorage &paletteStorage, QWidget *parent = nullptr);

    QList<HistoryColorRow *> rows() const;
    bool showsEmptyState() const;
    StyledButton *clearButton() const { return m_clearButton; }

    // A row's "Add to Palette".
    void showAddSheet(const ColorItem &color);
    AddColorSheet *addSheet() const { return m_addSheet; }
    std::optional<ColorItem> colorToAdd() const { return m_colorToAdd; }
    QString colorName() const { return m_colorName; }

private:
    void rebuild();
    QWidget *buildEmptyState();
    QWidget *buildList();
    void fileColor(const QUuid &paletteId, const QString &name);

    HistoryStorage &m_historyStorage;
    TintwrightService &m_tintwrightService;
    PaletteStorage &m_paletteStorage;

    // View-local state, discarded with the view.
    std::optional<ColorItem> m_colorToAdd;
    QString m_colorName;
    std::optional<QUuid> m_selectedPaletteId;
    QPointer<AddColorSheet> m_addSheet;

    StyledButton *m_clearButton;
    QWidget *m_body = nullptr;
    class QVBoxLayout *m_layout;
};
