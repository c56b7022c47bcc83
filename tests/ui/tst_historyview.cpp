#include "UiTestSupport.h"

#include "ui/AddColorSheet.h"
#include "ui/HistoryColorRow.h"
#include "ui/HistoryView.h"
#include "ui/RoundedSwatch.h"
#include "ui/StyledButton.h"

#include <QAction>
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMenu>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

#include <memory>

class TestHistoryView : public QObject
{
    Q_OBJECT

private slots:
    void emptyState();
    void header();
    void rowsInStoreOrder();
    void clearEmptiesAtOnce();
    void removingLastShowsEmptyState();
    void removeTakesOnlyThatId();
    void clickCopiesOnly_data();
    void clickCopiesOnly();
    void contextMenu();
    void addToPaletteKeepsId();
    void swatchesLevelWithRows();
    void twentyRowsScroll();

private:
    struct Fixture
    {
        SharedObjects shared;
        std::unique_ptr<HistoryView> view;
        void open()
        {
            view = std::make_unique<HistoryView>(shared.historyStorage, shared.tintwrightService,
                                                 shared.paletteStorage);
            view->resize(300, 357);
            view->show();
        }
        ColorItem add(double r, double g, double b, const QString &name = QStringLiteral("Picked Color"))
        {
            const ColorItem item = ColorItem::create(name, r, g, b);
            shared.historyStorage.addColor(item);
            return item;
        }
    };
};

void TestHistoryView::emptyState()
{
    Fixture f;
    f.open();
    QVERIFY(f.view->showsEmptyState());
    const QStringList texts = shownTexts(f.view.get());
    QVERIFY(texts.contains(QStringLiteral("No colors yet")));
    QVERIFY(texts.contains(QStringLiteral("Pick colors to see them here")));
    QVERIFY(texts.contains(QStringLiteral("Recent Colors")));
    QVERIFY(!f.view->clearButton()->isVisibleTo(f.view.get()));
    QVERIFY(f.view->rows().isEmpty());
}

void TestHistoryView::header()
{
    Fixture f;
    f.add(1, 0, 0);
    f.open();
    QVERIFY(!f.view->showsEmptyState());
    QVERIFY(f.view->clearButton()->isVisibleTo(f.view.get()));
    QCOMPARE(f.view->clearButton()->text(), QStringLiteral("Clear"));
    QVERIFY(!shownTexts(f.view.get()).contains(QStringLiteral("No colors yet")));
}

void TestHistoryView::rowsInStoreOrder()
{
    Fixture f;
    f.add(1, 0, 0);
    f.add(0, 1, 0);
    f.add(0, 0, 1);
    f.open();
    QStringList hexes;
    for (HistoryColorRow *row : f.view->rows())
        hexes << row->hex();
    QCOMPARE(hexes, (QStringList{"#0000FF", "#00FF00", "#FF0000"}));
    // The list follows the store while it is open.
    f.add(1, 1, 0);
    QCOMPARE(f.view->rows().first()->hex(), QStringLiteral("#FFFF00"));
}

void TestHistoryView::clearEmptiesAtOnce()
{
    Fixture f;
    for (int i = 0; i < 5; ++i)
        f.add(i / 5.0, 0, 0);
    f.open();
    QTest::mouseClick(f.view->clearButton(), Qt::LeftButton);
    QVERIFY(f.shared.historyStorage.colors().isEmpty());
    QVERIFY(f.view->showsEmptyState());
    QVERIFY(!f.view->clearButton()->isVisibleTo(f.view.get()));
}

void TestHistoryView::removingLastShowsEmptyState()
{
    Fixture f;
    f.add(0.5, 0.5, 0.5);
    f.open();
    std::unique_ptr<QMenu> menu(f.view->rows().first()->createContextMenu(nullptr));
    menu->actions().last()->trigger();
    QVERIFY(f.shared.historyStorage.colors().isEmpty());
    QVERIFY(f.view->showsEmptyState());
    QVERIFY(!f.view->clearButton()->isVisibleTo(f.view.get()));
}

void TestHistoryView::removeTakesOnlyThatId()
{
    Fixture f;
    // Two entries with one hex code (as a file may hold them) and a third
    // that shares the first one's id.
    const QString first = QStringLiteral("11111111-1111-4111-8111-111111111111");
    const QString second = QStringLiteral("22222222-2222-4222-8222-222222222222");
    auto record = [](const QString &id, double r, double g, double b) {
        return QStringLiteral(R"({"id": "%1", "name": "n", "red": %2, "green": %3, "blue": %4, )"
                              R"("alpha": 1, "dateAdded": "2026-01-01T00:00:00Z"})")
            .arg(id).arg(r).arg(g).arg(b);
    };
    QFile file(f.shared.historyStorage.filePath());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QStringLiteral("[%1, %2, %3]")
                   .arg(record(first, 0.2, 0.4, 0.8), record(second, 0.2005, 0.4, 0.8), record(first, 0, 0, 0))
                   .toUtf8());
    file.close();
    f.shared.historyStorage.loadHistory();
    f.open();
    QCOMPARE(f.view->rows().size(), 3);
    QCOMPARE(f.view->rows()[0]->hex(), f.view->rows()[1]->hex());
    f.view->rows()[0]->remove();
    QCOMPARE(f.shared.historyStorage.colors().size(), 1);
    QCOMPARE(f.shared.historyStorage.colors().first().id, QUuid(second));
    QCOMPARE(f.view->rows().size(), 1);
}

void TestHistoryView::clickCopiesOnly_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("hex");
    QTest::newRow("first") << 0 << "#FF8000";
    QTest::newRow("second") << 1 << "#3366CC";
}

void TestHistoryView::clickCopiesOnly()
{
    QFETCH(int, row);
    QFETCH(QString, hex);
    Fixture f;
    f.add(0.2, 0.4, 0.8);
    f.add(1.0, 128 / 255.0, 0.0);
    f.open();
    const QList<ColorItem> before = f.shared.historyStorage.colors();
    const ColorItem picked = *f.shared.tintwrightService.pickedColor();
    HistoryColorRow *target = f.view->rows()[row];
    // Anywhere on the row, not only on the glyphs.
    QTest::mouseClick(target, Qt::LeftButton, {}, QPoint(target->width() - 4, target->height() / 2));
    QCOMPARE(clipboardText(), hex);
    QCOMPARE(f.shared.historyStorage.colors(), before);
    QCOMPARE(*f.shared.tintwrightService.pickedColor(), picked);
}

void TestHistoryView::contextMenu()
{
    Fixture f;
    f.add(0.2, 0.4, 0.8);
    f.open();
    HistoryColorRow *row = f.view->rows().first();
    std::unique_ptr<QMenu> menu(row->createContextMenu(nullptr));
    const QList<QAction *> actions = menu->actions();
    QCOMPARE(actions.size(), 4);
    QCOMPARE(actions[0]->text(), QStringLiteral("Copy Hex"));
    QCOMPARE(actions[1]->text(), QStringLiteral("Add to Palette"));
    QVERIFY(actions[2]->isSeparator());
    QCOMPARE(actions[3]->text(), QStringLiteral("Remove"));
    QGuiApplication::clipboard()->clear();
    actions[0]->trigger();
    QCOMPARE(clipboardText(), QStringLiteral("#3366CC"));
}

void TestHistoryView::addToPaletteKeepsId()
{
    Fixture f;
    const Palette palette = f.shared.paletteStorage.createPalette(QStringLiteral("Brand"));
    const ColorItem item = f.add(0.2, 0.4, 0.8, QStringLiteral("Picked Color"));
    f.open();
    std::unique_ptr<QMenu> menu(f.view->rows().first()->createContextMenu(nullptr));
    menu->actions()[1]->trigger();
    AddColorSheet *sheet = f.view->addSheet();
    QVERIFY(sheet && sheet->isVisible());
    QCOMPARE(f.view->colorToAdd(), std::optional<ColorItem>(item));
    QCOMPARE(sheet->nameField()->text(), QStringLiteral("Picked Color"));
    QCOMPARE(sheet->selectedPalette(), std::optional<QUuid>(palette.id));
    sheet->nameField()->setText(QStringLiteral("Sky"));
    QTest::keyClick(sheet->nameField(), Qt::Key_Return);

    const Palette after = *f.shared.paletteStorage.palette(palette.id);
    QCOMPARE(after.colors.size(), 1);
    QCOMPARE(after.colors[0], item.renamed(QStringLiteral("Sky")));
    QCOMPARE(f.shared.historyStorage.colors(), QList<ColorItem>{item});
    QCOMPARE(f.view->rows().size(), 1);
}

void TestHistoryView::swatchesLevelWithRows()
{
    Fixture f;
    for (int i = 0; i < 6; ++i)
        f.add(i / 6.0, 1 - i / 6.0, 0.5, QString(200, QLatin1Char('N')));
    f.open();
    const QList<HistoryColorRow *> rows = f.view->rows();
    QList<RoundedSwatch *> swatches = f.view->findChildren<RoundedSwatch *>(QStringLiteral("historySwatch"));
    QCOMPARE(swatches.size(), rows.size());
    for (int i = 0; i < rows.size(); ++i) {
        const QRect s = swatches[i]->geometry();
        const QRect r = rows[i]->geometry();
        QCOMPARE(s.size(), QSize(40, 32));
        QCOMPARE(r.top(), s.top());
        QCOMPARE(r.height(), s.height());
        QVERIFY(r.left() >= s.right() + 12);
        QVERIFY2(r.right() < 300, "a long name must not widen the row");
        if (i)
            QCOMPARE(s.top() - swatches[i - 1]->geometry().bottom() - 1, 8);
    }
}

void TestHistoryView::twentyRowsScroll()
{
    Fixture f;
    for (int i = 0; i < 20; ++i)
        f.add(i / 20.0, 0.3, 0.9 - i / 40.0);
    f.open();
    QCOMPARE(f.view->rows().size(), 20);
    auto *scroll = findShown<QScrollArea>(f.view.get(), QStringLiteral("historyList"));
    QVERIFY(scroll);
    QTRY_VERIFY(scroll->verticalScrollBar()->maximum() > 0);
    QCOMPARE(scroll->horizontalScrollBar()->maximum(), 0);
    // Scrolled down, the list keeps its place when the store changes.
    scroll->verticalScrollBar()->setValue(200);
    f.shared.historyStorage.removeColor(f.shared.historyStorage.colors().first().id);
    auto *after = findShown<QScrollArea>(f.view.get(), QStringLiteral("historyList"));
    QTRY_COMPARE(after->verticalScrollBar()->value(), 200);
}

QTEST_MAIN(TestHistoryView)
#include "tst_historyview.moc"
