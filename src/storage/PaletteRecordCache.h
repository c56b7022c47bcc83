#pragma once

#include "model/Palette.h"
#include "model/RecordCoding.h"

#include <QHash>
#include <QList>

// Keeps each palette's encoded record between saves, so that a change to one
// palette re-encodes that palette alone; the file's bytes are the same as a
// full encoding. A record is reused only for the very same color list (the
// entry holds a reference to it, so the shared, immutable list cannot be
// freed and its address reused) under the same id, name and date.
class PaletteRecordCache
{
public:
    Encoded encode(const QList<Palette> &palettes);

private:
    struct Entry
    {
        QUuid id;
        QString name;
        QDateTime dateCreated;
        QList<ColorItem> colors; // shared with the palette: no copy
        QByteArray record;
    };

    QHash<const ColorItem *, QList<Entry>> m_entries;
};
