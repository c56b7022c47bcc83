#pragma once

class QLabel;
class QString;
class QWidget;

// The caption column shared by the Convert tab's rows: 12 px medium,
// secondary color, leading-aligned in a column 50 px wide.
QLabel *makeConvertRowLabel(const QString &text, QWidget *parent);
