#include "support/AppFixture.h"
#include "support/FakePortal.h"

#include "app/GlobalPickShortcut.h"
#include "ui/AddColorSheet.h"
#include "ui/AddToPaletteFlow.h"
#include "ui/HistoryTab.h"
#include "ui/PickerTab.h"
#include "ui/StyledListView.h"

#include <QComboBox>
#include <QLineEdit>
#include <QTest>

Q_DECLARE_METATYPE(MenuTab)

// The application as its composition root puts it together: the stores,
// the one rule between them, the window's tabs working on them, and the
// global shortcut's portal protocol against a fake portal on a private bus.
class TestTintwrightApp : public QObject
{
    Q_OBJECT

private slots:
    void everyFinishedPickGoesToTheHistory_data()
    {
        QTest::addColumn<bool>("chosen");
        QTest::newRow("a color is chosen") << true;
        // The service still holds its color after a cancel, so that goes in.
        QTest::newRow("cancelled: the current color goes in") << false;
    }

    void everyFinishedPickGoesToTheHistory()
    {
        QFETCH(bool, chosen);
        AppFixture f;
        const ColorItem before = *f.app.tintwrightService().pickedColor();
        f.show<PickerTab>(MenuTab::Picker)->pickColor();
        QVERIFY(f.sampler && f.sampler->started);
        // Whatever the window shows by the time the pick ends.
        f.app.window().setSelectedTab(MenuTab::Contrast);
        QVERIFY(f.app.historyStorage().colors().isEmpty());
        chosen ? f.sampler->finishWith(0.2, 0.4, 0.8) : f.sampler->cancel();
        QCOMPARE(f.app.historyStorage().colors().size(), 1);
        QCOMPARE(f.app.historyStorage().colors().first(), *f.app.tintwrightService().pickedColor());
        QCOMPARE(f.app.historyStorage().colors().first().id == before.id, !chosen);
    }

    void addToPaletteKeepsTheId_data()
    {
        QTest::addColumn<MenuTab>("from");
        QTest::newRow("the picked color, from Picker") << MenuTab::Picker;
        QTest::newRow("a history color, from History") << MenuTab::History;
    }

    // The sheet starts on the first palette, then on the one this tab used
    // last; palettes made while it is open join its menu.
    void addToPaletteKeepsTheId()
    {
        QFETCH(MenuTab, from);
        AppFixture f;
        const Palette first = f.app.paletteStorage().createPalette(QStringLiteral("First"));
        const Palette target = f.app.paletteStorage().createPalette(QStringLiteral("Second"));
        f.app.tintwrightService().pickColor();
        f.sampler->finishWith(1.0, 128 / 255.0, 0.0);
        const ColorItem picked = f.app.historyStorage().colors().first();
        const QList<ColorItem> history = f.app.historyStorage().colors();
        AddToPaletteFlow *flow = nullptr;
        const auto open = [&](const Palette &preselected) {
            if (from == MenuTab::Picker) {
                PickerTab *picker = f.show<PickerTab>(MenuTab::Picker);
                picker->showAddSheet();
                flow = &picker->addToPalette();
            } else {
                HistoryTab *historyTab = f.show<HistoryTab>(MenuTab::History);
                historyTab->showAddSheet(historyTab->list()->model()->index(0, 0));
                flow = &historyTab->addToPalette();
            }
            QVERIFY(flow->sheet() && flow->sheet()->isVisible());
            QCOMPARE(flow->sheet()->selectedPalette(), std::optional<QUuid>(preselected.id));
            QCOMPARE(flow->sheet()->paletteMenu()->currentText(), preselected.name);
        };
        open(first);
        AddColorSheet *sheet = flow->sheet();
        QCOMPARE(sheet->nameField()->text(), picked.name);
        sheet->setSelectedPalette(target.id);
        sheet->nameField()->setText(QStringLiteral("Orange"));
        QTest::keyClick(sheet->nameField(), Qt::Key_Return);

        const QList<ColorItem> filed = f.app.paletteStorage().palette(target.id)->colors;
        QCOMPARE(filed, QList<ColorItem>{picked.renamed(QStringLiteral("Orange"))});
        QVERIFY(f.app.paletteStorage().palettes().first().colors.isEmpty());
        QCOMPARE(f.app.historyStorage().colors(), history);
        open(target);
        const Palette made = f.app.paletteStorage().createPalette(QStringLiteral("Later"));
        flow->sheet()->setSelectedPalette(made.id);
        QCOMPARE(flow->sheet()->paletteMenu()->currentData().toUuid(), made.id);
    }

    void commandPicksThroughTheWindow()
    {
        AppFixture f;
        QList<SingleInstance::PickReply> replies;
        const auto answer = [&replies](const SingleInstance::PickReply &reply) { replies.append(reply); };
        f.app.pickOnRequest(Notation::Rgb, true, answer);
        f.app.pickOnRequest(Notation::Hex, true, answer); // one pick at a time
        QCOMPARE(replies.size(), 1);
        QVERIFY(replies[0].busy);
        f.sampler->finishWith(0.2, 0.4, 0.8);
        QCOMPARE(replies.size(), 2);
        QVERIFY(!replies[1].busy && replies[1].result.isPicked());
        QCOMPARE(clipboardText(), QStringLiteral("rgb(51, 102, 204)"));
        QCOMPARE(f.history().colors(), replies[1].result.colors);
    }

    void activation_data()
    {
        QTest::addColumn<bool>("fromPortal");
        QTest::addColumn<QString>("session");
        QTest::addColumn<QString>("id");
        QTest::addColumn<int>("activations");
        const QString ours = FakePortal::sessionPath, shortcut = GlobalPickShortcut::shortcutId;
        QTest::newRow("the portal, our session and id") << true << ours << shortcut << 1;
        QTest::newRow("another client") << false << ours << shortcut << 0;
        QTest::newRow("another session") << true << ours + u'2' << shortcut << 0;
        QTest::newRow("another shortcut") << true << ours << QStringLiteral("other") << 0;
    }

    // The shortcut is bound through the portal; only the portal's own
    // Activated, for this session and shortcut, picks, copies and shows.
    void activation()
    {
        QFETCH(bool, fromPortal);
        QFETCH(QString, session);
        QFETCH(QString, id);
        QFETCH(int, activations);
        FakePortal portal;
        QVERIFY(portal.registerOnBus());
        AppFixture f;
        f.window().hide();
        f.app.listenForGlobalShortcut(portal.connect());
        QTRY_COMPARE(portal.boundIds, QStringList{GlobalPickShortcut::shortcutId});
        QCOMPARE(portal.boundSessions, QStringList{FakePortal::sessionPath});

        FakePortal::activate(fromPortal ? portal.portalBus : portal.connect(), session, id);
        QTest::qWait(200);
        QCOMPARE(f.sampler && f.sampler->started, activations == 1);
        if (!activations)
            return;
        f.sampler->finishWith(1.0, 0.0, 0.0);
        QTRY_VERIFY(f.window().isVisible());
        QCOMPARE(clipboardText(), QStringLiteral("#FF0000"));
        QCOMPARE(f.history().colors().size(), 1);
    }
};

QTEST_MAIN(TestTintwrightApp)
#include "tst_tintwrightapp.moc"
