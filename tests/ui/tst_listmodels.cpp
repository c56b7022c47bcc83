// The lists read their store and follow it row by row, and what the user
// does to a row reaches the store through its model, by that row's id.
#include "support/AppFixture.h"

#include "ui/ColorListModel.h"
#include "ui/HistoryTab.h"
#include "ui/PaletteDetail.h"
#include "ui/PaletteListModel.h"
#include "ui/PalettesTab.h"
#include "ui/StyledListView.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>

namespace {

ColorItem color(double r, double g, double b)
{
    return ColorItem::create(QStringLiteral("c"), r, g, b);
}

QList<QUuid> rowIds(const QAbstractItemModel &model)
{
    QList<QUuid> ids;
    for (int row = 0; row < model.rowCount(); ++row)
        ids.append(model.index(row, 0).data(StoreListModel::IdRole).toUuid());
    return ids;
}

// Whether a row shows the color somewhere, exactly: its swatch.
bool rowShows(QAbstractItemView *view, const QModelIndex &row, QRgb color)
{
    const QImage shot =
        view->viewport()->grab(view->visualRect(row)).toImage().convertToFormat(QImage::Format_RGB32);
    const auto *pixels = reinterpret_cast<const QRgb *>(shot.constBits());
    return std::count(pixels, pixels + shot.width() * shot.height(), color) > 0;
}

void checked(QAbstractItemModel *model)
{
    new QAbstractItemModelTester(model, QAbstractItemModelTester::FailureReportingMode::QtTest, model);
}

} // namespace

using Change = std::function<void(HistoryStorage &)>;
Q_DECLARE_METATYPE(Change)

class TestListModels : public QObject
{
    Q_OBJECT

private slots:
    void historyRowsFollowTheStore_data()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<int>("current"); // row of the kept current row (was 1), -1 when it went
        const auto remove = [](int row) {
            return Change([row](HistoryStorage &h) { h.removeColor(QUuid(h.colors()[row].id)); });
        };
        QTest::newRow("add") << Change([](HistoryStorage &h) { h.addColor(color(0.9, 0.9, 0.1)); }) << 2;
        QTest::newRow("remove first") << remove(0) << 0;
        QTest::newRow("remove current") << remove(1) << -1;
        QTest::newRow("clear") << Change([](HistoryStorage &h) { h.clear(); }) << -1;
    }
    void historyRowsFollowTheStore()
    {
        QFETCH(Change, change);
        QFETCH(int, current);
        QTemporaryDir folder;
        HistoryStorage history(folder.path());
        for (double r : {0.1, 0.4, 0.7})
            history.addColor(color(r, 0.2, 0.3));
        ColorListModel model(history);
        checked(&model);
        const QPersistentModelIndex kept = model.index(1, 0);
        const QUuid keptId = kept.data(StoreListModel::IdRole).toUuid();
        QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
        change(history);
        QList<QUuid> ids;
        for (const ColorItem &item : history.colors())
            ids.append(item.id);
        QCOMPARE(rowIds(model), ids);
        QCOMPARE(resets.size(), 0);
        // A view's current row goes with its record.
        QCOMPARE(kept.isValid() ? kept.row() : -1, current);
        QVERIFY(!kept.isValid() || kept.data(StoreListModel::IdRole).toUuid() == keptId);
    }

    void paletteRowsAreTheStore()
    {
        QTemporaryDir folder;
        PaletteStorage storage(folder.path());
        const Palette brand = storage.createPalette(QStringLiteral("Brand"));
        const Palette other = storage.createPalette(QStringLiteral("Other"));
        PaletteListModel palettes(storage);
        ColorListModel colors(storage, brand.id);
        checked(&palettes);
        checked(&colors);
        QVERIFY(palettes.setData(palettes.index(0, 0), QStringLiteral(" Web ")));
        const ColorItem red = color(1, 0, 0), sky = color(0.2, 0.4, 0.8);
        // The same color twice, under a second name: each row shows its own.
        for (const ColorItem &item : {red, sky, red.renamed(QStringLiteral("Again"))})
            storage.addColor(item, brand.id);
        QCOMPARE(colors.index(2, 0).data().toString(), QStringLiteral("Again"));
        const QModelIndex row = palettes.index(0, 0);
        QCOMPARE(storage.palette(brand.id)->name, QStringLiteral(" Web "));
        QCOMPARE(row.data().toString(), QStringLiteral(" Web "));
        QCOMPARE(row.data(StoreListModel::CountRole).toString(), QStringLiteral("3"));
        QCOMPARE(row.data(Qt::AccessibleDescriptionRole).toString(), QStringLiteral("3 colors"));
        QCOMPARE(row.data(StoreListModel::StripRole).value<QList<QColor>>().value(1), QColor(51, 102, 204));
        QCOMPARE(colors.index(1, 0).data(StoreListModel::HexRole).toString(), QStringLiteral("#3366CC"));
        // A color row removed takes every entry with its id; a palette row
        // removed deletes that palette alone.
        QVERIFY(colors.removeRow(2));
        QCOMPARE(rowIds(colors), QList<QUuid>{sky.id});
        QVERIFY(palettes.removeRow(1));
        QCOMPARE(rowIds(palettes), QList<QUuid>{brand.id});
        QVERIFY(!storage.palette(other.id));
        storage.deletePalette(brand.id); // an open palette deleted elsewhere empties
        QCOMPARE(colors.rowCount(), 0);
    }

    // The target is always the second row, #3366CC; the first row differs.
    void rowActionsOfEachTab_data()
    {
        QTest::addColumn<int>("list");    // history, palettes, a palette's colors
        QTest::addColumn<QString>("act"); // trigger, copy, or a context menu item
        QTest::addColumn<QString>("copied");
        QTest::addColumn<QList<int>>("left"); // history, palettes, colors of the palette
        const auto row = [](const char *name, int list, const char *act, const char *copied,
                            QList<int> left) { QTest::newRow(name) << list << act << copied << left; };
        row("history: click copies", 0, "trigger", "#3366CC", {2, 2, 2});
        row("history: menu Copy Hex", 0, "Copy Hex", "#3366CC", {2, 2, 2});
        row("history: menu Remove", 0, "Remove", "", {1, 2, 2});
        row("palette: click opens", 1, "trigger", "", {2, 2, 2});
        row("palette: menu Delete", 1, "Delete", "", {2, 1, 0});
        row("palette: menu Copy as CSS", 1, "Copy as CSS",
            ":root {\n  --orange: #FF8000;\n  --sky: #3366CC;\n}\n", {2, 2, 2});
        row("palette color: click does nothing", 2, "trigger", "", {2, 2, 2});
        row("palette color: copy", 2, "copy", "#3366CC", {2, 2, 2});
        row("palette color: menu Delete", 2, "Delete", "", {2, 2, 1});
    }
    void rowActionsOfEachTab()
    {
        QFETCH(int, list);
        QFETCH(QString, act);
        QFETCH(QString, copied);
        AppFixture f;
        const ColorItem orange = ColorItem::create(QStringLiteral("Orange"), 1, 128 / 255.0, 0),
                        sky = ColorItem::create(QStringLiteral("Sky"), 0.2, 0.4, 0.8);
        f.history().addColor(sky);
        f.history().addColor(orange);
        f.palettes().createPalette(QStringLiteral("First"));
        const Palette brand = f.palettes().createPalette(QStringLiteral("Brand"), {orange, sky});
        StyledListView *view = nullptr;
        if (list == 0) {
            view = f.show<HistoryTab>(MenuTab::History)->list();
        } else {
            PalettesTab *tab = f.show<PalettesTab>(MenuTab::Palettes);
            if (list == 2)
                tab->openPalette(brand.id);
            view = list == 1 ? tab->list() : tab->detail()->list();
        }
        QGuiApplication::clipboard()->setText(QStringLiteral("untouched"));

        const QModelIndex row = view->model()->index(1, 0);
        // Its swatch shows Sky, #3366CC; the first row's does not.
        QTRY_VERIFY(rowShows(view, row, 0xFF3366CC)
                    && !rowShows(view, view->model()->index(0, 0), 0xFF3366CC));
        if (act == "trigger")
            emit view->triggered(row);
        else if (act == "copy")
            emit view->copyRequested(row);
        else {
            emit view->menuRequested(row, QPoint(0, 0));
            QMenu *menu = view->findChild<QMenu *>();
            QVERIFY(menu);
            for (QAction *item : menu->actions()) // each row's act shows in the clipboard or the counts
                item->text() == act ? item->trigger() : void();
            menu->close();
        }
        QCOMPARE(clipboardText(), copied.isEmpty() ? QStringLiteral("untouched") : copied);
        const QList<int> counts = {int(f.history().colors().size()), int(f.palettes().palettes().size()),
                                   int(f.palettes().palette(brand.id).value_or(Palette()).colors.size())};
        QTEST(counts, "left");
        // Whatever went, the other row stayed.
        QCOMPARE(f.history().colors().first().id, orange.id);
        QCOMPARE(f.palettes().palettes().first().name, QStringLiteral("First"));
        QVERIFY(!counts[2] || f.palettes().palette(brand.id)->colors.first().id == orange.id);
        if (list == 1)
            QCOMPARE(f.show<PalettesTab>(MenuTab::Palettes)->selectedPaletteId(),
                     act == "trigger" ? std::optional<QUuid>(brand.id) : std::nullopt);
    }

    void removedCurrentRowPassesToTheNext()
    {
        AppFixture f;
        for (const char *name : {"A", "B", "C"})
            f.palettes().createPalette(QString::fromLatin1(name));
        StyledListView *view = f.show<PalettesTab>(MenuTab::Palettes)->list();
        for (const char *name : {"C", "A"}) { // B's place goes to C; with C gone, the last row
            view->setCurrentIndex(view->model()->index(1, 0));
            view->model()->removeRow(1);
            QCOMPARE(view->currentIndex().data().toString(), QString::fromLatin1(name));
        }
    }
};

QTEST_MAIN(TestListModels)
#include "tst_listmodels.moc"
