#include "app/AccessibleTabButton.h"
#include "ui/TabButton.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QSignalSpy>
#include <QTest>

// A tab-bar button is, to a screen reader, a page tab that is selected or
// not and that a press action shows.
class TestAccessibleTabButton : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { AccessibleTabButton::install(); }

    void isAPressablePageTab_data()
    {
        QTest::addColumn<bool>("selected");
        QTest::newRow("selected") << true;
        QTest::newRow("not selected") << false;
    }

    void isAPressablePageTab()
    {
        QFETCH(bool, selected);
        TabButton button(MenuTab::History);
        button.setChecked(selected);
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&button);
        QVERIFY(accessible);
        QCOMPARE(accessible->role(), QAccessible::PageTab);
        QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("History"));
        QCOMPARE(bool(accessible->state().selected), selected);
        QVERIFY(!accessible->state().checkable); // not announced as a check box
        QSignalSpy clicked(&button, &QAbstractButton::clicked);
        accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(clicked.count(), 1);
    }
};

QTEST_MAIN(TestAccessibleTabButton)
#include "tst_accessibletabbutton.moc"
