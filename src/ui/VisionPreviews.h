#pragma once

#include "model/ContrastReport.h"

#include <QWidget>

// The pair as seen with protanopia, deuteranopia, tritanopia and
// achromatopsia: four small samples side by side, each with its own WCAG
// ratio in its grade's color, so that a pair that fails for some shows it
// at a glance.
class VisionPreviews : public QWidget
{
    Q_OBJECT

public:
    explicit VisionPreviews(QWidget *parent = nullptr);

    void setReport(const ContrastReport &report);
};
