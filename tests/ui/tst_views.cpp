// The tabs' own rules: Convert commits a group on Return; Contrast keeps
// no copy of its texts; no text in any field breaks the window; palette
// files dropped on the window and exported.
#include "support/AppFixture.h"
#include "support/TestFiles.h"

#include "model/Contrast.h"
#include "storage/ContrastStorage.h"
#include "ui/AddColorSheet.h"
#include "ui/AddToPaletteFlow.h"
#include "ui/ContrastFixes.h"
#include "ui/ContrastTab.h"
#include "ui/ConvertTab.h"
#include "ui/NoticeLine.h"
#include "ui/PaletteFiles.h"
#include "ui/PaletteListModel.h"
#include "ui/PalettesTab.h"
#include "ui/PickerTab.h"
#include "ui/StyledListView.h"
#include "ui/TextPromptDialog.h"
#include "ui/VisionPreviews.h"

#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

Q_DECLARE_METATYPE(Notation)
Q_DECLARE_METATYPE(PaletteFormat)

namespace {

// Replaces a field's text keystroke by keystroke, as a user would.
void retype(QLineEdit *edit, const QString &text)
{
    QTest::keyClick(edit, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(edit, Qt::Key_Backspace);
    QTest::keyClicks(edit, text);
}

// Types every field of a group, then presses Return in its last field.
void typeAndCommit(ConvertTab &view, Notation notation, const QStringList &texts)
{
    for (qsizetype i = 0; i < texts.size(); ++i)
        retype(view.fields(notation).at(i), texts.at(i));
    QTest::keyClick(view.fields(notation).last(), Qt::Key_Return);
}

} // namespace

class TestViews : public QObject
{
    Q_OBJECT

private slots:
    void convertCommit_data()
    {
        QTest::addColumn<Notation>("notation");
        QTest::addColumn<QStringList>("typed");
        QTest::newRow("hex with blanks") << Notation::Hex << QStringList{" #ff0000 "};
        QTest::newRow("hex short form") << Notation::Hex << QStringList{"FFF"};
        QTest::newRow("rgb signs") << Notation::Rgb << QStringList{"+255", "-0", "0"};
        QTest::newRow("hsl decimals kept") << Notation::Hsl << QStringList{"120.0", "1e2", "25"};
        QTest::newRow("hsl trailing blank") << Notation::Hsl << QStringList{"0", "100", "50 "};
        QTest::newRow("cmyk 101") << Notation::Cmyk << QStringList{"101", "0", "0", "0"};
    }
    void convertCommit()
    {
        QFETCH(Notation, notation);
        QFETCH(QStringList, typed);
        ConvertTab view;
        QList<QStringList> before;
        for (const Notation group : Notations::all)
            before.append(view.texts(group));
        typeAndCommit(view, notation, typed);
        const std::optional<RgbColor> parsed = Notations::parseFields(notation, typed);
        QVERIFY(view.color() == parsed.value_or(RgbColor{1, 1, 1}));
        // The committed group keeps exactly what was typed, valid or not.
        for (const Notation group : Notations::all)
            QCOMPARE(view.texts(group),
                     group == notation ? typed
                         : parsed      ? Notations::fieldTexts(group, *parsed)
                                       : before.at(int(group)));
        QCOMPARE(view.isUpdating(), parsed.has_value());
        QTRY_VERIFY(!view.isUpdating());
    }

    void convertGuardDropsCommitsUntilNextTurn()
    {
        ConvertTab view;
        typeAndCommit(view, Notation::Hex, {"ff0000"});
        // A second commit before the event loop has turned is dropped whole.
        typeAndCommit(view, Notation::Rgb, {"0", "0", "255"});
        QVERIFY(view.color() == (RgbColor{1.0, 0.0, 0.0}));
        QCOMPARE(view.texts(Notation::Hex), QStringList{"ff0000"});
        QCoreApplication::processEvents();
        QTest::keyClick(view.fields(Notation::Rgb).last(), Qt::Key_Return);
        QCOMPARE(view.texts(Notation::Hex), QStringList{"#0000FF"});
    }

    void contrastKeystrokesAndStoreGoBothWays()
    {
        ContrastStorage storage;
        auto view = std::make_unique<ContrastTab>(storage);
        QTest::keyClick(view->backgroundField(), Qt::Key_Backspace);
        QCOMPARE(storage.hex2(), QStringLiteral("#FFFFF"));
        QTest::keyClick(view->backgroundField(), Qt::Key_0);
        retype(view->foregroundField(), "#not a color");
        QCOMPARE(storage.hex1(), QStringLiteral("#not a color"));
        QCOMPARE(view->ratioText(),
                 contrastRatioText(contrastRatio(storage.hex1(), QStringLiteral("#FFFFF0"))));
        storage.setHex1(QStringLiteral("#767676"));
        QCOMPARE(view->foregroundField()->text(), QStringLiteral("#767676"));
        QCOMPARE(view->levelText(), wcagLabel(wcagLevel(contrastRatio(storage.hex1(), storage.hex2()))));
        view.reset(); // the tab is left, its texts are not
        ContrastTab again(storage);
        QCOMPARE(again.backgroundField()->text(), QStringLiteral("#FFFFF0"));
        QCOMPARE(again.ratioText(), contrastRatioText(contrastRatio(storage.hex1(), storage.hex2())));
    }

    // Below the grade: APCA, a fix that goes into its field as if typed,
    // and, on Alt+V, the pair as seen with each deficiency.
    void contrastFixesAndVision()
    {
        ContrastStorage storage;
        storage.setHex1(QStringLiteral("#888888"));
        ContrastTab view(storage);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        QCOMPARE(view.apcaText(), QStringLiteral("Lc 63.1"));
        QList<QPushButton *> fixes = view.fixes()->findChildren<QPushButton *>();
        QCOMPARE(fixes.size(), 4); // AA and AAA, text and background
        QCOMPARE(fixes.first()->accessibleName(), QStringLiteral("Text color #767676 for AA, ratio 4.54"));
        QVERIFY(!fixes.last()->isEnabled()); // no background reaches AAA with #888888
        fixes.first()->setFocus(Qt::TabFocusReason);
        QTest::keyClick(fixes.first(), Qt::Key_Space);
        QCOMPARE(storage.hex1(), QStringLiteral("#767676"));
        QCOMPARE(view.foregroundField()->text(), QStringLiteral("#767676"));
        QVERIFY(view.foregroundField()->hasFocus());
        QCOMPARE(view.ratioText(), QStringLiteral("4.54"));

        QVERIFY(!view.visionPreviews()->isVisible());
        QTest::keyClick(&view, Qt::Key_V, Qt::AltModifier);
        QVERIFY(view.visionPreviews()->isVisible() && !view.fixes()->isVisible());
        QStringList seen;
        for (const QWidget *tile : view.visionPreviews()->findChildren<QWidget *>())
            seen.append(tile->accessibleName() + QStringLiteral(": ") + tile->accessibleDescription());
        QCOMPARE(seen.size(), 4);
        QCOMPARE(seen.last(), QStringLiteral("Achromatopsia: #767676 on #FFFFFF, ratio 4.54, AA"));
    }

    // Whatever lands in a field, nothing breaks, the window keeps its size,
    // and what a store keeps comes back from it as it was typed.
    void oddTextInEveryField_data()
    {
        QTest::addColumn<int>("field");
        QTest::addColumn<QString>("text");
        const char *fields[] = {
            "hex",        "rgb red",     "oklch hue", "contrast text", "contrast background",
            "color name", "palette name"};
        const QString texts[] = {QString(5000, u'W'),
                                 QStringLiteral("a\tb\nc\x01\x7f\u200B"),
                                 QStringLiteral("\u202E\u0639\u0631\u0628\u064A e\u0301\u0327"),
                                 QStringLiteral("\U0001F3A8\U0001F469\U0001F3FD\u200D\U0001F4BB"),
                                 QStringLiteral("x") + QChar(0) + u'y',
                                 QStringLiteral(" \u00A0\u3000 ")};
        for (int f = 0; f < 7; ++f)
            for (int t = 0; t < 6; ++t)
                QTest::addRow("%s, text %d", fields[f], t) << f << texts[t];
    }
    void oddTextInEveryField()
    {
        QFETCH(int, field);
        QFETCH(QString, text);
        AppFixture f;
        f.palettes().createPalette(QStringLiteral("Brand"));
        const QSize size = f.window().size();
        const MenuTab tabs[] = {MenuTab::Convert,  MenuTab::Convert, MenuTab::Convert, MenuTab::Contrast,
                                MenuTab::Contrast, MenuTab::Picker,  MenuTab::Palettes};
        f.window().setSelectedTab(tabs[field]);
        QWidget *tab = f.window().tab();
        auto *convert = qobject_cast<ConvertTab *>(tab);
        auto *contrast = qobject_cast<ContrastTab *>(tab);
        if (auto *picker = qobject_cast<PickerTab *>(tab))
            picker->addToPalette().open([] { return ColorItem::create(QStringLiteral("c"), 0.1, 0.2, 0.3); },
                                        QStringLiteral("c"));
        else if (field == 6)
            qobject_cast<PalettesTab *>(tab)->showNewPalettePrompt();
        QLineEdit *edit = field == 0 ? convert->fields(Notation::Hex)[0]
            : field == 1             ? convert->fields(Notation::Rgb)[0]
            : field == 2             ? convert->fields(Notation::Oklch)[2]
            : field == 3             ? contrast->foregroundField()
            : field == 4             ? contrast->backgroundField()
            : field == 5             ? qobject_cast<PickerTab *>(tab)->addToPalette().sheet()->nameField()
                                     : qobject_cast<PalettesTab *>(tab)->newPalettePrompt()->lineEdit();
        edit->selectAll();
        edit->insert(text);
        QTest::keyClick(edit, Qt::Key_Return);
        QCoreApplication::processEvents();
        QCOMPARE(f.window().size(), size);
        const QList<Palette> reloaded = PaletteStorage(f.folder.path()).palettes();
        const QString stored = field == 3 ? f.app.contrastStorage().hex1()
            : field == 4                  ? f.app.contrastStorage().hex2()
            : field == 5                  ? reloaded.first().colors.last().name
            : field == 6                  ? reloaded.last().name
                                          : text;
        QCOMPARE(stored, text);
    }
    // Import and export as the user reaches them: files dropped on the
    // window, a palette exported to the file the save dialog names, the
    // notice line.
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

QTEST_MAIN(TestViews)
#include "tst_views.moc"
