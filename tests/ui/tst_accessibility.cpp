// What a screen reader finds, walked through Qt's accessibility interfaces:
// in every tab, with data and empty, and in both dialogs, each control a
// user operates has a role that says what it is and a name; lists expose
// their items by name; the tab bar is a list of the five tabs. Tab moves
// focus in reading order, and the focused control shows it.
#include "support/AppFixture.h"

#include "ui/AddColorSheet.h"
#include "ui/AddToPaletteFlow.h"
#include "ui/DarkStyle.h"
#include "ui/PickerTab.h"
#include "ui/TextPromptDialog.h"

#include <QAccessible>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTest>

Q_DECLARE_METATYPE(MenuTab)

namespace {

const QList<QAccessible::Role> operated = {
    QAccessible::Button,   QAccessible::CheckBox,     QAccessible::RadioButton,
    QAccessible::ComboBox, QAccessible::EditableText, QAccessible::PageTab,
    QAccessible::ListItem, QAccessible::Link,         QAccessible::MenuItem};

// Every shown node under a widget's, as "role name" lines for the problems
// found, and each list as "name: items".
void walk(QAccessibleInterface *node, QStringList &problems, QStringList &lists)
{
    for (int i = 0; i < node->childCount(); ++i) {
        QAccessibleInterface *child = node->child(i);
        if (!child || child->state().invisible)
            continue;
        const QString name = child->text(QAccessible::Name);
        const QString where =
            QStringLiteral("%1 in %2").arg(int(child->role())).arg(node->text(QAccessible::Name));
        if (operated.contains(child->role()) && name.trimmed().isEmpty())
            problems.append(QStringLiteral("unnamed ") + where);
        if (child->state().focusable && !operated.contains(child->role())
            && child->role() != QAccessible::List && child->role() != QAccessible::PageTabList
            && child->role() != QAccessible::StaticText)
            problems.append(QStringLiteral("focusable with a role that says nothing: ") + where);
        if (child->role() == QAccessible::List)
            lists.append(name + QStringLiteral(": ") + QString::number(child->childCount()));
        walk(child, problems, lists);
    }
}

} // namespace

class TestAccessibility : public QObject
{
    Q_OBJECT

private slots:
    void everyTabNamesItsControls_data()
    {
        QTest::addColumn<MenuTab>("tab");
        QTest::addColumn<bool>("withData");
        for (const MenuTab tab : MenuTabs::all) {
            QTest::addRow("%s, with data", qPrintable(MenuTabs::title(tab))) << tab << true;
            QTest::addRow("%s, empty", qPrintable(MenuTabs::title(tab))) << tab << false;
        }
    }

    void everyTabNamesItsControls()
    {
        QFETCH(MenuTab, tab);
        QFETCH(bool, withData);
        AppFixture f;
        if (withData) {
            f.history().addColor(ColorItem::create(QStringLiteral("Picked Color"), 0.2, 0.4, 0.8));
            f.palettes().createPalette(QStringLiteral("Brand"),
                                       {ColorItem::create(QStringLiteral("Sky"), 0.2, 0.4, 0.8)});
        }
        f.show<QWidget>(tab);
        QStringList problems, lists;
        walk(QAccessible::queryAccessibleInterface(&f.window()), problems, lists);
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join(u'\n')));
        if (withData && (tab == MenuTab::History || tab == MenuTab::Palettes))
            QCOMPARE(lists,
                     QStringList{MenuTabs::title(tab) == "History" ? QStringLiteral("Recent Colors: 1")
                                                                   : QStringLiteral("Palettes: 1")});

        // The tab bar: a list of the five tabs, the current one so marked.
        QAccessibleInterface *bar = QAccessible::queryAccessibleInterface(f.window().tabBar());
        QCOMPARE(bar->role(), QAccessible::PageTabList);
        QStringList names;
        for (int i = 0; i < bar->childCount(); ++i) {
            if (bar->child(i)->state().invisible)
                continue; // the scroll buttons a bar this wide never shows
            QCOMPARE(bar->child(i)->role(), QAccessible::PageTab);
            names.append(bar->child(i)->text(QAccessible::Name));
            QCOMPARE(bar->child(i)->state().focused, i == int(tab)); // how Qt 6.4 marks the current tab
        }
        QCOMPARE(names, (QStringList{"Picker", "History", "Palettes", "Convert", "Contrast"}));
    }

    void dialogsNameTheirControls()
    {
        AppFixture f;
        f.palettes().createPalette(QStringLiteral("Brand"));
        PickerTab *picker = f.show<PickerTab>(MenuTab::Picker);
        picker->showAddSheet();
        QVERIFY(QTest::qWaitForWindowExposed(picker->addToPalette().sheet()));
        QStringList problems, lists;
        walk(QAccessible::queryAccessibleInterface(picker->addToPalette().sheet()), problems, lists);
        picker->addToPalette().sheet()->close();
        picker->showNewPalettePrompt();
        walk(QAccessible::queryAccessibleInterface(picker->newPalettePrompt()), problems, lists);
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join(u'\n')));
    }

    // Tab goes through the controls top to bottom, left to right within a
    // row, each showing that it has focus.
    void tabMovesInReadingOrder_data()
    {
        QTest::addColumn<MenuTab>("tab");
        for (const MenuTab tab : MenuTabs::all)
            QTest::addRow("%s", qPrintable(MenuTabs::title(tab))) << tab;
    }

    void tabMovesInReadingOrder()
    {
        QFETCH(MenuTab, tab);
        AppFixture f;
        f.history().addColor(ColorItem::create(QStringLiteral("Picked Color"), 0.2, 0.4, 0.8));
        f.palettes().createPalette(QStringLiteral("Brand"));
        f.show<QWidget>(tab);
        QVERIFY(QTest::qWaitForWindowActive(&f.window()));
        f.window().tabBar()->clearFocus();
        f.window().tabBar()->setFocus(Qt::TabFocusReason);
        QPoint last(-1, -1);
        QStringList visited;
        for (QWidget *focused = f.window().tabBar(); visited.size() < 30;) {
            const QPoint at = focused->mapTo(&f.window(), QPoint(0, 0));
            visited.append(QString::fromLatin1(focused->metaObject()->className()) + u' '
                           + focused->accessibleName());
            QVERIFY2(qobject_cast<QLineEdit *>(focused) || DarkStyle::showsFocusRing(focused),
                     qPrintable(visited.last() + QStringLiteral(" shows no focus")));
            QVERIFY2(at.y() > last.y() || (at.y() >= last.y() - 4 && at.x() > last.x()),
                     qPrintable(visited.join(QStringLiteral(", "))));
            last = at;
            QTest::keyClick(focused, Qt::Key_Tab);
            focused = QApplication::focusWidget();
            if (focused == f.window().tabBar())
                break;
        }
        QVERIFY2(visited.size() > 1 && visited.size() < 30, qPrintable(visited.join(QStringLiteral(", "))));
    }

    // Return presses a focused button, as Space does; a click gives focus
    // without the ring.
    void returnPressesAClickShowsNoRing()
    {
        AppFixture f;
        auto *picker = f.show<PickerTab>(MenuTab::Picker);
        QVERIFY(QTest::qWaitForWindowActive(&f.window()));
        const QList<QPushButton *> buttons = picker->findChildren<QPushButton *>();
        const auto named = [&](const char *name) {
            return *std::find_if(buttons.begin(), buttons.end(), [name](QPushButton *b) {
                return (b->accessibleName() + b->text()) == QLatin1String(name);
            });
        };
        named("Pick Color")->setFocus(Qt::TabFocusReason);
        QVERIFY(DarkStyle::showsFocusRing(named("Pick Color")));
        QTest::keyClick(named("Pick Color"), Qt::Key_Return);
        QVERIFY(f.sampler && f.sampler->started);
        f.sampler->cancel();
        QTest::mouseClick(named("Copy RGB"), Qt::LeftButton);
        QVERIFY(named("Copy RGB")->hasFocus() && !DarkStyle::showsFocusRing(named("Copy RGB")));
    }
};

QTEST_MAIN(TestAccessibility)
#include "tst_accessibility.moc"
