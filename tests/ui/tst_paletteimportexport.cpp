#include "UiTestSupport.h"

#include "model/PaletteFormats.h"
#include "support/TestFiles.h"
#include "ui/ListActions.h"
#include "ui/NoticeLine.h"
#include "ui/PaletteListModel.h"
#include "ui/StyledListView.h"

#include <QSignalSpy>

// Import and export as the user reaches them: files dropped on the window,
// a palette exported to the file the save dialog names, the notice line.
class TestPaletteImportExport : public QObject
{
    Q_OBJECT

private slots:
    void droppedFileBecomesOnePalette_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QByteArray>("contents");
        QTest::addColumn<QString>("notice"); // its start
        QTest::newRow("a GIMP palette")
            << "Sea.gpl" << QByteArray("GIMP Palette\nName: Deep Sea\n0 105 148\tSea\n")
            << "Imported \"Sea.gpl\"";
        QTest::newRow("a file with no colors")
            << "notes.txt" << QByteArray("nothing here") << "Could not import \"notes.txt\": ";
    }

    void droppedFileBecomesOnePalette()
    {
        QFETCH(QString, fileName);
        QFETCH(QByteArray, contents);
        QFETCH(QString, notice);
        Window w;
        w.tab()->openPalette(w.brand.id);
        const QString path = w.shared.folder.filePath(fileName);
        writeFile(path, contents);
        const QByteArray before = readFile(w.shared.paletteStorage.filePath());

        // A URL that is no local file is not taken.
        QVERIFY(!w.drop({QUrl(QStringLiteral("https://example.com/Sea.gpl"))}));
        w.window.setSelectedTab(MenuTab::History);
        QVERIFY(w.drop({QUrl::fromLocalFile(path)}));

        QCOMPARE(w.window.selectedTab(), MenuTab::Palettes);
        PalettesTab *tab = w.tab();
        QVERIFY(!tab->selectedPaletteId()); // the list shows, nothing opened
        QVERIFY(tab->notice()->isVisibleTo(tab));
        QVERIFY2(tab->notice()->text().startsWith(notice), qPrintable(tab->notice()->text()));
        QCOMPARE(tab->notice()->accessibleName(), tab->notice()->text());
        const bool imported = w.shared.paletteStorage.palettes().size() == 2;
        QCOMPARE(imported, notice.startsWith(QLatin1String("Imported")));
        if (!imported) {
            QCOMPARE(readFile(w.shared.paletteStorage.filePath()), before);
            return;
        }
        const Palette &palette = w.shared.paletteStorage.palettes().last();
        QCOMPARE(palette.name, QStringLiteral("Deep Sea"));
        QCOMPARE(tab->list()->currentIndex().data(StoreListModel::IdRole).toUuid(), palette.id);
    }

    void exportFollowsTheSuffix_data()
    {
        QTest::addColumn<QString>("chosen");        // as the save dialog hands it back
        QTest::addColumn<PaletteFormat>("filter"); // the file type chosen in it
        QTest::addColumn<QString>("written");       // empty: it fails
        QTest::addColumn<PaletteFormat>("format");
        QTest::newRow("no suffix: the filter's")
            << "brand" << PaletteFormat::Ase << "brand.ase" << PaletteFormat::Ase;
        QTest::newRow("a suffix wins over the filter")
            << "brand.CSS" << PaletteFormat::Gpl << "brand.CSS" << PaletteFormat::Css;
        QTest::newRow("an unknown suffix is kept")
            << "brand.v2" << PaletteFormat::Json << "brand.v2.json" << PaletteFormat::Json;
        QTest::newRow("a folder that does not exist")
            << "missing/brand.gpl" << PaletteFormat::Gpl << "" << PaletteFormat::Gpl;
    }

    void exportFollowsTheSuffix()
    {
        QFETCH(QString, chosen);
        QFETCH(PaletteFormat, filter);
        QFETCH(QString, written);
        QFETCH(PaletteFormat, format);
        Window w;
        ListActions *actions = w.window.findChild<ListActions *>();
        QVERIFY(actions);
        QSignalSpy failed(actions, &ListActions::exportFailed);
        const QDir dir(w.shared.folder.path());
        actions->exportPaletteToFile(w.brand.id, dir.filePath(chosen), filter);

        const QString notice = w.tab()->notice()->text();
        QCOMPARE(failed.count(), written.isEmpty() ? 1 : 0);
        if (written.isEmpty()) {
            QVERIFY(notice.startsWith(QStringLiteral("Could not export \"brand.gpl\": ")));
            return;
        }
        QCOMPARE(notice, QStringLiteral("Exported \"%1\"").arg(written));
        QCOMPARE(readFile(dir.filePath(written)),
                 PaletteFormats::write(
                     format, PaletteFormats::fromPalette(*w.shared.paletteStorage.palette(w.brand.id))));
    }
};

QTEST_MAIN(TestPaletteImportExport)
#include "tst_paletteimportexport.moc"
