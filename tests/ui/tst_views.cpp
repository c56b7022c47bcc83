// The tabs' own rules: Convert commits a group on Return; Contrast keeps
// no copy of its texts; a copy button copies plain text and shows its mark
// for a second; the add sheet starts on the remembered palette.
#include "UiTestSupport.h"

#include "model/Contrast.h"
#include "storage/ContrastStorage.h"
#include "ui/AddColorSheet.h"
#include "ui/ColorDisplayView.h"
#include "ui/ContrastTab.h"
#include "ui/ConvertTab.h"
#include "ui/IconButton.h"

#include <QClipboard>
#include <QComboBox>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMimeData>
#include <QTest>

Q_DECLARE_METATYPE(Notation)

namespace {

const Notation notations[] = {Notation::Hex, Notation::Rgb, Notation::Hsl, Notation::Oklch, Notation::Cmyk};

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
        for (const Notation group : notations)
            before.append(view.texts(group));
        typeAndCommit(view, notation, typed);
        const std::optional<RgbColor> parsed = parseNotation(notation, typed);
        QVERIFY(view.color() == parsed.value_or(RgbColor{1, 1, 1}));
        // The committed group keeps exactly what was typed, valid or not.
        for (const Notation group : notations)
            QCOMPARE(view.texts(group),
                     group == notation ? typed
                         : parsed      ? notationTexts(group, *parsed)
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

    void copyPutsExactlyThePlainText()
    {
        ColorDisplayView view;
        view.setColorItem(ColorItem::create(QStringLiteral("c"), 1.0, 128 / 255.0, 0.0));
        view.show();
        auto *html = new QMimeData;
        html->setHtml(QStringLiteral("<b>old</b>"));
        QGuiApplication::clipboard()->setMimeData(html);
        QTest::mouseClick(view.copyButton(3), Qt::LeftButton);
        QCOMPARE(clipboardText(), QStringLiteral("oklch(73.2% 0.19 53)"));
        QCOMPARE(QGuiApplication::clipboard()->mimeData()->formats(), QStringList{"text/plain"});
        QCOMPARE(view.copyButton(3)->symbol(), QStringLiteral("checkmark"));
        for (int i : {0, 1, 2})
            QVERIFY(!view.isCopied(i));
    }

    void checkmarkRevertsOneSecondAfterFirstClick()
    {
        ColorDisplayView view;
        view.setColorItem(ColorItem::create(QStringLiteral("c"), 0.2, 0.4, 0.8));
        QElapsedTimer clock;
        clock.start();
        view.copy(0);
        QTest::qWait(600);
        view.copy(0);
        // Reverts at 1.0 s after the first click, not 1.6 s.
        QTRY_VERIFY_WITH_TIMEOUT(!view.isCopied(0), 1000);
        QVERIFY2(clock.elapsed() < 1400, QByteArray::number(clock.elapsed()));
        // A new color's copy keeps its own mark past the old color's reset.
        view.copy(0);
        QTest::qWait(500);
        view.setColorItem(ColorItem::create(QStringLiteral("c"), 1.0, 0.0, 0.0));
        QVERIFY(!view.isCopied(0));
        view.copy(0);
        QTest::qWait(700);
        QVERIFY(view.isCopied(0));
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
        SharedObjects shared;
        const QList<QUuid> ids = {shared.paletteStorage.createPalette(QStringLiteral("One")).id,
                                  shared.paletteStorage.createPalette(QStringLiteral("Two")).id};
        const QUuid unknown = QUuid::createUuid();
        const auto id = [&](int index) { return index == -2 ? unknown : ids.value(index); };
        QWidget host;
        AddColorSheet sheet(shared.paletteStorage, QStringLiteral("x"),
                            given == -1 ? std::nullopt : std::optional<QUuid>(id(given)), &host);
        QCOMPARE(sheet.selectedPalette(), std::optional<QUuid>(id(selected)));
        if (selected >= 0)
            QCOMPARE(sheet.paletteMenu()->currentText(), shared.paletteStorage.palettes()[selected].name);
        // Palettes made while it is open join its menu.
        const Palette made = shared.paletteStorage.createPalette(QStringLiteral("Later"));
        sheet.setSelectedPalette(made.id);
        QCOMPARE(sheet.paletteMenu()->currentData().toUuid(), made.id);
    }
};

QTEST_MAIN(TestViews)
#include "tst_views.moc"
