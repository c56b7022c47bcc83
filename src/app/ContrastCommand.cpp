#include "ContrastCommand.h"

#include "model/Apca.h"
#include "model/ContrastReport.h"
#include "model/Notation.h"

#include <cstdio>

namespace {

QString quoted(const QString &text)
{
    // Color texts and the program's own labels: nothing to escape but these.
    QString escaped = text;
    escaped.replace(u'\\', QStringLiteral("\\\\")).replace(u'"', QStringLiteral("\\\""));
    return u'"' + escaped + u'"';
}

QString passing(const std::optional<PassingColor> &color)
{
    if (!color)
        return QStringLiteral("null");
    return QStringLiteral("{ \"hex\": %1, \"ratio\": %2 }")
        .arg(quoted(color->hex), contrastRatioText(color->ratio));
}

} // namespace

namespace ContrastCommand {

QByteArray report(const ContrastReport &report)
{
    QStringList lines{
        QStringLiteral("{"),
        QStringLiteral("  \"foreground\": %1,").arg(quoted(report.foreground)),
        QStringLiteral("  \"background\": %1,").arg(quoted(report.background)),
        QStringLiteral("  \"ratio\": %1,").arg(contrastRatioText(report.ratio)),
        QStringLiteral("  \"wcag\": %1,").arg(quoted(wcagLabel(wcagLevel(report.ratio)))),
        QStringLiteral("  \"apca\": %1,").arg(formatFixed(report.apca, 1)),
        QStringLiteral("  \"apcaUse\": %1,").arg(quoted(Apca::use(report.apca))),
        QStringLiteral("  \"suggestions\": {"),
    };
    for (const char *level : {"AA", "AAA"}) {
        QString fixes = QStringLiteral("null");
        for (const ContrastReport::Fixes &f : report.fixes) {
            if (f.level == QLatin1String(level) && (f.foreground || f.background))
                fixes = QStringLiteral("{ \"foreground\": %1, \"background\": %2 }")
                            .arg(passing(f.foreground), passing(f.background));
        }
        lines.append(
            QStringLiteral("    \"%1\": %2%3")
                .arg(QLatin1String(level), fixes, QLatin1String(level == QByteArrayView("AA") ? "," : "")));
    }
    lines.append(QStringLiteral("  },"));
    lines.append(QStringLiteral("  \"simulated\": {"));
    for (const ContrastReport::Seen &seen : report.seen) {
        lines.append(QStringLiteral("    %1: { \"foreground\": %2, \"background\": %3, \"ratio\": %4 }%5")
                         .arg(quoted(ColorVision::name(seen.deficiency).toLower()), quoted(seen.foreground),
                              quoted(seen.background), contrastRatioText(seen.ratio),
                              QLatin1String(&seen == &report.seen.last() ? "" : ",")));
    }
    lines.append(QStringLiteral("  }"));
    lines.append(QStringLiteral("}\n"));
    return lines.join(u'\n').toUtf8();
}

int run(const QString &foreground, const QString &background, const QString &required)
{
    const std::optional<RgbColor> text = Notations::parseText(foreground);
    const std::optional<RgbColor> back = Notations::parseText(background);
    for (const auto &[color, given, role] :
         {std::tuple{text, foreground, "foreground"}, std::tuple{back, background, "background"}}) {
        if (!color) {
            std::fprintf(stderr, "tintwright: cannot read the %s color '%s'.\n", role, qPrintable(given));
            return 2;
        }
    }
    const ContrastReport result = ContrastReport::of(*text, *back);
    std::fputs(report(result).constData(), stdout);
    const double least = required == u"AAA" ? 7.0
        : required == u"AA"                 ? 4.5
        : required == u"AA-large"           ? 3.0
                                            : 0.0;
    return result.ratio >= least ? 0 : 1;
}

} // namespace ContrastCommand
