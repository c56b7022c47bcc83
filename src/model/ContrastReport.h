#pragma once

#include "model/ColorVision.h"
#include "model/Contrast.h"
#include "model/NearestPassingColor.h"

#include <QList>
#include <QString>

#include <optional>

// Everything known about a text color on a background: the WCAG ratio and
// grade, the APCA contrast and its use, the nearest colors that pass AA and
// AAA, and the pair as seen with each color-vision deficiency. What the
// Contrast tab shows below its ratio and what `--contrast` prints.
struct ContrastReport
{
    struct Fixes // for one level
    {
        double ratio;  // 4.5 or 7.0
        QString level; // "AA", "AAA"
        std::optional<PassingColor> foreground;
        std::optional<PassingColor> background;
    };
    struct Seen
    {
        ColorVision::Deficiency deficiency;
        QString foreground; // "#RRGGBB"
        QString background;
        double ratio;
    };

    QString foreground; // "#RRGGBB"
    QString background;
    double ratio = 1.0;
    double apca = 0.0; // Lc
    // The levels the pair does not reach yet, AA before AAA.
    QList<Fixes> fixes;
    QList<Seen> seen; // in ColorVision::all's order

    static ContrastReport of(const RgbColor &foreground, const RgbColor &background);
};
