// The tabs' own rules: Convert commits a group on Return; Contrast keeps
// no copy of its texts; the add sheet starts on the remembered palette;
// no text in any field breaks the window.
#include "support/AppFixture.h"

#include "model/Contrast.h"
#include "storage/ContrastStorage.h"
#include "ui/AddColorSheet.h"
#include "ui/AddToPaletteFlow.h"
#include "ui/ContrastFixes.h"
#include "ui/ContrastTab.h"
#include "ui/ConvertTab.h"
#include "ui/PalettesTab.h"
#include "ui/PickerTab.h"
#include "ui/TextPromptDialog.h"
#include "ui/VisionPreviews.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

Q_DECLARE_METATYPE(Notation)

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

    void addSheetPreselection_data()
    {
        QTest::addColumn<int>("given");    // index of the remembered palette; -1 none, -2 an unknown id
        QTest::addColumn<int>("selected"); // -2: the unknown id as given
        QTest::newRow("nothing remembered: first palette") << -1 << 0;
        QTest::newRow("remembered palette") << 1 << 1;
        QTest::newRow("remembered id taken as it is") << -2 << -2;
    }
    void addSheetPreselection()
    {
        QFETCH(int, given);
        QFETCH(int, selected);
        AppFixture f;
        const QList<QUuid> ids = {f.palettes().createPalette(QStringLiteral("One")).id,
                                  f.palettes().createPalette(QStringLiteral("Two")).id};
        const QUuid unknown = QUuid::createUuid();
        const auto id = [&](int index) { return index == -2 ? unknown : ids.value(index); };
        AddColorSheet sheet(f.palettes(), QStringLiteral("x"),
                            given == -1 ? std::nullopt : std::optional<QUuid>(id(given)), &f.window());
        QCOMPARE(sheet.selectedPalette(), std::optional<QUuid>(id(selected)));
        if (selected >= 0)
            QCOMPARE(sheet.paletteMenu()->currentText(), f.palettes().palettes()[selected].name);
        // Palettes made while it is open join its menu.
        const Palette made = f.palettes().createPalette(QStringLiteral("Later"));
        sheet.setSelectedPalette(made.id);
        QCOMPARE(sheet.paletteMenu()->currentData().toUuid(), made.id);
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
};

QTEST_MAIN(TestViews)
#include "tst_views.moc"
