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
    QStringList levels;
    for (const char *level : {"AA", "AAA"}) {
        QString fixes = QStringLiteral("null");
        for (const ContrastReport::Fixes &f : report.fixes) {
            if (f.level == QLatin1String(level) && (f.foreground || f.background))
                fixes = QStringLiteral("{ \"foreground\": %1, \"background\": %2 }")
                            .arg(passing(f.foreground), passing(f.background));
        }
        levels.append(QStringLiteral("    \"%1\": %2").arg(QLatin1String(level), fixes));
    }
    QStringList seen;
    for (const ContrastReport::Seen &one : report.seen) {
        seen.append(QStringLiteral("    %1: { \"foreground\": %2, \"background\": %3, \"ratio\": %4 }")
                        .arg(quoted(ColorVision::name(one.deficiency).toLower()), quoted(one.foreground),
                             quoted(one.background), contrastRatioText(one.ratio)));
    }
    lines << levels.join(QStringLiteral(",\n")) << QStringLiteral("  },")
          << QStringLiteral("  \"simulated\": {") << seen.join(QStringLiteral(",\n")) << QStringLiteral("  }")
          << QStringLiteral("}\n");
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
    // Graded as the tab grades it; the levels run from AAA down to Fail.
    const WcagLevel least = required == u"AAA" ? WcagLevel::AAA
        : required == u"AA"                    ? WcagLevel::AA
        : required == u"AA-large"              ? WcagLevel::AALarge
                                               : WcagLevel::Fail;
    return int(wcagLevel(result.ratio)) <= int(least) ? 0 : 1;
}

} // namespace ContrastCommand
