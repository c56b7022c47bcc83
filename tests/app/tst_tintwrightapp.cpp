#include "UiTestSupport.h"

#include "app/TintwrightApp.h"
#include "ui/AddColorSheet.h"
#include "ui/AddToPaletteFlow.h"
#include "ui/HistoryTab.h"
#include "ui/MainWindow.h"
#include "ui/PickerTab.h"

#include <QLineEdit>
#include <QTest>

Q_DECLARE_METATYPE(MenuTab)

// The application as its composition root puts it together: the stores,
// the one rule between them, and the window's tabs working on them.
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
        Fixture f;
        const ColorItem before = *f.app.tintwrightService().pickedColor();
        f.show<PickerTab>(MenuTab::Picker)->pickColor();
        QVERIFY(f.sampler && f.sampler->started);
        // Whatever the window shows by the time the pick ends.
        f.app.window().setSelectedTab(MenuTab::Contrast);
        QVERIFY(f.app.historyStorage().colors().isEmpty());
        if (chosen)
            f.sampler->finishWith(0.2, 0.4, 0.8);
        else
            f.sampler->cancel();
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

    void addToPaletteKeepsTheId()
    {
        QFETCH(MenuTab, from);
        Fixture f;
        f.app.paletteStorage().createPalette(QStringLiteral("First"));
        const Palette target = f.app.paletteStorage().createPalette(QStringLiteral("Second"));
        f.app.tintwrightService().pickColor();
        f.sampler->finishWith(1.0, 128 / 255.0, 0.0);
        const ColorItem picked = f.app.historyStorage().colors().first();
        const QList<ColorItem> history = f.app.historyStorage().colors();

        AddToPaletteFlow *flow = nullptr;
        if (from == MenuTab::Picker) {
            PickerTab *picker = f.show<PickerTab>(MenuTab::Picker);
            picker->showAddSheet();
            flow = &picker->addToPalette();
        } else {
            HistoryTab *historyTab = f.show<HistoryTab>(MenuTab::History);
            historyTab->showAddSheet(picked.id);
            flow = &historyTab->addToPalette();
        }
        AddColorSheet *sheet = flow->sheet();
        QVERIFY(sheet && sheet->isVisible());
        QCOMPARE(sheet->nameField()->text(), picked.name);
        sheet->setSelectedPalette(target.id);
        sheet->nameField()->setText(QStringLiteral("Orange"));
        QTest::keyClick(sheet->nameField(), Qt::Key_Return);

        const QList<ColorItem> filed = f.app.paletteStorage().palette(target.id)->colors;
        QCOMPARE(filed, QList<ColorItem>{picked.renamed(QStringLiteral("Orange"))});
        QVERIFY(f.app.paletteStorage().palettes().first().colors.isEmpty());
        QCOMPARE(f.app.historyStorage().colors(), history);
        // The next sheet of the same tab opens on the palette just used.
        QCOMPARE(flow->rememberedPalette(), std::optional<QUuid>(target.id));
    }

private:
    struct Fixture
    {
        QTemporaryDir folder;
        TintwrightApp app{folder.path()};
        QPointer<ManualSampler> sampler;
        Fixture()
        {
            app.tintwrightService().setSamplerFactory([this](QObject *parent) -> ColorSampler * {
                sampler = new ManualSampler(parent);
                return sampler;
            });
            app.show();
        }
        template<typename Tab> Tab *show(MenuTab tab)
        {
            app.window().setSelectedTab(tab);
            return qobject_cast<Tab *>(app.window().tab());
        }
    };
};

QTEST_MAIN(TestTintwrightApp)
#include "tst_tintwrightapp.moc"
