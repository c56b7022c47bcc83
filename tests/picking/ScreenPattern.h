#pragma once

#include "picking/SampledColor.h"

#include <QRgb>
#include <QWidget>

// A screen filled with colors that name their own device pixel, so a
// sampled color tells exactly which pixel was read. Never black.
QRgb patternPixel(int x, int y);
SampledColor patternColor(int x, int y);

// A frameless window over the whole primary screen painting the pattern
// one device pixel per pattern pixel.
class ScreenPatternWindow : public QWidget
{
public:
    ScreenPatternWindow();
    // Shows the window and waits until the screen really shows it.
    bool showAndSettle();
    // Waits until the whole pattern is on screen again (after an overlay
    // covered it), so that the next capture reads the pattern.
    bool waitUntilOnScreen();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QImage m_pattern;
};

// Runs xdotool with the given arguments; true when it succeeded.
bool xdotool(const QStringList &arguments);
