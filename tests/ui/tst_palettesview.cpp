#include "ui/MenuBarPaletteDetailView.h"
#include "ui/MenuBarPaletteRow.h"
#include "ui/MenuBarPalettesView.h"
#include "ui/PaletteColorRow.h"
#include "ui/TextPromptDialog.h"
#include "picking/TintwrightService.h"
#include "storage/PaletteStorage.h"

#include <QAbstractButton>
#include <QAction>
#include <QLineEdit>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QLabel>
#include <QMenu>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace {

QList<MenuBarPaletteRow *> paletteRows(const QWidget &view)
{
    QList<MenuBarPaletteRow *> rows;
    for (MenuBarPaletteRow *row : view.findChildren<MenuBarPaletteRow *>())
        if (row->isVisibleTo(&view))
            rows.append(row);
    std::sort(rows.begin(), rows.end(), [](QWidget *a, QWidget *b) { return a->y() < b->y(); });
    return rows;
}

QList<PaletteColorRow *> colorRows(const QWidget &view)
{
    QList<PaletteColorRow *> rows;
    for (PaletteColorRow *row : view.findChildren<PaletteColorRow *>())
        if (row->isVisibleTo(&view))
            rows.append(row);
    std::sort(rows.begin(), rows.end(), [](QWidget *a, QWidget *b) { return a->y() < b->y(); });
    return rows;
}

MenuBarPaletteDetailView *detail(const QWidget &view)
{
    for (auto *d : view.findChildren<MenuBarPaletteDetailView *>())
        if (d->isVisibleTo(&view))
            return d;
    return nullptr;
}

bool showsText(const QWidget &view, const QString &text)
{
    for (QLabel *label : view.findChildren<QLabel *>())
        if (label->isVisibleTo(&view) && label->text() == text)
            return true;
    return false;
}

template<typename Button>
Button *button(const QWidget &view, const QString &textOrName)
{
    for (Button *b : view.findChildren<Button *>())
        if (b->isVisibleTo(&view) && (b->text() == textOrName || b->accessibleName() == textOrName))
            return b;
    return nullptr;
}

// Opens the widget's context menu as the platform would and returns it.
QMenu *openContextMenu(QWidget *widget, QContextMenuEvent::Reason reason = QContextMenuEvent::Mouse)
{
    const QPoint pos = widget->rect().center();
    QContextMenuEvent event(reason, pos, widget->mapToGlobal(pos));
    QApplication::sendEvent(widget, &event);
    return qobject_cast<QMenu *>(QApplication::activePopupWidget());
}

QStringList menuTexts(QMenu *menu)
{
    QStringList texts;
    for (QAction *action : menu->actions())
        texts.append(action->isSeparator() ? QStringLiteral("--") : action->text());
    return texts;
}

void choose(QMenu *menu, const QString &text)
{
    for (QAction *action : menu->actions())
        if (action->text() == text) {
            action->trigger();
            menu->close();
            return;
        }
    QFAIL(qPrintable("no menu item " + text));
}

ColorItem color(const QString &name, double r, double g, double b)
{
    return ColorItem::create(name, r, g, b);
}

} // namespace

class TestPalettesView : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void emptyState();
    void createThroughPrompt_data();
    void createThroughPrompt();
    void promptIsTheSameFromBothButtons();
    void listInStoredOrder();
    void colorStrip();
    void openAndBackWithMouse();
    void openAndBackWithKeyboard();
    void emptyPaletteDetail();
    void deletePaletteFromList();
    void deleteOpenPaletteElsewhere();
    void copyHex();
    void removeColors();
    void contextMenuFromKeyboard_data();
    void contextMenuFromKeyboard();
    void focusFollowsDeletion();
    void reopenedViewStartsAtList();
    void longNamesKeepTheLayout();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<PaletteStorage> m_storage;
    std::unique_ptr<TintwrightService> m_service;
    std::unique_ptr<MenuBarPalettesView> m_view;

    MenuBarPalettesView &makeView()
    {
        m_view = std::make_unique<MenuBarPalettesView>(*m_storage, *m_service);
        m_view->resize(300, 357);
        m_view->show();
        m_view->activateWindow();
        if (!QTest::qWaitForWindowActive(m_view.get()))
            qWarning("view not active");
        return *m_view;
    }
    // Palettes reloaded from the file, as the next launch would see them.
    QList<Palette> saved() const { return PaletteStorage(m_dir->path()).palettes(); }
};

void TestPalettesView::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    m_storage = std::make_unique<PaletteStorage>(m_dir->path());
    m_service = std::make_unique<TintwrightService>();
}

void TestPalettesView::cleanup()
{
    if (QWidget *popup = QApplication::activePopupWidget())
        popup->close();
    m_view.reset();
    m_service.reset();
    m_storage.reset();
    m_dir.reset();
}

void TestPalettesView::emptyState()
{
    MenuBarPalettesView &view = makeView();
    QVERIFY(showsText(view, "Palettes"));
    QVERIFY(showsText(view, "No palettes yet"));
    QVERIFY(button<QAbstractButton>(view, "Create Palette"));
    QAbstractButton *plus = button<QAbstractButton>(view, "New Palette");
    QVERIFY(plus);
    QVERIFY(plus->text().isEmpty()); // icon only, named for screen readers
    QVERIFY(paletteRows(view).isEmpty());
    QVERIFY(!view.selectedPaletteId());
}

void TestPalettesView::createThroughPrompt_data()
{
    QTest::addColumn<QString>("opener");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("close"); // "Create", "Return", "Cancel" or "Escape"
    QTest::addColumn<QStringList>("created");

    QTest::newRow("plus, create") << "New Palette" << "Brand" << "Create" << QStringList{"Brand"};
    QTest::newRow("empty state, create") << "Create Palette" << "Brand" << "Create" << QStringList{"Brand"};
    QTest::newRow("return") << "New Palette" << "Web" << "Return" << QStringList{"Web"};
    QTest::newRow("empty name") << "Create Palette" << "" << "Create" << QStringList{};
    QTest::newRow("empty name, return") << "New Palette" << "" << "Return" << QStringList{};
    QTest::newRow("blanks kept") << "New Palette" << "  " << "Create" << QStringList{"  "};
    QTest::newRow("not trimmed") << "New Palette" << " Sky " << "Create" << QStringList{" Sky "};
    QTest::newRow("cancel") << "New Palette" << "Brand" << "Cancel" << QStringList{};
    QTest::newRow("escape") << "Create Palette" << "Brand" << "Escape" << QStringList{};
}

void TestPalettesView::createThroughPrompt()
{
    QFETCH(QString, opener);
    QFETCH(QString, typed);
    QFETCH(QString, close);
    QFETCH(QStringList, created);

    MenuBarPalettesView &view = makeView();
    QTest::mouseClick(button<QAbstractButton>(view, opener), Qt::LeftButton);
    auto *prompt = qobject_cast<TextPromptDialog *>(view.newPalettePrompt());
    QVERIFY(prompt);
    QVERIFY(prompt->isVisible());
    QTest::keyClicks(prompt->lineEdit(), typed);
    if (close == "Create")
        QTest::mouseClick(button<QAbstractButton>(*prompt, "Create"), Qt::LeftButton);
    else if (close == "Cancel")
        QTest::mouseClick(button<QAbstractButton>(*prompt, "Cancel"), Qt::LeftButton);
    else
        QTest::keyClick(prompt->lineEdit(), close == "Return" ? Qt::Key_Return : Qt::Key_Escape);
    QTRY_VERIFY(!view.newPalettePrompt());

    QStringList names;
    for (const Palette &p : saved())
        names.append(p.name);
    QCOMPARE(names, created);
    QCOMPARE(paletteRows(view).size(), created.size());
    QVERIFY(!view.selectedPaletteId()); // the new palette is not opened
    QCOMPARE(showsText(view, "No palettes yet"), created.isEmpty());
}

void TestPalettesView::promptIsTheSameFromBothButtons()
{
    MenuBarPalettesView &view = makeView();
    for (const QString opener : {"New Palette", "Create Palette"}) {
        QTest::mouseClick(button<QAbstractButton>(view, opener), Qt::LeftButton);
        auto *prompt = qobject_cast<TextPromptDialog *>(view.newPalettePrompt());
        QVERIFY(prompt);
        QCOMPARE(prompt->windowTitle(), QStringLiteral("New Palette"));
        QCOMPARE(prompt->lineEdit()->placeholderText(), QStringLiteral("Palette name"));
        QVERIFY(prompt->text().isEmpty()); // a fresh name every time
        QVERIFY(button<QAbstractButton>(*prompt, "Cancel"));
        QVERIFY(button<QAbstractButton>(*prompt, "Create"));
        QVERIFY(QTest::qWaitForWindowActive(prompt));
        QTRY_VERIFY(prompt->lineEdit()->hasFocus()); // type at once
        QTest::keyClicks(prompt->lineEdit(), "half typed");
        QTest::keyClick(prompt->lineEdit(), Qt::Key_Escape);
        QTRY_VERIFY(!view.newPalettePrompt());
    }
    QVERIFY(saved().isEmpty());
}

void TestPalettesView::listInStoredOrder()
{
    const Palette b = m_storage->createPalette("Brand");
    const Palette a = m_storage->createPalette("Accents");
    m_storage->addColor(color("Red", 1, 0, 0), a.id);
    m_storage->addColor(color("Blue", 0, 0, 1), a.id);
    MenuBarPalettesView &view = makeView();
    QVERIFY(!showsText(view, "No palettes yet"));

    QList<MenuBarPaletteRow *> rows = paletteRows(view);
    QCOMPARE(rows.size(), 2);
    QCOMPARE(rows.at(0)->name(), QStringLiteral("Brand"));
    QCOMPARE(rows.at(0)->countText(), QStringLiteral("0"));
    QCOMPARE(rows.at(1)->name(), QStringLiteral("Accents"));
    QCOMPARE(rows.at(1)->countText(), QStringLiteral("2"));

    // A palette made elsewhere (the Picker tab) appears at the end at once.
    m_storage->createPalette("Zebra");
    rows = paletteRows(view);
    QCOMPARE(rows.size(), 3);
    QCOMPARE(rows.at(2)->name(), QStringLiteral("Zebra"));
    Q_UNUSED(b);
}

void TestPalettesView::colorStrip()
{
    const Palette filled = m_storage->createPalette("Filled");
    m_storage->addColor(color("Red", 1, 0, 0), filled.id);
    m_storage->addColor(color("Blue", 0, 0, 1), filled.id);
    m_storage->createPalette("Empty");
    MenuBarPalettesView &view = makeView();
    const QList<MenuBarPaletteRow *> rows = paletteRows(view);
    QCOMPARE(rows.size(), 2);

    // The strip runs along the bottom of the card, 16 px high.
    const QImage full = rows.at(0)->grab().toImage();
    const int y = full.height() - 10 - 8;
    QCOMPARE(full.pixelColor(full.width() / 4, y), QColor(255, 0, 0));
    QCOMPARE(full.pixelColor(full.width() * 3 / 4, y), QColor(0, 0, 255));

    const QImage empty = rows.at(1)->grab().toImage();
    const QColor grey = empty.pixelColor(empty.width() / 2, y);
    QCOMPARE(grey.red(), grey.green());
    QCOMPARE(grey.green(), grey.blue());
    QVERIFY(grey.alpha() > 0);
}

void TestPalettesView::openAndBackWithMouse()
{
    m_storage->createPalette("First");
    const Palette second = m_storage->createPalette("Second");
    m_storage->addColor(color("Red", 1, 0, 0), second.id);
    MenuBarPalettesView &view = makeView();

    QTest::mouseClick(paletteRows(view).at(1), Qt::LeftButton);
    QCOMPARE(view.selectedPaletteId(), std::optional<QUuid>(second.id));
    QVERIFY(detail(view));
    QCOMPARE(detail(view)->paletteId(), second.id);
    QVERIFY(paletteRows(view).isEmpty());
    QCOMPARE(colorRows(view).size(), 1);
    QCOMPARE(colorRows(view).at(0)->accessibleName(), QStringLiteral("Red"));
    QCOMPARE(colorRows(view).at(0)->hexText(), QStringLiteral("#FF0000"));

    QAbstractButton *back = button<QAbstractButton>(view, "Back");
    QVERIFY(back);
    QTest::mouseClick(back, Qt::LeftButton);
    QVERIFY(!view.selectedPaletteId());
    QVERIFY(!detail(view));
    QCOMPARE(paletteRows(view).size(), 2);
    QCOMPARE(paletteRows(view).at(0)->name(), QStringLiteral("First"));
}

void TestPalettesView::openAndBackWithKeyboard()
{
    const Palette only = m_storage->createPalette("Only");
    MenuBarPalettesView &view = makeView();
    // From the plus button, Tab reaches the first card; Return opens it.
    QAbstractButton *plus = button<QAbstractButton>(view, "New Palette");
    plus->setFocus();
    QTest::keyClick(plus, Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), paletteRows(view).at(0));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QCOMPARE(view.selectedPaletteId(), std::optional<QUuid>(only.id));
    // Focus lands on "Back"; Space presses it and focus returns to the card.
    QCOMPARE(QApplication::focusWidget(), button<QAbstractButton>(view, "Back"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QVERIFY(!view.selectedPaletteId());
    QCOMPARE(QApplication::focusWidget(), paletteRows(view).at(0));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QCOMPARE(view.selectedPaletteId(), std::optional<QUuid>(only.id));
}

void TestPalettesView::emptyPaletteDetail()
{
    const Palette empty = m_storage->createPalette("Empty");
    MenuBarPalettesView &view = makeView();
    view.openPalette(empty.id);
    QVERIFY(showsText(view, "No colors in this palette"));
    QVERIFY(colorRows(view).isEmpty());
}

void TestPalettesView::deletePaletteFromList()
{
    const Palette keep = m_storage->createPalette("Keep");
    m_storage->createPalette("Drop");
    MenuBarPalettesView &view = makeView();
    QMenu *menu = openContextMenu(paletteRows(view).at(1));
    QVERIFY(menu);
    QCOMPARE(menuTexts(menu), QStringList{"Delete"});
    choose(menu, "Delete");

    QCOMPARE(paletteRows(view).size(), 1);
    QCOMPARE(paletteRows(view).at(0)->name(), QStringLiteral("Keep"));
    QCOMPARE(saved().size(), 1);
    QCOMPARE(saved().at(0).id, keep.id);

    choose(openContextMenu(paletteRows(view).at(0)), "Delete");
    QVERIFY(saved().isEmpty());
    QVERIFY(showsText(view, "No palettes yet"));
}

void TestPalettesView::deleteOpenPaletteElsewhere()
{
    const Palette shown = m_storage->createPalette("Shown");
    const Palette other = m_storage->createPalette("Other");
    MenuBarPalettesView &view = makeView();
    view.openPalette(shown.id);

    m_storage->deletePalette(other.id); // not the open one: stays open
    QCOMPARE(view.selectedPaletteId(), std::optional<QUuid>(shown.id));
    m_storage->deletePalette(shown.id);
    QVERIFY(!view.selectedPaletteId());
    QVERIFY(!detail(view));
    QVERIFY(showsText(view, "No palettes yet"));
}

void TestPalettesView::copyHex()
{
    const Palette palette = m_storage->createPalette("P");
    m_storage->addColor(color("Orange", 1, 0.5, 0), palette.id);
    MenuBarPalettesView &view = makeView();
    view.openPalette(palette.id);
    QApplication::clipboard()->setText("something else");

    QMenu *menu = openContextMenu(colorRows(view).at(0));
    QVERIFY(menu);
    QCOMPARE(menuTexts(menu), (QStringList{"Copy Hex", "--", "Delete"}));
    choose(menu, "Copy Hex");
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("#FF8000"));
    QCOMPARE(colorRows(view).size(), 1);

    // Ctrl+C on the focused row copies the same text.
    QApplication::clipboard()->clear();
    colorRows(view).at(0)->setFocus();
    QTest::keyClick(colorRows(view).at(0), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("#FF8000"));
}

void TestPalettesView::removeColors()
{
    const Palette palette = m_storage->createPalette("P");
    const ColorItem red = color("Red", 1, 0, 0);
    const ColorItem green = color("Green", 0, 1, 0);
    m_storage->addColor(red, palette.id);
    m_storage->addColor(green, palette.id);
    MenuBarPalettesView &view = makeView();
    view.openPalette(palette.id);

    choose(openContextMenu(colorRows(view).at(0)), "Delete");
    QCOMPARE(view.selectedPaletteId(), std::optional<QUuid>(palette.id));
    QCOMPARE(colorRows(view).size(), 1);
    QCOMPARE(colorRows(view).at(0)->colorId(), green.id);
    QCOMPARE(saved().at(0).colors.size(), 1);

    choose(openContextMenu(colorRows(view).at(0)), "Delete");
    QVERIFY(showsText(view, "No colors in this palette"));
    QVERIFY(saved().at(0).colors.isEmpty());

    // Back in the list the count follows.
    QTest::mouseClick(button<QAbstractButton>(view, "Back"), Qt::LeftButton);
    QCOMPARE(paletteRows(view).at(0)->countText(), QStringLiteral("0"));
}

void TestPalettesView::contextMenuFromKeyboard_data()
{
    QTest::addColumn<bool>("colorRow");
    QTest::addColumn<bool>("shiftF10");
    QTest::newRow("palette, menu key") << false << false;
    QTest::newRow("palette, shift+F10") << false << true;
    QTest::newRow("color, menu key") << true << false;
    QTest::newRow("color, shift+F10") << true << true;
}

void TestPalettesView::contextMenuFromKeyboard()
{
    QFETCH(bool, colorRow);
    QFETCH(bool, shiftF10);
    const Palette palette = m_storage->createPalette("P");
    m_storage->addColor(color("Red", 1, 0, 0), palette.id);
    MenuBarPalettesView &view = makeView();
    if (colorRow)
        view.openPalette(palette.id);
    QWidget *row = colorRow ? static_cast<QWidget *>(colorRows(view).at(0))
                            : static_cast<QWidget *>(paletteRows(view).at(0));
    row->setFocus();

    QMenu *menu = nullptr;
    if (shiftF10) {
        QTest::keyClick(row, Qt::Key_F10, Qt::ShiftModifier);
        menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    } else {
        menu = openContextMenu(row, QContextMenuEvent::Keyboard); // what the Menu key sends
    }
    QVERIFY(menu);
    // Placed at the row, not wherever the pointer happens to be.
    QVERIFY(row->rect().contains(row->mapFromGlobal(menu->pos())));
    choose(menu, "Delete");
    if (colorRow)
        QVERIFY(saved().at(0).colors.isEmpty());
    else
        QVERIFY(saved().isEmpty());
}

void TestPalettesView::focusFollowsDeletion()
{
    for (const char *name : {"A", "B", "C"})
        m_storage->createPalette(name);
    MenuBarPalettesView &view = makeView();
    paletteRows(view).at(1)->setFocus();
    choose(openContextMenu(paletteRows(view).at(1), QContextMenuEvent::Keyboard), "Delete");
    // The row that moved into the deleted one's place takes focus.
    QCOMPARE(QApplication::focusWidget(), paletteRows(view).at(1));
    QCOMPARE(paletteRows(view).at(1)->name(), QStringLiteral("C"));
    choose(openContextMenu(paletteRows(view).at(1), QContextMenuEvent::Keyboard), "Delete");
    QCOMPARE(QApplication::focusWidget(), paletteRows(view).at(0));
    choose(openContextMenu(paletteRows(view).at(0), QContextMenuEvent::Keyboard), "Delete");
    QCOMPARE(QApplication::focusWidget(), button<QAbstractButton>(view, "Create Palette"));
}

void TestPalettesView::reopenedViewStartsAtList()
{
    const Palette palette = m_storage->createPalette("P");
    makeView().openPalette(palette.id);
    MenuBarPalettesView &again = makeView();
    QVERIFY(!again.selectedPaletteId());
    QCOMPARE(paletteRows(again).size(), 1);
}

void TestPalettesView::longNamesKeepTheLayout()
{
    const QString longName(200, QLatin1Char('W'));
    const Palette palette = m_storage->createPalette(longName);
    m_storage->addColor(color(longName, 0.2, 0.4, 0.6), palette.id);
    MenuBarPalettesView &view = makeView();
    QVERIFY(view.minimumSizeHint().width() <= 300);
    QVERIFY(paletteRows(view).at(0)->geometry().right() < view.width());

    view.openPalette(palette.id);
    QVERIFY(view.minimumSizeHint().width() <= 300);
    QAbstractButton *back = button<QAbstractButton>(view, "Back");
    QVERIFY(back->isVisible());
    QVERIFY(back->width() >= back->sizeHint().width());
    QVERIFY(colorRows(view).at(0)->mapTo(&view, QPoint(colorRows(view).at(0)->width(), 0)).x() <= view.width());
}

QTEST_MAIN(TestPalettesView)
#include "tst_palettesview.moc"
