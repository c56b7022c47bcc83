#pragma once

#include <QColor>
#include <QString>

// WCAG 2 relative luminance, contrast ratio and grading.

double relativeLuminance(double red, double green, double blue);

// The ratio of a text color (hex1) on a background (hex2), both hex texts as
// typed. An invalid text falls back to its own field's default: black for
// the text color, white for the background.
double contrastRatio(const QString &hex1, const QString &hex2);

// Strongest first: a level reaches every level after it.
enum class WcagLevel { AAA, AA, AALarge, Fail };

WcagLevel wcagLevel(double ratio);
QString wcagLabel(WcagLevel level);
QColor wcagColor(WcagLevel level);

// "%.2f", as the ratio is shown.
QString contrastRatioText(double ratio);
