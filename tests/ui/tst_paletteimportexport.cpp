#include "support/AppFixture.h"
#include "support/TestFiles.h"

#include "ui/NoticeLine.h"
#include "ui/PaletteFiles.h"
#include "ui/PaletteListModel.h"
#include "ui/PalettesTab.h"
#include "ui/StyledListView.h"

#include <QDir>
#include <QTest>

Q_DECLARE_METATYPE(PaletteFormat)

// Import and export as the user reaches them: files dropped on the window,
// a palette exported to the file the save dialog names, the notice line.
class TestPaletteImportExport : public QObject
{
    Q_OBJECT

private slots:
    void droppedFileBecomesOnePalette_data()
    {
        QTest::addColumn<QString>("fileName"); // empty: a folder
        QTest::addColumn<QByteArray>("contents");
        QTest::addColumn<QString>("notice");
        QTest::newRow("a GIMP palette")
            << "Sea.gpl" << QByteArray("GIMP Palette\nName: Deep Sea\n0 105 148\tSea\n")
            << "Imported \"Sea.gpl\": 1 color";
        QTest::newRow("named after the file, skips counted")
            << "Sea.and.Sky.css" << QByteArray(":root { --sea: #006994; --x: rgb(x); }")
            << "Imported \"Sea.and.Sky.css\": 1 color, 1 unreadable entry skipped";
        QTest::newRow("a file with no colors") << "notes.txt" << QByteArray("nothing here")
                                               << "Could not import \"notes.txt\": it holds no colors";
        QTest::newRow("a folder") << "" << QByteArray() << "Could not import \"folder.gpl\": it is a folder";
        QTest::newRow("over 10 MB, not read")
            << "huge.gpl" << QByteArray() << "Could not import \"huge.gpl\": the file is larger than 10 MB";
    }

    void droppedFileBecomesOnePalette()
    {
        QFETCH(QString, fileName);
        QFETCH(QByteArray, contents);
        QFETCH(QString, notice);
        AppFixture f;
        const Palette brand = f.palettes().createPalette(QStringLiteral("Brand"));
        f.show<PalettesTab>(MenuTab::Palettes)->openPalette(brand.id);
        QString path = f.folder.filePath(fileName);
        if (fileName.isEmpty()) {
            path = f.folder.filePath(QStringLiteral("folder.gpl"));
            QVERIFY(QDir().mkdir(path));
        } else if (fileName == "huge.gpl") {
            // Sparse: its size says too large, its bytes would read as a palette.
            QFile huge(path);
            QVERIFY(huge.open(QIODevice::WriteOnly) && huge.write("GIMP Palette\n1 2 3\n") > 0);
            QVERIFY(huge.resize(PaletteFormats::maxFileSize + 1));
        } else {
            writeFile(path, contents);
        }
        const QByteArray before = readFile(f.palettes().filePath());

        // A URL that is no local file is not taken.
        QVERIFY(!f.drop({QUrl(QStringLiteral("https://example.com/Sea.gpl"))}));
        f.window().setSelectedTab(MenuTab::History);
        QVERIFY(f.drop({QUrl::fromLocalFile(path)}));

        QCOMPARE(f.window().selectedTab(), MenuTab::Palettes);
        auto *tab = qobject_cast<PalettesTab *>(f.window().tab());
        QVERIFY(!tab->selectedPaletteId()); // the list shows, nothing opened
        QVERIFY(tab->notice()->isVisibleTo(tab));
        QCOMPARE(tab->notice()->text(), notice);
        QCOMPARE(tab->notice()->accessibleName(), notice);
        const bool imported = f.palettes().palettes().size() == 2;
        QCOMPARE(imported, notice.startsWith(QLatin1String("Imported")));
        if (!imported) {
            QCOMPARE(readFile(f.palettes().filePath()), before);
            return;
        }
        const Palette &palette = f.palettes().palettes().last();
        QCOMPARE(palette.name,
                 fileName == "Sea.gpl" ? QStringLiteral("Deep Sea") : QStringLiteral("Sea.and.Sky"));
        QCOMPARE(tab->list()->currentIndex().data(StoreListModel::IdRole).toUuid(), palette.id);
    }

    void exportFollowsTheSuffix_data()
    {
        QTest::addColumn<QString>("chosen");       // as the save dialog hands it back
        QTest::addColumn<PaletteFormat>("filter"); // the file type chosen in it
        QTest::addColumn<QString>("written");      // empty: it fails
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
        AppFixture f;
        const Palette brand = f.palettes().createPalette(
            QStringLiteral("Brand"), {ColorItem::create(QStringLiteral("Sky Blue"), 0.2, 0.4, 0.8)});
        auto *tab = f.show<PalettesTab>(MenuTab::Palettes);
        const QDir dir(f.folder.path());
        f.window().paletteFiles().exportToFile(brand.id, dir.filePath(chosen), filter);

        const QString notice = tab->notice()->text();
        if (written.isEmpty()) {
            QVERIFY2(notice.startsWith(QStringLiteral("Could not export \"brand.gpl\": ")),
                     qPrintable(notice));
            QCOMPARE(QDir(dir.filePath("missing")).exists(), false);
            return;
        }
        QCOMPARE(notice, QStringLiteral("Exported \"%1\"").arg(written));
        QCOMPARE(readFile(dir.filePath(written)),
                 PaletteFormats::write(format, PaletteFormats::fromPalette(brand)));
        QCOMPARE(dir.entryList({QStringLiteral("brand*")}, QDir::Files),
                 QStringList{written}); // no temporary left
    }
};

QTEST_MAIN(TestPaletteImportExport)
#include "tst_paletteimportexport.moc"
