#include "ContrastReport.h"

#include "Apca.h"

ContrastReport ContrastReport::of(const RgbColor &foreground, const RgbColor &background)
{
    ContrastReport report;
    report.foreground = hexString(foreground.red, foreground.green, foreground.blue);
    report.background = hexString(background.red, background.green, background.blue);
    report.ratio = contrastRatio(report.foreground, report.background);
    report.apca = Apca::contrast(foreground, background);
    for (const auto &[ratio, level] : {std::pair{4.5, "AA"}, std::pair{7.0, "AAA"}}) {
        if (report.ratio >= ratio)
            continue;
        report.fixes.append({ratio, QString::fromLatin1(level),
                             nearestPassingColor(foreground, background, ratio),
                             nearestPassingColor(background, foreground, ratio)});
    }
    for (const ColorVision::Deficiency deficiency : ColorVision::all) {
        const RgbColor text = ColorVision::simulate(deficiency, foreground);
        const RgbColor back = ColorVision::simulate(deficiency, background);
        Seen seen{deficiency, hexString(text.red, text.green, text.blue),
                  hexString(back.red, back.green, back.blue), 0.0};
        seen.ratio = contrastRatio(seen.foreground, seen.background);
        report.seen.append(seen);
    }
    return report;
}
