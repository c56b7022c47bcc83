#pragma once

#include "model/ColorItem.h"

#include <QAbstractButton>

class HistoryStorage;
class QMenu;

// One line of the history: the color's hex code across the whole row.
// A click (or Space/Return) copies the hex code; the context menu offers
// "Copy Hex", "Add to Palette" and "Remove".
class HistoryColorRow : public QAbstractButton
{
    Q_OBJECT

public:
    static constexpr int rowHeight = 32; // level with a swatch

    HistoryColorRow(const ColorItem &color, HistoryStorage &historyStorage, QWidget *parent = nullptr);

    const ColorItem &color() const { return m_color; }
    QString hex() const { return text(); }

    void copyHex();
    void remove();
    // The context menu, built fresh; the caller owns it.
    QMenu *createContextMenu(QWidget *parent);

    QSize sizeHint() const override;

signals:
    void addToPaletteRequested();

protected:
    void paintEvent(QPaintEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    ColorItem m_color;
    HistoryStorage &m_historyStorage;
    bool m_hovered = false;
    bool m_focusRing = false;
};
