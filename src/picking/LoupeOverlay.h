#pragma once

#include "picking/FrozenScreen.h"

#include <QBackingStore>
#include <QWindow>

#include <memory>

// The window covering one screen during a loupe run: it shows that screen
// as it was when the run began and, while the pointer is on this screen,
// the magnified grid beside it and a crosshair around the pixel under it.
// It paints and flushes only what changes (on a screen that keeps the
// frozen picture itself, not even the picture at first), so that it shows
// at once on the largest screen. It draws and reports what the user did;
// what that means is not its concern.
class LoupeOverlay : public QWindow
{
    Q_OBJECT

public:
    explicit LoupeOverlay(std::unique_ptr<FrozenScreen> frozen);

    FrozenScreen &frozenScreen() const { return *m_frozen; }
    QPointF cursorPosition() const { return m_cursorPosition; }
    // Moves the loupe to a global point and repaints what changed: the old
    // and the new loupe and crosshair, never the whole screen.
    void setCursorPosition(QPointF position);

    // What the loupe shows besides the pixels: the grid's cells a side, the
    // area a pick takes (framed in the grid's middle) and the readout of
    // what a click would pick, which screen readers hear as the window's
    // description.
    void setLoupe(int gridSize, int areaSize, const QString &readout);
    QString readout() const { return m_readout; }

    // Takes the keyboard for the run, retrying until the window is mapped.
    void takeKeyboard(int attemptsLeft = 20);
    void releaseKeyboardGrab();

signals:
    void moved(QPointF globalPosition); // the pointer was seen there
    void nudged(QPoint delta);          // an arrow key: one device pixel
    // A click (after moved), Return or Enter; with Shift held, the run
    // goes on afterwards.
    void picked(bool keepGoing);
    void areaChosen(int areaSize); // keys 1, 3, 5, 9
    void zoomed(int steps);        // the wheel, + and -: positive for more cells
    void cancelled();              // Escape
    void firstFrameShown();        // painted and flushed for the first time

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    // In window coordinates, for the pointer at a global point.
    QRectF loupeRect(QPointF position) const;
    QPointF crosshairCentre(QPointF position) const;
    QRegion loupeRegion(QPointF position) const;
    // The screen's device pixels under a region of the window, with a
    // pixel to spare all round for rounding at fractional ratios.
    QRegion devicePixels(const QRegion &region) const;
    QRect gridPixels(QPointF position) const;

    void paint(const QRegion &region);
    void paintFrozen(QPaintDevice *device, const QRegion &region);
    void drawLoupe(QPainter &painter);
    void drawCrosshair(QPainter &painter) const;

    std::unique_ptr<FrozenScreen> m_frozen;
    QBackingStore m_backingStore;
    QPointF m_cursorPosition;
    QRegion m_pending; // to paint at the next update request
    bool m_updatePosted = false;
    bool m_painted = false; // since last shown
    QRegion m_paintedOver;  // since last shown
    QImage m_underGrid;     // shadow, background, border
    QImage m_overGrid;      // cell outlines
    QImage m_cells;         // scratch for the grid's colors
    int m_gridSize;
    int m_areaSize = 1;
    QString m_readout;
    double m_wheelAngle = 0; // eighths of a degree not yet turned into steps
};
