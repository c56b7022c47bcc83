#include "app/AccessibleWidgets.h"
#include "storage/PaletteStorage.h"
#include "ui/MenuBarPaletteRow.h"
#include "ui/PaletteColorRow.h"
#include "ui/TabButton.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QApplication>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

// How the program's hand-drawn widgets present themselves to screen
// readers: role, state, description and the actions a reader can run.
class TestAccessibleWidgets : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { AccessibleWidgets::install(); }

    void tabButtonIsAPressablePageTab_data()
    {
        QTest::addColumn<bool>("selected");
        QTest::newRow("selected") << true;
        QTest::newRow("not selected") << false;
    }

    void tabButtonIsAPressablePageTab()
    {
        QFETCH(bool, selected);
        TabButton button(MenuTab::History);
        button.setSelected(selected);
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&button);
        QVERIFY(accessible);
        QCOMPARE(accessible->role(), QAccessible::PageTab);
        QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("History"));
        QCOMPARE(bool(accessible->state().selected), selected);
        QVERIFY(!accessible->state().checkable); // not announced as a check box

        QAccessibleActionInterface *actions = accessible->actionInterface();
        QVERIFY(actions);
        QVERIFY(actions->actionNames().contains(QAccessibleActionInterface::pressAction()));
        QSignalSpy clicked(&button, &QAbstractButton::clicked);
        actions->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(clicked.count(), 1);
    }

    void paletteCardIsAButtonThatOpensIt()
    {
        QTemporaryDir folder;
        PaletteStorage storage(folder.path());
        Palette palette = Palette::create(QStringLiteral("Brand"));
        palette.colors.append(ColorItem::create(QStringLiteral("Orange"), 1, 0.5, 0));
        MenuBarPaletteRow row(palette, storage);
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&row);
        QVERIFY(accessible);
        QCOMPARE(accessible->role(), QAccessible::Button);
        QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Brand"));
        QVERIFY(accessible->text(QAccessible::Description).startsWith(row.countText()));

        QSignalSpy tapped(&row, &MenuBarPaletteRow::tapped);
        accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QTRY_COMPARE(tapped.count(), 1);
        QVERIFY(accessible->actionInterface()->actionNames().contains(QAccessibleActionInterface::showMenuAction()));
    }

    void paletteColorIsAListItemWithItsHex()
    {
        QTemporaryDir folder;
        PaletteStorage storage(folder.path());
        const ColorItem color = ColorItem::create(QStringLiteral("Sky"), 0.2, 0.4, 0.8);
        PaletteColorRow row(color, QUuid::createUuid(), storage);
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&row);
        QVERIFY(accessible);
        QCOMPARE(accessible->role(), QAccessible::ListItem);
        QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Sky"));
        QCOMPARE(accessible->text(QAccessible::Description), QStringLiteral("#3366CC"));
        // Nothing to press: copying and removing live in its context menu.
        QVERIFY(!accessible->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
    }

    void otherWidgetsKeepQtsInterfaces()
    {
        QWidget plain;
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&plain);
        QVERIFY(accessible);
        QVERIFY(accessible->role() != QAccessible::PageTab);
    }
};

QTEST_MAIN(TestAccessibleWidgets)
#include "tst_accessiblewidgets.moc"
