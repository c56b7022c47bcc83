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

#include <functional>
#include <memory>

namespace {

ColorItem color(const QString &name, double r, double g, double b)
{
    return ColorItem::create(name, r, g, b);
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

} // namespace

// The three lists read their store and follow it row by row, and what the
// user does to a row reaches the store through ListActions with that row's id.
class TestListModels : public QObject
{
    Q_OBJECT

private slots:
    void historyRowsFollowTheStore_data();
    void historyRowsFollowTheStore();
    void paletteRowsShowTheStoreNotACopy();
    void openPaletteEmptiesWhenDeleted();
    void actionsReachTheStoreWithTheRowsId_data();
    void actionsReachTheStoreWithTheRowsId();
    void keysOnTheCurrentRow_data();
    void keysOnTheCurrentRow();
    void removedCurrentRowPassesToTheNext();
};

using Change = std::function<void(HistoryStorage &, const QList<ColorItem> &)>;
Q_DECLARE_METATYPE(Change)

void TestListModels::historyRowsFollowTheStore_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<int>("inserted");
    QTest::addColumn<int>("removed");
    QTest::addColumn<int>("current"); // row of the kept current row (was 1), -1 when it went
    QTest::newRow("add") << Change([](HistoryStorage &h, auto &) { h.addColor(color("n", 0.9, 0.9, 0.1)); })
                         << 1 << 0 << 2;
    QTest::newRow("remove first") << Change([](HistoryStorage &h, auto &c) {
        const QUuid id = c[0].id;
        h.removeColor(id);
    }) << 0 << 1 << 0;
    QTest::newRow("remove current") << Change([](HistoryStorage &h, auto &c) {
        const QUuid id = c[1].id;
        h.removeColor(id);
    }) << 0 << 1 << -1;
    QTest::newRow("clear") << Change([](HistoryStorage &h, auto &) { h.clear(); }) << 0 << 3 << -1;
}

void TestListModels::historyRowsFollowTheStore()
{
    QFETCH(Change, change);
    QFETCH(int, inserted);
    QFETCH(int, removed);
    QFETCH(int, current);
    SharedObjects shared;
    for (double r : {0.1, 0.4, 0.7})
        shared.historyStorage.addColor(color("c", r, 0.2, 0.3));
    ColorListModel model(shared.historyStorage);
    QCOMPARE(rowIds(model), storeIds(shared.historyStorage.colors()));
    const QPersistentModelIndex kept = model.index(1, 0);
    const QUuid keptId = kept.data(StoreListModel::IdRole).toUuid();
    QSignalSpy inserts(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy removes(&model, &QAbstractItemModel::rowsRemoved);
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);

    change(shared.historyStorage, shared.historyStorage.colors());
    QCOMPARE(rowIds(model), storeIds(shared.historyStorage.colors()));
    int insertedRows = 0, removedRows = 0;
    for (const QList<QVariant> &args : inserts)
        insertedRows += args[2].toInt() - args[1].toInt() + 1;
    for (const QList<QVariant> &args : removes)
        removedRows += args[2].toInt() - args[1].toInt() + 1;
    QCOMPARE(insertedRows, inserted);
    QCOMPARE(removedRows, removed);
    QCOMPARE(resets.size(), 0);
    // A view's current row goes with its record.
    QCOMPARE(kept.isValid() ? kept.row() : -1, current);
    if (kept.isValid())
        QCOMPARE(kept.data(StoreListModel::IdRole).toUuid(), keptId);
}

void TestListModels::paletteRowsShowTheStoreNotACopy()
{
    SharedObjects shared;
    const Palette brand = shared.paletteStorage.createPalette(QStringLiteral("Brand"));
    PaletteListModel model(shared.paletteStorage);
    const QModelIndex row = model.index(0, 0);
    QCOMPARE(row.data(StoreListModel::CountRole).toString(), QStringLiteral("0"));
    shared.paletteStorage.renamePalette(brand.id, QStringLiteral("Web"));
    shared.paletteStorage.addColor(color("Red", 1, 0, 0), brand.id);
    QCOMPARE(model.rowCount(), 1);
    QCOMPARE(row.data().toString(), QStringLiteral("Web"));
    QCOMPARE(row.data(StoreListModel::CountRole).toString(), QStringLiteral("1"));
    QCOMPARE(row.data(StoreListModel::StripRole).value<QList<QColor>>(), QList<QColor>{QColor(255, 0, 0)});
}

void TestListModels::openPaletteEmptiesWhenDeleted()
{
    SharedObjects shared;
    const Palette brand = shared.paletteStorage.createPalette(QStringLiteral("Brand"));
    const ColorItem red = color("Red", 1, 0, 0);
    shared.paletteStorage.addColor(red, brand.id);
    ColorListModel model(shared.paletteStorage, brand.id);
    QCOMPARE(rowIds(model), QList<QUuid>{red.id});
    QCOMPARE(model.index(0, 0).data().toString(), QStringLiteral("Red"));
    QCOMPARE(model.index(0, 0).data(StoreListModel::HexRole).toString(), QStringLiteral("#FF0000"));
    shared.paletteStorage.deletePalette(brand.id);
    QCOMPARE(model.rowCount(), 0);
}

enum class Act { Trigger, Copy, Remove };
Q_DECLARE_METATYPE(Act)
enum class List { History, Palettes, PaletteColors };
Q_DECLARE_METATYPE(List)

void TestListModels::actionsReachTheStoreWithTheRowsId_data()
{
    QTest::addColumn<List>("list");
    QTest::addColumn<Act>("act");
    QTest::addColumn<QString>("menuItem"); // the same act through the row's context menu
    QTest::addColumn<QString>("copied");   // clipboard afterwards; empty: untouched
    QTest::addColumn<int>("historyLeft");
    QTest::addColumn<int>("palettesLeft");
    QTest::addColumn<int>("paletteColorsLeft");
    QTest::addColumn<bool>("opened");

    const auto row = [](const char *name, List list, Act act, const char *menuItem, const char *copied,
                        int history, int palettes, int paletteColors, bool opened) {
        QTest::newRow(name) << list << act << QString::fromLatin1(menuItem) << QString::fromLatin1(copied)
                            << history << palettes << paletteColors << opened;
    };
    row("history: click copies", List::History, Act::Trigger, "", "#3366CC", 2, 2, 2, false);
    row("history: Copy Hex", List::History, Act::Copy, "Copy Hex", "#3366CC", 2, 2, 2, false);
    row("history: Remove", List::History, Act::Remove, "Remove", "", 1, 2, 2, false);
    row("palette: click opens", List::Palettes, Act::Trigger, "", "", 2, 2, 2, true);
    row("palette: Delete", List::Palettes, Act::Remove, "Delete", "", 2, 1, 2, false);
    row("palette color: click does nothing", List::PaletteColors, Act::Trigger, "", "", 2, 2, 2, false);
    row("palette color: Copy Hex", List::PaletteColors, Act::Copy, "Copy Hex", "#3366CC", 2, 2, 2, false);
    row("palette color: Delete", List::PaletteColors, Act::Remove, "Delete", "", 2, 2, 1, false);
}

void TestListModels::actionsReachTheStoreWithTheRowsId()
{
    QFETCH(List, list);
    QFETCH(Act, act);
    QFETCH(QString, menuItem);
    QFETCH(QString, copied);
    QFETCH(int, historyLeft);
    QFETCH(int, palettesLeft);
    QFETCH(int, paletteColorsLeft);
    QFETCH(bool, opened);

    // The target is always the second row, #3366CC; the first row differs.
    for (bool viaMenu : {false, true}) {
        if (viaMenu && menuItem.isEmpty())
            continue;
        SharedObjects shared;
        const ColorItem orange = color("Orange", 1, 0.5, 0), sky = color("Sky", 0.2, 0.4, 0.8);
        shared.historyStorage.addColor(sky);
        shared.historyStorage.addColor(orange);
        const Palette first = shared.paletteStorage.createPalette(QStringLiteral("First"));
        const Palette brand = shared.paletteStorage.createPalette(QStringLiteral("Brand"));
        shared.paletteStorage.addColor(orange, brand.id);
        shared.paletteStorage.addColor(sky, brand.id);
        Q_UNUSED(first);
        std::unique_ptr<QAbstractItemModel> model;
        if (list == List::History)
            model = std::make_unique<ColorListModel>(shared.historyStorage);
        else if (list == List::Palettes)
            model = std::make_unique<PaletteListModel>(shared.paletteStorage);
        else
            model = std::make_unique<ColorListModel>(shared.paletteStorage, brand.id);
        ListActions actions(shared.paletteStorage, shared.historyStorage);
        QSignalSpy opens(&actions, &ListActions::paletteOpened);
        QGuiApplication::clipboard()->setText(QStringLiteral("untouched"));

        const QModelIndex row = model->index(1, 0);
        if (viaMenu) {
            std::unique_ptr<QMenu> menu(actions.createMenu(row, nullptr));
            QAction *item = nullptr;
            for (QAction *action : menu->actions())
                if (action->text() == menuItem)
                    item = action;
            QVERIFY2(item, qPrintable(menuItem));
            item->trigger();
        } else if (act == Act::Trigger) {
            actions.trigger(row);
        } else if (act == Act::Copy) {
            actions.copyHex(row);
        } else {
            actions.remove(row);
        }

        QCOMPARE(clipboardText(), copied.isEmpty() ? QStringLiteral("untouched") : copied);
        QCOMPARE(shared.historyStorage.colors().size(), historyLeft);
        QCOMPARE(shared.paletteStorage.palettes().size(), palettesLeft);
        QCOMPARE(shared.paletteStorage.palette(brand.id).value_or(Palette()).colors.size(),
                 palettesLeft == 2 ? paletteColorsLeft : 0);
        // Whatever went, the other row stayed.
        if (historyLeft == 1)
            QCOMPARE(shared.historyStorage.colors().first().id, orange.id);
        if (palettesLeft == 1)
            QCOMPARE(shared.paletteStorage.palettes().first().name, QStringLiteral("First"));
        if (paletteColorsLeft == 1)
            QCOMPARE(shared.paletteStorage.palette(brand.id)->colors.first().id, orange.id);
        QCOMPARE(opens.size(), opened ? 1 : 0);
        if (opened)
            QCOMPARE(opens.first().first().toUuid(), brand.id);
    }
}

void TestListModels::keysOnTheCurrentRow_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QString>("signal");
    QTest::newRow("Return") << int(Qt::Key_Return) << int(Qt::NoModifier) << "triggered";
    QTest::newRow("Space") << int(Qt::Key_Space) << int(Qt::NoModifier) << "triggered";
    QTest::newRow("Ctrl+C") << int(Qt::Key_C) << int(Qt::ControlModifier) << "copyRequested";
    QTest::newRow("Shift+F10") << int(Qt::Key_F10) << int(Qt::ShiftModifier) << "menuRequested";
    QTest::newRow("Menu key") << 0 << 0 << "menuRequested";
}

void TestListModels::keysOnTheCurrentRow()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(QString, signal);
    SharedObjects shared;
    for (double r : {0.1, 0.4, 0.7})
        shared.historyStorage.addColor(color("c", r, 0.2, 0.3));
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
    const QStringList names{"triggered", "copyRequested", "menuRequested"};
    for (int i = 0; i < 3; ++i)
        QCOMPARE(spies[i]->size(), names[i] == signal ? 1 : 0);
    QSignalSpy &fired = *spies[names.indexOf(signal)];
    QCOMPARE(fired.first().first().value<QModelIndex>(), current);
    // From the keyboard a menu opens at its row, not where the pointer is.
    if (signal == "menuRequested")
        QVERIFY(
            view.visualRect(current).contains(view.viewport()->mapFromGlobal(fired.first().at(1).toPoint())));
}

void TestListModels::removedCurrentRowPassesToTheNext()
{
    SharedObjects shared;
    for (const char *name : {"A", "B", "C"})
        shared.paletteStorage.createPalette(QString::fromLatin1(name));
    StyledListView view;
    view.setModel(new PaletteListModel(shared.paletteStorage, &view));
    ListActions actions(shared.paletteStorage, shared.historyStorage);
    const QStringList expected{"C", "A"}; // B's place goes to C; with C gone, the last row
    for (const QString &name : expected) {
        view.setCurrentIndex(view.model()->index(1, 0));
        actions.remove(view.currentIndex());
        QCOMPARE(view.currentIndex().data().toString(), name);
    }
}

QTEST_MAIN(TestListModels)
#include "tst_listmodels.moc"
