#pragma once

#include "model/Palette.h"
#include "storage/SyncedRecords.h"

#include <QList>
#include <QObject>

#include <optional>

// The user's palettes in creation order, kept in palettes.json and
// rewritten after every change. Palettes are found by id alone; an unknown
// id changes nothing and writes nothing. Changes that other programs make to
// the file (a sync tool, a hand edit) show at once and are never
// overwritten: each change here is applied to what the file holds.
class PaletteStorage : public QObject
{
    Q_OBJECT

public:
    // Uses the program's folder in the user's data directory.
    explicit PaletteStorage(QObject *parent = nullptr);
    // Uses the given folder instead (tests, tools).
    explicit PaletteStorage(const QString &folder, QObject *parent = nullptr);

    const QList<Palette> &palettes() const { return m_palettes.records(); }
    std::optional<Palette> palette(const QUuid &id) const;
    QString filePath() const { return m_palettes.path(); }

    // The name is kept exactly as given: no trimming, no duplicate check.
    Palette createPalette(const QString &name);
    // A new palette that already holds these colors, appended and saved
    // in one step (an import is never half applied).
    Palette createPalette(const QString &name, const QList<ColorItem> &colors);
    void renamePalette(const QUuid &id, const QString &name);
    void deletePalette(const QUuid &id);
    // Appends the item unchanged (same id, name, components and date).
    void addColor(const ColorItem &item, const QUuid &toPaletteId);
    // Removes every color with this id from the palette.
    void removeColor(const QUuid &colorId, const QUuid &fromPaletteId);

    void loadPalettes();
    void savePalettes();

signals:
    void palettesChanged();

private:
    // Appends a whole palette, unless one with its id is there already.
    void appendPalette(const Palette &palette);

    SyncedRecords<Palette> m_palettes;
};
