// The lists read their store and follow it row by row, and what the user
// does to a row reaches the store through ListActions with that row's id.
#include "UiTestSupport.h"

#include "ui/ColorListModel.h"
#include "ui/ListActions.h"
#include "ui/PaletteListModel.h"
#include "ui/StyledListView.h"

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
        SharedObjects shared;
        for (double r : {0.1, 0.4, 0.7})
            shared.historyStorage.addColor(color(r, 0.2, 0.3));
        ColorListModel model(shared.historyStorage);
        const QPersistentModelIndex kept = model.index(1, 0);
        const QUuid keptId = kept.data(StoreListModel::IdRole).toUuid();
        QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
        change(shared.historyStorage);
        QList<QUuid> ids;
        for (const ColorItem &item : shared.historyStorage.colors())
            ids.append(item.id);
        QCOMPARE(rowIds(model), ids);
        QCOMPARE(resets.size(), 0);
        // A view's current row goes with its record.
        QCOMPARE(kept.isValid() ? kept.row() : -1, current);
        QVERIFY(!kept.isValid() || kept.data(StoreListModel::IdRole).toUuid() == keptId);
    }

    void paletteRowsShowTheStoreNotACopy()
    {
        SharedObjects shared;
        const Palette brand = shared.paletteStorage.createPalette(QStringLiteral("Brand"));
        PaletteListModel palettes(shared.paletteStorage);
        ColorListModel colors(shared.paletteStorage, brand.id);
        shared.paletteStorage.renamePalette(brand.id, QStringLiteral("Web"));
        const ColorItem red = color(1, 0, 0);
        shared.paletteStorage.addColor(red, brand.id);
        const QModelIndex row = palettes.index(0, 0);
        QCOMPARE(row.data().toString(), QStringLiteral("Web"));
        QCOMPARE(row.data(StoreListModel::CountRole).toString(), QStringLiteral("1"));
        QCOMPARE(row.data(StoreListModel::StripRole).value<QList<QColor>>(),
                 QList<QColor>{QColor(255, 0, 0)});
        QCOMPARE(rowIds(colors), QList<QUuid>{red.id});
        QCOMPARE(colors.index(0, 0).data(StoreListModel::HexRole).toString(), QStringLiteral("#FF0000"));
        shared.paletteStorage.deletePalette(brand.id); // an open palette deleted elsewhere empties
        QCOMPARE(colors.rowCount(), 0);
    }

    void actionsReachTheStoreWithTheRowsId_data()
    {
        QTest::addColumn<int>("list");    // history, palettes, a palette's colors
        QTest::addColumn<QString>("act"); // trigger, copy, remove, or a context menu item
        QTest::addColumn<QString>("copied");
        QTest::addColumn<QList<int>>("left"); // history, palettes, colors of the palette
        const auto row = [](const char *name, int list, const char *act, const char *copied,
                            QList<int> left) { QTest::newRow(name) << list << act << copied << left; };
        row("history: click copies", 0, "trigger", "#3366CC", {2, 2, 2});
        row("history: menu Copy Hex", 0, "Copy Hex", "#3366CC", {2, 2, 2});
        row("history: remove", 0, "remove", "", {1, 2, 2});
        row("history: menu Remove", 0, "Remove", "", {1, 2, 2});
        row("palette: click opens", 1, "trigger", "", {2, 2, 2});
        row("palette: menu Delete", 1, "Delete", "", {2, 1, 0});
        row("palette: menu Copy as CSS", 1, "Copy as CSS",
            ":root {\n  --orange: #FF8000;\n  --sky: #3366CC;\n}\n", {2, 2, 2});
        row("palette color: click does nothing", 2, "trigger", "", {2, 2, 2});
        row("palette color: copy", 2, "copy", "#3366CC", {2, 2, 2});
        row("palette color: menu Delete", 2, "Delete", "", {2, 2, 1});
    }
    void actionsReachTheStoreWithTheRowsId()
    {
        QFETCH(int, list);
        QFETCH(QString, act);
        QFETCH(QString, copied);
        QFETCH(QList<int>, left);
        // The target is always the second row, #3366CC; the first row differs.
        SharedObjects shared;
        HistoryStorage &history = shared.historyStorage;
        PaletteStorage &palettes = shared.paletteStorage;
        const ColorItem orange = ColorItem::create(QStringLiteral("Orange"), 1, 128 / 255.0, 0),
                        sky = ColorItem::create(QStringLiteral("Sky"), 0.2, 0.4, 0.8);
        history.addColor(sky);
        history.addColor(orange);
        palettes.createPalette(QStringLiteral("First"));
        const Palette brand = palettes.createPalette(QStringLiteral("Brand"), {orange, sky});
        std::unique_ptr<QAbstractItemModel> model;
        if (list == 1)
            model = std::make_unique<PaletteListModel>(palettes);
        else
            model = list ? std::make_unique<ColorListModel>(palettes, brand.id)
                         : std::make_unique<ColorListModel>(history);
        ListActions actions(palettes, history);
        QSignalSpy opens(&actions, &ListActions::paletteOpened);
        QGuiApplication::clipboard()->setText(QStringLiteral("untouched"));

        const QModelIndex row = model->index(1, 0);
        if (act == "trigger")
            actions.trigger(row);
        else if (act == "copy")
            actions.copyHex(row);
        else if (act == "remove")
            actions.remove(row);
        else {
            std::unique_ptr<QMenu> menu(actions.createMenu(row, nullptr));
            const QList<QAction *> items = menu->actions();
            const auto item =
                std::find_if(items.begin(), items.end(), [&](QAction *a) { return a->text() == act; });
            QVERIFY2(item != items.end(), qPrintable(act));
            (*item)->trigger();
        }
        QCOMPARE(clipboardText(), copied.isEmpty() ? QStringLiteral("untouched") : copied);
        const QList<int> counts = {int(history.colors().size()), int(palettes.palettes().size()),
                                   int(palettes.palette(brand.id).value_or(Palette()).colors.size())};
        QCOMPARE(counts, left);
        // Whatever went, the other row stayed.
        QCOMPARE(history.colors().first().id, orange.id);
        QCOMPARE(palettes.palettes().first().name, QStringLiteral("First"));
        QVERIFY(!counts[2] || palettes.palette(brand.id)->colors.first().id == orange.id);
        QCOMPARE(opens.size(), list == 1 && act == "trigger" ? 1 : 0);
        QVERIFY(opens.isEmpty() || opens.first().first().toUuid() == brand.id);
    }

    void removedCurrentRowPassesToTheNext()
    {
        SharedObjects shared;
        for (const char *name : {"A", "B", "C"})
            shared.paletteStorage.createPalette(QString::fromLatin1(name));
        StyledListView view;
        view.setModel(new PaletteListModel(shared.paletteStorage, &view));
        ListActions actions(shared.paletteStorage, shared.historyStorage);
        for (const char *name : {"C", "A"}) { // B's place goes to C; with C gone, the last row
            view.setCurrentIndex(view.model()->index(1, 0));
            actions.remove(view.currentIndex());
            QCOMPARE(view.currentIndex().data().toString(), QString::fromLatin1(name));
        }
    }
};

QTEST_MAIN(TestListModels)
#include "tst_listmodels.moc"
