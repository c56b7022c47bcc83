#include "SaveSteps.h"

#include "storage/HistoryStorage.h"
#include "storage/PaletteStorage.h"

#include <cmath>

namespace SaveSteps {

namespace {

constexpr int baselinePalettes = 30;
constexpr int colorsPerPalette = 40;

QDateTime stepTime(int step)
{
    return QDateTime(QDate(2025, 1, 1), QTime(0, 0), Qt::UTC).addSecs(step);
}

// What a palette step does, decided from the step number and the current
// palette count only, so both sides decide alike.
enum class PaletteChange { Create, AddToLast, AddToSome, Rename, DeleteLast, RemoveFirstColor };

PaletteChange paletteChange(int step, qsizetype count)
{
    const int j = step / 2;
    switch (j % 5) {
    case 0:
        return PaletteChange::Create;
    case 1:
        return PaletteChange::AddToLast;
    case 2:
        return PaletteChange::AddToSome;
    case 3:
        return PaletteChange::Rename;
    default:
        return count > baselinePalettes + 5 ? PaletteChange::DeleteLast : PaletteChange::RemoveFirstColor;
    }
}

qsizetype someIndex(int step, qsizetype count)
{
    return qsizetype((step / 2) * 7) % count;
}

bool removesFromHistory(int step, qsizetype size)
{
    return step % 6 == 5 && size > 3;
}

} // namespace

ColorItem stepColor(int step)
{
    ColorItem item;
    item.id = QUuid(uint(step), 0x5a7e, 0x4c0d, 0x80, 1, 2, 3, 4, 5, 6, 7);
    item.name = QStringLiteral("color %1").arg(step);
    item.red = (step % 97) / 96.0;
    item.green = (step % 89) / 88.0;
    item.blue = 1.0 / 3.0;
    item.alpha = 1.0;
    item.dateAdded = stepTime(step);
    return item;
}

Library baseline()
{
    Library library;
    for (int p = 0; p < baselinePalettes; ++p) {
        Palette palette;
        palette.id = QUuid(uint(p), 0xba5e, 0x4000, 0x80, 0, 0, 0, 0, 0, 0, 1);
        palette.name = QStringLiteral("Baseline %1 \u00e9\U0001F3A8").arg(p);
        palette.dateCreated = stepTime(-1000 - p);
        for (int c = 0; c < colorsPerPalette; ++c) {
            ColorItem item = stepColor(-(p * colorsPerPalette + c + 1));
            item.red = std::fmod(0.0137 * (p + 1) * (c + 3), 1.0);
            palette.colors.append(item);
        }
        library.palettes.append(palette);
    }
    return library;
}

void apply(int step, Library &library)
{
    if (step % 2 == 1) {
        QList<ColorItem> &history = library.history;
        if (removesFromHistory(step, history.size())) {
            const QUuid id = history.at(2).id;
            history.removeIf([&id](const ColorItem &entry) { return entry.id == id; });
            return;
        }
        const ColorItem item = stepColor(step);
        history.removeIf([&item](const ColorItem &entry) {
            return std::fabs(entry.red - item.red) < 0.01 && std::fabs(entry.green - item.green) < 0.01
                && std::fabs(entry.blue - item.blue) < 0.01;
        });
        history.prepend(item);
        if (history.size() > 20)
            history.resize(20);
        return;
    }
    QList<Palette> &palettes = library.palettes;
    switch (paletteChange(step, palettes.size())) {
    case PaletteChange::Create: {
        Palette palette;
        palette.name = QStringLiteral("work %1").arg(step);
        palettes.append(palette);
        break;
    }
    case PaletteChange::AddToLast:
        palettes.last().colors.append(stepColor(step));
        break;
    case PaletteChange::AddToSome:
        palettes[someIndex(step, palettes.size())].colors.append(stepColor(step));
        break;
    case PaletteChange::Rename:
        palettes[someIndex(step, palettes.size())].name = QStringLiteral("renamed %1").arg(step);
        break;
    case PaletteChange::DeleteLast:
        palettes.removeLast();
        break;
    case PaletteChange::RemoveFirstColor: {
        QList<ColorItem> &colors = palettes[someIndex(step, palettes.size())].colors;
        if (!colors.isEmpty()) {
            const QUuid id = colors.first().id;
            colors.removeIf([&id](const ColorItem &item) { return item.id == id; });
        }
        break;
    }
    }
}

void apply(int step, PaletteStorage &paletteStorage, HistoryStorage &historyStorage)
{
    if (step % 2 == 1) {
        const QList<ColorItem> &history = historyStorage.colors();
        if (removesFromHistory(step, history.size()))
            historyStorage.removeColor(history.at(2).id);
        else
            historyStorage.addColor(stepColor(step));
        return;
    }
    const QList<Palette> &palettes = paletteStorage.palettes();
    const QUuid someId = palettes.at(someIndex(step, palettes.size())).id;
    switch (paletteChange(step, palettes.size())) {
    case PaletteChange::Create:
        paletteStorage.createPalette(QStringLiteral("work %1").arg(step));
        break;
    case PaletteChange::AddToLast:
        paletteStorage.addColor(stepColor(step), palettes.last().id);
        break;
    case PaletteChange::AddToSome:
        paletteStorage.addColor(stepColor(step), someId);
        break;
    case PaletteChange::Rename:
        paletteStorage.renamePalette(someId, QStringLiteral("renamed %1").arg(step));
        break;
    case PaletteChange::DeleteLast:
        paletteStorage.deletePalette(palettes.last().id);
        break;
    case PaletteChange::RemoveFirstColor: {
        const QList<ColorItem> &colors = palettes.at(someIndex(step, palettes.size())).colors;
        if (!colors.isEmpty())
            paletteStorage.removeColor(colors.first().id, someId);
        else
            paletteStorage.savePalettes(); // an unchanged rewrite is a save too
        break;
    }
    }
}

bool samePalettes(const QList<Palette> &a, const QList<Palette> &b)
{
    if (a.size() != b.size())
        return false;
    for (qsizetype i = 0; i < a.size(); ++i) {
        if (a.at(i).name != b.at(i).name || a.at(i).colors != b.at(i).colors)
            return false;
    }
    return true;
}

} // namespace SaveSteps
