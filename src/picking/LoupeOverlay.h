#pragma once

#include "picking/ScreenCapture.h"

#include <QWidget>

// The window covering one screen during a loupe run: it shows that
// screen's frozen image and, while the pointer is on this screen, the
// magnified grid beside it and a crosshair around the pixel under it. It
// draws and reports what the user did; what that means is not its concern.
class LoupeOverlay : public QWidget
{
    Q_OBJECT

public:
    explicit LoupeOverlay(const ScreenCapture &capture);

    QPointF cursorPosition() const { return m_cursorPosition; }
    // Moves the loupe to a global point and repaints what changed: the old
    // and the new loupe and crosshair, never the whole screen.
    void setCursorPosition(QPointF position);

    // Takes the keyboard for the run, retrying until the window is mapped.
    void takeKeyboard(int attemptsLeft = 20);
    void releaseKeyboardGrab();

signals:
    void moved(QPointF globalPosition); // the pointer was seen there
    void nudged(QPoint delta);          // an arrow key: one point
    void picked();                      // a click (after moved), Return or Enter
    void cancelled();                   // Escape

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void enterEvent(QEnterEvent *event) override;

private:
    // In view coordinates, for the pointer at a global point.
    QRectF loupeRect(QPointF position) const;
    QPointF crosshairCentre(QPointF position) const;
    QRegion loupeRegion(QPointF position) const;
    void drawLoupe(QPainter &painter) const;
    void drawCrosshair(QPainter &painter) const;

    ScreenCapture m_capture;
    QPointF m_cursorPosition;
    QImage m_underGrid;     // shadow, background, border
    QImage m_overGrid;      // cell outlines, centre frame
    mutable QImage m_cells; // scratch for the grid's colors
};
