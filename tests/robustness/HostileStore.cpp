#include "HostileStore.h"

#include "model/RecordCoding.h"
#include "storage/HistoryStorage.h"
#include "storage/PaletteStorage.h"

struct HostileStore::Stores
{
    std::unique_ptr<HistoryStorage> history;
    std::unique_ptr<PaletteStorage> palettes;
};

namespace {

ColorItem sampleColor(int n)
{
    ColorItem item;
    item.id = QUuid(uint(n), 0x1f2e, 0x4d3c, 0x8b, 0xa9, 1, 2, 3, 4, 5, 6);
    item.name = QStringLiteral("Sample %1").arg(n);
    item.red = 0.25;
    item.green = 0.5;
    item.blue = 0.75;
    item.alpha = 1.0;
    item.dateAdded = QDateTime(QDate(2025, 3, 14), QTime(9, 26, 53), Qt::UTC);
    return item;
}

} // namespace

QByteArray HostileStore::validFile(Kind kind, int count)
{
    if (kind == Kind::History) {
        QList<ColorItem> colors;
        for (int n = 0; n < count; ++n)
            colors.append(sampleColor(n));
        return *RecordCoding::encodeColors(colors).data;
    }
    QList<Palette> palettes;
    for (int n = 0; n < count; ++n) {
        Palette palette;
        palette.id = QUuid(uint(n), 0x2f2e, 0x4d3c, 0x8b, 0xa9, 1, 2, 3, 4, 5, 6);
        palette.name = QStringLiteral("Palette %1").arg(n);
        palette.colors = {sampleColor(n)};
        palette.dateCreated = QDateTime(QDate(2025, 3, 14), QTime(9, 0), Qt::UTC);
        palettes.append(palette);
    }
    return *RecordCoding::encodePalettes(palettes).data;
}

HostileStore::HostileStore(Kind kind, const QString &folder)
    : m_kind(kind)
    , m_stores(std::make_unique<Stores>())
{
    if (kind == Kind::History)
        m_stores->history = std::make_unique<HistoryStorage>(folder);
    else
        m_stores->palettes = std::make_unique<PaletteStorage>(folder);
}

HostileStore::~HostileStore() = default;

qsizetype HostileStore::count() const
{
    return m_kind == Kind::History ? m_stores->history->colors().size()
                                   : m_stores->palettes->palettes().size();
}

void HostileStore::addOne()
{
    if (m_kind == Kind::History)
        // Far enough apart that none replaces another as a near duplicate.
        m_stores->history->addColor(
            ColorItem::create(QStringLiteral("added, with a name long enough to fill a page soon"),
                              (m_added++ % 50) * 0.02, 0.1, 0.1));
    else
        m_stores->palettes->createPalette(QStringLiteral("added"));
}
