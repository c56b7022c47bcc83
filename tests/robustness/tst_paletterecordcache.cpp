// The palette store keeps each palette's record between saves; whatever
// sequence of changes, the bytes it writes are those of a full encoding.
#include "model/RecordCoding.h"
#include "storage/PaletteRecordCache.h"

#include <QRandomGenerator>
#include <QTest>

#include <limits>

class TestPaletteRecordCache : public QObject
{
    Q_OBJECT

private slots:
    void sameBytesAsAFullEncodingAfterEveryChange();
    void failsLikeAFullEncoding();
};

void TestPaletteRecordCache::sameBytesAsAFullEncodingAfterEveryChange()
{
    const quint32 seed = QRandomGenerator::system()->generate();
    qInfo("random seed %u", seed);
    QRandomGenerator random(seed);
    const auto color = [&random](int n) {
        return ColorItem::create(QStringLiteral("c%1").arg(n), random.generateDouble(), random.generateDouble(),
                                 random.generateDouble());
    };

    PaletteRecordCache cache;
    QList<Palette> palettes;
    for (int step = 0; step < 3000; ++step) {
        const qsizetype count = palettes.size();
        const qsizetype at = count ? qsizetype(random.bounded(quint32(count))) : 0;
        switch (count ? random.bounded(9u) : 0u) {
        case 0: palettes.append(Palette::create(QStringLiteral("p%1").arg(step))); break;
        case 1: palettes[at].colors.append(color(step)); break;
        case 2: palettes[at].name = QStringLiteral("renamed %1").arg(step); break;
        case 3: palettes.removeAt(at); break;
        case 4: // a color changed in place
            if (!palettes[at].colors.isEmpty())
                palettes[at].colors.first().name = QStringLiteral("edited %1").arg(step);
            break;
        case 5: // same size, other content
            if (!palettes[at].colors.isEmpty())
                palettes[at].colors.last() = color(step);
            break;
        case 6: palettes.move(at, qsizetype(random.bounded(quint32(count)))); break;
        case 7: palettes.append(palettes.at(at)); break; // a second palette sharing the colors
        default: palettes[at].colors.clear(); break;
        }
        const Encoded cached = cache.encode(palettes);
        const Encoded full = RecordCoding::encodePalettes(palettes);
        QVERIFY(cached.data && full.data);
        QVERIFY2(*cached.data == *full.data, qPrintable(QStringLiteral("after step %1").arg(step)));
    }
}

void TestPaletteRecordCache::failsLikeAFullEncoding()
{
    PaletteRecordCache cache;
    QList<Palette> palettes{Palette::create(QStringLiteral("a")), Palette::create(QStringLiteral("b"))};
    palettes[1].colors.append(ColorItem::create(QStringLiteral("x"), 0.5, 0.5, 0.5));
    QVERIFY(cache.encode(palettes).data);
    palettes[1].colors[0].red = std::numeric_limits<double>::quiet_NaN();
    const Encoded cached = cache.encode(palettes);
    const Encoded full = RecordCoding::encodePalettes(palettes);
    QVERIFY(!cached.data && !full.data);
    QCOMPARE(cached.error, full.error);
    palettes[1].colors[0].red = 0.25;
    QCOMPARE(cache.encode(palettes).data, RecordCoding::encodePalettes(palettes).data);
}

QTEST_APPLESS_MAIN(TestPaletteRecordCache)
#include "tst_paletterecordcache.moc"
