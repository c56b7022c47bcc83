#include "PaletteRecordCache.h"

#include <utility>

Encoded PaletteRecordCache::encode(const QList<Palette> &palettes)
{
    QHash<const ColorItem *, QList<Entry>> used;
    QList<QByteArray> records;
    records.reserve(palettes.size());
    for (const Palette &palette : palettes) {
        const ColorItem *key = palette.colors.constData();
        // Found in the stored list itself, through a const reference: a
        // copy of it would detach and leave `found` pointing into freed memory.
        const Entry *found = nullptr;
        const auto candidates = m_entries.constFind(key);
        if (candidates != m_entries.constEnd()) {
            for (const Entry &entry : std::as_const(*candidates)) {
                if (entry.colors.constData() == key && entry.colors.size() == palette.colors.size()
                    && entry.id == palette.id && entry.name == palette.name
                    && entry.dateCreated == palette.dateCreated) {
                    found = &entry;
                    break;
                }
            }
        }
        Entry entry;
        if (found) {
            entry = *found;
        } else {
            std::optional<QByteArray> record = RecordCoding::encodePaletteElement(palette);
            if (!record)
                return RecordCoding::encodePalettes(palettes); // reports the failure as it always did
            entry = Entry{palette.id, palette.name, palette.dateCreated, palette.colors, std::move(*record)};
        }
        records.append(entry.record);
        used[key].append(std::move(entry));
    }
    m_entries = std::move(used);
    return RecordCoding::joinPaletteElements(records);
}
