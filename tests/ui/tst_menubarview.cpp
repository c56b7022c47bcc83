#include "UiTestSupport.h"

#include "ui/ContrastView.h"
#include "ui/ConvertView.h"
#include "ui/HistoryView.h"
#include "ui/IconButton.h"
#include "ui/Icons.h"
#include "ui/MenuBarPalettesView.h"
#include "ui/MenuBarPickerView.h"
#include "ui/MenuBarView.h"
#include "ui/TabButton.h"
#include "ui/TintwrightApp.h"

#include <QAbstractButton>
#include <QSignalSpy>
#include <QTest>

#include <memory>

Q_DECLARE_METATYPE(MenuTab)

class TestMenuBarView : public QObject
{
    Q_OBJECT

private slots:
    void tabsInOrder_data();
    void tabsInOrder();
    void startsOnPicker();
    void switchingShowsTheTabsView_data();
    void switchingShowsTheTabsView();
    void selectingSelectedTabChangesNothing();
    void switchDiscardsViewStateNotStores();
    void controlShortcuts_data();
    void controlShortcuts();
    void closeAndMinimiseButtons();
    void everyIconOnlyControlIsNamed();
    void windowIsFixedFramelessAndDark();
    void iconsRenderCrisp_data();
    void iconsRenderCrisp();

private:
    struct Fixture
    {
        SharedObjects shared;
        std::unique_ptr<MenuBarView> view;
        Fixture()
        {
            view = std::make_unique<MenuBarView>(shared.tintwrightService, shared.paletteStorage,
                                                 shared.historyStorage, shared.contrastStorage);
            TintwrightApp::styleWindow(view.get());
            view->show();
        }
    };
};

void TestMenuBarView::tabsInOrder_data()
{
    QTest::addColumn<MenuTab>("tab");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("icon");
    QTest::newRow("picker") << MenuTab::Picker << 0 << "Picker" << "eyedropper";
    QTest::newRow("history") << MenuTab::History << 1 << "History" << "clock";
    QTest::newRow("palettes") << MenuTab::Palettes << 2 << "Palettes" << "swatchpalette";
    QTest::newRow("convert") << MenuTab::Convert << 3 << "Convert" << "arrow.triangle.2.circlepath";
    QTest::newRow("contrast") << MenuTab::Contrast << 4 << "Contrast" << "circle.lefthalf.filled";
}

void TestMenuBarView::tabsInOrder()
{
    QFETCH(MenuTab, tab);
    QFETCH(int, index);
    QFETCH(QString, title);
    QFETCH(QString, icon);
    QCOMPARE(MenuTabs::all().size(), 5);
    QCOMPARE(MenuTabs::all().at(index), tab);
    QCOMPARE(MenuTabs::title(tab), title);
    QCOMPARE(MenuTabs::icon(tab), icon);

    Fixture f;
    TabButton *button = f.view->tabButton(tab);
    QCOMPARE(button->accessibleName(), title);
    QVERIFY(button->toolTip().startsWith(title));
    // The five buttons share the bar equally, left to right in tab order.
    const int width = f.view->tabButton(MenuTab::Picker)->width();
    QVERIFY(qAbs(button->width() - width) <= 1);
    if (index)
        QVERIFY(button->x() > f.view->tabButton(MenuTabs::all().at(index - 1))->x());
}

void TestMenuBarView::startsOnPicker()
{
    Fixture f;
    QCOMPARE(f.view->selectedTab(), MenuTab::Picker);
    QVERIFY(qobject_cast<MenuBarPickerView *>(f.view->tabView()));
    for (MenuTab tab : MenuTabs::all())
        QCOMPARE(f.view->tabButton(tab)->isSelected(), tab == MenuTab::Picker);
}

void TestMenuBarView::switchingShowsTheTabsView_data()
{
    QTest::addColumn<MenuTab>("tab");
    QTest::addColumn<QByteArray>("viewClass");
    QTest::newRow("history") << MenuTab::History << QByteArray("HistoryView");
    QTest::newRow("palettes") << MenuTab::Palettes << QByteArray("MenuBarPalettesView");
    QTest::newRow("convert") << MenuTab::Convert << QByteArray("ConvertView");
    QTest::newRow("contrast") << MenuTab::Contrast << QByteArray("ContrastView");
    QTest::newRow("picker") << MenuTab::Picker << QByteArray("MenuBarPickerView");
}

void TestMenuBarView::switchingShowsTheTabsView()
{
    QFETCH(MenuTab, tab);
    QFETCH(QByteArray, viewClass);
    Fixture f;
    if (tab == MenuTab::Picker)
        f.view->setSelectedTab(MenuTab::Contrast);
    QSignalSpy changed(f.view.get(), &MenuBarView::selectedTabChanged);
    QTest::mouseClick(f.view->tabButton(tab), Qt::LeftButton);
    QCOMPARE(f.view->selectedTab(), tab);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(QByteArray(f.view->tabView()->metaObject()->className()), viewClass);
    QVERIFY(f.view->tabView()->isVisible());
    for (MenuTab other : MenuTabs::all())
        QCOMPARE(f.view->tabButton(other)->isSelected(), other == tab);
    // The content fills the window below the tab bar and divider.
    QCOMPARE(f.view->tabView()->width(), 300);
    QCOMPARE(f.view->tabView()->geometry().bottom(), 399);
}

void TestMenuBarView::selectingSelectedTabChangesNothing()
{
    Fixture f;
    QPointer<QWidget> before = f.view->tabView();
    QSignalSpy changed(f.view.get(), &MenuBarView::selectedTabChanged);
    QTest::mouseClick(f.view->tabButton(MenuTab::Picker), Qt::LeftButton);
    QCOMPARE(f.view->tabView(), before.data());
    QVERIFY(f.view->tabButton(MenuTab::Picker)->isSelected());
    QCOMPARE(changed.size(), 0);
}

void TestMenuBarView::switchDiscardsViewStateNotStores()
{
    Fixture f;
    f.shared.paletteStorage.createPalette(QStringLiteral("Brand"));
    auto *picker = qobject_cast<MenuBarPickerView *>(f.view->tabView());
    picker->showAddSheet();
    QPointer<AddColorSheet> sheet = picker->addSheet();
    QPointer<QWidget> oldView = picker;
    QVERIFY(sheet);
    sheet->close();
    QTRY_VERIFY(!sheet);
    picker->showNewPalettePrompt();
    QPointer<TextPromptDialog> prompt = picker->newPalettePrompt();

    f.view->setSelectedTab(MenuTab::History);
    QVERIFY(!oldView);
    QVERIFY(!prompt);
    f.view->setSelectedTab(MenuTab::Picker);
    auto *fresh = qobject_cast<MenuBarPickerView *>(f.view->tabView());
    QVERIFY(fresh);
    QVERIFY(!fresh->addSheet() && !fresh->newPalettePrompt());
    QCOMPARE(fresh->colorName(), QString());
    QCOMPARE(f.shared.paletteStorage.palettes().size(), 1);
}

void TestMenuBarView::controlShortcuts_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<MenuTab>("tab");
    QTest::newRow("ctrl+2") << int(Qt::Key_2) << MenuTab::History;
    QTest::newRow("ctrl+3") << int(Qt::Key_3) << MenuTab::Palettes;
    QTest::newRow("ctrl+4") << int(Qt::Key_4) << MenuTab::Convert;
    QTest::newRow("ctrl+5") << int(Qt::Key_5) << MenuTab::Contrast;
}

void TestMenuBarView::controlShortcuts()
{
    QFETCH(int, key);
    QFETCH(MenuTab, tab);
    Fixture f;
    f.view->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(f.view.get()));
    QTest::keyClick(f.view.get(), Qt::Key(key), Qt::ControlModifier);
    QCOMPARE(f.view->selectedTab(), tab);
    QTest::keyClick(f.view.get(), Qt::Key_1, Qt::ControlModifier);
    QCOMPARE(f.view->selectedTab(), MenuTab::Picker);
}

void TestMenuBarView::closeAndMinimiseButtons()
{
    Fixture f;
    auto *minimise = f.view->findChild<IconButton *>(QStringLiteral("minimizeButton"));
    auto *close = f.view->findChild<IconButton *>(QStringLiteral("closeButton"));
    QVERIFY(minimise && minimise->isVisible());
    QVERIFY(close && close->isVisible());
    QCOMPARE(minimise->symbol(), QStringLiteral("minus"));
    QCOMPARE(close->symbol(), QStringLiteral("xmark"));
    // Right of the five tabs, inside the window.
    QVERIFY(minimise->x() > f.view->tabButton(MenuTab::Contrast)->geometry().right());
    QVERIFY(close->mapTo(f.view.get(), QPoint(close->width(), 0)).x() <= 300);
    QTest::mouseClick(close, Qt::LeftButton);
    QVERIFY(!f.view->isVisible());

    Fixture g;
    g.view->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(g.view.get()));
    QTest::keyClick(g.view.get(), Qt::Key_W, Qt::ControlModifier);
    QVERIFY(!g.view->isVisible());
}

void TestMenuBarView::everyIconOnlyControlIsNamed()
{
    Fixture f;
    for (MenuTab tab : MenuTabs::all()) {
        f.view->setSelectedTab(tab);
        for (QAbstractButton *button : f.view->findChildren<QAbstractButton *>()) {
            if (!button->isVisibleTo(f.view.get()) || !button->text().isEmpty())
                continue;
            const QByteArray where = QByteArray(button->metaObject()->className()) + " "
                                     + button->objectName().toUtf8() + " on " + MenuTabs::title(tab).toUtf8();
            QVERIFY2(!button->accessibleName().isEmpty(), where);
            QVERIFY2(!button->toolTip().isEmpty(), where);
        }
    }
}

void TestMenuBarView::windowIsFixedFramelessAndDark()
{
    Fixture f;
    QCOMPARE(f.view->size(), QSize(300, 400));
    QCOMPARE(f.view->minimumSize(), QSize(300, 400));
    QCOMPARE(f.view->maximumSize(), QSize(300, 400));
    QVERIFY(f.view->windowFlags() & Qt::FramelessWindowHint);
    QCOMPARE(f.view->windowTitle(), QStringLiteral("Tintwright"));
    const QImage image = f.view->grab().toImage();
    // Opaque and dark everywhere on the background, whatever the desktop.
    for (const QPoint &p : {QPoint(1, 399 - 1), QPoint(299 - 1, 399 - 1), QPoint(150, 398)}) {
        const QColor c = image.pixelColor(p * image.devicePixelRatio());
        QCOMPARE(c.alpha(), 255);
        QVERIFY2(c.lightness() < 60, qPrintable(c.name()));
    }
}

void TestMenuBarView::iconsRenderCrisp_data()
{
    QTest::addColumn<QString>("symbol");
    for (const char *name : {"eyedropper", "clock", "swatchpalette", "arrow.triangle.2.circlepath",
                             "circle.lefthalf.filled", "clipboard", "checkmark", "plus", "chevron.left",
                             "chevron.right", "xmark", "minus"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestMenuBarView::iconsRenderCrisp()
{
    QFETCH(QString, symbol);
    QVERIFY(Icons::exists(symbol));
    const QPixmap pm = Icons::pixmap(symbol, Qt::red, 12, 2.0);
    QCOMPARE(pm.size(), QSize(24, 24));
    QCOMPARE(pm.devicePixelRatio(), 2.0);
    const QImage image = pm.toImage();
    int opaque = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QColor c = image.pixelColor(x, y);
            if (c.alpha() > 200) {
                ++opaque;
                QCOMPARE(c.rgb(), QColor(Qt::red).rgb()); // tinted, no other color
            }
        }
    QVERIFY2(opaque > 10, qPrintable(QString::number(opaque)));
    // A QIcon asked for a device-pixel size draws at that size.
    const QIcon icon = Icons::icon(symbol, Qt::white);
    QCOMPARE(icon.pixmap(QSize(12, 12), 2.0).size(), QSize(24, 24));
    QVERIFY(!Icons::exists(QStringLiteral("no.such.symbol")));
}

QTEST_MAIN(TestMenuBarView)
#include "tst_menubarview.moc"
