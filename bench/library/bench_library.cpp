// Large libraries: 20 and 200 palettes of 100 colors, each with a full
// history. Prints, per size, the file size, the time to load both stores,
// the time of one add-color and one rename (each rewrites the whole file),
// the time of one history add, and the memory the loaded library takes.
#include "model/RecordCoding.h"
#include "storage/HistoryStorage.h"
#include "storage/PaletteStorage.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <malloc.h>
#include <memory>
#include <vector>

namespace {

constexpr int colorsPerPalette = 100;

ColorItem benchColor(qint64 n)
{
    ColorItem item =
        ColorItem::create(QStringLiteral("Color %1 of the library").arg(n), double(n % 256) / 255.0,
                          double((n / 256) % 256) / 255.0, 0.123456789 + double(n % 7) / 10.0, 1.0);
    return item;
}

QList<Palette> library(int paletteCount)
{
    QList<Palette> palettes;
    palettes.reserve(paletteCount);
    qint64 n = 0;
    for (int p = 0; p < paletteCount; ++p) {
        Palette palette = Palette::create(QStringLiteral("Palette %1").arg(p));
        palette.colors.reserve(colorsPerPalette);
        for (int c = 0; c < colorsPerPalette; ++c)
            palette.colors.append(benchColor(n++));
        palettes.append(palette);
    }
    return palettes;
}

// Resident set size, in KiB, from /proc.
qint64 residentKiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toLongLong();
    }
    return -1;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double elapsedMs(const QElapsedTimer &timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QList<int> paletteCounts{20, 200};
    if (argc > 1) {
        paletteCounts.clear();
        for (int i = 1; i < argc; ++i)
            paletteCounts.append(QByteArray(argv[i]).toInt());
    }

    std::printf("%-8s %9s %8s %8s %9s %9s %10s %8s %8s %8s %8s\n", "size", "palettes", "colors", "file MB",
                "load ms", "add ms", "rename ms", "hist ms", "RSS MB", "kept MB", "B/color");
    for (const int paletteCount : paletteCounts) {
        QTemporaryDir dir;
        {
            const QList<Palette> palettes = library(paletteCount);
            QFile file(dir.filePath(QStringLiteral("palettes.json")));
            file.open(QIODevice::WriteOnly);
            file.write(*RecordCoding::encodePalettes(palettes).data);
            HistoryStorage history(dir.path());
            for (int i = 0; i < HistoryStorage::maxColors; ++i)
                history.addColor(benchColor(i * 3));
        }
        const double fileMB = double(QFileInfo(dir.filePath(QStringLiteral("palettes.json"))).size()) / 1e6;

        const int repeats = paletteCount > 2000 ? 3 : paletteCount > 200 ? 5 : 15;
        std::vector<double> loads, adds, renames, historyAdds;
        qint64 rssDelta = 0, keptDelta = 0;
        for (int r = 0; r < repeats; ++r) {
            malloc_trim(0);
            const qint64 before = residentKiB();
            QElapsedTimer timer;
            timer.start();
            auto palettes = std::make_unique<PaletteStorage>(dir.path());
            auto history = std::make_unique<HistoryStorage>(dir.path());
            loads.push_back(elapsedMs(timer));
            rssDelta = residentKiB() - before;
            if (palettes->palettes().size() != paletteCount
                || history->colors().size() != HistoryStorage::maxColors) {
                std::fprintf(stderr, "the library did not load\n");
                return 1;
            }

            const QUuid target = palettes->palettes().at(paletteCount / 2).id;
            timer.restart();
            palettes->addColor(benchColor(r), target);
            adds.push_back(elapsedMs(timer));

            timer.restart();
            palettes->renamePalette(target, QStringLiteral("Renamed %1").arg(r));
            renames.push_back(elapsedMs(timer));

            timer.restart();
            history->addColor(benchColor(1000 + r));
            historyAdds.push_back(elapsedMs(timer));

            // Back to the same size for the next round.
            palettes->removeColor(palettes->palettes().at(paletteCount / 2).colors.last().id, target);

            // What the library keeps once scratch memory (the reader's, the
            // writer's) is handed back; after the timings, not to skew them.
            malloc_trim(0);
            keptDelta = residentKiB() - before;
        }
        const qint64 colorCount = qint64(paletteCount) * colorsPerPalette;
        std::printf("%-8s %9d %8lld %8.1f %9.2f %9.2f %10.2f %8.2f %8.1f %8.1f %8.0f\n",
                    qPrintable(QStringLiteral("%1x%2").arg(paletteCount).arg(colorsPerPalette)), paletteCount,
                    colorCount, fileMB, median(loads), median(adds), median(renames), median(historyAdds),
                    double(rssDelta) / 1024.0, double(keptDelta) / 1024.0,
                    double(keptDelta) * 1024.0 / double(colorCount));
        std::fflush(stdout);
    }
    return 0;
}
