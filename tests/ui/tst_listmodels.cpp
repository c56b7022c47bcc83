#include "UiTestSupport.h"

#include "ui/ColorListModel.h"
#include "ui/ListActions.h"
#include "ui/PaletteListModel.h"
#include "ui/StyledListView.h"

#include <QAction>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>

namespace {

ColorItem color(const char *name, double r, double g, double b)
{
    return ColorItem::create(QString::fromLatin1(name), r, g, b);
}

QList<QUuid> rowIds(const QAbstractItemModel &model)
{
    QList<QUuid> ids;
    for (int row = 0; row < model.rowCount(); ++row)
        ids.append(model.index(row, 0).data(StoreListModel::IdRole).toUuid());
    return ids;
}

QList<QUuid> storeIds(const QList<ColorItem> &colors)
{
    QList<QUuid> ids;
    for (const ColorItem &c : colors)
        ids.append(c.id);
    return ids;
}

void addThree(HistoryStorage &history)
{
    for (double r : {0.1, 0.4, 0.7})
        history.addColor(color("c", r, 0.2, 0.3));
}

} // namespace

// The lists read their store and follow it row by row, and what the user
// does to a row reaches the store through ListActions with that row's id.
class TestListModels : public QObject
{
    Q_OBJECT

private slots:
    void historyRowsFollowTheStore_data();
    void historyRowsFollowTheStore();
    void paletteRowsShowTheStoreNotACopy();
    void actionsReachTheStoreWithTheRowsId_data();
    void actionsReachTheStoreWithTheRowsId();
    void keysOnTheCurrentRow_data();
    void keysOnTheCurrentRow();
    void removedCurrentRowPassesToTheNext();
};

using Change = std::function<void(HistoryStorage &)>;
Q_DECLARE_METATYPE(Change)

void TestListModels::historyRowsFollowTheStore_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<int>("moved");   // rows inserted minus rows removed
    QTest::addColumn<int>("current"); // row of the kept current row (was 1), -1 when it went
    const auto removeRow = [](int row) {
        return Change([row](HistoryStorage &h) { h.removeColor(QUuid(h.colors()[row].id)); });
    };
    QTest::newRow("add") << Change([](HistoryStorage &h) { h.addColor(color("n", 0.9, 0.9, 0.1)); }) << 1
                         << 2;
    QTest::newRow("remove first") << removeRow(0) << -1 << 0;
    QTest::newRow("remove current") << removeRow(1) << -1 << -1;
    QTest::newRow("clear") << Change([](HistoryStorage &h) { h.clear(); }) << -3 << -1;
}

void TestListModels::historyRowsFollowTheStore()
{
    QFETCH(Change, change);
    QFETCH(int, moved);
    QFETCH(int, current);
    SharedObjects shared;
    addThree(shared.historyStorage);
    ColorListModel model(shared.historyStorage);
    const QPersistentModelIndex kept = model.index(1, 0);
    const QUuid keptId = kept.data(StoreListModel::IdRole).toUuid();
    int rows = 0;
    connect(&model, &QAbstractItemModel::rowsInserted,
            [&](auto, int first, int last) { rows += last - first + 1; });
    connect(&model, &QAbstractItemModel::rowsRemoved,
            [&](auto, int first, int last) { rows -= last - first + 1; });
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);

    change(shared.historyStorage);
    QCOMPARE(rowIds(model), storeIds(shared.historyStorage.colors()));
    QCOMPARE(rows, moved);
    QCOMPARE(resets.size(), 0);
    // A view's current row goes with its record.
    QCOMPARE(kept.isValid() ? kept.row() : -1, current);
    QVERIFY(!kept.isValid() || kept.data(StoreListModel::IdRole).toUuid() == keptId);
}

void TestListModels::paletteRowsShowTheStoreNotACopy()
{
    SharedObjects shared;
    const Palette brand = shared.paletteStorage.createPalette(QStringLiteral("Brand"));
    PaletteListModel palettes(shared.paletteStorage);
    ColorListModel colors(shared.paletteStorage, brand.id);
    const QModelIndex row = palettes.index(0, 0);
    QCOMPARE(row.data(StoreListModel::CountRole).toString(), QStringLiteral("0"));
    shared.paletteStorage.renamePalette(brand.id, QStringLiteral("Web"));
    const ColorItem red = color("Red", 1, 0, 0);
    shared.paletteStorage.addColor(red, brand.id);
    QCOMPARE(palettes.rowCount(), 1);
    QCOMPARE(row.data().toString(), QStringLiteral("Web"));
    QCOMPARE(row.data(StoreListModel::CountRole).toString(), QStringLiteral("1"));
    QCOMPARE(row.data(StoreListModel::StripRole).value<QList<QColor>>(), QList<QColor>{QColor(255, 0, 0)});
    QCOMPARE(rowIds(colors), QList<QUuid>{red.id});
    QCOMPARE(colors.index(0, 0).data(StoreListModel::HexRole).toString(), QStringLiteral("#FF0000"));
    // An open palette deleted elsewhere empties.
    shared.paletteStorage.deletePalette(brand.id);
    QCOMPARE(colors.rowCount(), 0);
}

enum class List { History, Palettes, PaletteColors };
Q_DECLARE_METATYPE(List)

void TestListModels::actionsReachTheStoreWithTheRowsId_data()
{
    QTest::addColumn<List>("list");
    QTest::addColumn<QString>("act");     // trigger, copy, remove, or a context menu item
    QTest::addColumn<QString>("copied");  // clipboard afterwards; empty: untouched
    QTest::addColumn<QList<int>>("left"); // history, palettes, colors of the palette
    QTest::addColumn<bool>("opened");
    const auto row = [](const char *name, List list, const char *act, const char *copied, QList<int> left,
                        bool opened = false) {
        QTest::newRow(name) << list << act << copied << left << opened;
    };
    row("history: click copies", List::History, "trigger", "#3366CC", {2, 2, 2});
    row("history: copy", List::History, "copy", "#3366CC", {2, 2, 2});
    row("history: menu Copy Hex", List::History, "Copy Hex", "#3366CC", {2, 2, 2});
    row("history: remove", List::History, "remove", "", {1, 2, 2});
    row("history: menu Remove", List::History, "Remove", "", {1, 2, 2});
    row("palette: click opens", List::Palettes, "trigger", "", {2, 2, 2}, true);
    row("palette: remove", List::Palettes, "remove", "", {2, 1, 0});
    row("palette: menu Delete", List::Palettes, "Delete", "", {2, 1, 0});
    row("palette color: click does nothing", List::PaletteColors, "trigger", "", {2, 2, 2});
    row("palette color: menu Copy Hex", List::PaletteColors, "Copy Hex", "#3366CC", {2, 2, 2});
    row("palette color: remove", List::PaletteColors, "remove", "", {2, 2, 1});
    row("palette color: menu Delete", List::PaletteColors, "Delete", "", {2, 2, 1});
}

void TestListModels::actionsReachTheStoreWithTheRowsId()
{
    QFETCH(List, list);
    QFETCH(QString, act);
    QFETCH(QString, copied);
    QFETCH(QList<int>, left);
    QFETCH(bool, opened);
    // The target is always the second row, #3366CC; the first row differs.
    SharedObjects shared;
    HistoryStorage &history = shared.historyStorage;
    PaletteStorage &palettes = shared.paletteStorage;
    const ColorItem orange = color("Orange", 1, 0.5, 0), sky = color("Sky", 0.2, 0.4, 0.8);
    history.addColor(sky);
    history.addColor(orange);
    palettes.createPalette(QStringLiteral("First"));
    const Palette brand = palettes.createPalette(QStringLiteral("Brand"));
    palettes.addColor(orange, brand.id);
    palettes.addColor(sky, brand.id);
    std::unique_ptr<QAbstractItemModel> model;
    if (list == List::History)
        model = std::make_unique<ColorListModel>(history);
    else if (list == List::Palettes)
        model = std::make_unique<PaletteListModel>(palettes);
    else
        model = std::make_unique<ColorListModel>(palettes, brand.id);
    ListActions actions(palettes, history);
    QSignalSpy opens(&actions, &ListActions::paletteOpened);
    QGuiApplication::clipboard()->setText(QStringLiteral("untouched"));

    const QModelIndex row = model->index(1, 0);
    if (act == "trigger") {
        actions.trigger(row);
    } else if (act == "copy") {
        actions.copyHex(row);
    } else if (act == "remove") {
        actions.remove(row);
    } else {
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
    if (counts[2])
        QCOMPARE(palettes.palette(brand.id)->colors.first().id, orange.id);
    QCOMPARE(opens.size(), opened ? 1 : 0);
    if (opened)
        QCOMPARE(opens.first().first().toUuid(), brand.id);
}

void TestListModels::keysOnTheCurrentRow_data()
{
    QTest::addColumn<int>("key"); // 0: the Menu key's context menu event
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<int>("signal"); // triggered, copyRequested, menuRequested
    QTest::newRow("Return") << int(Qt::Key_Return) << int(Qt::NoModifier) << 0;
    QTest::newRow("Space") << int(Qt::Key_Space) << int(Qt::NoModifier) << 0;
    QTest::newRow("Ctrl+C") << int(Qt::Key_C) << int(Qt::ControlModifier) << 1;
    QTest::newRow("Shift+F10") << int(Qt::Key_F10) << int(Qt::ShiftModifier) << 2;
    QTest::newRow("Menu key") << 0 << 0 << 2;
}

void TestListModels::keysOnTheCurrentRow()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(int, signal);
    SharedObjects shared;
    addThree(shared.historyStorage);
    StyledListView view;
    view.setModel(new ColorListModel(shared.historyStorage, &view));
    view.resize(200, 300);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    view.setFocus();
    QTest::keyClick(&view, Qt::Key_Down); // a row other than the first
    const QModelIndex current = view.currentIndex();
    QVERIFY(current.row() > 0);

    QSignalSpy triggered(&view, &StyledListView::triggered);
    QSignalSpy copies(&view, &StyledListView::copyRequested);
    QSignalSpy menus(&view, &StyledListView::menuRequested);
    if (key) {
        QTest::keyClick(&view, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    } else {
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), QPoint());
        QCoreApplication::sendEvent(&view, &event);
    }
    QSignalSpy *const spies[] = {&triggered, &copies, &menus};
    for (int i = 0; i < 3; ++i)
        QCOMPARE(spies[i]->size(), i == signal ? 1 : 0);
    const QList<QVariant> fired = spies[signal]->first();
    QCOMPARE(fired.first().value<QModelIndex>(), current);
    // From the keyboard a menu opens at its row, not where the pointer is.
    if (signal == 2)
        QVERIFY(view.visualRect(current).contains(view.viewport()->mapFromGlobal(fired.at(1).toPoint())));
}

void TestListModels::removedCurrentRowPassesToTheNext()
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

QTEST_MAIN(TestListModels)
#include "tst_listmodels.moc"
