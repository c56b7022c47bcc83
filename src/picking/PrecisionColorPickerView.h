#pragma once

#include "picking/LoupeLayers.h"
#include "picking/ScreenCapture.h"

#include <QPointer>
#include <QWidget>

class PrecisionColorPicker;

// The overlay covering one screen during a picking run: it shows that
// screen's frozen image and, while the pointer is on this screen, the
// magnified grid beside it and a crosshair around the pixel under it.
// Input goes to the picker; the view only draws and forwards.
class PrecisionColorPickerView : public QWidget
{
    Q_OBJECT

public:
    PrecisionColorPickerView(PrecisionColorPicker *picker, const ScreenCapture &capture);

    QRect screenFrame() const { return m_screenFrame; }
    QPointF cursorPosition() const { return m_cursorPosition; }
    double loupeSize() const { return m_loupeSize; }
    int gridSize() const { return m_gridSize; }

    // Moves the loupe to a global point and repaints what changed: the old
    // and the new loupe and crosshair, never the whole screen.
    void setCursorPosition(QPointF position);
    // Whether the loupe is drawn on this view, and where (view coordinates).
    bool showsLoupe() const;
    QRectF loupeRect() const;
    // The area the loupe and crosshair cover for a pointer at a global
    // point, in view coordinates (empty off this screen).
    QRegion loupeRegion(QPointF position) const;

    // Takes the keyboard for the run, retrying until the window is mapped.
    void takeKeyboard(int attemptsLeft = 20);
    void releaseKeyboardGrab();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    bool isOnThisScreen(QPointF position) const;
    QPointF crosshairCentre(QPointF position) const;
    void drawLoupe(QPainter &painter) const;
    void drawCrosshair(QPainter &painter) const;

    QPointer<PrecisionColorPicker> m_picker;
    QRect m_screenFrame;
    QPointF m_cursorPosition;
    double m_loupeSize = 140.0;
    int m_gridSize = 11;
    ScreenCapture m_capture;
    LoupeLayers m_layers;
    mutable QImage m_cells; // scratch for the grid's colors
};
